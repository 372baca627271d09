// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Every file of the bad-input corpus (data/badinput), plus the huge
// and special ones made at run time, converted once by a job and once by
// brevio-convert. expected.tsv says for each whether a report comes out or
// the job aborts, which texts the report must show and what brevio-convert
// says. Nothing may crash or hang, and no input may change.

#include "jobrunner.h"
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

const QString corpusDir = testData(QStringLiteral("badinput/"));
constexpr int jobTimeoutMs = 900000;

struct Expectation {
    QString name;
    QString kind;
    bool report = false;
    QStringList texts;
    QString message;
};

QVector<Expectation> readTable() {
    QVector<Expectation> rows;
    QFile file(corpusDir + QStringLiteral("expected.tsv"));
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList fields = line.split(QLatin1Char('\t'));
        Expectation row;
        row.name = fields.value(0);
        row.kind = fields.value(1);
        row.report = fields.value(2) == QLatin1String("report");
        if (fields.value(3) != QLatin1String("-"))
            row.texts = fields.value(3).split(QStringLiteral(" | "));
        row.message = fields.value(4) == QLatin1String("-") ? QString() : fields.value(4);
        // A malformed line becomes a row that fails with its own text.
        if (fields.size() != 5 || (fields.value(2) != QLatin1String("report") &&
                                   fields.value(2) != QLatin1String("aborted")))
            row.kind = QStringLiteral("malformed: ") + line;
        rows.append(row);
    }
    return rows;
}

QByteArray example() {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// The example's first output channel and its relay, as JSON text.
const char* const channelJson =
    R"({"channel":1,"range":0,"unit":9,"k_factor":75,"producer":1,"response":2,)"
    R"("measure":{"measure":"PRESSURE","unit":9,"rangeLow":0,"rangeHigh":500,"value":0,)"
    R"("channel":1,"register":30001}})";
const char* const relayJson =
    R"({"lowThreshold":120,"highThreshold":380,"states":[0,1,0],)"
    R"("measure":{"measure":"PRESSURE","unit":9,"rangeLow":0,"rangeHigh":500,"value":0,)"
    R"("channel":1,"register":30001}})";

QByteArray repeatedArray(const QByteArray& element, int count) {
    QByteArray out;
    out.reserve((element.size() + 1) * count + 2);
    out += '[';
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            out += ',';
        out += element;
    }
    out += ']';
    return out;
}

// The files too big to keep in the repository, made here.
bool generate(const QString& name, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    if (name == QLatin1String("huge-100mb.json")) {
        // 100 MiB of a member nobody reads, then the real configuration.
        const QByteArray chunk = QByteArray(R"({"measure":"PRESSURE","unit":9,"value":0},)");
        const qint64 target = 100ll * 1024 * 1024;
        file.write(R"({"padding":[)");
        QByteArray block;
        while (block.size() < 1024 * 1024)
            block += chunk;
        while (file.size() + block.size() < target)
            file.write(block);
        file.write(R"(null],"configuration":{"name":"Gross","location":"Halle 100"}})");
        file.write(QByteArray(int(target - file.size()), ' '));
    } else if (name == QLatin1String("nesting-10000.json")) {
        file.write(R"({"configuration":{"name":"Tief","padding":)");
        file.write(QByteArray(10000, '['));
        file.write(QByteArray(10000, ']'));
        file.write("}}");
    } else if (name == QLatin1String("nesting-10000-objects.json")) {
        file.write(R"({"configuration":{"name":"Tief","outputs":[)");
        for (int i = 0; i < 10000; ++i)
            file.write(R"({"measure":)");
        file.write("{}");
        file.write(QByteArray(10000, '}'));
        file.write("]}}");
    } else if (name == QLatin1String("outputs-10000.json")) {
        file.write(R"({"configuration":{"name":"Zehntausend Ausgaenge","outputs":)");
        file.write(repeatedArray(channelJson, 10000));
        file.write("}}");
    } else if (name == QLatin1String("relais-10000.json")) {
        file.write(R"({"configuration":{"name":"Zehntausend Relais","relais":)");
        file.write(repeatedArray(relayJson, 10000));
        file.write("}}");
    } else if (name == QLatin1String("strings-100000.json")) {
        const QByteArray n(100000, 'N');
        const QByteArray l(100000, 'L');
        file.write(R"({"configuration":{"name":")" + n + R"(","location":")" + l + R"(","date":")" +
                   QByteArray(100000, 'D') + R"(","version":")" + QByteArray(100000, 'V') +
                   R"(","outputs":[{"measure":{"measure":")" + QByteArray(100000, 'M') +
                   R"("}}],"relais":[{"states":[0],"measure":)" + R"({"measure":")" +
                   QByteArray(100000, 'R') + R"("}}]}})");
    } else {
        return false;
    }
    return file.error() == QFile::NoError;
}

// What a path is, down to its bytes: compared before and after converting.
QString fingerprint(const QString& path) {
    struct stat info;
    if (lstat(QFile::encodeName(path).constData(), &info) != 0)
        return QStringLiteral("absent");
    const QString mode = QString::number(info.st_mode, 8);
    if (S_ISLNK(info.st_mode))
        return QStringLiteral("link %1 -> %2").arg(mode, QFile::symLinkTarget(path));
    if (S_ISDIR(info.st_mode))
        return QStringLiteral("directory %1, %2 entries")
            .arg(mode)
            .arg(QDir(path)
                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System |
                                QDir::Hidden)
                     .size());
    if (S_ISFIFO(info.st_mode))
        return QStringLiteral("fifo %1").arg(mode);
    return QStringLiteral("file %1, %2 bytes, sha256 %3")
        .arg(mode)
        .arg(info.st_size)
        .arg(QString::fromLatin1(fileHash(path)));
}

// Makes the row's input in dir; returns its path, empty on failure.
QString prepare(const Expectation& row, const QString& dir) {
    const QString path = QDir(dir).filePath(row.name);
    if (row.kind == QLatin1String("file"))
        return QFile::copy(corpusDir + row.name, path) ? path : QString();
    if (row.kind == QLatin1String("generated"))
        return generate(row.name, path) ? path : QString();
    if (row.kind == QLatin1String("directory"))
        return QDir(dir).mkdir(row.name) ? path : QString();
    if (row.kind == QLatin1String("fifo"))
        return mkfifo(QFile::encodeName(path).constData(), 0644) == 0 ? path : QString();
    if (row.kind == QLatin1String("vanished")) {
        // Listed while it existed, gone by the time it is converted.
        writeFile(dir, row.name, example());
        return QFile::remove(path) ? path : QString();
    }
    if (row.kind == QLatin1String("emptied")) {
        writeFile(dir, row.name, example());
        return QFile::resize(path, 0) ? path : QString();
    }
    if (row.kind == QLatin1String("unreadable")) {
        // Readable when listed, then its permissions taken away. Root
        // ignores permission bits, so the conversions of this row run as an
        // unprivileged user (see convertJob and convertCli).
        writeFile(dir, row.name, example());
        openForEveryone(dir);
        return QFile::setPermissions(path, QFileDevice::Permissions()) ? path : QString();
    }
    if (row.kind == QLatin1String("dangling-link")) {
        writeFile(dir, QStringLiteral("target.json"), example());
        QFile::link(QDir(dir).filePath(QStringLiteral("target.json")), path);
        return QFile::remove(QDir(dir).filePath(QStringLiteral("target.json"))) ? path : QString();
    }
    if (row.kind == QLatin1String("link-loop")) {
        const QString other = QDir(dir).filePath(QStringLiteral("other.json"));
        return QFile::link(path, other) && QFile::link(other, path) ? path : QString();
    }
    return QString();
}

struct JobResult {
    bool finished = false;
    bool aborted = false;
    QList<int> progress;
    QString detail;
};

JobResult convertJob(const Expectation& row, const QString& path) {
    JobResult result;
    if (row.kind != QLatin1String("unreadable") || !runningAsRoot()) {
        const JobOutcome outcome = runJob(path, jobTimeoutMs);
        result.finished = outcome.finished();
        result.aborted = outcome.aborted();
        result.progress = outcome.progress;
        result.detail = QStringLiteral("finished %1x, aborted %2x, timed out %3")
                            .arg(outcome.finishedCount)
                            .arg(outcome.abortedCount)
                            .arg(outcome.timedOut);
        return result;
    }
    // The same job in a child process that runs as "nobody".
    const QStringList command = unprivileged(QStringLiteral(BREVIO_JOBPROBE_BINARY), {path});
    const ProgramRun run =
        runProgram(command.first(), command.mid(1), headlessEnvironment(), jobTimeoutMs);
    const QStringList lines = run.outText().split(QLatin1Char('\n'));
    result.finished = !run.crashed && lines.value(0) == QLatin1String("finished");
    result.aborted = !run.crashed && lines.value(0) == QLatin1String("aborted");
    for (const QString& value : lines.value(1).split(QLatin1Char(','), Qt::SkipEmptyParts))
        result.progress.append(value.toInt());
    result.detail = run.describe();
    return result;
}

ProgramRun convertCli(const Expectation& row, const QString& path) {
    if (row.kind == QLatin1String("unreadable") && runningAsRoot()) {
        const QStringList command = unprivileged(QStringLiteral(BREVIO_CONVERT_BINARY), {path});
        return runProgram(command.first(), command.mid(1), headlessEnvironment(), jobTimeoutMs);
    }
    return runConverter({path}, QString(), QProcessEnvironment(), jobTimeoutMs);
}

// Finds one expected text: "[@PAGE ]TEXT[...]". PAGE counts from 1, from
// the end when negative (-1 is the last page), or is * for any page; page 1
// when not given. A trailing "..." asks only for a line starting with TEXT.
QString missingText(const PdfReport& report, QString expected) {
    QVector<int> pages{0};
    if (expected.startsWith(QLatin1Char('@'))) {
        const QString page = expected.mid(1).section(QLatin1Char(' '), 0, 0);
        expected = expected.section(QLatin1Char(' '), 1);
        pages.clear();
        if (page == QLatin1String("*")) {
            for (int i = 0; i < report.pageCount(); ++i)
                pages.append(i);
        } else {
            const int number = page.toInt();
            pages.append(number < 0 ? report.pageCount() + number : number - 1);
        }
    }
    const bool prefix = expected.endsWith(QLatin1String("..."));
    const QString text = prefix ? expected.chopped(3) : expected;
    for (int page : pages) {
        const PdfTextLine line =
            prefix ? report.lineStartingWith(page, text) : report.line(page, text);
        if (!line.isNull())
            return QString();
    }
    return expected;
}

void checkReport(const QString& reportPath, const QStringList& texts, const char* who) {
    PdfReport report(reportPath);
    QVERIFY2(report.isValid(), qPrintable(QStringLiteral("%1: no readable report").arg(who)));
    QStringList missing;
    for (const QString& text : texts) {
        const QString absent = missingText(report, text);
        if (!absent.isEmpty())
            missing.append(absent);
    }
    if (!missing.isEmpty()) {
        QString pages;
        for (int page = 0; page < qMin(3, report.pageCount()); ++page)
            pages += QStringLiteral("page %1: %2\n")
                         .arg(page + 1)
                         .arg(report.texts(page).join(QStringLiteral(" | ")).left(3000));
        QFAIL(qPrintable(QStringLiteral("%1: missing %2 in a report of %3 pages:\n%4")
                             .arg(who, missing.join(QStringLiteral(", ")))
                             .arg(report.pageCount())
                             .arg(pages)));
    }
}

// The sanitizer run (tools/sanitize.sh) sets BREVIO_BIG_INPUT_ONCE=1. There
// a conversion of the 100 MB file takes minutes, and brevio-convert would
// parse it twice more (its job, then its warning), so that run converts it
// once, with the job; the rows of every size still go both ways, and every
// other run converts the 100 MB file both ways as well.
bool convertOnlyOnce(const Expectation& row) {
    return row.name == QLatin1String("huge-100mb.json") &&
           qEnvironmentVariableIntValue("BREVIO_BIG_INPUT_ONCE") == 1;
}

QList<int> oneToSeventeen() {
    QList<int> values;
    for (int i = 1; i <= 17; ++i)
        values.append(i);
    return values;
}

} // namespace

class TestBadInputCorpus : public QObject {
    Q_OBJECT

private slots:
    void tableCoversTheCorpus();
    void conversions_data();
    void conversions();
    void fileVanishesWhileQueued();
};

// Every committed file has a row and every "file" row a committed file, so
// a file cannot be added or dropped without saying what it should do.
void TestBadInputCorpus::tableCoversTheCorpus() {
    const QVector<Expectation> rows = readTable();
    QVERIFY(rows.size() >= 40);
    QStringList listed;
    for (const Expectation& row : rows) {
        QVERIFY2(!row.kind.startsWith(QLatin1String("malformed")), qPrintable(row.kind));
        if (row.kind == QLatin1String("file"))
            listed.append(row.name);
    }
    QStringList present = QDir(corpusDir).entryList({QStringLiteral("*.json")}, QDir::Files);
    listed.sort();
    present.sort();
    QCOMPARE(listed, present);
}

void TestBadInputCorpus::conversions_data() {
    QTest::addColumn<int>("index");
    const QVector<Expectation> rows = readTable();
    for (int i = 0; i < rows.size(); ++i)
        QTest::newRow(qPrintable(rows[i].kind + QLatin1Char(' ') + rows[i].name)) << i;
}

void TestBadInputCorpus::conversions() {
    QFETCH(int, index);
    const Expectation row = readTable().value(index);
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = prepare(row, dir.path());
    QVERIFY2(!path.isEmpty(), qPrintable(QStringLiteral("cannot make the input")));
    const QString reportPath = reportPathFor(path);
    const QString before = fingerprint(path);

    // The job, as the window runs it.
    const JobResult job = convertJob(row, path);
    QVERIFY2(job.finished != job.aborted, qPrintable(job.detail));
    QCOMPARE(job.finished, row.report);
    if (row.report) {
        QCOMPARE(job.progress, oneToSeventeen());
        checkReport(reportPath, row.texts, "job");
        if (QTest::currentTestFailed())
            return;
        QVERIFY(QFile::remove(reportPath));
    } else {
        QCOMPARE(job.progress, QList<int>());
        QVERIFY2(fingerprint(reportPath) == QLatin1String("absent") || reportPath == path,
                 qPrintable(fingerprint(reportPath)));
    }
    QCOMPARE(fingerprint(path), before);
    if (convertOnlyOnce(row)) {
        qInfo("BREVIO_BIG_INPUT_ONCE=1: converted by the job only, not by brevio-convert");
        return;
    }

    // brevio-convert on the same file.
    const ProgramRun cli = convertCli(row, path);
    QVERIFY2(cli.finished && !cli.crashed, qPrintable(cli.describe()));
    const QString prefix = QStringLiteral("brevio-convert: ") + path + QStringLiteral(": ");
    QString expectedErr;
    if (!row.message.isEmpty())
        for (const QString& message : row.message.split(QStringLiteral(" || ")))
            expectedErr += prefix + message + QLatin1Char('\n');
    QCOMPARE(cli.errText(), expectedErr);
    if (row.report) {
        QCOMPARE(cli.status(), 0);
        QCOMPARE(cli.outText(), reportPath + QLatin1Char('\n'));
        checkReport(reportPath, row.texts, "brevio-convert");
    } else {
        QCOMPARE(cli.status(), 1);
        QCOMPARE(cli.outText(), QString());
        QVERIFY(fingerprint(reportPath) == QLatin1String("absent") || reportPath == path);
    }
    QCOMPARE(fingerprint(path), before);
}

// A file given to brevio-convert that is deleted while it still waits for
// a free thread: it is looked at only when its turn comes, is reported as
// missing, and the files around it are converted all the same.
void TestBadInputCorpus::fileVanishesWhileQueued() {
    QTemporaryDir dir;
    // Slow enough (about a second) that the deletion below happens while
    // the single thread is still busy with it.
    QVERIFY(
        generate(QStringLiteral("outputs-10000.json"), dir.filePath(QStringLiteral("first.json"))));
    const QString first = dir.filePath(QStringLiteral("first.json"));
    const QString victim = writeFile(dir.path(), QStringLiteral("victim.json"), example());
    const QString last = writeFile(dir.path(), QStringLiteral("last.json"), example());
    const QString firstHash = fingerprint(first);
    const QString lastHash = fingerprint(last);

    StartedProgram converting(QStringLiteral(BREVIO_CONVERT_BINARY),
                              {QStringLiteral("--jobs"), QStringLiteral("1"), first, victim, last},
                              headlessEnvironment());
    QVERIFY(converting.waitForStarted());
    QVERIFY(QFile::remove(victim));
    const ProgramRun run = converting.finish(jobTimeoutMs);
    QVERIFY2(run.finished, qPrintable(run.describe()));
    QVERIFY2(!run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.outText(),
             reportPathFor(first) + QLatin1Char('\n') + reportPathFor(last) + QLatin1Char('\n'));
    QCOMPARE(withoutWarnings(run.errText()),
             QStringLiteral("brevio-convert: ") + victim +
                 QStringLiteral(": cannot be opened: No such file or directory\n"));
    QVERIFY(!QFileInfo::exists(reportPathFor(victim)));
    QVERIFY(!PdfReport(reportPathFor(last))
                 .line(0, QStringLiteral("Ort: Werk Nord, Gebäude B, "
                                         "Dachzentrale"))
                 .isNull());
    QCOMPARE(fingerprint(first), firstHash);
    QCOMPARE(fingerprint(last), lastHash);
}

QTEST_MAIN(TestBadInputCorpus)
#include "tst_badinputcorpus.moc"
