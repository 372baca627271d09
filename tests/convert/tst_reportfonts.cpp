// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/conversionoutcome.h"
#include "convert/reportfonts.h"
#include "convert/undrawable.h"
#include "jobrunner.h"
#include "pdfreport.h"
#include "runprogram.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontInfo>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QStringList bundledFaces = {QStringLiteral("BrevioSans"), QStringLiteral("BrevioSans-Bold")};

// fontconfig reads its configuration once per process, so every other font
// configuration needs a brevio-convert of its own.
ProgramRun convertWithFonts(const QStringList& arguments,
                            const QString& fontconfigFile = QString()) {
    QProcessEnvironment fonts;
    if (!fontconfigFile.isEmpty())
        fonts.insert(QStringLiteral("FONTCONFIG_FILE"), fontconfigFile);
    return runConverter(arguments, QString(), fonts, 120000);
}

// What fontconfig answers under a configuration, to show the configuration
// is what the test says it is.
QString fcMatch(const QString& fontconfigFile, const QString& pattern) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("FONTCONFIG_FILE"), fontconfigFile);
    return QString::fromUtf8(runProgram(QStringLiteral("fc-match"),
                                        {QStringLiteral("--format=%{family[0]}"), pattern},
                                        environment, 60000)
                                 .out);
}

QString fontconfigFile(const QString& dir, const QString& body) {
    return writeFile(dir, QStringLiteral("fonts.conf"),
                     (QStringLiteral("<?xml version=\"1.0\"?>\n"
                                     "<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n"
                                     "<fontconfig>\n") +
                      body + QStringLiteral("</fontconfig>\n"))
                         .toUtf8());
}

// Every line of every page with its box rounded to whole device pixels.
QStringList layoutOf(const PdfReport& report) {
    QStringList lines;
    for (int page = 0; page < report.pageCount(); ++page)
        for (const PdfTextLine& line : report.lines(page))
            lines << QStringLiteral("%1 %2 %3 %4 %5 %6")
                         .arg(page)
                         .arg(qRound(line.box.left()))
                         .arg(qRound(line.box.top()))
                         .arg(qRound(line.box.width()))
                         .arg(qRound(line.box.height()))
                         .arg(line.text);
    return lines;
}

QString copyExample(const QString& name, const QString& dir, const QString& as) {
    const QString target = QDir(dir).filePath(as);
    QFile::copy(exampleFile(name), target);
    return target;
}

QStringList sorted(QStringList list) {
    list.sort();
    return list;
}

} // namespace

class TestReportFonts : public QObject {
    Q_OBJECT

private slots:
    void testsDrawInTheBundledFont();
    void sameReportUnderAnyFontConfiguration_data();
    void sameReportUnderAnyFontConfiguration();
    void everyScriptComesBack();
    void undrawableCharacterWarns();
    void undrawableCharacters_data();
    void undrawableCharacters();
    void codePointList_data();
    void codePointList();
    void documentInformation_data();
    void documentInformation();
};

void TestReportFonts::testsDrawInTheBundledFont() {
    QCOMPARE(QFontInfo(QFont()).family(), reportFontFamily());
    QFont bold;
    bold.setWeight(QFont::Bold);
    QCOMPARE(QFontInfo(bold).family(), reportFontFamily());

    QTemporaryDir dir;
    const QString path = copyExample(QStringLiteral("pressure-transmitter.json"), dir.path(),
                                     QStringLiteral("anlage.json"));
    QVERIFY(runJob(path).finished());
    const PdfReport report(reportPathFor(path));
    QVERIFY(report.isValid());
    QCOMPARE(sorted(report.fontNames()), bundledFaces);
}

void TestReportFonts::sameReportUnderAnyFontConfiguration_data() {
    QTest::addColumn<QString>("configuration");
    QTest::addColumn<QString>("sansSerif");
    QTest::newRow("sans-serif is a serif family")
        << QStringLiteral("<dir>/usr/share/fonts</dir>\n"
                          "<cachedir>CACHE</cachedir>\n"
                          "<alias binding=\"strong\"><family>sans-serif</family>"
                          "<prefer><family>DejaVu Serif</family></prefer></alias>\n"
                          "<alias binding=\"strong\"><family>Sans Serif</family>"
                          "<prefer><family>DejaVu Serif</family></prefer></alias>\n")
        << QStringLiteral("DejaVu Serif");
    QTest::newRow("no fonts at all") << QString() << QString();
}

void TestReportFonts::sameReportUnderAnyFontConfiguration() {
    QFETCH(QString, configuration);
    QFETCH(QString, sansSerif);
    QTemporaryDir dir;
    const QString conf = fontconfigFile(
        dir.path(), QString(configuration).replace(QStringLiteral("CACHE"), dir.path()));
    // fontconfig reads "sans-serif" as family "sans" at size "serif".
    QCOMPARE(fcMatch(conf, QStringLiteral("sans\\-serif")), sansSerif);
    QCOMPARE(fcMatch(conf, QStringLiteral("Sans Serif")), sansSerif);

    const QString path = copyExample(QStringLiteral("multi-page-plant.json"), dir.path(),
                                     QStringLiteral("anlage.json"));
    const QString pdf = reportPathFor(path);
    const ProgramRun usual = convertWithFonts({path});
    QCOMPARE(usual.status(), 0);
    const PdfReport usualReport(pdf);
    QVERIFY(usualReport.pageCount() > 1);
    const QStringList usualLayout = layoutOf(usualReport);
    QVERIFY(
        usualLayout.join(QLatin1Char('\n')).contains(QStringLiteral("Allgemeine Einstellungen:")));

    const ProgramRun run = convertWithFonts({path}, conf);
    // The same warnings too: what is cut off at a column's edge is measured
    // in the bundled font, whatever the configuration says.
    QCOMPARE(withoutWarnings(usual.errText()), QString());
    QCOMPARE(run.errText(), usual.errText());
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), pdf + QLatin1Char('\n'));
    const PdfReport report(pdf);
    QCOMPARE(sorted(report.fontNames()), bundledFaces);
    // Every label and value where it is without the configuration.
    QCOMPARE(layoutOf(report), usualLayout);
}

void TestReportFonts::everyScriptComesBack() {
    QTemporaryDir dir;
    const QString path =
        copyTestData(QStringLiteral("fonts/scripts.json"), dir.path(), QStringLiteral("welt.json"));
    const ProgramRun run = convertWithFonts({path});
    // Every script is drawn; only the Turkish value is wider than its column.
    QCOMPARE(run.errText(),
             QStringLiteral("brevio-convert: ") + path +
                 QString::fromUtf8(": warning: 1 text is cut off at the column edge: "
                                   "\"Spannungsuntergrenze [V]: \xc4\xb0zmir "
                                   "\xc4\xb1\xc4\x9f\xc3\xbc\xc5\x9f\xc3\xb6\xc3\xa7 "
                                   "\xc4\x9e\xc5\x9e\xe2\x80\xa6\"\n"));
    QCOMPARE(run.status(), 0);
    const PdfReport report(reportPathFor(path));
    QVERIFY(report.isValid());
    const QStringList expected = {
        QStringLiteral("Name: Grüße aus Köln: Öl, Maß, Ärger"),
        QStringLiteral("Ort: Θερμοκρασία Αθήνα ΩΨΦ"),
        QStringLiteral("Höhe [m]: Температура Москва Щ"),
        QStringLiteral("Spannungsuntergrenze [V]: İzmir ığüşöç ĞŞÇ"),
        QStringLiteral("Versionsnummer: 东京 温度计 한국어 カタカナ"),
    };
    for (const QString& text : expected)
        QVERIFY2(!report.line(0, text).isNull(),
                 qPrintable(text + QLatin1Char('\n') + report.dump()));
}

void TestReportFonts::undrawableCharacterWarns() {
    QTemporaryDir dir;
    const QString path = copyTestData(QStringLiteral("fonts/undrawable.json"), dir.path(),
                                      QStringLiteral("kessel.json"));
    const ProgramRun run = convertWithFonts({path});
    QCOMPARE(run.errText(),
             QStringLiteral("brevio-convert: ") + path +
                 QStringLiteral(": warning: 1 character cannot be drawn: U+10FFFD\n"));
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.outText(), reportPathFor(path) + QLatin1Char('\n'));
    const PdfReport report(reportPathFor(path));
    QVERIFY(report.isValid());
    QVERIFY2(!report.lineStartingWith(0, QStringLiteral("Name: Kessel")).isNull(),
             qPrintable(report.dump()));
    QVERIFY(!report.line(0, QStringLiteral("Ort: Halle")).isNull());
}

void TestReportFonts::undrawableCharacters_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<uint>>("expected");
    QTest::newRow("German") << QStringLiteral("Grüße, Höhe") << QVector<uint>();
    QTest::newRow("Greek and Cyrillic") << QStringLiteral("Αθήνα Москва") << QVector<uint>();
    QTest::newRow("CJK through the fallback") << QStringLiteral("东京 温度计") << QVector<uint>();
    QTest::newRow("control and format characters")
        << QStringLiteral("a\tb\nc\u200dd\u00ad") << QVector<uint>();
    QTest::newRow("a plane 16 private character")
        << QStringLiteral("Kessel \U0010FFFD 3") << QVector<uint>{0x10FFFD};
    QTest::newRow("each once, in order of appearance")
        << QStringLiteral("\U0010FFFDa\U000F0001b\U0010FFFD") << QVector<uint>{0x10FFFD, 0xF0001};
    QTest::newRow("empty") << QString() << QVector<uint>();
}

void TestReportFonts::undrawableCharacters() {
    QFETCH(QString, text);
    QFETCH(QVector<uint>, expected);
    QFont font;
    font.setPixelSize(200);
    QCOMPARE(::undrawableCharacters(text, font), expected);
}

void TestReportFonts::codePointList_data() {
    QTest::addColumn<QVector<uint>>("codePoints");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << QVector<uint>() << QString();
    QTest::newRow("padded to four digits") << QVector<uint>{0x41} << QStringLiteral("U+0041");
    QTest::newRow("several, upper case")
        << QVector<uint>{0x4e1c, 0x4eac, 0x10fffd} << QStringLiteral("U+4E1C U+4EAC U+10FFFD");
}

void TestReportFonts::codePointList() {
    QFETCH(QVector<uint>, codePoints);
    QFETCH(QString, expected);
    QCOMPARE(::codePointList(codePoints), expected);
}

void TestReportFonts::documentInformation_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("title");
    QTest::newRow("the configuration's name")
        << QByteArray("{\"configuration\": {\"name\": \"Kessel 3 – Vorlauf\"}}")
        << QStringLiteral("Kessel 3 – Vorlauf");
    QTest::newRow("empty name: the file's name")
        << QByteArray("{\"configuration\": {\"name\": \"\"}}") << QStringLiteral("anlage.json");
    QTest::newRow("no name: the file's name")
        << QByteArray("{\"configuration\": {\"location\": \"Halle\"}}")
        << QStringLiteral("anlage.json");
    QTest::newRow("not JSON: the file's name") << QByteArray("{") << QStringLiteral("anlage.json");
}

void TestReportFonts::documentInformation() {
    QFETCH(QByteArray, json);
    QFETCH(QString, title);
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), json);
    QVERIFY(runJob(path).finished());
    const PdfReport report(reportPathFor(path));
    QVERIFY(report.isValid());
    QCOMPARE(report.title(), title);
    QCOMPARE(report.creator(), QStringLiteral("Brevio " BREVIO_VERSION));
}

QTEST_MAIN(TestReportFonts)
#include "tst_reportfonts.moc"
