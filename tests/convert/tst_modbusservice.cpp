// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include <QTest>

using namespace sections;

namespace {

// Without channels and relays the Modbus heading follows the traffic-light
// section's last line (4344 + 4 steps + 2 steps + 4 steps) by two steps.
constexpr int modbusTop = firstSectionTop + 10 * 330 + 660;
constexpr int serviceTop = modbusTop + 5 * 330 + 660;

const QByteArray modbus = R"("modbus": {"offset": 2, "transmissionRate": 19200, "address": 17,
                                        "mode": 1, "parity": 0})";
const QByteArray service = R"("service": {"lastService": "2026-03-17T10:15:00", "nextService": 365,
    "lastCalibration": "2025-11-04T08:30:00", "nextCalibration": 730})";

// A relay whose state lines move the Modbus heading by 330 per state.
QByteArray relayWithStates(int states) {
    QByteArray list;
    for (int k = 0; k < states; ++k)
        list += k ? ",1" : "1";
    return R"("relais": [{"states": [)" + list + R"(], "measure": {"measure": "CO2"}}])";
}

struct Expected {
    QString text;
    QRect rect;
};

} // namespace

class TestModbusService : public QObject {
    Q_OBJECT

private slots:
    void sections();
    void modbusValuesAsText_data();
    void modbusValuesAsText();
    void withoutModbusAndService();
    void datePart_data();
    void datePart();
    void dayCounts_data();
    void dayCounts();
    void calibrationLabelKeepsTwoBlanks();
    void serviceHeadingAfterPageBreak_data();
    void serviceHeadingAfterPageBreak();
    void modbusLinesContinueOnNewPage();
    void offsetsChangeNothing();
    void fonts();
};

void TestModbusService::sections() {
    const auto converted = convertConfiguration("{" + modbus + "," + service + "}");
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    QCOMPARE(report.pageCount(), 1);
    const Expected expected[] = {
        {QStringLiteral("Modbus"), fullLine(modbusTop)},
        {QStringLiteral("Offset: 2"), leftColumn(modbusTop + 330)},
        {QStringLiteral("Baudrate: 19200"), leftColumn(modbusTop + 660)},
        {QStringLiteral("Adresse: 17"), leftColumn(modbusTop + 990)},
        {QStringLiteral("Übertragungsart: 1"), leftColumn(modbusTop + 1320)},
        {QStringLiteral("Parität: 0"), leftColumn(modbusTop + 1650)},
        {QStringLiteral("Service:"), fullLine(serviceTop)},
        {QStringLiteral("Letzter Service: 2026-03-17"), leftColumn(serviceTop + 330)},
        {QStringLiteral("Nächster Service: 365 Tage"), leftColumn(serviceTop + 660)},
        {QStringLiteral("Letzte Kalibrierung: 2025-11-04"), leftColumn(serviceTop + 990)},
        {QStringLiteral("Nächste Kalibirierung: 730 Tage"), leftColumn(serviceTop + 1320)},
    };
    for (const Expected& line : expected)
        QVERIFY2(report.line(0, line.text).sitsIn(line.rect),
                 qPrintable(line.text + "\n" + report.dump()));
    const QStringList texts = report.texts(0);
    QCOMPARE(texts.mid(texts.indexOf("Modbus")).size(), 11);
}

void TestModbusService::modbusValuesAsText_data() {
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("text");
    QTest::newRow("number 1") << QByteArray("1") << "Übertragungsart: 1";
    QTest::newRow("number 0") << QByteArray("0") << "Übertragungsart: 0";
    QTest::newRow("word") << QByteArray("\"RTU\"") << "Übertragungsart: RTU";
    QTest::newRow("boolean") << QByteArray("true") << "Übertragungsart: true";
    QTest::newRow("fraction") << QByteArray("2.5") << "Übertragungsart: 2.5";
    QTest::newRow("null") << QByteArray("null") << "Übertragungsart:";
}

void TestModbusService::modbusValuesAsText() {
    QFETCH(QByteArray, mode);
    QFETCH(QString, text);
    const auto converted = convertConfiguration(R"({"modbus": {"mode": )" + mode + "}}");
    QVERIFY(converted->report);
    QVERIFY2(converted->report->line(0, text).sitsIn(leftColumn(modbusTop + 1320)),
             describe(*converted->report));
}

void TestModbusService::withoutModbusAndService() {
    const auto converted = convertConfiguration("{}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const QStringList texts = report.texts(0);
    QCOMPARE(texts.mid(texts.indexOf("Modbus")),
             QStringList({"Modbus", "Offset:", "Baudrate:", "Adresse:", "Übertragungsart:",
                          "Parität:", "Service:", "Letzter Service:", "Nächster Service: Tage",
                          "Letzte Kalibrierung:", "Nächste Kalibirierung: Tage"}));
}

void TestModbusService::datePart_data() {
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<QString>("shown");
    QTest::newRow("date-time with zone") << QByteArray("\"2021-06-01T08:00:00Z\"") << "2021-06-01";
    QTest::newRow("date only") << QByteArray("\"2021-06-01\"") << "2021-06-01";
    QTest::newRow("lowercase t does not split")
        << QByteArray("\"2021-06-01t08:00:00\"") << "2021-06-01t08:00:00";
    QTest::newRow("first T only") << QByteArray("\"1.6.2021 Termin T2\"") << "1.6.2021";
    QTest::newRow("T first") << QByteArray("\"T08:00\"") << "";
    QTest::newRow("empty") << QByteArray("\"\"") << "";
    QTest::newRow("missing") << QByteArray() << "";
    QTest::newRow("number") << QByteArray("20210601") << "20210601";
}

void TestModbusService::datePart() {
    QFETCH(QByteArray, date);
    QFETCH(QString, shown);
    const QByteArray members = date.isNull()
                                   ? QByteArray()
                                   : "\"lastService\": " + date + ", \"lastCalibration\": " + date;
    const auto converted = convertConfiguration(R"({"service": {)" + members + "}}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const QString service = (QStringLiteral("Letzter Service: ") + shown).trimmed();
    const QString calibration = (QStringLiteral("Letzte Kalibrierung: ") + shown).trimmed();
    QVERIFY2(report.line(0, service).sitsIn(leftColumn(serviceTop + 330)), describe(report));
    QVERIFY2(report.line(0, calibration).sitsIn(leftColumn(serviceTop + 990)), describe(report));
}

void TestModbusService::dayCounts_data() {
    QTest::addColumn<QByteArray>("days");
    QTest::addColumn<QString>("drawn");
    QTest::newRow("180") << QByteArray("180") << "Nächster Service: 180 Tage";
    QTest::newRow("negative") << QByteArray("-3") << "Nächster Service: -3 Tage";
    QTest::newRow("text") << QByteArray("\"bald\"") << "Nächster Service: bald Tage";
    // The label's blank and the one before the unit stand side by side.
    QTest::newRow("missing") << QByteArray() << "Nächster Service:  Tage";
    QTest::newRow("null") << QByteArray("null") << "Nächster Service:  Tage";
}

void TestModbusService::dayCounts() {
    QFETCH(QByteArray, days);
    QFETCH(QString, drawn);
    const QByteArray members = days.isNull() ? QByteArray() : "\"nextService\": " + days;
    const auto converted = convertConfiguration(R"({"service": {)" + members + "}}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const QString visible = drawn.simplified();
    const PdfTextLine line = report.line(0, visible);
    QVERIFY2(line.sitsIn(leftColumn(serviceTop + 660)), describe(report));
    QVERIFY2(drawnAs(line, drawn, reportBodyFont()),
             qPrintable(QStringLiteral("width %1").arg(line.box.width())));
    if (drawn != visible)
        QVERIFY(!drawnAs(line, visible, reportBodyFont()));
}

void TestModbusService::calibrationLabelKeepsTwoBlanks() {
    const auto converted = convertConfiguration("{" + service + "}");
    QVERIFY(converted->report);
    const PdfTextLine line = converted->report->line(0, "Nächste Kalibirierung: 730 Tage");
    QVERIFY2(line.sitsIn(leftColumn(serviceTop + 1320)), describe(*converted->report));
    QVERIFY(drawnAs(line, QStringLiteral("Nächste  Kalibirierung: 730 Tage"), reportBodyFont()));
    QVERIFY(!drawnAs(line, QStringLiteral("Nächste Kalibirierung: 730 Tage"), reportBodyFont()));
}

void TestModbusService::serviceHeadingAfterPageBreak_data() {
    QTest::addColumn<int>("states");
    QTest::addColumn<int>("page");
    QTest::addColumn<int>("top");
    // The relay starts at modbusTop; each state moves the Modbus heading by
    // 330, so the last Modbus line stands at modbusTop + 990 + 330 n + 1650.
    // 4 states: last line 12264, the steps give 12594 and 12924.
    QTest::newRow("4 states: both steps on the page") << 4 << 0 << 12924;
    // 5 states: last line 12594; 12924, then beyond 13028: top of page 2.
    QTest::newRow("5 states: second step breaks") << 5 << 1 << 500;
    // 6 states: last line 12924; the first step breaks, the second adds 330.
    QTest::newRow("6 states: first step breaks") << 6 << 1 << 830;
}

void TestModbusService::serviceHeadingAfterPageBreak() {
    QFETCH(int, states);
    QFETCH(int, page);
    QFETCH(int, top);
    const auto converted =
        convertConfiguration("{" + relayWithStates(states) + "," + modbus + "," + service + "}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const int modbusHeading = modbusTop + 990 + 330 * states;
    QVERIFY2(report.line(0, "Modbus").sitsIn(fullLine(modbusHeading)), describe(report));
    QVERIFY2(report.line(0, "Parität: 0").sitsIn(leftColumn(modbusHeading + 1650)),
             describe(report));
    QVERIFY2(report.line(page, "Service:").sitsIn(fullLine(top)), describe(report));
    const int linesPage = top + 330 > 13028 ? page + 1 : page;
    const int firstLine = top + 330 > 13028 ? 500 : top + 330;
    QVERIFY2(report.line(linesPage, "Letzter Service: 2026-03-17").sitsIn(leftColumn(firstLine)),
             describe(report));
    QCOMPARE(report.pageCount(), linesPage + 1);
}

void TestModbusService::modbusLinesContinueOnNewPage() {
    // 7 states: heading at 11604, Offset to Übertragungsart up to 12924,
    // Parität opens page 2.
    const auto converted =
        convertConfiguration("{" + relayWithStates(7) + "," + modbus + "," + service + "}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    QCOMPARE(report.pageCount(), 2);
    QVERIFY2(report.line(0, "Modbus").sitsIn(fullLine(11604)), describe(report));
    QVERIFY2(report.line(0, "Übertragungsart: 1").sitsIn(leftColumn(12924)), describe(report));
    QVERIFY2(report.line(1, "Parität: 0").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Service:").sitsIn(fullLine(1160)), describe(report));
    QVERIFY2(report.line(1, "Nächste Kalibirierung: 730 Tage").sitsIn(leftColumn(2480)),
             describe(report));
}

void TestModbusService::offsetsChangeNothing() {
    const QByteArray base = "{" + modbus + "," + service;
    const auto without = convertConfiguration(base + "}");
    const auto with = convertConfiguration(
        base + R"(, "offsets": [1.5, {"sensor": 2, "offset": -0.4}, [1, 2], "x", null])" + "}");
    QVERIFY(without->report && with->report);
    QCOMPARE(with->report->pageCount(), without->report->pageCount());
    const QVector<PdfTextLine> a = without->report->lines(0);
    const QVector<PdfTextLine> b = with->report->lines(0);
    QCOMPARE(a.size(), b.size());
    for (int i = 0; i < a.size(); ++i) {
        // Only the source path differs: each file lies in its own folder.
        if (a[i].text == without->jsonPath)
            continue;
        QCOMPARE(b[i].text, a[i].text);
        QCOMPARE(b[i].box, a[i].box);
    }
}

void TestModbusService::fonts() {
    const auto converted = convertConfiguration("{" + modbus + "," + service + "}");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    QVERIFY(drawnWith(report.line(0, "Modbus"), reportHeadingFont()));
    QVERIFY(drawnWith(report.line(0, "Service:"), reportHeadingFont()));
    for (const char* row : {"Offset: 2", "Parität: 0", "Letzter Service: 2026-03-17"})
        QVERIFY2(drawnWith(report.line(0, QString::fromUtf8(row)), reportBodyFont()), row);
}

QTEST_MAIN(TestModbusService)
#include "tst_modbusservice.moc"
