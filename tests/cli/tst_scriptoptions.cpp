// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevio-convert for scripts: reports into a folder of their own
// (-o/--output-dir), and one JSON object per file (--json).

#include "pdfreport.h"
#include "runprogram.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <unistd.h>

namespace {

// brevio-convert as the user nobody when the test runs as root, since root
// writes into read-only folders anyway.
ProgramRun runConverterAsNobody(const QStringList& arguments) {
    const QStringList command = unprivileged(converterProgram(), arguments);
    return runProgram(command.first(), command.mid(1), headlessEnvironment(), 120000);
}

QByteArray example() {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList entriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QVector<QJsonObject> jsonLines(const QByteArray& out) {
    QVector<QJsonObject> objects;
    const QList<QByteArray> lines = out.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].isEmpty() && i == lines.size() - 1)
            break;
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(lines[i], &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            return {};
        objects.append(document.object());
    }
    return objects;
}

const QString cutOffWarning = QStringLiteral("1 text is cut off at the column edge: \"Hersteller: "
                                             "Rosenberg/Comefri/Gebhardt Nic") +
                              QChar(0x2026) + QLatin1Char('"');

} // namespace

class TestScriptOptions : public QObject {
    Q_OBJECT

private slots:
    void outputFolder_data();
    void outputFolder();
    void outputFolderSharedReport_data();
    void outputFolderSharedReport();
    void readOnlyConfigurationFolder();
    void badOutputFolder_data();
    void badOutputFolder();
    void jsonRecords();
    void failedFileGivenTwice_data();
    void failedFileGivenTwice();
    void jsonKeepsBytesOfNames();
    void language_data();
    void language();
    void unknownLanguage();
};

void TestScriptOptions::outputFolder_data() {
    QTest::addColumn<QString>("subfolder");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("outputName");
    QTest::addColumn<bool>("relativeOutput");
    QTest::addColumn<QString>("report");

    QTest::newRow("plain") << "anlage"
                           << "halle.json"
                           << "berichte" << false << "halle.pdf";
    // The rule applies to the file's name only: neither the configuration's
    // folder nor the output folder is renamed.
    QTest::newRow(".json in folder names") << "site.json.d"
                                           << "halle.json"
                                           << "out.json" << false << "halle.pdf";
    QTest::newRow(".json twice in the name") << "anlage"
                                             << "a.json.json"
                                             << "berichte" << false << "a.pdf.pdf";
    QTest::newRow("relative output folder") << "anlage"
                                            << "halle.json"
                                            << "berichte" << true << "halle.pdf";
}

void TestScriptOptions::outputFolder() {
    QFETCH(QString, subfolder);
    QFETCH(QString, name);
    QFETCH(QString, outputName);
    QFETCH(bool, relativeOutput);
    QFETCH(QString, report);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(subfolder));
    QVERIFY(QDir(dir.path()).mkdir(outputName));
    const QString configurationFolder = dir.filePath(subfolder);
    const QString json = writeFile(configurationFolder, name, example());
    const QString output = dir.filePath(outputName);

    const ProgramRun run = runConverter(
        {QStringLiteral("-o"), relativeOutput ? outputName : output, json}, dir.path());
    QCOMPARE(run.status(), 0);
    const QString expected = QDir(output).filePath(report);
    QCOMPARE(QString::fromUtf8(run.out), expected + QLatin1Char('\n'));
    PdfReport pdf(expected);
    QVERIFY(pdf.isValid());
    QVERIFY(!pdf.line(0, QStringLiteral("Allgemeine Einstellungen:")).isNull());
    // Nothing was written beside the configuration: no report, no
    // temporary folder, no lock.
    QCOMPARE(entriesOf(configurationFolder), QStringList{name});
    QCOMPARE(entriesOf(output), QStringList{report});
}

void TestScriptOptions::outputFolderSharedReport_data() {
    QTest::addColumn<bool>("sameFile");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("two configurations") << false << 1;
    QTest::newRow("one configuration twice") << true << 0;
}

void TestScriptOptions::outputFolderSharedReport() {
    QFETCH(bool, sameFile);
    QFETCH(int, exitCode);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("x")));
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("y")));
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("out")));
    const QString first =
        writeFile(dir.filePath(QStringLiteral("x")), QStringLiteral("a.json"), example());
    const QString second =
        sameFile ? first
                 : writeFile(dir.filePath(QStringLiteral("y")), QStringLiteral("a.json"),
                             "{\"configuration\": {\"name\": \"Halle\"}}");

    const ProgramRun run = runConverter(
        {QStringLiteral("--output-dir"), dir.filePath(QStringLiteral("out")), first, second});
    QCOMPARE(run.status(), exitCode);
    // The same file twice is converted once, for both names: the report is
    // listed for each, the second with a note; another file is refused.
    const QString report = dir.filePath(QStringLiteral("out/a.pdf")) + QLatin1Char('\n');
    QCOMPARE(QString::fromUtf8(run.out), sameFile ? report + report : report);
    QVERIFY2(run.errText().endsWith(QStringLiteral("brevio-convert: ") + second +
                                    (sameFile ? QStringLiteral(": warning: same report as ")
                                              : QStringLiteral(": same report as ")) +
                                    first + QLatin1Char('\n')),
             qPrintable(run.errText()));
    // The report is the first file's.
    PdfReport pdf(dir.filePath(QStringLiteral("out/a.pdf")));
    QVERIFY(pdf.isValid());
    QVERIFY(!pdf.line(0, first).isNull());
}

void TestScriptOptions::readOnlyConfigurationFolder() {
    QTemporaryDir dir;
    // Reachable for the unprivileged user the test runs brevio-convert as.
    QVERIFY(QFile::setPermissions(dir.path(), QFile::permissions(dir.path()) | QFile::ExeOther |
                                                  QFile::ReadOther));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("stick")));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("out")));
    const QString stick = dir.filePath(QStringLiteral("stick"));
    const QString output = dir.filePath(QStringLiteral("out"));
    const QString json = writeFile(stick, QStringLiteral("anlage.json"), example());
    QVERIFY(QFile::setPermissions(json, QFile::ReadOwner | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(stick, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                             QFile::ExeOther));
    QVERIFY(QFile::setPermissions(output, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                              QFile::ReadOther | QFile::WriteOther |
                                              QFile::ExeOther));

    // Beside the configuration, the report cannot be written, and the
    // system says why.
    const ProgramRun refused = runConverterAsNobody({json});
    QCOMPARE(refused.status(), 1);
    QVERIFY2(
        refused.errText().endsWith(QStringLiteral(": report not written: Permission denied\n")),
        qPrintable(refused.errText()));

    const ProgramRun run = runConverterAsNobody({QStringLiteral("-o"), output, json});
    QCOMPARE(run.status(), 0);
    QCOMPARE(QString::fromUtf8(run.out),
             QDir(output).filePath(QStringLiteral("anlage.pdf")) + QLatin1Char('\n'));
    QVERIFY(PdfReport(QDir(output).filePath(QStringLiteral("anlage.pdf"))).isValid());
    QCOMPARE(entriesOf(stick), QStringList{QStringLiteral("anlage.json")});
    QCOMPARE(entriesOf(output), QStringList{QStringLiteral("anlage.pdf")});
    QFile::setPermissions(stick, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestScriptOptions::badOutputFolder_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("missing") << "gibt-es-nicht" << false;
    QTest::newRow("a file") << "datei.txt" << true;
    QTest::newRow("empty") << "" << false;
}

void TestScriptOptions::badOutputFolder() {
    QFETCH(QString, given);
    QFETCH(bool, isFile);
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("a.json"), example());
    if (isFile)
        writeFile(dir.path(), given, "text");
    const ProgramRun run = runConverter({QStringLiteral("-o"), given, json}, dir.path());
    QCOMPARE(run.status(), 2);
    QCOMPARE(run.out, QByteArray());
    QVERIFY2(
        run.errText().startsWith(
            QStringLiteral("brevio-convert: --output-dir needs an existing folder, not \"%1\"\n")
                .arg(given)),
        qPrintable(run.errText()));
    QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("a.pdf"))));
}

void TestScriptOptions::jsonRecords() {
    QTemporaryDir dir;
    const QString good = writeFile(dir.path(), QStringLiteral("gut.json"), example());
    const QString missing = dir.filePath(QStringLiteral("fehlt.json"));
    const QString wrongName = writeFile(dir.path(), QStringLiteral("b.JSON"), example());
    const QString empty = writeFile(dir.path(), QStringLiteral("leer.json"), "");

    const ProgramRun run =
        runConverter({QStringLiteral("--json"), good, missing, wrongName, empty, good});
    QCOMPARE(run.status(), 1);
    // Nothing on stderr: every result is in the JSON.
    QCOMPARE(run.errText(), QString());
    const QVector<QJsonObject> records = jsonLines(run.out);
    QCOMPARE(records.size(), 5);

    const QJsonObject converted{{QStringLiteral("file"), good},
                                {QStringLiteral("report"), dir.filePath(QStringLiteral("gut.pdf"))},
                                {QStringLiteral("converted"), true},
                                {QStringLiteral("code"), QStringLiteral("Converted")},
                                {QStringLiteral("reason"), QJsonValue::Null},
                                {QStringLiteral("warnings"), QJsonArray{cutOffWarning}}};
    QCOMPARE(records[0], converted);
    const auto failed = [](const QString& file, const QString& code, const QString& reason) {
        return QJsonObject{
            {QStringLiteral("file"), file},       {QStringLiteral("report"), QJsonValue::Null},
            {QStringLiteral("converted"), false}, {QStringLiteral("code"), code},
            {QStringLiteral("reason"), reason},   {QStringLiteral("warnings"), QJsonArray()}};
    };
    QCOMPARE(records[1], failed(missing, QStringLiteral("CannotOpen"),
                                QStringLiteral("cannot be opened: No such file or directory")));
    QCOMPARE(records[2], failed(wrongName, QStringLiteral("NotJsonName"),
                                QStringLiteral("not a \".json\" file name")));
    QCOMPARE(records[3], failed(empty, QStringLiteral("EmptyFile"), QStringLiteral("empty file")));
    // The same file again shares the first one's report: converted, so no
    // reason; the note is a warning.
    QCOMPARE(records[4],
             (QJsonObject{{QStringLiteral("file"), good},
                          {QStringLiteral("report"), dir.filePath(QStringLiteral("gut.pdf"))},
                          {QStringLiteral("converted"), true},
                          {QStringLiteral("code"), QStringLiteral("Converted")},
                          {QStringLiteral("reason"), QJsonValue::Null},
                          {QStringLiteral("warnings"),
                           QJsonArray{QStringLiteral("same report as ") + good}}}));
    // Keys in this order, one object a line.
    QVERIFY(run.out.startsWith("{\"file\": "));
    QVERIFY(run.out.contains(", \"report\": \"") &&
            run.out.contains(", \"converted\": true, \"code\": \"Converted\", \"reason\": "));
}

void TestScriptOptions::failedFileGivenTwice_data() {
    QTest::addColumn<bool>("json");
    QTest::newRow("text") << false;
    QTest::newRow("json") << true;
}

void TestScriptOptions::failedFileGivenTwice() {
    // An empty file, and the same file again through a link to its folder:
    // the second takes the first one's outcome once it is known, never a
    // report that was not written.
    QFETCH(bool, json);
    QTemporaryDir dir;
    writeFile(dir.path(), QStringLiteral("d.json"), "");
    QVERIFY(QFile::link(QStringLiteral("."), dir.filePath(QStringLiteral("link"))));
    QStringList arguments{QStringLiteral("d.json"), QStringLiteral("link/d.json")};
    if (json)
        arguments.prepend(QStringLiteral("--json"));
    const ProgramRun run = runConverter(arguments, dir.path());
    QCOMPARE(run.status(), 1);
    QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("d.pdf"))));
    if (!json) {
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.errText(),
                 QStringLiteral("brevio-convert: d.json: empty file\n"
                                "brevio-convert: link/d.json: warning: same report as "
                                "d.json\n"
                                "brevio-convert: link/d.json: empty file\n"));
        return;
    }
    QCOMPARE(run.errText(), QString());
    const QVector<QJsonObject> records = jsonLines(run.out);
    QCOMPARE(records.size(), 2);
    QCOMPARE(records[1], (QJsonObject{{QStringLiteral("file"), QStringLiteral("link/d.json")},
                                      {QStringLiteral("report"), QJsonValue::Null},
                                      {QStringLiteral("converted"), false},
                                      {QStringLiteral("code"), QStringLiteral("EmptyFile")},
                                      {QStringLiteral("reason"), QStringLiteral("empty file")},
                                      {QStringLiteral("warnings"),
                                       QJsonArray{QStringLiteral("same report as d.json")}}}));
}

void TestScriptOptions::jsonKeepsBytesOfNames() {
    QTemporaryDir dir;
    // "café.json" in Latin-1: 0xE9 is not UTF-8.
    const QByteArray name = QByteArray("caf\xe9") + ".json";
    const QByteArray folder = QFile::encodeName(dir.path());
    {
        // Made by its bytes: the test's own codec would not keep 0xE9.
        const int fd = ::open((folder + '/' + name).constData(), O_WRONLY | O_CREAT | O_EXCL, 0644);
        QVERIFY(fd >= 0);
        const QByteArray content = example();
        QCOMPARE(::write(fd, content.constData(), size_t(content.size())), ssize_t(content.size()));
        ::close(fd);
    }
    // Python reads the line with the same surrogate escapes and gives the
    // bytes back with os.fsencode.
    const QString script = QStringLiteral(
        "import json, os, subprocess, sys\n"
        "name = os.fsdecode(b'caf\\xe9.json')\n"
        "out = subprocess.run([sys.argv[1], '--json', name], capture_output=True).stdout\n"
        "record = json.loads(out.decode('utf-8'))\n"
        "assert os.fsencode(record['file']) == b'caf\\xe9.json', record\n"
        "assert os.fsencode(record['report']) == os.fsencode(os.getcwd()) + b'/caf\\xe9.pdf', "
        "record\n"
        "assert record['converted'] is True, record\n"
        "assert b'\\\\udce9' in out, out\n"
        "print('ok')\n");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    const ProgramRun python = runProgram(QStringLiteral("/usr/bin/python3"),
                                         {QStringLiteral("-c"), script, converterProgram()},
                                         environment, 120000, dir.path());
    QVERIFY(python.finished);
    QVERIFY2(python.status() == 0, python.err.constData());
    QCOMPARE(python.out, QByteArray("ok\n"));
}

void TestScriptOptions::language_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("heading");
    const QString german = QStringLiteral("Allgemeine Einstellungen:");
    QTest::newRow("default") << QStringList() << "C.UTF-8" << german;
    // The system's locale never chooses the report's language.
    QTest::newRow("default, English locale") << QStringList() << "en_US.UTF-8" << german;
    QTest::newRow("default, French locale") << QStringList() << "fr_FR.UTF-8" << german;
    QTest::newRow("de, English locale")
        << QStringList{QStringLiteral("--language"), QStringLiteral("de")} << "en_US.UTF-8"
        << german;
    QTest::newRow("en") << QStringList{QStringLiteral("--language"), QStringLiteral("en")}
                        << "C.UTF-8"
                        << "General settings:";
    QTest::newRow("en=") << QStringList{QStringLiteral("--language=en")} << "de_DE.UTF-8"
                         << "General settings:";
}

void TestScriptOptions::language() {
    QFETCH(QStringList, options);
    QFETCH(QString, locale);
    QFETCH(QString, heading);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("today")));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("asked")));
    const QString today =
        writeFile(dir.filePath(QStringLiteral("today")), QStringLiteral("a.json"), example());
    const QString asked =
        writeFile(dir.filePath(QStringLiteral("asked")), QStringLiteral("a.json"), example());
    QProcessEnvironment localeSettings;
    localeSettings.insert(QStringLiteral("LANG"), locale);
    localeSettings.insert(QStringLiteral("LC_ALL"), locale);
    localeSettings.insert(QStringLiteral("LANGUAGE"), locale.left(2));
    QCOMPARE(runConverter({today}).status(), 0);
    QCOMPARE(runConverter(options + QStringList{asked}, QString(), localeSettings).status(), 0);

    const PdfReport reference(reportPathFor(today));
    const PdfReport report(reportPathFor(asked));
    QVERIFY(report.isValid());
    QVERIFY(!report.line(0, heading).isNull());
    if (heading.startsWith(QStringLiteral("Allgemeine"))) {
        // Word for word the German report, the path's folder name aside.
        QCOMPARE(report.pageCount(), reference.pageCount());
        for (int page = 0; page < report.pageCount(); ++page)
            QCOMPARE(report.texts(page)
                         .join(QLatin1Char('\n'))
                         .replace(QStringLiteral("/asked/"), QStringLiteral("/x/")),
                     reference.texts(page)
                         .join(QLatin1Char('\n'))
                         .replace(QStringLiteral("/today/"), QStringLiteral("/x/")));
    }
}

void TestScriptOptions::unknownLanguage() {
    QTemporaryDir dir;
    const QString json = writeFile(dir.path(), QStringLiteral("a.json"), example());
    for (const char* language : {"fr", "EN", "", "english"}) {
        const ProgramRun run =
            runConverter({QStringLiteral("--language"), QString::fromUtf8(language), json});
        QCOMPARE(run.status(), 2);
        QVERIFY2(run.errText().startsWith(
                     QStringLiteral("brevio-convert: --language needs de or en, not \"%1\"\n")
                         .arg(QString::fromUtf8(language))),
                 qPrintable(run.errText()));
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("a.pdf"))));
    }
}

QTEST_MAIN(TestScriptOptions)
#include "tst_scriptoptions.moc"
