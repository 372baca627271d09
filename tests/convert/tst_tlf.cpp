// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace sections;

namespace {

QJsonObject parseObject(const QByteArray& json) {
    return QJsonDocument::fromJson(json).object();
}

struct Expected {
    QString text;
    QRect rect;
};

const QByteArray fullTlf = R"({"enabled": true, "lowThreshold": 150, "highThreshold": 350,
    "lowColor": 1, "middleColor": 2, "highColor": 3, "lcdRotation": 0,
    "measure": {"measure": "CO2", "unit": 7, "rangeLow": 0, "rangeHigh": 2000}})";

} // namespace

class TestTlf : public QObject {
    Q_OBJECT

private slots:
    void section();
    void withoutTlf();
    void colours_data();
    void colours();
    void enabled_data();
    void enabled();
    void thresholdsPrintAsText_data();
    void thresholdsPrintAsText();
    void measureName_data();
    void measureName();
    void leadingSteps_data();
    void leadingSteps();
    void linesAfterHeadingAtLimit();
    void fewerThanEightEntriesDrawHeadingOnly_data();
    void fewerThanEightEntriesDrawHeadingOnly();
    void fonts();
    void rightColumnIsCutAtFullWidthEdge();
    void longMeasureNameStopsAtLeftColumn();
    void sectionOfFile();
};

void TestTlf::section() {
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject(fullTlf));
    const int entry = 3000;
    const int top = entry + 660;
    const SectionRun run = printSections(job, entry, {&convert::printTlf}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 1);
    QCOMPARE(report.lines(0).size(), 8);
    const Expected expected[] = {
        {QStringLiteral("TLF:"), fullLine(top)},
        {QStringLiteral("Messgröße: CO2"), leftColumn(top + 330)},
        {QStringLiteral("Enabled: true"), rightColumn(top + 330)},
        {QStringLiteral("Schwellwert 1: 150"), leftColumn(top + 660)},
        {QStringLiteral("Schwellwert 2: 350"), rightColumn(top + 660)},
        {QStringLiteral("Farbe Bereich 1: Grün"), leftColumn(top + 990)},
        {QStringLiteral("Farbe Bereich 2: Gelb"), rightColumn(top + 990)},
        {QStringLiteral("Farbe Bereich 3: Rot"), leftColumn(top + 1320)},
    };
    for (const Expected& line : expected)
        QVERIFY2(report.line(0, line.text).sitsIn(line.rect),
                 qPrintable(line.text + "\n" + report.dump()));
    // The right column of the last line stays empty.
    QVERIFY(!report.hasInk(0, QRect(4962, top + 1320, 4462, 250)));
    QCOMPARE(run.cursorAfter, top + 1320);
}

void TestTlf::withoutTlf() {
    QTemporaryDir dir;
    convert job;
    job.readTlf(QJsonObject());
    QCOMPARE(job.tlfValues.size(), 14);
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    QCOMPARE(run.report->texts(0), QStringList({"TLF:", "Messgröße:", "Enabled:", "Schwellwert 1:",
                                                "Schwellwert 2:", "Farbe Bereich 1: Grün",
                                                "Farbe Bereich 2: Grün", "Farbe Bereich 3: Grün"}));
}

void TestTlf::colours_data() {
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QString>("name");
    QTest::newRow("1") << QByteArray("1") << "Grün";
    QTest::newRow("2") << QByteArray("2") << "Gelb";
    QTest::newRow("3") << QByteArray("3") << "Rot";
    QTest::newRow("4") << QByteArray("4") << "Grün";
    QTest::newRow("0") << QByteArray("0") << "Grün";
    QTest::newRow("-1") << QByteArray("-1") << "Grün";
    QTest::newRow("string 3") << QByteArray("\"3\"") << "Rot";
    QTest::newRow("string 2") << QByteArray("\"2\"") << "Gelb";
    QTest::newRow("word") << QByteArray("\"Rot\"") << "Grün";
    QTest::newRow("missing") << QByteArray() << "Grün";
    QTest::newRow("null") << QByteArray("null") << "Grün";
    QTest::newRow("1e308") << QByteArray("1e308") << "Grün";
}

void TestTlf::colours() {
    QFETCH(QByteArray, code);
    QFETCH(QString, name);
    // The same code in all three ranges; each range reads its own member.
    const QByteArray members =
        code.isNull()
            ? QByteArray()
            : "\"lowColor\": " + code + ", \"middleColor\": " + code + ", \"highColor\": " + code;
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject("{" + members + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    const PdfReport& report = *run.report;
    QVERIFY2(report.line(0, "Farbe Bereich 1: " + name).sitsIn(leftColumn(2650)), describe(report));
    QVERIFY2(report.line(0, "Farbe Bereich 2: " + name).sitsIn(rightColumn(2650)),
             describe(report));
    QVERIFY2(report.line(0, "Farbe Bereich 3: " + name).sitsIn(leftColumn(2980)), describe(report));
}

void TestTlf::enabled_data() {
    QTest::addColumn<QByteArray>("enabled");
    QTest::addColumn<QString>("text");
    QTest::newRow("true") << QByteArray("true") << "Enabled: true";
    QTest::newRow("false") << QByteArray("false") << "Enabled: false";
    QTest::newRow("missing") << QByteArray() << "Enabled:";
    QTest::newRow("number 1") << QByteArray("1") << "Enabled: 1";
    QTest::newRow("text ja") << QByteArray("\"ja\"") << "Enabled: ja";
}

void TestTlf::enabled() {
    QFETCH(QByteArray, enabled);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readTlf(
        parseObject(enabled.isNull() ? QByteArray("{}") : "{\"enabled\": " + enabled + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(rightColumn(1990)), describe(*run.report));
}

void TestTlf::thresholdsPrintAsText_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("integer") << QByteArray("400") << "400";
    QTest::newRow("fraction") << QByteArray("12.75") << "12.75";
    QTest::newRow("small fraction") << QByteArray("0.1") << "0.1";
    QTest::newRow("minus zero") << QByteArray("-0") << "0";
    QTest::newRow("huge") << QByteArray("1e308") << "1e+308";
    QTest::newRow("text") << QByteArray("\"hoch\"") << "hoch";
}

void TestTlf::thresholdsPrintAsText() {
    QFETCH(QByteArray, value);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject("{\"lowThreshold\": " + value + ", \"highThreshold\": " + value + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    QVERIFY2(run.report->line(0, "Schwellwert 1: " + text).sitsIn(leftColumn(2320)),
             describe(*run.report));
    QVERIFY2(run.report->line(0, "Schwellwert 2: " + text).sitsIn(rightColumn(2320)),
             describe(*run.report));
}

void TestTlf::measureName_data() {
    QTest::addColumn<QByteArray>("tlf");
    QTest::addColumn<QString>("text");
    QTest::newRow("name") << QByteArray(R"({"measure": {"measure": "TEMPERATURE"}})")
                          << "Messgröße: TEMPERATURE";
    QTest::newRow("number") << QByteArray(R"({"measure": {"measure": 4}})") << "Messgröße: 4";
    QTest::newRow("measure missing") << QByteArray("{}") << "Messgröße:";
    QTest::newRow("measure not an object") << QByteArray(R"({"measure": "CO2"})") << "Messgröße:";
}

void TestTlf::measureName() {
    QFETCH(QByteArray, tlf);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject(tlf));
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(1990)), describe(*run.report));
}

void TestTlf::leadingSteps_data() {
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("headingPage");
    QTest::addColumn<int>("headingTop");
    QTest::newRow("12368: both steps on the page") << 12368 << 0 << 13028;
    QTest::newRow("12698: second step breaks") << 12698 << 1 << 500;
    QTest::newRow("12699: first step breaks") << 12699 << 1 << 830;
    QTest::newRow("13028: first step breaks") << 13028 << 1 << 830;
}

void TestTlf::leadingSteps() {
    QFETCH(int, cursor);
    QFETCH(int, headingPage);
    QFETCH(int, headingTop);
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject(fullTlf));
    const SectionRun run = printSections(job, cursor, {&convert::printTlf}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 2);
    QVERIFY2(report.line(headingPage, "TLF:").sitsIn(fullLine(headingTop)), describe(report));
    if (headingPage == 1) {
        QVERIFY(report.lines(0).isEmpty());
        QVERIFY2(report.line(1, "Messgröße: CO2").sitsIn(leftColumn(headingTop + 330)),
                 describe(report));
        QVERIFY2(report.line(1, "Farbe Bereich 3: Rot").sitsIn(leftColumn(headingTop + 1320)),
                 describe(report));
        QCOMPARE(run.cursorAfter, headingTop + 1320);
    }
}

void TestTlf::linesAfterHeadingAtLimit() {
    // The heading stays at 13028; the first line step after it opens a page
    // and the two columns of a line stay together.
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject(fullTlf));
    const SectionRun run = printSections(job, 12368, {&convert::printTlf}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.texts(0), QStringList({"TLF:"}));
    QVERIFY2(report.line(1, "Messgröße: CO2").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Enabled: true").sitsIn(rightColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Farbe Bereich 2: Gelb").sitsIn(rightColumn(1160)), describe(report));
    QCOMPARE(run.cursorAfter, 1490);
}

void TestTlf::fewerThanEightEntriesDrawHeadingOnly_data() {
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("lines");
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("seven") << 7 << 1;
    QTest::newRow("eight") << 8 << 8;
}

void TestTlf::fewerThanEightEntriesDrawHeadingOnly() {
    QFETCH(int, entries);
    QFETCH(int, lines);
    QTemporaryDir dir;
    convert job;
    job.tlfValues = QVector<QVariant>(entries, QVariant(2.0));
    const SectionRun run = printSections(job, 2000, {&convert::printTlf}, dir);
    QCOMPARE(run.report->lines(0).size(), lines);
    QVERIFY(run.report->line(0, "TLF:").sitsIn(fullLine(2660)));
    QCOMPARE(run.cursorAfter, 2660 + (lines > 1 ? 1320 : 0));
}

void TestTlf::fonts() {
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject(fullTlf));
    const SectionRun run = printSections(job, 2000, {&convert::printTlf}, dir);
    const PdfReport& report = *run.report;
    QVERIFY(drawnWith(report.line(0, "TLF:"), reportHeadingFont()));
    for (const char* row : {"Messgröße: CO2", "Enabled: true", "Schwellwert 2: 350",
                            "Farbe Bereich 1: Grün", "Farbe Bereich 3: Rot"})
        QVERIFY2(drawnWith(report.line(0, QString::fromUtf8(row)), reportBodyFont()), row);
}

void TestTlf::rightColumnIsCutAtFullWidthEdge() {
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject("{\"highThreshold\": \"" + QByteArray(200, '8') + "\"}"));
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    const int row = 2320;
    QVERIFY2(run.report->lineStartingWith(0, "Schwellwert 2: 888").sitsIn(rightColumn(row)),
             describe(*run.report));
    QVERIFY(run.report->hasInk(0, QRect(9200, row, 222, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(9426, row, 9921 - 9426 - 480, 250)));
}

void TestTlf::longMeasureNameStopsAtLeftColumn() {
    // With "enabled" emptied, the row's right column holds only the short
    // label "Enabled:"; a name wider than the left column must not show
    // anywhere beyond that label.
    QTemporaryDir dir;
    convert job;
    job.readTlf(parseObject("{\"measure\": {\"measure\": \"" + QByteArray(200, 'M') + "\"}}"));
    job.tlfValues[0] = QVariant();
    const SectionRun run = printSections(job, 1000, {&convert::printTlf}, dir);
    const int row = 1990;
    QVERIFY(run.report->hasInk(0, QRect(4700, row, 260, 250)));
    const PdfTextLine enabled = run.report->line(0, "Enabled:");
    QVERIFY2(enabled.sitsIn(rightColumn(row)), describe(*run.report));
    QVERIFY(!run.report->hasInk(0, QRect(int(enabled.box.right()) + 40, row,
                                         9921 - 500 - int(enabled.box.right()) - 40, 250)));
}

void TestTlf::sectionOfFile() {
    const auto converted = convertConfiguration(R"({"tlf": )" + fullTlf + "}");
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    // No channels: the display's last line is 4 steps below 4344.
    const int top = firstSectionTop + 1320 + 660;
    QVERIFY2(report.line(0, "TLF aktiviert: Ja").sitsIn(leftColumn(top - 660)), describe(report));
    QVERIFY2(report.line(0, "TLF:").sitsIn(fullLine(top)), describe(report));
    QVERIFY2(report.line(0, "Messgröße: CO2").sitsIn(leftColumn(top + 330)), describe(report));
    QVERIFY2(report.line(0, "Farbe Bereich 3: Rot").sitsIn(leftColumn(top + 1320)),
             describe(report));
}

QTEST_MAIN(TestTlf)
#include "tst_tlf.moc"
