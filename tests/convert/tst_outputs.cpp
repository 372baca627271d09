// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/unitname.h"
#include "sectionharness.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <climits>

using namespace sections;

namespace {

QJsonArray parseArray(const QByteArray& json) {
    return QJsonDocument::fromJson(json).array();
}

// A channel of the two-column layout with every printed member set.
QByteArray flowChannel(const QByteArray& name, int unit = 16) {
    return R"({"k_factor": 148.5, "producer": 1, "response": 2, "measure": {"measure": ")" + name +
           R"(", "unit": )" + QByteArray::number(unit) + R"(, "rangeLow": 0, "rangeHigh": 12000}})";
}

QByteArray pressureChannel(int unit = 9) {
    return R"({"k_factor": 75, "producer": 1, "response": 2, "measure": {"measure": "PRESSURE", "unit": )" +
           QByteArray::number(unit) + R"(, "rangeLow": -50, "rangeHigh": 500}})";
}

} // namespace

class TestOutputs : public QObject {
    Q_OBJECT

private slots:
    void unitNames_data();
    void unitNames();
    void gradCelsiusKeepsItsTrailingBlank();
    void pressureLayoutUsesLeftColumnOnly();
    void otherNamesUseTwoColumns_data();
    void otherNamesUseTwoColumns();
    void unitLine_data();
    void unitLine();
    void fanMaker_data();
    void fanMaker();
    void valuesPrintAsText_data();
    void valuesPrintAsText();
    void noChannelsDrawNothing();
    void blockPageCheck_data();
    void blockPageCheck();
    void blockAtLastPlaceSendsNextToNewPage();
    void endOfBlockDoesNotResetCursor();
    void shortEntriesAreSkippedKeepingNumbers();
    void fonts();
    void headingIsCutAtLeftColumn();
    void longPressureValueIsCutAtLeftColumn();
    void rightColumnIsCutAtFullWidthEdge();
    void channelsOfFileFlowOverPages();
    void displayHeadingFollowsLastBlock();
};

void TestOutputs::unitNames_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    const char* const names[] = {"Grad_F", "Prozent", "g_m3", "kJ_kg", "BTU_lb", "ppm",      "ppb",
                                 "Pa",     "hPa",     "kPa",  "mbar",  "bar",    "inchWC",   "m3_s",
                                 "m3_h",   "cfm",     "klux", "lux",   "fc",     "grain_ft3"};
    for (int code = 2; code <= 21; ++code)
        QTest::addRow("code %d", code) << code << QString::fromLatin1(names[code - 2]);
    QTest::newRow("code 2147483647") << 2147483647 << QStringLiteral("MAX2");
    QTest::newRow("code 0") << 0 << QString();
    QTest::newRow("code 22") << 22 << QString();
    QTest::newRow("code -5") << -5 << QString();
    QTest::newRow("code -1") << -1 << QString();
    QTest::newRow("code 2147483646") << 2147483646 << QString();
    QTest::newRow("lowest int") << INT_MIN << QString();
}

void TestOutputs::unitNames() {
    QFETCH(int, code);
    QFETCH(QString, text);
    QCOMPARE(unitName(code), text);
}

void TestOutputs::gradCelsiusKeepsItsTrailingBlank() {
    QCOMPARE(unitName(1), QStringLiteral("Grad_C "));
    QCOMPARE(unitName(1).size(), 7);
}

void TestOutputs::pressureLayoutUsesLeftColumnOnly() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + pressureChannel() + "]"));
    const int top = 3000;
    const SectionRun run = printSections(job, top, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;

    QCOMPARE(report.pageCount(), 1);
    QCOMPARE(report.texts(0),
             QStringList({"Ausgang 1: PRESSURE", "Einheit: Pa", "Messbereich Untergrenze: -50",
                          "Messbereich Obergrenze: 500"}));
    QVERIFY2(report.line(0, "Ausgang 1: PRESSURE").sitsIn(leftColumn(top)), describe(report));
    QVERIFY2(report.line(0, "Einheit: Pa").sitsIn(leftColumn(top + 330)), describe(report));
    QVERIFY2(report.line(0, "Messbereich Untergrenze: -50").sitsIn(leftColumn(top + 660)),
             describe(report));
    QVERIFY2(report.line(0, "Messbereich Obergrenze: 500").sitsIn(leftColumn(top + 990)),
             describe(report));
    // Nothing of the K-factor, maker or response time, and nothing on the right.
    QVERIFY(!report.hasInk(0, QRect(4962, top, 4462, 1240)));
    QCOMPARE(run.cursorAfter, top + 1650);
}

void TestOutputs::otherNamesUseTwoColumns_data() {
    QTest::addColumn<QByteArray>("channel");
    QTest::addColumn<QString>("heading");
    QTest::newRow("volume flow") << flowChannel("VOLUMEFLOW") << "Ausgang 1: VOLUMEFLOW";
    QTest::newRow("lower case pressure") << flowChannel("pressure") << "Ausgang 1: pressure";
    QTest::newRow("mixed case Pressure") << flowChannel("Pressure") << "Ausgang 1: Pressure";
    // The reader strips nothing, so the trailing blank makes it another name;
    // the PDF text itself does not keep the blank.
    QTest::newRow("pressure with trailing blank")
        << flowChannel("PRESSURE ") << "Ausgang 1: PRESSURE";
    QTest::newRow("empty name") << flowChannel("") << "Ausgang 1:";
    QTest::newRow("missing name") << QByteArray(R"({"k_factor": 148.5, "producer": 1, "response": 2,
                          "measure": {"unit": 16, "rangeLow": 0, "rangeHigh": 12000}})")
                                  << "Ausgang 1:";
    QTest::newRow("missing measure object")
        << QByteArray(R"({"k_factor": 148.5, "producer": 1, "response": 2})") << "Ausgang 1:";
}

void TestOutputs::otherNamesUseTwoColumns() {
    QFETCH(QByteArray, channel);
    QFETCH(QString, heading);
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + channel + "]"));
    const int top = 2000;
    const SectionRun run = printSections(job, top, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;

    const bool hasMeasure = channel.contains("rangeHigh");
    const QString unit = hasMeasure ? QStringLiteral("Einheit: m3_h") : QStringLiteral("Einheit:");
    const QString low = hasMeasure ? QStringLiteral("Messbereich Untergrenze: 0")
                                   : QStringLiteral("Messbereich Untergrenze:");
    const QString high = hasMeasure ? QStringLiteral("Messbereich Obergrenze: 12000")
                                    : QStringLiteral("Messbereich Obergrenze:");
    struct Expected {
        QString text;
        QRect rect;
    };
    const Expected expected[] = {
        {heading, leftColumn(top)},
        {QStringLiteral("K-Faktor: 148.5"), leftColumn(top + 330)},
        {unit, rightColumn(top + 330)},
        {QStringLiteral("Hersteller: Ziehl-Abegg/EBM-Papst"), leftColumn(top + 660)},
        {low, rightColumn(top + 660)},
        {QStringLiteral("Ansprechzeit [s]: 2"), leftColumn(top + 990)},
        {high, rightColumn(top + 990)},
    };
    QCOMPARE(report.pageCount(), 1);
    QCOMPARE(report.lines(0).size(), 7);
    for (const Expected& line : expected)
        QVERIFY2(report.line(0, line.text).sitsIn(line.rect),
                 qPrintable(line.text + "\n" + report.dump()));
    QCOMPARE(run.cursorAfter, top + 1650);
}

void TestOutputs::unitLine_data() {
    QTest::addColumn<QByteArray>("unit");
    QTest::addColumn<QString>("text");
    QTest::newRow("1 is Grad_C") << QByteArray("1") << "Einheit: Grad_C";
    QTest::newRow("9 is Pa") << QByteArray("9") << "Einheit: Pa";
    QTest::newRow("21 is grain_ft3") << QByteArray("21") << "Einheit: grain_ft3";
    QTest::newRow("0 has no text") << QByteArray("0") << "Einheit:";
    QTest::newRow("22 has no text") << QByteArray("22") << "Einheit:";
    QTest::newRow("-5 has no text") << QByteArray("-5") << "Einheit:";
    QTest::newRow("2147483647 is MAX2") << QByteArray("2147483647") << "Einheit: MAX2";
    QTest::newRow("string 9 converts") << QByteArray("\"9\"") << "Einheit: Pa";
    QTest::newRow("word has no text") << QByteArray("\"Pa\"") << "Einheit:";
    QTest::newRow("missing") << QByteArray() << "Einheit:";
    QTest::newRow("null") << QByteArray("null") << "Einheit:";
    QTest::newRow("true is 1") << QByteArray("true") << "Einheit: Grad_C";
    QTest::newRow("array") << QByteArray("[9]") << "Einheit:";
    QTest::newRow("1e308") << QByteArray("1e308") << "Einheit:";
}

void TestOutputs::unitLine() {
    QFETCH(QByteArray, unit);
    QFETCH(QString, text);
    const QByteArray measure = unit.isNull() ? QByteArray(R"({"measure": "PRESSURE"})")
                                             : R"({"measure": "PRESSURE", "unit": )" + unit + "}";
    const QByteArray flowMeasure = unit.isNull() ? QByteArray(R"({"measure": "CO2"})")
                                                 : R"({"measure": "CO2", "unit": )" + unit + "}";
    QTemporaryDir dir;
    convert job;
    job.readOutputs(
        parseArray(R"([{"measure": )" + measure + R"(}, {"measure": )" + flowMeasure + "}]"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    // Pressure layout: left column of row 1; other layout: right column.
    QVERIFY2(report.line(0, text).sitsIn(leftColumn(1330)), describe(report));
    PdfTextLine right;
    for (const PdfTextLine& line : report.lines(0))
        if (line.text == text && line.sitsIn(rightColumn(2980)))
            right = line;
    QVERIFY2(!right.isNull(), describe(report));
}

void TestOutputs::fanMaker_data() {
    QTest::addColumn<QByteArray>("producer");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << QByteArray("0") << "Hersteller: Rosenberg/Comefri/Gebhardt Nicotra";
    QTest::newRow("1") << QByteArray("1") << "Hersteller: Ziehl-Abegg/EBM-Papst";
    QTest::newRow("2") << QByteArray("2") << "Hersteller: Fläkt Woods";
    QTest::newRow("3") << QByteArray("3") << "Hersteller: Unbekannst: Id 3";
    QTest::newRow("7") << QByteArray("7") << "Hersteller: Unbekannst: Id 7";
    QTest::newRow("-1") << QByteArray("-1") << "Hersteller: Unbekannst: Id -1";
    QTest::newRow("missing counts as 0")
        << QByteArray() << "Hersteller: Rosenberg/Comefri/Gebhardt Nicotra";
    QTest::newRow("string 2") << QByteArray("\"2\"") << "Hersteller: Fläkt Woods";
    QTest::newRow("2147483647") << QByteArray("2147483647")
                                << "Hersteller: Unbekannst: Id 2147483647";
}

void TestOutputs::fanMaker() {
    QFETCH(QByteArray, producer);
    QFETCH(QString, text);
    const QByteArray member = producer.isNull() ? QByteArray() : R"("producer": )" + producer + ",";
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[{" + member + R"("measure": {"measure": "CO2", "unit": 7}}])"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(1660)), describe(*run.report));
}

void TestOutputs::valuesPrintAsText_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("integer") << QByteArray("100") << "100";
    QTest::newRow("fraction") << QByteArray("2.5") << "2.5";
    QTest::newRow("negative") << QByteArray("-12.25") << "-12.25";
    QTest::newRow("minus zero") << QByteArray("-0") << "0";
    QTest::newRow("huge") << QByteArray("1e308") << "1e+308";
    QTest::newRow("string") << QByteArray("\"schnell\"") << "schnell";
    QTest::newRow("boolean") << QByteArray("true") << "true";
}

void TestOutputs::valuesPrintAsText() {
    QFETCH(QByteArray, value);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray(R"([{"k_factor": )" + value + R"(, "response": )" + value +
                               R"(, "measure": {"measure": "CO2", "rangeLow": )" + value +
                               R"(, "rangeHigh": )" + value + "}}]"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    QVERIFY2(report.line(0, "K-Faktor: " + text).sitsIn(leftColumn(1330)), describe(report));
    QVERIFY2(report.line(0, "Ansprechzeit [s]: " + text).sitsIn(leftColumn(1990)),
             describe(report));
    QVERIFY2(report.line(0, "Messbereich Untergrenze: " + text).sitsIn(rightColumn(1660)),
             describe(report));
    QVERIFY2(report.line(0, "Messbereich Obergrenze: " + text).sitsIn(rightColumn(1990)),
             describe(report));
}

void TestOutputs::noChannelsDrawNothing() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(QJsonArray());
    const SectionRun run = printSections(job, 7777, {&convert::printOutput}, dir);
    QCOMPARE(run.cursorAfter, 7777);
    QCOMPARE(run.report->pageCount(), 1);
    QVERIFY(run.report->lines(0).isEmpty());
}

void TestOutputs::blockPageCheck_data() {
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("top");
    QTest::newRow("11047 stays") << 11047 << 0 << 11047;
    QTest::newRow("11048 moves") << 11048 << 1 << 500;
    QTest::newRow("12697 moves") << 12697 << 1 << 500;
    QTest::newRow("13100 beyond the limit moves") << 13100 << 1 << 500;
    QTest::newRow("500 stays") << 500 << 0 << 500;
}

void TestOutputs::blockPageCheck() {
    QFETCH(int, cursor);
    QFETCH(int, page);
    QFETCH(int, top);
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + flowChannel("CO2", 7) + "]"));
    const SectionRun run = printSections(job, cursor, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), page + 1);
    if (page > 0)
        QVERIFY(report.lines(0).isEmpty());
    // The whole block stays together on its page.
    QVERIFY2(report.line(page, "Ausgang 1: CO2").sitsIn(leftColumn(top)), describe(report));
    QVERIFY2(report.line(page, "Einheit: ppm").sitsIn(rightColumn(top + 330)), describe(report));
    QVERIFY2(report.line(page, "Hersteller: Ziehl-Abegg/EBM-Papst").sitsIn(leftColumn(top + 660)),
             describe(report));
    QVERIFY2(report.line(page, "Messbereich Obergrenze: 12000").sitsIn(rightColumn(top + 990)),
             describe(report));
    QCOMPARE(report.lines(page).size(), 7);
    QCOMPARE(run.cursorAfter, top + 1650);
}

void TestOutputs::blockAtLastPlaceSendsNextToNewPage() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + flowChannel("CO2", 7) + "," + pressureChannel() + "]"));
    const SectionRun run = printSections(job, 11047, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 2);
    QVERIFY2(report.line(0, "Ausgang 1: CO2").sitsIn(leftColumn(11047)), describe(report));
    QVERIFY2(report.line(0, "Ansprechzeit [s]: 2").sitsIn(leftColumn(12037)), describe(report));
    QVERIFY2(report.line(1, "Ausgang 2: PRESSURE").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Messbereich Obergrenze: 500").sitsIn(leftColumn(1490)),
             describe(report));
    QCOMPARE(run.cursorAfter, 2150);
}

void TestOutputs::endOfBlockDoesNotResetCursor() {
    // The advance after a block is not a line step: from 11047 it ends at
    // 12697 on the same page, even though that is past the block limit.
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + pressureChannel() + "]"));
    const SectionRun run = printSections(job, 11047, {&convert::printOutput}, dir);
    QCOMPARE(run.cursorAfter, 12697);
    QCOMPARE(run.report->pageCount(), 1);
}

void TestOutputs::shortEntriesAreSkippedKeepingNumbers() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + pressureChannel() + "," + pressureChannel() + "," +
                               pressureChannel() + "," + pressureChannel() + "]"));
    job.outputValues[1].resize(9);
    // Ten values are the fewest that are drawn: index 9 is the upper range end.
    job.outputValues[2].resize(10);
    job.outputValues[3].clear();
    const SectionRun run = printSections(job, 500, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 1);
    QVERIFY2(report.line(0, "Ausgang 1: PRESSURE").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(0, "Ausgang 3: PRESSURE").sitsIn(leftColumn(2150)), describe(report));
    QVERIFY2(report.line(0, "Messbereich Obergrenze: 500").sitsIn(leftColumn(1490)),
             describe(report));
    QVERIFY(report.lineStartingWith(0, "Ausgang 2").isNull());
    QVERIFY(report.lineStartingWith(0, "Ausgang 4").isNull());
    QCOMPARE(report.lines(0).size(), 8);
    QCOMPARE(run.cursorAfter, 3800);
}

void TestOutputs::fonts() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + flowChannel("CO2", 7) + "," + pressureChannel() + "]"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    const PdfReport& report = *run.report;
    QVERIFY(drawnWith(report.line(0, "Ausgang 1: CO2"), reportHeadingFont()));
    QVERIFY(drawnWith(report.line(0, "Ausgang 2: PRESSURE"), reportHeadingFont()));
    QVERIFY(!drawnWith(report.line(0, "Ausgang 1: CO2"), reportBodyFont()));
    const QStringList rows = {"K-Faktor: 148.5",
                              "Einheit: ppm",
                              "Hersteller: Ziehl-Abegg/EBM-Papst",
                              "Messbereich Untergrenze: 0",
                              "Ansprechzeit [s]: 2",
                              "Messbereich Obergrenze: 12000",
                              "Einheit: Pa",
                              "Messbereich Obergrenze: 500"};
    for (const QString& row : rows)
        QVERIFY2(drawnWith(report.line(0, row), reportBodyFont()), qPrintable(row));
}

void TestOutputs::headingIsCutAtLeftColumn() {
    // The right column stays empty on a heading's row, so nothing may show
    // there even when the measure name is far wider than the left column.
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray("[" + flowChannel(QByteArray(120, 'W')) + "]"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    QVERIFY(run.report->hasInk(0, QRect(4700, 1000, 260, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(4964, 1000, 9921 - 4964 - 500, 250)));
}

void TestOutputs::longPressureValueIsCutAtLeftColumn() {
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray(R"([{"measure": {"measure": "PRESSURE", "unit": 9, "rangeLow": ")" +
                               QByteArray(200, '8') + R"(", "rangeHigh": 500}}])"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    const int row = 1660;
    QVERIFY2(
        run.report->lineStartingWith(0, "Messbereich Untergrenze: 888").sitsIn(leftColumn(row)),
        describe(*run.report));
    QVERIFY(run.report->hasInk(0, QRect(4700, row, 260, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(4964, row, 9921 - 4964 - 500, 250)));
}

void TestOutputs::rightColumnIsCutAtFullWidthEdge() {
    // The right column ends at 9423, not at the general block's 9923.
    QTemporaryDir dir;
    convert job;
    job.readOutputs(parseArray(R"([{"measure": {"measure": "CO2", "rangeHigh": ")" +
                               QByteArray(200, '8') + R"("}}])"));
    const SectionRun run = printSections(job, 1000, {&convert::printOutput}, dir);
    const int row = 1990;
    QVERIFY2(
        run.report->lineStartingWith(0, "Messbereich Obergrenze: 888").sitsIn(rightColumn(row)),
        describe(*run.report));
    QVERIFY(run.report->hasInk(0, QRect(9200, row, 222, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(9426, row, 9921 - 9426 - 480, 250)));
}

void TestOutputs::channelsOfFileFlowOverPages() {
    // Six channels in a whole report: five fit below the general block
    // (tops 4344 to 10944, all under 11048), the sixth opens page 2.
    QByteArray channels;
    for (int i = 0; i < 6; ++i)
        channels += (i ? "," : "") + (i % 2 ? pressureChannel() : flowChannel("CO2", 7));
    const auto converted = convertConfiguration(R"({"outputs": [)" + channels + "]}");
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    QVERIFY(report.pageCount() >= 2);
    for (int i = 0; i < 5; ++i) {
        const QString heading =
            QStringLiteral("Ausgang %1: %2").arg(i + 1).arg(i % 2 ? "PRESSURE" : "CO2");
        QVERIFY2(report.line(0, heading).sitsIn(leftColumn(firstSectionTop + 1650 * i)),
                 qPrintable(heading + "\n" + report.dump()));
    }
    QVERIFY2(report.line(1, "Ausgang 6: PRESSURE").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Display:").sitsIn(fullLine(2150)), describe(report));
}

void TestOutputs::displayHeadingFollowsLastBlock() {
    const auto converted = convertConfiguration(R"({"outputs": [)" + flowChannel("CO2", 7) + "]}");
    QVERIFY(converted->outcome.finished());
    const PdfReport& report = *converted->report;
    QVERIFY2(report.line(0, "Ausgang 1: CO2").sitsIn(leftColumn(firstSectionTop)),
             describe(report));
    QVERIFY2(report.line(0, "Display:").sitsIn(fullLine(firstSectionTop + 1650)), describe(report));
}

QTEST_MAIN(TestOutputs)
#include "tst_outputs.moc"
