// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevio-convert as a hostile user runs it: too little memory, signals in
// the middle of a conversion, an output that cannot be written, an inherited
// display platform, a file size limit, a working folder too deep to be
// named, names with line breaks and --help-all. It never aborts, leaves no
// temporary folder behind and prints nothing that is not true.

#include "files/filenamecodec.h"
#include "reliability.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace reliability;

extern char** environ;

namespace {

// AddressSanitizer reserves terabytes of address space for its shadow
// memory at start, so a process under an address-space limit cannot start.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool addressSpaceLimitsWork = false;
#else
constexpr bool addressSpaceLimitsWork = true;
#endif

QString example() {
    return exampleFile(QStringLiteral("pressure-transmitter.json"));
}

bool completeReport(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    return bytes.startsWith("%PDF-") && bytes.right(1024).contains("%%EOF");
}

QString converter() {
    return QStringLiteral(BREVIO_CONVERT_BINARY);
}

// Runs a bash script with the converter's path as $1 and folder as $2,
// headless.
ProgramRun runScript(const QString& script, const QString& folder,
                     const QProcessEnvironment& environment = headlessEnvironment()) {
    return runProgram(QStringLiteral("bash"),
                      {QStringLiteral("-c"), script, QStringLiteral("script"), converter(), folder},
                      environment, 300000);
}

bool ranToAnEnd(const ProgramRun& run) {
    if (run.finished && !run.crashed)
        return true;
    qWarning("%s", qPrintable(run.describe()));
    return false;
}

QStringList temporaryFoldersIn(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral(".brevio-*")},
                                  QDir::AllEntries | QDir::Hidden | QDir::System);
}

// A configuration with many output channels: its report runs over many
// pages, so that a conversion of it is still running when the test acts.
QByteArray manyChannels(int channels) {
    QByteArray outputs;
    for (int channel = 0; channel < channels; ++channel) {
        if (channel > 0)
            outputs += ',';
        outputs += QStringLiteral("{\"name\":\"Kanal %1\",\"measure\":{\"measure\":\"Druck\","
                                  "\"unit\":\"Pa\",\"rangeLow\":0,\"rangeHigh\":%1}}")
                       .arg(channel)
                       .toUtf8();
    }
    return "{\"configuration\":{\"name\":\"lang\",\"outputs\":[" + outputs + "]}}";
}

// A configuration of about size bytes whose plant name is one long word.
QString writeLongName(const QString& folder, const QString& name, int megabytes) {
    QFile file(QDir(folder).filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write("{\"configuration\":{\"name\":\"");
    const QByteArray block(1 << 20, 'x');
    for (int i = 0; i < megabytes; ++i)
        file.write(block);
    file.write("\"}}");
    return file.fileName();
}

struct SpawnResult {
    bool exited = false;
    int exitCode = -1;
    int signal = 0;
    QByteArray err;
};

// Runs brevio-convert with its standard output on outFd (or closed when
// outFd is -1) and its standard error in a file. QProcess always gives a
// child a working pipe; these cases need the descriptor itself.
SpawnResult spawnWithOutput(const QStringList& arguments, int outFd, const QString& errFile) {
    SpawnResult result;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (outFd >= 0)
        posix_spawn_file_actions_adddup2(&actions, outFd, STDOUT_FILENO);
    else
        posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
    const QByteArray errPath = QFile::encodeName(errFile);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errPath.constData(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    QVector<QByteArray> storage;
    storage.append(QFile::encodeName(converter()));
    for (const QString& argument : arguments)
        storage.append(QFile::encodeName(argument));
    QVector<char*> argv;
    for (QByteArray& argument : storage)
        argv.append(argument.data());
    argv.append(nullptr);
    QVector<QByteArray> environmentStorage;
    for (const QString& entry : headlessEnvironment().toStringList())
        environmentStorage.append(entry.toLocal8Bit());
    QVector<char*> envp;
    for (QByteArray& entry : environmentStorage)
        envp.append(entry.data());
    envp.append(nullptr);
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0)
        return result;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.exited = WIFEXITED(status);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    QFile err(errFile);
    if (err.open(QIODevice::ReadOnly))
        result.err = err.readAll();
    return result;
}

} // namespace

class TestCliRobustness : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void outOfMemory_data();
    void outOfMemory();
    void interrupted_data();
    void interrupted();
    void staleFolderOfDeadProcessRemoved_data();
    void staleFolderOfDeadProcessRemoved();
    void outputErrors_data();
    void outputErrors();
    void readerGoneIsAnOutputError();
    void messagesLostIsAFailure();
    void inheritedPlatform_data();
    void inheritedPlatform();
    void fileSizeLimit();
    void deepWorkingFolder();
    void workingFolderRemoved();
    void lineBreakInName();
    void helpAll_data();
    void helpAll();
};

void TestCliRobustness::initTestCase() {
    // Names that are not UTF-8 or hold control characters come back byte
    // for byte.
    FileNameCodec::useForLocale();
    // The children inherit signal dispositions: SIGXFSZ and SIGPIPE must
    // be at their defaults, so that what brevio-convert does with them is
    // what is tested.
    std::signal(SIGXFSZ, SIG_DFL);
    std::signal(SIGPIPE, SIG_DFL);
}

void TestCliRobustness::outOfMemory_data() {
    QTest::addColumn<int>("limitMegabytes");
    for (const int megabytes : {275, 350, 450, 550})
        QTest::addRow("%d MB", megabytes) << megabytes;
}

// A 40 MB configuration under address-space limits from 275 to 550 MB: it
// runs out of memory while being read, parsed or drawn, and the small
// files around it are converted or named as not converted for want of
// memory. Never an abort, nothing left behind.
void TestCliRobustness::outOfMemory() {
    if (!addressSpaceLimitsWork)
        QSKIP("an address-space limit stops AddressSanitizer's shadow memory, not the job");
    QFETCH(int, limitMegabytes);
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    QVERIFY(!writeLongName(dir.path(), QStringLiteral("huge.json"), 40).isEmpty());
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("c.json"))));
    const ProgramRun run = runScript(
        QStringLiteral("cd \"$2\" && ulimit -v %1 && exec \"$1\" --jobs 1 a.json huge.json c.json")
            .arg(limitMegabytes * 1024),
        dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QString expectedErr;
    QStringList expectedOut;
    for (const QString& name :
         {QStringLiteral("a.json"), QStringLiteral("huge.json"), QStringLiteral("c.json")}) {
        const QString report = dir.filePath(reportPathFor(name));
        if (run.outText().split(QLatin1Char('\n')).contains(report)) {
            expectedOut << report;
            QVERIFY2(completeReport(report), qPrintable(report));
        } else {
            expectedErr +=
                QStringLiteral("brevio-convert: %1: not converted (out of memory)\n").arg(name);
            QVERIFY(!QFileInfo::exists(report));
        }
    }
    QVERIFY2(!expectedOut.contains(dir.filePath(QStringLiteral("huge.pdf"))),
             qPrintable(run.outText()));
    QCOMPARE(withoutWarnings(run.errText()), expectedErr);
    QCOMPARE(run.outText(), expectedOut.isEmpty() ? QString() : expectedOut.join('\n') + '\n');
    QCOMPARE(temporaryFoldersIn(dir.path()), QStringList());
}

void TestCliRobustness::interrupted_data() {
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << int(SIGTERM);
    QTest::newRow("SIGINT") << int(SIGINT);
    QTest::newRow("SIGHUP") << int(SIGHUP);
}

// A signal while a long report is being drawn: the temporary folder goes,
// the process ends by that signal, and the report listed before it is
// there and complete.
void TestCliRobustness::interrupted() {
    QFETCH(int, signalNumber);
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    writeFile(dir.path(), QStringLiteral("long.json"), manyChannels(20000));
    StartedProgram converting(converter(),
                              {QStringLiteral("--jobs"), QStringLiteral("1"),
                               QStringLiteral("a.json"), QStringLiteral("long.json")},
                              headlessEnvironment(), dir.path());
    QVERIFY(converting.waitForStarted());
    // The first report is listed, and the second one's folder is there.
    QByteArray out;
    const QByteArray firstLine = QFile::encodeName(dir.filePath(QStringLiteral("a.pdf"))) + '\n';
    for (int wait = 0; wait < 12000; ++wait) {
        out += converting.readOutput(10);
        if (out == firstLine && !temporaryFoldersIn(dir.path()).isEmpty())
            break;
        QVERIFY2(converting.isRunning(), converting.errorSoFar().constData());
    }
    QCOMPARE(out, firstLine);
    QCOMPARE(temporaryFoldersIn(dir.path()).size(), 1);
    QVERIFY(converting.sendSignal(signalNumber));
    const ProgramRun run = converting.finish(60000);
    QVERIFY2(run.finished, qPrintable(run.describe()));
    QVERIFY2(run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.exitCode, signalNumber);
    QCOMPARE(run.out, firstLine);
    QVERIFY(completeReport(dir.filePath(QStringLiteral("a.pdf"))));
    QCOMPARE(temporaryFoldersIn(dir.path()), QStringList());
    QCOMPARE(folderEntries(dir.path()),
             (QStringList{QStringLiteral("a.json"), QStringLiteral("a.pdf"),
                          QStringLiteral("long.json")}));
}

void TestCliRobustness::staleFolderOfDeadProcessRemoved_data() {
    QTest::addColumn<QString>("owner");
    QTest::addColumn<bool>("removed");
    QTest::newRow("process gone") << "dead" << true;
    QTest::newRow("process of another boot") << "other boot" << true;
    QTest::newRow("process still running") << "alive" << false;
}

// A folder left by a process that was killed (SIGKILL, a power loss) is
// removed by the next run in that folder; one whose owner still runs is
// not touched.
void TestCliRobustness::staleFolderOfDeadProcessRemoved() {
    QFETCH(QString, owner);
    QFETCH(bool, removed);
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    const QString left = dir.filePath(QStringLiteral(".brevio-Zq81Xx"));
    QVERIFY(QDir().mkdir(left));
    writeFile(left, QStringLiteral("a.pdf"), "%PDF-1.4 cut");
    QFile bootFile(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    QVERIFY(bootFile.open(QIODevice::ReadOnly));
    QByteArray boot = bootFile.readAll().trimmed();
    qint64 pid = ::getpid();
    if (owner == QLatin1String("dead")) {
        pid = pidOfEndedProcess();
        QVERIFY(pid > 0);
    } else if (owner == QLatin1String("other boot")) {
        boot = "00000000-0000-0000-0000-000000000000";
    }
    writeFile(left, QStringLiteral(".owner"),
              "brevio " + QByteArray::number(pid) + ' ' + boot + '\n');

    const ProgramRun run = runScript(QStringLiteral("cd \"$2\" && exec \"$1\" a.json"), dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 0);
    QCOMPARE(QFileInfo::exists(left), !removed);
    QVERIFY(completeReport(dir.filePath(QStringLiteral("a.pdf"))));
}

void TestCliRobustness::outputErrors_data() {
    QTest::addColumn<QString>("redirection");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    const QStringList file{QStringLiteral("a.json")};
    QTest::newRow("full device") << ">/dev/full" << file << "No space left on device";
    QTest::newRow("closed") << ">&-" << file << "Bad file descriptor";
    QTest::newRow("help on a full device")
        << ">/dev/full" << QStringList{"--help"} << "No space left on device";
    QTest::newRow("version on a full device")
        << ">/dev/full" << QStringList{"--version"} << "No space left on device";
}

// A report list that cannot be written is a failure, told on stderr; the
// reports themselves are still written.
void TestCliRobustness::outputErrors() {
    QFETCH(QString, redirection);
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    const ProgramRun run = runScript(
        QStringLiteral("cd \"$2\" && exec \"$1\" %1 %2").arg(arguments.join(' '), redirection),
        dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: cannot write the report list: ") + reason +
                 QLatin1Char('\n'));
    if (arguments == QStringList{QStringLiteral("a.json")})
        QVERIFY(completeReport(dir.filePath(QStringLiteral("a.pdf"))));
    QCOMPARE(temporaryFoldersIn(dir.path()), QStringList());
}

// The reader of the list has gone before the first line (| head -1 after
// its line): no SIGPIPE, a failed write instead.
void TestCliRobustness::readerGoneIsAnOutputError() {
    QTemporaryDir dir;
    const QString json = dir.filePath(QStringLiteral("a.json"));
    QVERIFY(QFile::copy(example(), json));
    int ends[2];
    QVERIFY(::pipe(ends) == 0);
    ::close(ends[0]);
    const SpawnResult run =
        spawnWithOutput({json}, ends[1], dir.filePath(QStringLiteral("stderr")));
    ::close(ends[1]);
    QCOMPARE(run.signal, 0);
    QVERIFY(run.exited);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(withoutWarnings(QString::fromUtf8(run.err)),
             QStringLiteral("brevio-convert: cannot write the report list: Broken pipe\n"));
    QVERIFY(completeReport(dir.filePath(QStringLiteral("a.pdf"))));
}

// Messages that cannot be written (a warning on a full device) make the run
// a failure too, even when every report was written.
void TestCliRobustness::messagesLostIsAFailure() {
    QTemporaryDir dir;
    writeFile(dir.path(), QStringLiteral("bad.json"), "{\"configuration\":");
    const ProgramRun run =
        runScript(QStringLiteral("cd \"$2\" && exec \"$1\" bad.json 2>/dev/full"), dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), dir.filePath(QStringLiteral("bad.pdf")) + QLatin1Char('\n'));
}

void TestCliRobustness::inheritedPlatform_data() {
    QTest::addColumn<QString>("platform");
    QTest::newRow("wayland") << "wayland";
    QTest::newRow("xcb") << "xcb";
    QTest::newRow("eglfs") << "eglfs";
    QTest::newRow("garbage") << "no-such-platform";
}

// Whatever platform the environment names, without any display:
// brevio-convert draws without one.
void TestCliRobustness::inheritedPlatform() {
    QFETCH(QString, platform);
    QTemporaryDir dir;
    const QString json = dir.filePath(QStringLiteral("a.json"));
    QVERIFY(QFile::copy(example(), json));
    QProcessEnvironment environment = headlessEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
    environment.insert(QStringLiteral("QT_QPA_PLATFORMTHEME"), QStringLiteral("gtk3"));
    const ProgramRun run = runProgram(converter(), {json}, environment, 120000);
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), reportPathFor(json) + QLatin1Char('\n'));
    QVERIFY(completeReport(reportPathFor(json)));
}

// ulimit -f below the size of one report: that report is not written, the
// others are, and nothing is left over.
void TestCliRobustness::fileSizeLimit() {
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    writeFile(dir.path(), QStringLiteral("long.json"), manyChannels(400));
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("c.json"))));
    // Room for the example's report (about 60 KB), not for 400
    // channels over many pages (about 170 KB).
    const ProgramRun run = runScript(
        QStringLiteral("cd \"$2\" && ulimit -f 100 && exec \"$1\" a.json long.json c.json"),
        dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), dir.filePath(QStringLiteral("a.pdf")) + QLatin1Char('\n') +
                                dir.filePath(QStringLiteral("c.pdf")) + QLatin1Char('\n'));
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: long.json: report not written (file size limit)\n"));
    QCOMPARE(
        folderEntries(dir.path()),
        (QStringList{QStringLiteral("a.json"), QStringLiteral("a.pdf"), QStringLiteral("c.json"),
                     QStringLiteral("c.pdf"), QStringLiteral("long.json")}));
    QCOMPARE(temporaryFoldersIn(dir.path()), QStringList());
}

// A working folder more than 4096 bytes deep: getcwd() cannot name it,
// yet plant.json is the file in it, never /plant.json.
void TestCliRobustness::deepWorkingFolder() {
    QTemporaryDir dir;
    const QString script =
        QStringLiteral("cd \"$2\" || exit 90\n"
                       "step=$(printf 'tief%.0s' $(seq 25))\n"
                       "for i in $(seq 45); do mkdir \"$step\" && cd \"$step\" || exit 91; done\n"
                       "cp \"$3\" plant.json || exit 92\n"
                       "\"$1\" plant.json; status=$?\n"
                       "echo \"status $status\"\n"
                       "test -s plant.pdf && echo 'report here'\n"
                       "ls -A | grep -c '^.brevio-'\n"
                       "cd \"$2\" && rm -rf \"$step\"\n");
    const ProgramRun run = runProgram(QStringLiteral("bash"),
                                      {QStringLiteral("-c"), script, QStringLiteral("script"),
                                       converter(), dir.path(), example()},
                                      headlessEnvironment(), 300000);
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.outText(), QStringLiteral("plant.pdf\nstatus 0\nreport here\n0\n"));
}

// A working folder that has been removed holds no file: a relative name is
// refused with that reason, never looked up in "/".
void TestCliRobustness::workingFolderRemoved() {
    QTemporaryDir dir;
    const ProgramRun run = runScript(
        QStringLiteral("cd \"$2\" && mkdir gone && cd gone && rmdir ../gone && exec \"$1\" "
                       "plant.json"),
        dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), QString());
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: plant.json: cannot be opened: the working "
                            "folder no longer exists\n"));
}

// A line break in a name cannot split the list: the name is quoted the way
// a shell reads it back, on stdout and in messages.
void TestCliRobustness::lineBreakInName() {
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("dir")));
    writeFile(dir.filePath(QStringLiteral("dir")), QStringLiteral("ok.pdf"), "someone else's");
    const QString json = dir.filePath(QStringLiteral("dir/ok.pdf\nx.json"));
    QVERIFY(QFile::copy(example(), json));
    const QString missing = dir.filePath(QStringLiteral("it's\tgone.json"));
    const ProgramRun run = runProgram(converter(), {json, missing}, headlessEnvironment(), 120000);
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(),
             QStringLiteral("'") + dir.path() + QStringLiteral("/dir/ok.pdf'$'\\n''x.pdf'\n"));
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: '") + dir.path() +
                 QStringLiteral("/it'\\''s'$'\\t''gone.json': cannot be opened: No such "
                                "file or directory\n"));
    QVERIFY(completeReport(dir.filePath(QStringLiteral("dir/ok.pdf\nx.pdf"))));
}

void TestCliRobustness::helpAll_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("alone") << QStringList{"--help-all"};
    QTest::newRow("with a file") << QStringList{"--help-all", "a.json"};
}

// --help-all is --help: this tool takes none of the toolkit's options.
void TestCliRobustness::helpAll() {
    QFETCH(QStringList, arguments);
    QTemporaryDir dir;
    QVERIFY(QFile::copy(example(), dir.filePath(QStringLiteral("a.json"))));
    const ProgramRun help =
        runScript(QStringLiteral("cd \"$2\" && exec \"$1\" --help"), dir.path());
    const ProgramRun run = runScript(
        QStringLiteral("cd \"$2\" && exec \"$1\" ") + arguments.join(QLatin1Char(' ')), dir.path());
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 0);
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QVERIFY(run.outText().startsWith(QStringLiteral("Usage: ")));
    QCOMPARE(run.outText(), help.outText());
    QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("a.pdf"))));
}

QTEST_MAIN(TestCliRobustness)
#include "tst_clirobustness.moc"
