// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace sections;

namespace {

QJsonArray parseArray(const QByteArray& json) {
    return QJsonDocument::fromJson(json).array();
}

QByteArray relay(const QByteArray& states, const QByteArray& name = "PRESSURE") {
    return R"({"lowThreshold": 120, "highThreshold": 380, "states": )" + states +
           R"(, "measure": {"measure": ")" + name + R"(", "unit": 9}})";
}

} // namespace

class TestRelais : public QObject {
    Q_OBJECT

private slots:
    void relayBlock();
    void stateWords_data();
    void stateWords();
    void noRelaysStillStepTwice_data();
    void noRelaysStillStepTwice();
    void leadingStepsStartNewPage_data();
    void leadingStepsStartNewPage();
    void blockPageCheck_data();
    void blockPageCheck();
    void statesRunPastPageFoot();
    void withoutStatesOneEmptyLineFollowsThresholds();
    void headingSpansFullWidth();
    void numberingFollowsArrayPosition();
    void shortEntriesAreSkippedKeepingNumbers();
    void thresholdsPrintAsText_data();
    void thresholdsPrintAsText();
    void fonts();
    void longThresholdIsCutAtLeftColumn();
    void rightThresholdIsCutAtFullWidthEdge();
    void relaysOfFile();
    void emptyRelaySectionOfFile();
};

void TestRelais::relayBlock() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[0, 1, 0]") + "]"));
    const int entry = 2000;
    const int top = entry + 660;
    const SectionRun run = printSections(job, entry, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 1);
    QCOMPARE(report.texts(0),
             QStringList({"Relais 1: PRESSURE", "Schwellwert 1: 120", "Schwellwert 2: 380",
                          "Zustand 1: Geöffnet", "Zustand 2: Geschlossen", "Zustand 3: Geöffnet"}));
    QVERIFY2(report.line(0, "Relais 1: PRESSURE").sitsIn(fullLine(top)), describe(report));
    QVERIFY2(report.line(0, "Schwellwert 1: 120").sitsIn(leftColumn(top + 330)), describe(report));
    QVERIFY2(report.line(0, "Schwellwert 2: 380").sitsIn(rightColumn(top + 330)), describe(report));
    QVERIFY2(report.line(0, "Zustand 1: Geöffnet").sitsIn(leftColumn(top + 660)), describe(report));
    QVERIFY2(report.line(0, "Zustand 2: Geschlossen").sitsIn(leftColumn(top + 990)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 3: Geöffnet").sitsIn(leftColumn(top + 1320)),
             describe(report));
    QCOMPARE(run.cursorAfter, top + 1980);
}

void TestRelais::stateWords_data() {
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("word");
    QTest::newRow("number 0 is open") << QByteArray("0") << "Geöffnet";
    QTest::newRow("string 0 is open") << QByteArray("\"0\"") << "Geöffnet";
    QTest::newRow("minus zero is open") << QByteArray("-0") << "Geöffnet";
    QTest::newRow("number 1 is closed") << QByteArray("1") << "Geschlossen";
    QTest::newRow("number 2 is closed") << QByteArray("2") << "Geschlossen";
    QTest::newRow("false is closed") << QByteArray("false") << "Geschlossen";
    QTest::newRow("string 00 is closed") << QByteArray("\"00\"") << "Geschlossen";
    QTest::newRow("0.0 prints as 0 and is open") << QByteArray("0.0") << "Geöffnet";
    QTest::newRow("0.5 is closed") << QByteArray("0.5") << "Geschlossen";
    QTest::newRow("null is closed") << QByteArray("null") << "Geschlossen";
    QTest::newRow("array is closed") << QByteArray("[0]") << "Geschlossen";
}

void TestRelais::stateWords() {
    QFETCH(QByteArray, state);
    QFETCH(QString, word);
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[" + state + "]") + "]"));
    const SectionRun run = printSections(job, 1000, {&convert::printRelais}, dir);
    QVERIFY2(run.report->line(0, "Zustand 1: " + word).sitsIn(leftColumn(1000 + 660 + 660)),
             describe(*run.report));
    QCOMPARE(run.cursorAfter, 1660 + 990 + 330);
}

void TestRelais::noRelaysStillStepTwice_data() {
    QTest::addColumn<QByteArray>("relais");
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("not an array") << QByteArray("{}");
}

void TestRelais::noRelaysStillStepTwice() {
    QFETCH(QByteArray, relais);
    QTemporaryDir dir;
    convert job;
    job.readRelais(QJsonDocument::fromJson(relais).array());
    QVERIFY(job.relaisValues.isEmpty());
    const SectionRun run = printSections(job, 4000, {&convert::printRelais}, dir);
    QCOMPARE(run.cursorAfter, 4660);
    QCOMPARE(run.report->pageCount(), 1);
    QVERIFY(run.report->lines(0).isEmpty());
}

void TestRelais::leadingStepsStartNewPage_data() {
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("pages");
    QTest::addColumn<int>("after");
    QTest::newRow("12368 reaches 13028 on the page") << 12368 << 1 << 13028;
    QTest::newRow("12369: second step leaves the page") << 12369 << 2 << 500;
    QTest::newRow("12698: first step stays, second leaves") << 12698 << 2 << 500;
    QTest::newRow("12699: first step leaves") << 12699 << 2 << 830;
}

void TestRelais::leadingStepsStartNewPage() {
    QFETCH(int, cursor);
    QFETCH(int, pages);
    QFETCH(int, after);
    QTemporaryDir dir;
    convert job;
    const SectionRun run = printSections(job, cursor, {&convert::printRelais}, dir);
    QCOMPARE(run.cursorAfter, after);
    QCOMPARE(run.report->pageCount(), pages);
}

void TestRelais::blockPageCheck_data() {
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("drawnAt");
    QTest::newRow("11377 stays") << 11377 << 0 << 11377;
    QTest::newRow("11378 moves") << 11378 << 1 << 500;
    QTest::newRow("13028 moves") << 13028 << 1 << 500;
}

void TestRelais::blockPageCheck() {
    QFETCH(int, top);
    QFETCH(int, page);
    QFETCH(int, drawnAt);
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[0]") + "]"));
    // The two leading steps stay on the page: start 660 above the block.
    const SectionRun run = printSections(job, top - 660, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), page + 1);
    if (page > 0)
        QVERIFY(report.lines(0).isEmpty());
    QVERIFY2(report.line(page, "Relais 1: PRESSURE").sitsIn(fullLine(drawnAt)), describe(report));
    QVERIFY2(report.line(page, "Schwellwert 2: 380").sitsIn(rightColumn(drawnAt + 330)),
             describe(report));
    QVERIFY2(report.line(page, "Zustand 1: Geöffnet").sitsIn(leftColumn(drawnAt + 660)),
             describe(report));
    QCOMPARE(run.cursorAfter, drawnAt + 1320);
}

void TestRelais::statesRunPastPageFoot() {
    QByteArray states = "[";
    for (int k = 0; k < 20; ++k)
        states += (k ? ",1" : "1");
    states += "]";
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay(states) + "," + relay("[0]", "CO2") + "]"));
    const int top = 11377;
    const SectionRun run = printSections(job, top - 660, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QVERIFY2(report.line(0, "Relais 1: PRESSURE").sitsIn(fullLine(top)), describe(report));
    // State 4 starts at 13027, still within the limit, state 5 at 13357
    // beyond it: no page is started for either.
    QVERIFY2(report.line(0, "Zustand 1: Geschlossen").sitsIn(leftColumn(top + 660)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 2: Geschlossen").sitsIn(leftColumn(top + 990)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 3: Geschlossen").sitsIn(leftColumn(top + 1320)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 4: Geschlossen").sitsIn(leftColumn(top + 1650)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 5: Geschlossen").sitsIn(leftColumn(top + 1980)),
             describe(report));
    QCOMPARE(report.pageCount(), 2);
    // The second relay's check fires after the long one: top + 990 + 20 * 330.
    QVERIFY2(report.line(1, "Relais 2: CO2").sitsIn(fullLine(500)), describe(report));
    QVERIFY(report.lineStartingWith(1, "Zustand 5").isNull());
    QVERIFY2(report.line(1, "Zustand 1: Geöffnet").sitsIn(leftColumn(1160)), describe(report));
    QCOMPARE(run.cursorAfter, 500 + 990 + 330);
}

void TestRelais::withoutStatesOneEmptyLineFollowsThresholds() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(
        parseArray(R"([{"lowThreshold": 1, "highThreshold": 2, "measure": {"measure": "CO2"}},
                                 {"lowThreshold": 3, "highThreshold": 4, "states": [],
                                  "measure": {"measure": "VOC"}}])"));
    const SectionRun run = printSections(job, 1000, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.lines(0).size(), 6);
    QVERIFY2(report.line(0, "Relais 1: CO2").sitsIn(fullLine(1660)), describe(report));
    QVERIFY2(report.line(0, "Schwellwert 1: 1").sitsIn(leftColumn(1990)), describe(report));
    QVERIFY2(report.line(0, "Relais 2: VOC").sitsIn(fullLine(2650)), describe(report));
    QVERIFY2(report.line(0, "Schwellwert 2: 4").sitsIn(rightColumn(2980)), describe(report));
    QCOMPARE(run.cursorAfter, 3640);
}

void TestRelais::headingSpansFullWidth() {
    // A heading wider than the left column still shows in the right half,
    // and is cut only at x 9423.
    const QByteArray name(150, 'W');
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[]", name) + "]"));
    const SectionRun run = printSections(job, 1000, {&convert::printRelais}, dir);
    const int top = 1660;
    QVERIFY(run.report->lineStartingWith(0, "Relais 1: WWW").sitsIn(fullLine(top)));
    QVERIFY(run.report->hasInk(0, QRect(5000, top, 4000, 250)));
    QVERIFY(run.report->hasInk(0, QRect(9200, top, 222, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(9426, top, 9921 - 9426 - 480, 250)));
}

void TestRelais::numberingFollowsArrayPosition() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray(R"([1, "x", {"measure": {"measure": "CO2"}}])"));
    QCOMPARE(job.relaisValues.size(), 3);
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QVERIFY2(report.line(0, "Relais 1:").sitsIn(fullLine(1160)), describe(report));
    QVERIFY2(report.line(0, "Relais 2:").sitsIn(fullLine(2150)), describe(report));
    QVERIFY2(report.line(0, "Relais 3: CO2").sitsIn(fullLine(3140)), describe(report));
    QVERIFY2(report.line(0, "Schwellwert 1:").sitsIn(leftColumn(1490)), describe(report));
}

void TestRelais::shortEntriesAreSkippedKeepingNumbers() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[0]", "A") + "," + relay("[0]", "B") + "," +
                              relay("[0]", "C") + "]"));
    job.relaisValues[0].resize(3);
    // Four values are the fewest that are drawn: index 3 is the measure name.
    job.relaisValues[1].resize(4);
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QVERIFY(report.lineStartingWith(0, "Relais 1").isNull());
    QVERIFY2(report.line(0, "Relais 2: B").sitsIn(fullLine(1160)), describe(report));
    QVERIFY2(report.line(0, "Relais 3: C").sitsIn(fullLine(2480)), describe(report));
    QCOMPARE(report.lines(0).size(), 8);
}

void TestRelais::thresholdsPrintAsText_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("fraction") << QByteArray("12.5") << "12.5";
    QTest::newRow("integer") << QByteArray("400") << "400";
    QTest::newRow("minus zero") << QByteArray("-0") << "0";
    QTest::newRow("huge") << QByteArray("1e308") << "1e+308";
    QTest::newRow("text") << QByteArray("\"hoch\"") << "hoch";
    QTest::newRow("boolean") << QByteArray("false") << "false";
}

void TestRelais::thresholdsPrintAsText() {
    QFETCH(QByteArray, value);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readRelais(
        parseArray(R"([{"lowThreshold": )" + value + R"(, "highThreshold": )" + value + "}]"));
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    QVERIFY2(run.report->line(0, "Schwellwert 1: " + text).sitsIn(leftColumn(1490)),
             describe(*run.report));
    QVERIFY2(run.report->line(0, "Schwellwert 2: " + text).sitsIn(rightColumn(1490)),
             describe(*run.report));
}

void TestRelais::fonts() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[0, 1]") + "]"));
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    const PdfReport& report = *run.report;
    QVERIFY(drawnWith(report.line(0, "Relais 1: PRESSURE"), reportHeadingFont()));
    for (const char* row : {"Schwellwert 1: 120", "Schwellwert 2: 380", "Zustand 1: Geöffnet",
                            "Zustand 2: Geschlossen"})
        QVERIFY2(drawnWith(report.line(0, QString::fromUtf8(row)), reportBodyFont()), row);
}

void TestRelais::longThresholdIsCutAtLeftColumn() {
    // The state rows have an empty right column.
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray("[" + relay("[0]") + "]"));
    job.relaisValues[0][2] = QVariantList{QString(300, QLatin1Char('1'))};
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    const int row = 1160 + 660;
    QVERIFY2(run.report->lineStartingWith(0, "Zustand 1: Geschlossen").sitsIn(leftColumn(row)),
             describe(*run.report));
    QVERIFY(run.report->hasInk(0, QRect(500, row, 2000, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(4964, row, 9921 - 4964 - 500, 250)));
}

void TestRelais::rightThresholdIsCutAtFullWidthEdge() {
    QTemporaryDir dir;
    convert job;
    job.readRelais(parseArray(R"([{"highThreshold": ")" + QByteArray(200, '8') + R"("}])"));
    const SectionRun run = printSections(job, 500, {&convert::printRelais}, dir);
    const int row = 1490;
    QVERIFY2(run.report->lineStartingWith(0, "Schwellwert 2: 888").sitsIn(rightColumn(row)),
             describe(*run.report));
    QVERIFY(run.report->hasInk(0, QRect(9200, row, 222, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(9426, row, 9921 - 9426 - 480, 250)));
}

void TestRelais::relaysOfFile() {
    // Whole report: no channels, so the display section starts at 4344 and
    // the traffic-light section ends at 6324; the relays start two steps on.
    const auto converted = convertConfiguration("{\"relais\": [" + relay("[0, 1, 0]") + "," +
                                                relay("[1]", "CO2") + "]}");
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    const int tlfLast = firstSectionTop + 4 * 330 + 2 * 330 + 4 * 330;
    const int top = tlfLast + 660;
    QVERIFY2(report.line(0, "Farbe Bereich 3: Grün").sitsIn(leftColumn(tlfLast)), describe(report));
    QVERIFY2(report.line(0, "Relais 1: PRESSURE").sitsIn(fullLine(top)), describe(report));
    QVERIFY2(report.line(0, "Zustand 3: Geöffnet").sitsIn(leftColumn(top + 1320)),
             describe(report));
    QVERIFY2(report.line(0, "Relais 2: CO2").sitsIn(fullLine(top + 1980)), describe(report));
    QVERIFY2(report.line(0, "Zustand 1: Geschlossen").sitsIn(leftColumn(top + 2640)),
             describe(report));
    QVERIFY2(report.line(0, "Modbus").sitsIn(fullLine(top + 1980 + 1320)), describe(report));
}

void TestRelais::emptyRelaySectionOfFile() {
    const auto converted = convertConfiguration(R"({"relais": []})");
    QVERIFY(converted->outcome.finished());
    const PdfReport& report = *converted->report;
    const int tlfLast = firstSectionTop + 4 * 330 + 2 * 330 + 4 * 330;
    QVERIFY(report.lineStartingWith(0, "Relais").isNull());
    QVERIFY2(report.line(0, "Modbus").sitsIn(fullLine(tlfLast + 660)), describe(report));
}

QTEST_MAIN(TestRelais)
#include "tst_relais.moc"
