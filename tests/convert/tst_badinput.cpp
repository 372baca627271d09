// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace sections;

Q_DECLARE_METATYPE(QJsonValue)

namespace {

QJsonObject withEveryKey(std::initializer_list<const char*> keys, const QJsonValue& value) {
    QJsonObject object;
    for (const char* key : keys)
        object.insert(QLatin1String(key), value);
    return object;
}

QJsonObject measureOf(const QJsonValue& value) {
    return withEveryKey(
        {"measure", "unit", "rangeLow", "rangeHigh", "value", "channel", "register"}, value);
}

// A document whose every member, down to the nested measures, holds value.
QByteArray everyMemberHolds(const QJsonValue& value) {
    QJsonObject channel =
        withEveryKey({"channel", "range", "unit", "k_factor", "producer", "response"}, value);
    channel.insert(QStringLiteral("measure"), measureOf(value));
    QJsonObject display = withEveryKey(
        {"state", "brightness", "rotation", "tlfEnabled", "lcdCalibration", "sensors"}, value);
    display.insert(QStringLiteral("values"), withEveryKey({"1", "2", "3", "4", "5", "6"}, value));
    QJsonObject tlf = withEveryKey({"enabled", "lowThreshold", "highThreshold", "lowColor",
                                    "middleColor", "highColor", "lcdRotation"},
                                   value);
    tlf.insert(QStringLiteral("measure"), measureOf(value));
    QJsonObject relay = withEveryKey({"lowThreshold", "highThreshold", "states"}, value);
    relay.insert(QStringLiteral("measure"), measureOf(value));

    QJsonObject configuration = withEveryKey({"name", "date", "location", "altitude", "voltage",
                                              "measureSystem", "boardType", "version"},
                                             value);
    configuration.insert(QStringLiteral("outputs"), QJsonArray{channel, value});
    configuration.insert(QStringLiteral("display"), display);
    configuration.insert(QStringLiteral("tlf"), tlf);
    configuration.insert(QStringLiteral("relais"), QJsonArray{relay, value});
    configuration.insert(QStringLiteral("offsets"), QJsonArray{value});
    configuration.insert(
        QStringLiteral("modbus"),
        withEveryKey({"offset", "transmissionRate", "address", "mode", "parity"}, value));
    configuration.insert(
        QStringLiteral("service"),
        withEveryKey({"lastService", "nextService", "lastCalibration", "nextCalibration"}, value));
    return QJsonDocument(QJsonObject{{QStringLiteral("configuration"), configuration}}).toJson();
}

// A document whose sections themselves are value instead of arrays and objects.
QByteArray everySectionIs(const QJsonValue& value) {
    const QJsonObject configuration = withEveryKey(
        {"outputs", "display", "tlf", "relais", "offsets", "modbus", "service"}, value);
    return QJsonDocument(QJsonObject{{QStringLiteral("configuration"), configuration}}).toJson();
}

void addJsonValueRows() {
    QTest::addColumn<QJsonValue>("value");
    QTest::newRow("null") << QJsonValue(QJsonValue::Null);
    QTest::newRow("true") << QJsonValue(true);
    QTest::newRow("false") << QJsonValue(false);
    QTest::newRow("zero") << QJsonValue(0);
    QTest::newRow("minus zero") << QJsonValue(-0.0);
    QTest::newRow("1e308") << QJsonValue(1e308);
    QTest::newRow("-1e308") << QJsonValue(-1e308);
    QTest::newRow("2147483648") << QJsonValue(2147483648.0);
    QTest::newRow("fraction") << QJsonValue(2.75);
    QTest::newRow("text") << QJsonValue(QStringLiteral("Text"));
    QTest::newRow("empty text") << QJsonValue(QString());
    QTest::newRow("long text") << QJsonValue(QString(100000, QLatin1Char('W')));
    QTest::newRow("empty array") << QJsonValue(QJsonArray());
    QTest::newRow("array") << QJsonValue(QJsonArray{1, QStringLiteral("a"), QJsonValue()});
    QTest::newRow("empty object") << QJsonValue(QJsonObject());
    QTest::newRow("nested object")
        << QJsonValue(QJsonObject{{QStringLiteral("x"), QJsonObject{{QStringLiteral("y"), 1}}}});
}

// The texts of all pages; reading a page's text is slow with very long
// lines, so it is done once per report.
QStringList allTexts(const PdfReport& report) {
    QStringList texts;
    for (int page = 0; page < report.pageCount(); ++page)
        texts += report.texts(page);
    return texts;
}

bool hasSection(const QStringList& texts, const QString& prefix) {
    for (const QString& text : texts)
        if (text.startsWith(prefix))
            return true;
    return false;
}

} // namespace

class TestBadInput : public QObject {
    Q_OBJECT

private slots:
    void anyTypeInEveryMember_data();
    void anyTypeInEveryMember();
    void anyTypeAsSection_data();
    void anyTypeAsSection();
    void hugeAndNegativeZeroNumbers();
    void thousandsOfChannels();
    void thousandsOfRelays();
    void relayWithHundredThousandStates();
};

void TestBadInput::anyTypeInEveryMember_data() {
    addJsonValueRows();
}

void TestBadInput::anyTypeInEveryMember() {
    QFETCH(QJsonValue, value);
    const auto converted = convertDocument(everyMemberHolds(value));
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    QVERIFY(converted->report && converted->report->isValid());
    const PdfReport& report = *converted->report;
    const QStringList texts = allTexts(report);
    // Every section is drawn; both array elements make a numbered entry.
    for (const char* prefix : {"Allgemeine Einstellungen:", "Ausgang 1:", "Ausgang 2:", "Display:",
                               "Status: ", "TLF:", "Farbe Bereich 3: ", "Relais 1:", "Relais 2:",
                               "Modbus", "Parität:", "Service:", "Nächste Kalibirierung:"})
        if (!hasSection(texts, QString::fromUtf8(prefix)))
            QFAIL(qPrintable(QString::fromUtf8(prefix) + "\n" + report.dump().left(4000)));
}

void TestBadInput::anyTypeAsSection_data() {
    addJsonValueRows();
}

void TestBadInput::anyTypeAsSection() {
    QFETCH(QJsonValue, value);
    const auto converted = convertDocument(everySectionIs(value));
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    if (value.isArray() && !value.toArray().isEmpty()) {
        // Each element of an array section is a channel or relay, whatever
        // its type; the fixed sections follow on the next page.
        const int count = value.toArray().size();
        const QString lastChannel = QStringLiteral("Ausgang %1:").arg(count);
        const QString lastRelay = QStringLiteral("Relais %1:").arg(count);
        const QStringList texts = allTexts(report);
        QVERIFY2(hasSection(texts, lastChannel) && hasSection(texts, lastRelay), describe(report));
        QVERIFY(hasSection(texts, QStringLiteral("Service:")));
        return;
    }
    QCOMPARE(report.pageCount(), 1);
    // Without channels or relays: the fixed sections with nothing filled in.
    QVERIFY(report.lineStartingWith(0, "Ausgang").isNull());
    QVERIFY(report.lineStartingWith(0, "Relais").isNull());
    QVERIFY2(report.line(0, "Display:").sitsIn(fullLine(firstSectionTop)), describe(report));
    QVERIFY2(
        report.line(0, "Status: Kein Display vorhanden").sitsIn(leftColumn(firstSectionTop + 330)),
        describe(report));
    QVERIFY2(report.line(0, "Farbe Bereich 3: Grün").sitsIn(leftColumn(firstSectionTop + 3300)),
             describe(report));
    QVERIFY2(report.line(0, "Modbus").sitsIn(fullLine(firstSectionTop + 3960)), describe(report));
}

void TestBadInput::hugeAndNegativeZeroNumbers() {
    const auto converted = convertConfiguration(R"({
        "outputs": [{"k_factor": 1e308, "response": -0, "producer": -0,
                     "measure": {"measure": "CO2", "rangeLow": -1e308, "rangeHigh": 1e308}}],
        "relais": [{"lowThreshold": 1e308, "highThreshold": -0, "states": [-0, 1e308]}]})");
    QVERIFY(converted->outcome.finished());
    const PdfReport& report = *converted->report;
    const int top = firstSectionTop;
    QVERIFY2(report.line(0, "K-Faktor: 1e+308").sitsIn(leftColumn(top + 330)), describe(report));
    QVERIFY2(report.line(0, "Hersteller: Rosenberg/Comefri/Gebhardt Nicotra")
                 .sitsIn(leftColumn(top + 660)),
             describe(report));
    QVERIFY2(report.line(0, "Messbereich Untergrenze: -1e+308").sitsIn(rightColumn(top + 660)),
             describe(report));
    QVERIFY2(report.line(0, "Ansprechzeit [s]: 0").sitsIn(leftColumn(top + 990)), describe(report));
    QVERIFY2(report.line(0, "Messbereich Obergrenze: 1e+308").sitsIn(rightColumn(top + 990)),
             describe(report));
    const int relay = top + 1650 + 1320 + 660 + 1320 + 660;
    QVERIFY2(report.line(0, "Schwellwert 1: 1e+308").sitsIn(leftColumn(relay + 330)),
             describe(report));
    QVERIFY2(report.line(0, "Schwellwert 2: 0").sitsIn(rightColumn(relay + 330)), describe(report));
    QVERIFY2(report.line(0, "Zustand 1: Geöffnet").sitsIn(leftColumn(relay + 660)),
             describe(report));
    QVERIFY2(report.line(0, "Zustand 2: Geschlossen").sitsIn(leftColumn(relay + 990)),
             describe(report));
}

void TestBadInput::thousandsOfChannels() {
    QJsonArray channels;
    for (int i = 0; i < 3000; ++i)
        channels.append(QJsonObject{{QStringLiteral("k_factor"), 1},
                                    {QStringLiteral("measure"),
                                     QJsonObject{{QStringLiteral("measure"), QStringLiteral("CO2")},
                                                 {QStringLiteral("unit"), 7}}}});
    const QJsonObject configuration{{QStringLiteral("outputs"), channels}};
    const auto converted = convertDocument(
        QJsonDocument(QJsonObject{{QStringLiteral("configuration"), configuration}}).toJson());
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    // Page 1 holds five blocks (4344 to 10944), every later page seven
    // (500 to 10400): 2995 = 427 * 7 + 6 blocks fill pages 2 to 429, the
    // last one ending at 10400. Display and traffic light follow there; the
    // traffic light's second line crosses onto page 430.
    QCOMPARE(report.pageCount(), 430);
    QVERIFY(report.line(0, "Ausgang 5: CO2").sitsIn(leftColumn(10944)));
    QVERIFY(report.line(1, "Ausgang 6: CO2").sitsIn(leftColumn(500)));
    QVERIFY(report.line(1, "Ausgang 12: CO2").sitsIn(leftColumn(10400)));
    QVERIFY(report.line(2, "Ausgang 13: CO2").sitsIn(leftColumn(500)));
    QVERIFY(report.line(428, "Ausgang 3000: CO2").sitsIn(leftColumn(8750)));
    QVERIFY(report.line(428, "Display:").sitsIn(fullLine(10400)));
    QVERIFY(report.line(428, "TLF:").sitsIn(fullLine(12380)));
    QVERIFY(report.line(428, "Messgröße:").sitsIn(leftColumn(12710)));
    QVERIFY(report.line(429, "Schwellwert 1:").sitsIn(leftColumn(500)));
    QVERIFY(report.line(429, "Modbus").sitsIn(fullLine(1820)));
    QVERIFY(report.line(429, "Service:").sitsIn(fullLine(4130)));
}

void TestBadInput::thousandsOfRelays() {
    QJsonArray relays;
    for (int i = 0; i < 3000; ++i)
        relays.append(QJsonObject{{QStringLiteral("states"), QJsonArray{i % 2}}});
    const QJsonObject configuration{{QStringLiteral("relais"), relays}};
    const auto converted = convertDocument(
        QJsonDocument(QJsonObject{{QStringLiteral("configuration"), configuration}}).toJson());
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    // Each relay takes 1320. Page 1: tops 8304, 9624, 10944; later pages
    // nine each (500 to 11060): 2997 = 333 * 9 fill pages 2 to 334 exactly.
    // The Modbus heading follows at 12380; its second line opens page 335.
    QCOMPARE(report.pageCount(), 335);
    QVERIFY(report.line(0, "Relais 3:").sitsIn(fullLine(10944)));
    QVERIFY(hasLineIn(report, 0, "Zustand 1: Geöffnet", leftColumn(11604)));
    QVERIFY(hasLineIn(report, 0, "Zustand 1: Geschlossen", leftColumn(10284)));
    QVERIFY(report.line(1, "Relais 4:").sitsIn(fullLine(500)));
    QVERIFY(report.line(1, "Relais 12:").sitsIn(fullLine(11060)));
    QVERIFY(report.line(333, "Relais 3000:").sitsIn(fullLine(11060)));
    QVERIFY(report.line(333, "Modbus").sitsIn(fullLine(12380)));
    QVERIFY(report.line(333, "Offset:").sitsIn(leftColumn(12710)));
    QVERIFY(report.line(334, "Baudrate:").sitsIn(leftColumn(500)));
    QVERIFY(report.line(334, "Service:").sitsIn(fullLine(2150)));
}

void TestBadInput::relayWithHundredThousandStates() {
    QJsonArray states;
    for (int i = 0; i < 100000; ++i)
        states.append(1);
    const QJsonObject configuration{
        {QStringLiteral("relais"), QJsonArray{QJsonObject{{QStringLiteral("states"), states}}}}};
    const auto converted = convertDocument(
        QJsonDocument(QJsonObject{{QStringLiteral("configuration"), configuration}}).toJson());
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    // The states run far below the page; the Modbus heading follows them
    // there, and its first line step starts page 2.
    QCOMPARE(report.pageCount(), 2);
    const int top = firstSectionTop + 10 * 330 + 660;
    QVERIFY(report.line(0, "Relais 1:").sitsIn(fullLine(top)));
    QVERIFY(report.line(0, "Zustand 1: Geschlossen").sitsIn(leftColumn(top + 660)));
    QVERIFY(report.line(0, "Modbus").isNull());
    QVERIFY2(report.line(1, "Offset:").sitsIn(leftColumn(500)), describe(report).left(2000));
    QVERIFY(report.line(1, "Service:").sitsIn(fullLine(2480)));
}

QTEST_MAIN(TestBadInput)
#include "tst_badinput.moc"
