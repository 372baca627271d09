// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pdfreport.h"
#include "runprogram.h"
#include "testfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString typicalConfiguration() {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll());
}

} // namespace

class TestBrevioConvert : public QObject {
    Q_OBJECT

private slots:
    void convertsWithoutDisplay();
    void relativePathGetsAbsoluteReport();
    void refusedFiles_data();
    void refusedFiles();
    void invalidJsonIsConvertedWithWarning_data();
    void invalidJsonIsConvertedWithWarning();
    void mixedFilesReportInGivenOrder();
    void reportNotWritten();
    void usageErrors_data();
    void usageErrors();
    void helpAndVersion();
    void manyFilesWithSeveralJobs();
    void eachFileOpenedOnce_data();
    void eachFileOpenedOnce();
};

void TestBrevioConvert::convertsWithoutDisplay() {
    QTemporaryDir dir;
    const QString path =
        writeFile(dir.path(), QStringLiteral("anlage.json"), typicalConfiguration().toUtf8());
    const ProgramRun run = runConverter({path});
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), dir.filePath(QStringLiteral("anlage.pdf")) + QLatin1Char('\n'));
    // The example's maker name is wider than its column: the report cuts it
    // at the edge, as its layout says, and the user is told what was cut.
    QCOMPARE(run.errText(), QStringLiteral("brevio-convert: ") + path +
                                QStringLiteral(": warning: 1 text is cut off at the column edge: "
                                               "\"Hersteller: Rosenberg/Comefri/Gebhardt Nic") +
                                QChar(0x2026) + QStringLiteral("\"\n"));
    PdfReport report(dir.filePath(QStringLiteral("anlage.pdf")));
    QVERIFY(report.isValid());
    QVERIFY(!report.line(0, QStringLiteral("Allgemeine Einstellungen:")).isNull());
    // The job is handed the absolute path, which the report prints.
    QVERIFY(!report.line(0, path).isNull());
}

void TestBrevioConvert::relativePathGetsAbsoluteReport() {
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("sub")));
    writeFile(dir.filePath(QStringLiteral("sub")), QStringLiteral("a.json"), "{}");
    const ProgramRun run = runConverter({QStringLiteral("sub/a.json")}, dir.path());
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), dir.filePath(QStringLiteral("sub/a.pdf")) + QLatin1Char('\n'));
    PdfReport report(dir.filePath(QStringLiteral("sub/a.pdf")));
    QVERIFY(!report.line(0, dir.filePath(QStringLiteral("sub/a.json"))).isNull());
}

void TestBrevioConvert::refusedFiles_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("reason");
    QTest::newRow("upper-case ending") << "a.JSON"
                                       << "file"
                                       << "not a \".json\" file name";
    QTest::newRow("no ending") << "a.txt"
                               << "file"
                               << "not a \".json\" file name";
    QTest::newRow("missing") << "missing.json"
                             << "none"
                             << "cannot be opened: No such file or directory";
    QTest::newRow("directory") << "dir.json"
                               << "dir"
                               << "cannot be opened: it is a directory";
    QTest::newRow("empty") << "empty.json"
                           << "empty"
                           << "empty file";
}

void TestBrevioConvert::refusedFiles() {
    QFETCH(QString, name);
    QFETCH(QString, kind);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    if (kind == QLatin1String("file"))
        writeFile(dir.path(), name, "{}");
    else if (kind == QLatin1String("empty"))
        writeFile(dir.path(), name, QByteArray());
    else if (kind == QLatin1String("dir"))
        QVERIFY(QDir(dir.path()).mkdir(name));

    const ProgramRun run = runConverter({path});
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), QString());
    QCOMPARE(run.errText(), QStringLiteral("brevio-convert: ") + path + QStringLiteral(": ") +
                                reason + QLatin1Char('\n'));
    QVERIFY(!QFileInfo::exists(reportPathFor(path)) || reportPathFor(path) == path);
}

void TestBrevioConvert::invalidJsonIsConvertedWithWarning_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("warning");
    QTest::newRow("truncated") << QByteArray("{\"configuration\": {")
                               << "warning: not valid JSON (unterminated object at offset 19); "
                                  "the report shows only defaults";
    QTest::newRow("plain text") << QByteArray("hello")
                                << "warning: not valid JSON (illegal value at offset 1); "
                                   "the report shows only defaults";
    QTest::newRow("array") << QByteArray("[1,2]")
                           << "warning: the top level is not a JSON object; the report shows "
                              "only defaults";
    // Any other JSON document: its report would read like a device's.
    QTest::newRow("empty object") << QByteArray("{}")
                                  << "warning: no \"configuration\" object; the report shows only "
                                     "defaults";
    QTest::newRow("package manifest")
        << QByteArray("{\"name\": \"tool\", \"version\": \"1.0.0\"}")
        << "warning: no \"configuration\" object; the report shows only defaults";
    QTest::newRow("configuration not an object")
        << QByteArray("{\"configuration\": 42}")
        << "warning: no \"configuration\" object; the report shows only defaults";
}

void TestBrevioConvert::invalidJsonIsConvertedWithWarning() {
    QFETCH(QByteArray, content);
    QFETCH(QString, warning);
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("bad.json"), content);
    const ProgramRun run = runConverter({path});
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), dir.filePath(QStringLiteral("bad.pdf")) + QLatin1Char('\n'));
    QCOMPARE(run.errText(),
             QStringLiteral("brevio-convert: ") + path + QStringLiteral(": ") + warning + "\n");
    QVERIFY(PdfReport(dir.filePath(QStringLiteral("bad.pdf"))).isValid());
}

void TestBrevioConvert::mixedFilesReportInGivenOrder() {
    QTemporaryDir dir;
    const QByteArray configuration = "{\"configuration\": {\"name\": \"Halle\"}}";
    const QString good1 = writeFile(dir.path(), QStringLiteral("one.json"), configuration);
    const QString bad = dir.filePath(QStringLiteral("missing.json"));
    const QString good2 = writeFile(dir.path(), QStringLiteral("two.json"), configuration);
    const ProgramRun run = runConverter({good1, bad, good2});
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), reportPathFor(good1) + "\n" + reportPathFor(good2) + "\n");
    QCOMPARE(run.errText(), QStringLiteral("brevio-convert: ") + bad +
                                QStringLiteral(": cannot be opened: No such file or directory\n"));
}

void TestBrevioConvert::reportNotWritten() {
    QTemporaryDir dir;
    // The report's name is taken by a directory, so the PDF cannot be created.
    const QString path = writeFile(dir.path(), QStringLiteral("blocked.json"),
                                   "{\"configuration\": {\"name\": \"Halle\"}}");
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("blocked.pdf")));
    const ProgramRun run = runConverter({path});
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.outText(), QString());
    QCOMPARE(run.errText(), QStringLiteral("brevio-convert: ") + path +
                                QStringLiteral(": report not written: Is a directory\n"));
}

void TestBrevioConvert::usageErrors_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("firstLine");
    QTest::newRow("no files") << QStringList() << "brevio-convert: no files given";
    QTest::newRow("unknown option")
        << QStringList{"--fast", "a.json"} << "brevio-convert: Unknown option 'fast'.";
    QTest::newRow("jobs not a number") << QStringList{"--jobs", "many", "a.json"}
                                       << "brevio-convert: --jobs needs a whole number of at "
                                          "least 1, not \"many\"";
    QTest::newRow("jobs zero") << QStringList{"--jobs", "0", "a.json"}
                               << "brevio-convert: --jobs needs a whole number of at least 1, "
                                  "not \"0\"";
    QTest::newRow("jobs without value")
        << QStringList{"--jobs"} << "brevio-convert: Missing value after '--jobs'.";
}

void TestBrevioConvert::usageErrors() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, firstLine);
    const ProgramRun run = runConverter(arguments);
    QCOMPARE(run.status(), 2);
    QCOMPARE(run.outText(), QString());
    QCOMPARE(run.errText().section(QLatin1Char('\n'), 0, 0), firstLine);
    QVERIFY(run.errText().contains(QLatin1String("Usage: ")));
}

void TestBrevioConvert::helpAndVersion() {
    const ProgramRun help = runConverter({QStringLiteral("--help")});
    QCOMPARE(help.status(), 0);
    QVERIFY(help.outText().contains(QLatin1String("--jobs <N>")));
    QVERIFY(help.outText().contains(QLatin1String("FILE...")));
    const ProgramRun version = runConverter({QStringLiteral("--version")});
    QCOMPARE(version.status(), 0);
    QVERIFY(version.outText().startsWith(QLatin1String("brevio-convert ")));
}

void TestBrevioConvert::manyFilesWithSeveralJobs() {
    QTemporaryDir dir;
    QStringList files;
    for (int i = 0; i < 24; ++i)
        files.append(writeFile(
            dir.path(), QStringLiteral("anlage-%1.json").arg(i),
            QStringLiteral("{\"configuration\":{\"name\":\"Anlage %1\"}}").arg(i).toUtf8()));
    const ProgramRun run =
        runConverter(QStringList{QStringLiteral("--jobs"), QStringLiteral("4")} + files);
    QCOMPARE(run.status(), 0);
    QStringList expected;
    for (const QString& file : files)
        expected.append(reportPathFor(file));
    QCOMPARE(run.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
    for (int i = 0; i < files.size(); ++i) {
        PdfReport report(expected[i]);
        QVERIFY2(!report.line(0, QStringLiteral("Name: Anlage %1").arg(i)).isNull(),
                 qPrintable(expected[i]));
    }
}

void TestBrevioConvert::eachFileOpenedOnce_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("warning");
    QTest::newRow("typical") << typicalConfiguration().toUtf8() << QString();
    QTest::newRow("not JSON") << QByteArray("{\"configuration\": {") << "not valid JSON";
    QTest::newRow("undrawable") << QByteArray("{\"configuration\":{\"name\":\"\xf4\x8f\xbf\xbd\"}}")
                                << "1 character cannot be drawn: U+10FFFD";
}

// Everything brevio-convert says about a file comes from the job's one
// reading of it: the configuration is opened once, even when there are
// warnings to give, and the report is written once and read back once
// before it takes its name, which is never opened.
void TestBrevioConvert::eachFileOpenedOnce() {
    QFETCH(QByteArray, content);
    QFETCH(QString, warning);
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), content);
    const QString trace = dir.filePath(QStringLiteral("trace"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    // LeakSanitizer stops the process with ptrace to look for leaks, which
    // it cannot do under strace; the sanitizer build finds leaks in every
    // other test.
    const QString asan = environment.value(QStringLiteral("ASAN_OPTIONS"));
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       asan + (asan.isEmpty() ? "" : ":") + QStringLiteral("detect_leaks=0"));
    const ProgramRun run =
        runProgram(QStringLiteral("strace"),
                   {QStringLiteral("-f"), QStringLiteral("-qq"), QStringLiteral("-e"),
                    QStringLiteral("trace=open,openat,openat2,creat"), QStringLiteral("-o"), trace,
                    converterProgram(), path},
                   environment, 120000);
    QVERIFY2(run.finished, "strace did not end");
    const QString err = run.errText();
    QVERIFY2(run.status() == 0, qPrintable(QStringLiteral("exit %1 (%2)\n")
                                               .arg(run.exitCode)
                                               .arg(run.crashed ? QStringLiteral("crashed")
                                                                : QStringLiteral("normal")) +
                                           err));
    QCOMPARE(err.contains(warning), true);

    QFile log(trace);
    QVERIFY(log.open(QIODevice::ReadOnly));
    int configurationOpens = 0;
    int temporaryOpens = 0;
    int reportOpens = 0;
    const QByteArray quotedConfiguration = '"' + QFile::encodeName(path) + '"';
    const QByteArray quotedReport = '"' + QFile::encodeName(reportPathFor(path)) + '"';
    const QByteArray temporary = QFile::encodeName(dir.path()) + "/.brevio-";
    for (const QByteArray& line : log.readAll().split('\n')) {
        configurationOpens += line.contains(quotedConfiguration) ? 1 : 0;
        reportOpens += line.contains(quotedReport) ? 1 : 0;
        temporaryOpens += line.contains(temporary) && line.contains("/anlage.pdf\"") ? 1 : 0;
    }
    QCOMPARE(configurationOpens, 1);
    QCOMPARE(temporaryOpens, 2);
    QCOMPARE(reportOpens, 0);
    QVERIFY(QFileInfo(reportPathFor(path)).isFile());
}

QTEST_MAIN(TestBrevioConvert)
#include "tst_brevioconvert.moc"
