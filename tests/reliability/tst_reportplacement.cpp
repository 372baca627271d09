// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Where a report lands and what it may touch on a hostile file system:
// links and hard links at the report's name, several inputs that name one
// report, ".." after a link, names that are not UTF-8, FIFOs, the umask,
// and jobs that cannot get a thread or memory. Each case runs brevio-convert
// as a user would and checks the files afterwards, byte for byte.

#include "files/filenamecodec.h"
#include "pdfreport.h"
#include "reliability.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace reliability;

namespace {

QByteArray configurationNamed(const QString& name) {
    return QStringLiteral("{\"configuration\":{\"name\":\"%1\"}}").arg(name).toUtf8();
}

bool completePdf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    return bytes.startsWith("%PDF-") && bytes.right(1024).contains("%%EOF");
}

// The "Name: " line of a report's first page, or why there is none.
QString reportedName(const QString& path) {
    PdfReport report(path);
    if (!report.isValid())
        return QStringLiteral("(no readable report at ") + path + QLatin1Char(')');
    return report.lineStartingWith(0, QStringLiteral("Name: ")).text;
}

// brevio-convert run from folder, so that relative names stay relative.
ProgramRun convertIn(const QString& folder, const QStringList& arguments,
                     const QString& shellPrefix = QString()) {
    const QString script = shellPrefix + QStringLiteral("cd \"$0\" && exec \"$@\"");
    return runProgram(
        QStringLiteral("bash"),
        QStringList{QStringLiteral("-c"), script, folder, QStringLiteral(BREVIO_CONVERT_BINARY)} +
            arguments,
        headlessEnvironment(), 120000);
}

bool ranToAnEnd(const ProgramRun& run) {
    if (run.finished && !run.crashed)
        return true;
    qWarning("%s", qPrintable(run.describe()));
    return false;
}

QString example() {
    return exampleFile(QStringLiteral("pressure-transmitter.json"));
}

bool makeLink(const QString& target, const QString& link) {
    return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(link).constData()) ==
           0;
}

// AddressSanitizer reserves terabytes of address space for its shadow
// memory at start, so a process under an address-space limit cannot start.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool addressSpaceLimitsWork = false;
#else
constexpr bool addressSpaceLimitsWork = true;
#endif

} // namespace

class TestReportPlacement : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void linkAtReportName_data();
    void linkAtReportName();
    void reportsSharedByInputs_data();
    void reportsSharedByInputs();
    void dotDotAfterLink();
    void pathsTheSystemRefuses_data();
    void pathsTheSystemRefuses();
    void namesThatAreNotUtf8_data();
    void namesThatAreNotUtf8();
    void reportModeFollowsUmask_data();
    void reportModeFollowsUmask();
    void fifoAtInputName();
    void fifoAtReportName();
    void noThreadCanBeStarted();
    void outOfMemory();

private:
    QScopedPointer<QTemporaryDir> dir;
    QString path(const QString& name) const { return dir->filePath(name); }
};

void TestReportPlacement::initTestCase() {
    // The arguments and outputs below carry names that are not UTF-8; they
    // have to reach brevio-convert and come back byte for byte.
    FileNameCodec::useForLocale();
}

void TestReportPlacement::init() {
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

void TestReportPlacement::linkAtReportName_data() {
    QTest::addColumn<QString>("kind");
    QTest::newRow("link to the configuration") << "to configuration";
    QTest::newRow("link to another file") << "to other file";
    QTest::newRow("dangling link") << "dangling";
    QTest::newRow("hard link to the configuration") << "hard link";
    QTest::newRow("link to a file of another folder") << "to other folder";
}

// Whatever the report's name is a link to, the link is replaced by the
// report and nothing behind it is written: not the configuration, not
// another file, not a dangling link's target.
void TestReportPlacement::linkAtReportName() {
    QFETCH(QString, kind);
    QVERIFY(QFile::copy(example(), path(QStringLiteral("c.json"))));
    writeFile(dir->path(), QStringLiteral("keep.txt"), "keep");
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("other")));
    writeFile(path(QStringLiteral("other")), QStringLiteral("keep.txt"), "other");
    const QString report = path(QStringLiteral("c.pdf"));
    if (kind == QLatin1String("to configuration"))
        QVERIFY(makeLink(QStringLiteral("c.json"), report));
    else if (kind == QLatin1String("to other file"))
        QVERIFY(makeLink(QStringLiteral("keep.txt"), report));
    else if (kind == QLatin1String("dangling"))
        QVERIFY(makeLink(QStringLiteral("created-by-nobody"), report));
    else if (kind == QLatin1String("to other folder"))
        QVERIFY(makeLink(path(QStringLiteral("other/keep.txt")), report));
    else
        QVERIFY(::link(QFile::encodeName(path(QStringLiteral("c.json"))).constData(),
                       QFile::encodeName(report).constData()) == 0);
    const QByteArray configuration = fileHash(path(QStringLiteral("c.json")));

    const ProgramRun run = convertIn(dir->path(), {QStringLiteral("c.json")});
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), report + QLatin1Char('\n'));

    QCOMPARE(fileHash(path(QStringLiteral("c.json"))), configuration);
    QCOMPARE(fileHash(path(QStringLiteral("c.json"))), fileHash(example()));
    QCOMPARE(QFile(path(QStringLiteral("keep.txt"))).size(), qint64(4));
    QCOMPARE(fileHash(path(QStringLiteral("keep.txt"))),
             QCryptographicHash::hash("keep", QCryptographicHash::Sha256).toHex());
    QCOMPARE(folderEntries(path(QStringLiteral("other"))), QStringList{QStringLiteral("keep.txt")});
    QCOMPARE(QFile(path(QStringLiteral("other/keep.txt"))).size(), qint64(5));
    QVERIFY(!QFileInfo(report).isSymLink());
    QVERIFY(completePdf(report));
    QCOMPARE(folderEntries(dir->path()),
             (QStringList{QStringLiteral("c.json"), QStringLiteral("c.pdf"),
                          QStringLiteral("keep.txt"), QStringLiteral("other")}));
}

void TestReportPlacement::reportsSharedByInputs_data() {
    QTest::addColumn<QStringList>("inputs");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("notices");
    // The same file again: listed again with the report, and a warning.
    QTest::addColumn<QStringList>("sameFileWarnings");

    QTest::newRow("one file through a linked folder")
        << QStringList{QStringLiteral("w/a.json"), QStringLiteral("link-to-w/a.json")} << 0
        << "w/a.pdf"
        << "Name: w-a" << QStringList()
        << QStringList{"link-to-w/a.json: warning: same report as w/a.json"};
    QTest::newRow("a.json.json and a.pdf.json")
        << QStringList{QStringLiteral("a.json.json"), QStringLiteral("a.pdf.json")} << 1
        << "a.pdf.pdf"
        << "Name: a-json-json" << QStringList{"a.pdf.json: same report as a.json.json"}
        << QStringList();
    QTest::newRow("d.json/x.json and d.pdf/x.json")
        << QStringList{QStringLiteral("d.json/x.json"), QStringLiteral("d.pdf/x.json")} << 1
        << "d.pdf/x.pdf"
        << "Name: d-json-x" << QStringList{"d.pdf/x.json: same report as d.json/x.json"}
        << QStringList();
    QTest::newRow("one file four times")
        << QStringList{QStringLiteral("w/a.json"), QStringLiteral("w/a.json"),
                       QStringLiteral("w/a.json"), QStringLiteral("w/a.json")}
        << 0 << "w/a.pdf"
        << "Name: w-a" << QStringList()
        << QStringList{"w/a.json: warning: same report as w/a.json",
                       "w/a.json: warning: same report as w/a.json",
                       "w/a.json: warning: same report as w/a.json"};
    QTest::newRow("one file by a hard link")
        << QStringList{QStringLiteral("w/a.json"), QStringLiteral("w/hard.json")} << 0 << "w/a.pdf"
        << "Name: w-a" << QStringList() << QStringList();
}

// Files whose reports are one and the same file are converted once. A
// hard link has a report name of its own and is converted on its own.
void TestReportPlacement::reportsSharedByInputs() {
    QFETCH(QStringList, inputs);
    QFETCH(int, exitCode);
    QFETCH(QString, report);
    QFETCH(QString, name);
    QFETCH(QStringList, notices);
    QFETCH(QStringList, sameFileWarnings);

    QDir root(dir->path());
    QVERIFY(root.mkpath(QStringLiteral("w")) && root.mkpath(QStringLiteral("d.json")) &&
            root.mkpath(QStringLiteral("d.pdf")));
    QVERIFY(makeLink(QStringLiteral("w"), path(QStringLiteral("link-to-w"))));
    writeFile(path(QStringLiteral("w")), QStringLiteral("a.json"), configurationNamed("w-a"));
    QVERIFY(::link(QFile::encodeName(path(QStringLiteral("w/a.json"))).constData(),
                   QFile::encodeName(path(QStringLiteral("w/hard.json"))).constData()) == 0);
    writeFile(dir->path(), QStringLiteral("a.json.json"), configurationNamed("a-json-json"));
    writeFile(dir->path(), QStringLiteral("a.pdf.json"), configurationNamed("a-pdf-json"));
    writeFile(path(QStringLiteral("d.json")), QStringLiteral("x.json"),
              configurationNamed("d-json-x"));
    writeFile(path(QStringLiteral("d.pdf")), QStringLiteral("x.json"),
              configurationNamed("d-pdf-x"));

    // Run many times: a race between two writers of one report would show
    // as a damaged report in some of them.
    for (int attempt = 0; attempt < 5; ++attempt) {
        const ProgramRun run = convertIn(
            dir->path(), QStringList{QStringLiteral("--jobs"), QStringLiteral("4")} + inputs);
        QVERIFY(ranToAnEnd(run));
        QCOMPARE(run.status(), exitCode);
        QString expectedErr;
        for (const QString& notice : notices)
            expectedErr += QStringLiteral("brevio-convert: ") + notice + QLatin1Char('\n');
        QCOMPARE(withoutWarnings(run.errText()), expectedErr);
        for (const QString& warning : sameFileWarnings)
            QVERIFY2(run.errText().contains(QStringLiteral("brevio-convert: ") + warning),
                     qPrintable(run.errText()));
        QCOMPARE(run.errText().count(QStringLiteral(": warning: same report as ")),
                 sameFileWarnings.size());
        QVERIFY2(run.outText().startsWith(path(report) + QLatin1Char('\n')),
                 qPrintable(run.outText()));
        QCOMPARE(run.outText().count(path(report) + QLatin1Char('\n')),
                 1 + sameFileWarnings.size());
        QCOMPARE(reportedName(path(report)), name);
        QVERIFY(completePdf(path(report)));
    }
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("link-to-w/x.pdf"))));
    for (const QString& folder : {QStringLiteral("."), QStringLiteral("w"),
                                  QStringLiteral("d.json"), QStringLiteral("d.pdf")})
        for (const QString& name : folderEntries(path(folder)))
            QVERIFY2(!name.startsWith(QLatin1Char('.')), qPrintable(folder + '/' + name));
}

// In work/, "lnk/../plant.json" with lnk -> ../real/sub is real/plant.json
// to the system; that is the file converted, and the report goes beside it.
void TestReportPlacement::dotDotAfterLink() {
    QDir root(dir->path());
    QVERIFY(root.mkpath(QStringLiteral("work")) && root.mkpath(QStringLiteral("real/sub")));
    writeFile(path(QStringLiteral("real")), QStringLiteral("plant.json"),
              configurationNamed("real plant"));
    writeFile(path(QStringLiteral("work")), QStringLiteral("plant.json"),
              configurationNamed("work plant"));
    QVERIFY(makeLink(QStringLiteral("../real/sub"), path(QStringLiteral("work/lnk"))));

    const ProgramRun run =
        convertIn(path(QStringLiteral("work")), {QStringLiteral("lnk/../plant.json")});
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.status(), 0);
    QCOMPARE(reportedName(path(QStringLiteral("real/plant.pdf"))),
             QStringLiteral("Name: real plant"));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("work/plant.pdf"))));
    // The path printed leads to the report, read by the system's rules.
    QVERIFY(run.outText().endsWith(QStringLiteral("/lnk/../plant.pdf\n")));
    QCOMPARE(fileHash(run.outText().trimmed()), fileHash(path(QStringLiteral("real/plant.pdf"))));
}

void TestReportPlacement::pathsTheSystemRefuses_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("reason");
    QTest::newRow("through a missing folder") << "missing.json/../a.json"
                                              << "cannot be opened: No such file or directory";
    QTest::newRow("through a file") << "a.json/../a.json"
                                    << "cannot be opened: Not a directory";
    QTest::newRow("trailing slash") << "a.json/"
                                    << "not a \".json\" file name";
}

void TestReportPlacement::pathsTheSystemRefuses() {
    QFETCH(QString, given);
    QFETCH(QString, reason);
    QVERIFY(QFile::copy(example(), path(QStringLiteral("a.json"))));
    const ProgramRun run = convertIn(dir->path(), {given});
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), QString());
    QCOMPARE(withoutWarnings(run.errText()), QStringLiteral("brevio-convert: ") + given +
                                                 QStringLiteral(": ") + reason + QLatin1Char('\n'));
    QCOMPARE(folderEntries(dir->path()), QStringList{QStringLiteral("a.json")});
}

void TestReportPlacement::namesThatAreNotUtf8_data() {
    QTest::addColumn<QString>("locale");
    QTest::newRow("C.UTF-8") << "C.UTF-8";
    QTest::newRow("C") << "C";
}

// A folder named "Geb\xe4ude" (Latin-1), beside one whose name holds the
// replacement character U+FFFD, which is what a lossy decoding makes of it.
void TestReportPlacement::namesThatAreNotUtf8() {
    QFETCH(QString, locale);
    const QByteArray base = QFile::encodeName(dir->path());
    const QByteArray latin1 = base + "/Geb\xe4ude";
    const QByteArray replaced = base + "/Geb\xef\xbf\xbdude";
    QVERIFY(::mkdir(latin1.constData(), 0755) == 0);
    QVERIFY(::mkdir(replaced.constData(), 0755) == 0);
    const QString latin1Folder = QFile::decodeName(latin1);
    QCOMPARE(QFile::encodeName(latin1Folder), latin1);
    writeFile(latin1Folder, QStringLiteral("anlage.json"), configurationNamed("latin1"));
    writeFile(QFile::decodeName(replaced), QStringLiteral("anlage.json"),
              configurationNamed("replaced"));

    QProcessEnvironment environment = headlessEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.insert(QStringLiteral("LANG"), locale);
    const ProgramRun run =
        runProgram(QStringLiteral(BREVIO_CONVERT_BINARY),
                   {latin1Folder + QStringLiteral("/anlage.json")}, environment, 120000);
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.status(), 0);
    QCOMPARE(QFile::encodeName(run.outText()), latin1 + "/anlage.pdf\n");
    struct stat info {};
    QVERIFY(::stat((latin1 + "/anlage.pdf").constData(), &info) == 0 && S_ISREG(info.st_mode));
    QVERIFY(::stat((replaced + "/anlage.pdf").constData(), &info) != 0);
    QCOMPARE(reportedName(QFile::decodeName(latin1 + "/anlage.pdf")),
             QStringLiteral("Name: latin1"));
}

void TestReportPlacement::reportModeFollowsUmask_data() {
    QTest::addColumn<QString>("umask");
    QTest::addColumn<int>("mode");
    QTest::newRow("022") << "022" << 0644;
    QTest::newRow("027") << "027" << 0640;
    QTest::newRow("077") << "077" << 0600;
    QTest::newRow("002") << "002" << 0664;
}

// The report is a new file like any other the user makes: its mode is
// 0666 less the umask, not the 0600 of a temporary file.
void TestReportPlacement::reportModeFollowsUmask() {
    QFETCH(QString, umask);
    QFETCH(int, mode);
    QVERIFY(QFile::copy(example(), path(QStringLiteral("a.json"))));
    const ProgramRun run =
        convertIn(dir->path(), {QStringLiteral("a.json")}, QStringLiteral("umask %1; ").arg(umask));
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 0);
    struct stat info {};
    QVERIFY(::stat(QFile::encodeName(path(QStringLiteral("a.pdf"))).constData(), &info) == 0);
    QCOMPARE(int(info.st_mode & 07777), mode);
}

// Opening a FIFO for reading waits for a writer; brevio-convert must not.
void TestReportPlacement::fifoAtInputName() {
    const QString fifo = path(QStringLiteral("a.json"));
    QVERIFY(::mkfifo(QFile::encodeName(fifo).constData(), 0644) == 0);
    const ProgramRun run = convertIn(dir->path(), {QStringLiteral("a.json")});
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: a.json: cannot be opened: not a regular file\n"));
    QCOMPARE(folderEntries(dir->path()), QStringList{QStringLiteral("a.json")});
}

// A FIFO at the report's name is replaced like a link, never opened.
void TestReportPlacement::fifoAtReportName() {
    QVERIFY(QFile::copy(example(), path(QStringLiteral("a.json"))));
    QVERIFY(::mkfifo(QFile::encodeName(path(QStringLiteral("a.pdf"))).constData(), 0644) == 0);
    const ProgramRun run = convertIn(dir->path(), {QStringLiteral("a.json")});
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QCOMPARE(run.status(), 0);
    QVERIFY(completePdf(path(QStringLiteral("a.pdf"))));
}

// Every thread's stack is as large as the stack limit, and the address
// space is too small for one: the pool cannot start any thread. The jobs
// are reported, and the program ends instead of waiting for them.
void TestReportPlacement::noThreadCanBeStarted() {
    if (!addressSpaceLimitsWork)
        QSKIP("an address-space limit stops AddressSanitizer's shadow memory, not the pool");
    QVERIFY(QFile::copy(example(), path(QStringLiteral("a.json"))));
    QVERIFY(QFile::copy(example(), path(QStringLiteral("b.json"))));
    const ProgramRun run =
        convertIn(dir->path(), {QStringLiteral("a.json"), QStringLiteral("b.json")},
                  QStringLiteral("ulimit -s 4000000; ulimit -v 3000000; "));
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), QString());
    QVERIFY2(run.errText().endsWith(QStringLiteral(
                 "brevio-convert: a.json: not converted (no thread could be started)\n"
                 "brevio-convert: b.json: not converted (no thread could be started)\n")),
             qPrintable(run.errText()));
    QCOMPARE(folderEntries(dir->path()),
             (QStringList{QStringLiteral("a.json"), QStringLiteral("b.json")}));
}

// A configuration far larger than the memory the process may take: reading
// it fails inside the job, which then ends with aborted() like any other
// failure. A small file converts under the same limit.
void TestReportPlacement::outOfMemory() {
    if (!addressSpaceLimitsWork)
        QSKIP("an address-space limit stops AddressSanitizer's shadow memory, not the job");
    QVERIFY(QFile::copy(example(), path(QStringLiteral("small.json"))));
    {
        QFile huge(path(QStringLiteral("huge.json")));
        QVERIFY(huge.open(QIODevice::WriteOnly));
        huge.write("{\"configuration\":{\"name\":\"");
        const QByteArray block(1 << 20, 'x');
        for (int i = 0; i < 768; ++i)
            QVERIFY(huge.write(block) == block.size());
        huge.write("\"}}");
    }
    const ProgramRun run =
        convertIn(dir->path(), {QStringLiteral("small.json"), QStringLiteral("huge.json")},
                  QStringLiteral("ulimit -v 1200000; "));
    QVERIFY(ranToAnEnd(run));
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), path(QStringLiteral("small.pdf")) + QLatin1Char('\n'));
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: huge.json: not converted (out of memory)\n"));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("huge.pdf"))));
    QCOMPARE(folderEntries(dir->path()),
             (QStringList{QStringLiteral("huge.json"), QStringLiteral("small.json"),
                          QStringLiteral("small.pdf")}));
}

QTEST_MAIN(TestReportPlacement)
#include "tst_reportplacement.moc"
