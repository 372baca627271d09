// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Reports that cannot be written: a folder the user may not write to, a
// report name taken by a folder, a full disk. The job still ends with
// finished() (it has no way to tell), never crashes, leaves no half-written
// file behind and never touches an older report; brevio-convert says
// "report not written" and exits 1.

#include "jobrunner.h"
#include "pdfreport.h"
#include "reliability.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace reliability;

namespace {

QByteArray example() {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

QList<int> oneToSeventeen() {
    QList<int> values;
    for (int i = 1; i <= 17; ++i)
        values.append(i);
    return values;
}

// A complete report from an earlier run, to see what becomes of it.
QByteArray olderReport(const QString& dir) {
    const QString json = writeFile(dir, QStringLiteral("older.json"), example());
    const JobOutcome outcome = runJob(json);
    QFile file(reportPathFor(json));
    if (!outcome.finished() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool completePdf(const QByteArray& bytes) {
    return bytes.startsWith("%PDF-") && bytes.right(1024).contains("%%EOF");
}

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The job in a process of its own, for running it as another user.
struct ProbeResult {
    QString end;
    QList<int> progress;
    ProgramRun run;
};

ProbeResult probe(const QStringList& command) {
    ProbeResult result;
    result.run = runProgram(command.first(), command.mid(1), headlessEnvironment(), 300000);
    const QStringList lines = result.run.outText().split(QLatin1Char('\n'));
    result.end = result.run.crashed ? QStringLiteral("crashed") : lines.value(0);
    for (const QString& value : lines.value(1).split(QLatin1Char(','), Qt::SkipEmptyParts))
        result.progress.append(value.toInt());
    return result;
}

// Caps the size of every file this process writes while it lives, as a
// full disk would. Writing past the cap fails with EFBIG instead of
// raising SIGXFSZ, which is ignored for the test's lifetime.
class FileSizeCap {
public:
    explicit FileSizeCap(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &saved);
        rlimit capped = saved;
        capped.rlim_cur = bytes;
        active = setrlimit(RLIMIT_FSIZE, &capped) == 0;
    }
    ~FileSizeCap() { setrlimit(RLIMIT_FSIZE, &saved); }
    bool isActive() const { return active; }

private:
    rlimit saved{};
    bool active = false;
};

constexpr int capBytes = 16 * 1024;

} // namespace

class TestOutputSafety : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void reportFolderNotWritable();
    void olderReportInFolderNotWritable();
    void reportNameTakenByFolder();
    void diskFullInProcess();
    void diskFullForBrevioConvert();
    void olderReportSurvivesFullDisk();
    void linkToFullDeviceIsReplaced();
};

void TestOutputSafety::initTestCase() {
    // Inherited by the children too, so a capped brevio-convert sees failed
    // writes instead of being killed.
    std::signal(SIGXFSZ, SIG_IGN);
}

// A folder without write permission. Root ignores permission bits, so as
// root both conversions run as the unprivileged user "nobody".
void TestOutputSafety::reportFolderNotWritable() {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("locked"));
    QVERIFY(QDir().mkdir(folder));
    const QString json = writeFile(folder, QStringLiteral("anlage.json"), example());
    const QByteArray hash = fileHash(json);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup |
                                              QFile::ExeGroup | QFile::ReadOther |
                                              QFile::ExeOther));
    openForEveryone(folder);

    const ProbeResult job = probe(unprivileged(QStringLiteral(BREVIO_JOBPROBE_BINARY), {json}));
    QCOMPARE(job.end, QStringLiteral("finished"));
    QCOMPARE(job.progress, oneToSeventeen());
    QVERIFY(!QFileInfo::exists(reportPathFor(json)));

    const QStringList command = unprivileged(QStringLiteral(BREVIO_CONVERT_BINARY), {json});
    const ProgramRun cli =
        runProgram(command.first(), command.mid(1), headlessEnvironment(), 300000);
    QVERIFY2(cli.finished && !cli.crashed, qPrintable(cli.describe()));
    QCOMPARE(cli.status(), 1);
    QCOMPARE(cli.outText(), QString());
    QCOMPARE(withoutWarnings(cli.errText()),
             QStringLiteral("brevio-convert: ") + json +
                 QStringLiteral(": report not written: Permission denied\n"));
    QVERIFY(!QFileInfo::exists(reportPathFor(json)));
    QCOMPARE(fileHash(json), hash);
}

void TestOutputSafety::olderReportInFolderNotWritable() {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("locked"));
    QVERIFY(QDir().mkdir(folder));
    const QByteArray older = olderReport(folder);
    QVERIFY(completePdf(older));
    const QString json = dir.filePath(QStringLiteral("locked/older.json"));
    const QString report = reportPathFor(json);
    // Older than this run, so a rewrite would show in its time as well.
    QFile reportFile(report);
    QVERIFY(reportFile.open(QIODevice::ReadWrite));
    QVERIFY(reportFile.setFileTime(QDateTime::currentDateTime().addSecs(-3600),
                                   QFileDevice::FileModificationTime));
    reportFile.close();
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                              QFile::ExeOther));
    // The old report itself stays writable for its owner only: what keeps
    // it is the folder, and for root not even that, hence "nobody".
    QVERIFY(QFile::setPermissions(report, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
    openForEveryone(folder);

    const ProbeResult job = probe(unprivileged(QStringLiteral(BREVIO_JOBPROBE_BINARY), {json}));
    QCOMPARE(job.end, QStringLiteral("finished"));
    QCOMPARE(readAll(report), older);

    const QStringList command = unprivileged(QStringLiteral(BREVIO_CONVERT_BINARY), {json});
    const ProgramRun cli =
        runProgram(command.first(), command.mid(1), headlessEnvironment(), 300000);
    QVERIFY2(cli.finished && !cli.crashed, qPrintable(cli.describe()));
    QCOMPARE(cli.status(), 1);
    QCOMPARE(withoutWarnings(cli.errText()),
             QStringLiteral("brevio-convert: ") + json +
                 QStringLiteral(": report not written: Permission denied (the old report was "
                                "left in place)\n"));
    QCOMPARE(readAll(report), older);
}

void TestOutputSafety::reportNameTakenByFolder() {
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("anlage.json"), example());
    const QString report = reportPathFor(json);
    QVERIFY(QDir().mkdir(report));
    writeFile(report, QStringLiteral("inside.txt"), "kept");

    const JobOutcome job = runJob(json);
    QVERIFY(job.finished());
    QCOMPARE(job.progress, oneToSeventeen());
    QVERIFY(QFileInfo(report).isDir());
    QCOMPARE(QDir(report).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("inside.txt")});

    const ProgramRun cli = runConverter({json}, QString(), QProcessEnvironment(), 300000);
    QVERIFY2(cli.finished && !cli.crashed, qPrintable(cli.describe()));
    QCOMPARE(cli.status(), 1);
    QCOMPARE(withoutWarnings(cli.errText()),
             QStringLiteral("brevio-convert: ") + json +
                 QStringLiteral(": report not written: Is a directory\n"));
    QVERIFY(QFileInfo(report).isDir());
    QCOMPARE(readAll(QDir(report).filePath(QStringLiteral("inside.txt"))), QByteArray("kept"));
}

// The disk fills up in the middle of the report: every write beyond 16 KiB
// fails, as on a full file system. The job cannot tell and finishes, but the
// cut-off file never takes the report's name and nothing of it is left.
void TestOutputSafety::diskFullInProcess() {
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("anlage.json"), example());
    const QByteArray hash = fileHash(json);
    JobOutcome job;
    {
        FileSizeCap cap(capBytes);
        QVERIFY(cap.isActive());
        job = runJob(json);
    }
    QVERIFY(job.finished());
    QCOMPARE(job.progress, oneToSeventeen());
    QVERIFY(!QFileInfo::exists(reportPathFor(json)));
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("anlage.json")});
    QCOMPARE(fileHash(json), hash);
}

// Runs brevio-convert on json with files capped at capBytes and checks that
// it reports the report as not written, in the words expected. The cap
// stands in for a full disk; brevio-convert tells the two apart and names
// the cap.
bool convertOnFullDiskIsReported(const QString& json, const QString& reason) {
    const ProgramRun cli =
        runProgram(QStringLiteral("prlimit"),
                   {QStringLiteral("--fsize=%1").arg(capBytes), QStringLiteral("--"),
                    QStringLiteral(BREVIO_CONVERT_BINARY), json},
                   headlessEnvironment(), 300000);
    const QString expected = QStringLiteral("brevio-convert: ") + json + QStringLiteral(": ") +
                             reason + QLatin1Char('\n');
    if (cli.status() != 1 || !cli.outText().isEmpty() ||
        withoutWarnings(cli.errText()) != expected) {
        qWarning("%s", qPrintable(cli.describe()));
        return false;
    }
    return true;
}

void TestOutputSafety::diskFullForBrevioConvert() {
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("anlage.json"), example());
    const QByteArray hash = fileHash(json);
    QVERIFY(
        convertOnFullDiskIsReported(json, QStringLiteral("report not written (file size limit)")));
    QVERIFY(!QFileInfo::exists(reportPathFor(json)));
    QCOMPARE(fileHash(json), hash);
}

// A full disk while an older, complete report is in the way: the new report
// is drawn beside it and would only replace it once complete, so the older
// one stays whole, byte for byte.
void TestOutputSafety::olderReportSurvivesFullDisk() {
    QTemporaryDir dir;
    const QByteArray older = olderReport(dir.path());
    QVERIFY(completePdf(older));
    QVERIFY(older.size() > capBytes);
    const QString json = dir.filePath(QStringLiteral("older.json"));
    QVERIFY(convertOnFullDiskIsReported(
        json, QStringLiteral("report not written (file size limit; the old report was left in "
                             "place)")));
    QCOMPARE(readAll(reportPathFor(json)), older);
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("older.json"), QStringLiteral("older.pdf")}));
}

// The report's name is a link to /dev/full, where every write fails. The
// link is a name like any other: the report replaces it and is never
// written through it.
void TestOutputSafety::linkToFullDeviceIsReplaced() {
    QVERIFY(QFileInfo(QStringLiteral("/dev/full")).exists());
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("anlage.json"), example());
    const QString report = reportPathFor(json);
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), report));

    const JobOutcome job = runJob(json);
    QVERIFY(job.finished());
    QCOMPARE(job.progress, oneToSeventeen());
    QVERIFY(!QFileInfo(report).isSymLink());
    QVERIFY(completePdf(readAll(report)));

    QVERIFY(QFile::remove(report));
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), report));
    const ProgramRun cli = runConverter({json}, QString(), QProcessEnvironment(), 300000);
    QVERIFY2(cli.finished && !cli.crashed, qPrintable(cli.describe()));
    QCOMPARE(cli.status(), 0);
    QCOMPARE(cli.outText(), report + QLatin1Char('\n'));
    QCOMPARE(withoutWarnings(cli.errText()), QString());
    QVERIFY(!QFileInfo(report).isSymLink());
    QVERIFY(completePdf(readAll(report)));
}

QTEST_MAIN(TestOutputSafety)
#include "tst_outputsafety.moc"
