// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace sections;

namespace {

QJsonArray parseArray(const QByteArray& json) {
    return QJsonDocument::fromJson(json).array();
}
QJsonObject parseObject(const QByteArray& json) {
    return QJsonDocument::fromJson(json).object();
}

QVariant text(const char* value) {
    return QVariant(QString::fromUtf8(value));
}

// Values that tell each position apart; the keys come in a shuffled order
// in the files, so only the reader decides the positions.
const QByteArray numberedMeasure = R"({"register": 13, "channel": 12, "value": 11, "rangeHigh": 10,
                                       "rangeLow": 9, "unit": 8, "measure": "M7"})";

bool allNull(const QVector<QVariant>& values, int from, int to) {
    for (int i = from; i <= to; ++i)
        if (!values.at(i).isNull())
            return false;
    return true;
}

} // namespace

class TestReaders : public QObject {
    Q_OBJECT

private slots:
    void outputEntriesInOrder();
    void outputElementsOfAnyType_data();
    void outputElementsOfAnyType();
    void outputWithoutMeasure();
    void outputUnitStringIsKept();
    void outputsReplacedNotAccumulated_data();
    void outputsReplacedNotAccumulated();
    void valuesKeepTheirJsonType();

    void relayEntriesInOrder();
    void relayElementsOfAnyType();
    void relaysReplacedNotAccumulated();

    void displayEntriesInOrder();
    void displayValuesPartlyMissing();
    void displayValuesNotAnObject();
    void displayReplaced();

    void tlfEntriesInOrder();
    void tlfWithoutMeasure();
    void tlfReplaced();

    void modbusAndService();
    void offsetsAreNeverKept();

    void emptyDocumentGivesFixedSections();
    void secondFileReplacesEverySection();
};

void TestReaders::outputEntriesInOrder() {
    convert job;
    job.readOutputs(parseArray(R"([
        {"measure": )" + numberedMeasure +
                               R"(, "response": 6, "producer": 5, "k_factor": 4,
         "unit": 3, "range": 2, "channel": 1, "extra": 99},
        {"channel": "b"},
        {"channel": "c"}])"));
    QCOMPARE(job.outputValues.size(), 3);
    const QVector<QVariant> expected = {1.0, 2.0, 3.0,  4.0,  5.0,  6.0, text("M7"),
                                        8.0, 9.0, 10.0, 11.0, 12.0, 13.0};
    QCOMPARE(job.outputValues[0], expected);
    // Array order is kept.
    QCOMPARE(job.outputValues[1].size(), 13);
    QCOMPARE(job.outputValues[1][0], text("b"));
    QCOMPARE(job.outputValues[2][0], text("c"));
}

void TestReaders::outputElementsOfAnyType_data() {
    QTest::addColumn<QByteArray>("element");
    QTest::newRow("number") << QByteArray("5");
    QTest::newRow("string") << QByteArray("\"x\"");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("boolean") << QByteArray("true");
    QTest::newRow("array") << QByteArray("[1, 2]");
    QTest::newRow("empty object") << QByteArray("{}");
}

void TestReaders::outputElementsOfAnyType() {
    QFETCH(QByteArray, element);
    convert job;
    job.readOutputs(parseArray("[" + element + R"(, {"channel": 2}])"));
    QCOMPARE(job.outputValues.size(), 2);
    QCOMPARE(job.outputValues[0].size(), 13);
    QVERIFY(allNull(job.outputValues[0], 0, 12));
    QCOMPARE(job.outputValues[1][0], QVariant(2.0));
}

void TestReaders::outputWithoutMeasure() {
    convert job;
    job.readOutputs(parseArray(R"([{"channel": 1, "k_factor": 4, "response": 6},
                                   {"channel": 1, "measure": "PRESSURE"}])"));
    for (const QVector<QVariant>& values : job.outputValues) {
        QCOMPARE(values.size(), 13);
        QCOMPARE(values[0], QVariant(1.0));
        QVERIFY(allNull(values, 6, 12));
    }
    QCOMPARE(job.outputValues[0][3], QVariant(4.0));
    QCOMPARE(job.outputValues[0][5], QVariant(6.0));
}

void TestReaders::outputUnitStringIsKept() {
    convert job;
    job.readOutputs(parseArray(R"([{"measure": {"unit": "9"}}])"));
    const QVariant unit = job.outputValues[0][7];
    QCOMPARE(unit.userType(), int(QMetaType::QString));
    QCOMPARE(unit, text("9"));
    QCOMPARE(unit.toInt(), 9);
}

void TestReaders::outputsReplacedNotAccumulated_data() {
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<int>("count");
    QTest::newRow("empty array") << QByteArray("[]") << 0;
    QTest::newRow("not an array") << QByteArray("{}") << 0;
    QTest::newRow("one element") << QByteArray(R"([{"channel": 9}])") << 1;
}

void TestReaders::outputsReplacedNotAccumulated() {
    QFETCH(QByteArray, second);
    QFETCH(int, count);
    convert job;
    job.readOutputs(parseArray(R"([{"channel": 1}, {"channel": 2}])"));
    QCOMPARE(job.outputValues.size(), 2);
    job.readOutputs(QJsonDocument::fromJson(second).array());
    QCOMPARE(job.outputValues.size(), count);
    if (count)
        QCOMPARE(job.outputValues[0][0], QVariant(9.0));
}

void TestReaders::valuesKeepTheirJsonType() {
    convert job;
    job.readOutputs(parseArray(R"([{"channel": 1.5, "range": "r", "unit": true,
                                   "k_factor": [1, "a"], "producer": {"a": 1}, "response": null}])"));
    const QVector<QVariant>& values = job.outputValues[0];
    QCOMPARE(values[0].userType(), int(QMetaType::Double));
    QCOMPARE(values[1].userType(), int(QMetaType::QString));
    QCOMPARE(values[2].userType(), int(QMetaType::Bool));
    QCOMPARE(values[3], QVariant(QVariantList{1.0, QStringLiteral("a")}));
    QCOMPARE(values[4], QVariant(QVariantMap{{QStringLiteral("a"), 1.0}}));
    QVERIFY(values[5].isNull());
}

void TestReaders::relayEntriesInOrder() {
    convert job;
    job.readRelais(parseArray(R"([
        {"measure": )" + numberedMeasure +
                              R"(, "states": [0, 1, 0], "highThreshold": 2,
         "lowThreshold": 1, "other": 5},
        {"lowThreshold": "second"}])"));
    QCOMPARE(job.relaisValues.size(), 2);
    const QVector<QVariant> expected = {
        1.0, 2.0, QVariantList{0.0, 1.0, 0.0}, text("M7"), 8.0, 9.0, 10.0, 11.0, 12.0, 13.0};
    QCOMPARE(job.relaisValues[0], expected);
    QCOMPARE(job.relaisValues[1].size(), 10);
    QCOMPARE(job.relaisValues[1][0], text("second"));
    QVERIFY(allNull(job.relaisValues[1], 1, 9));
}

void TestReaders::relayElementsOfAnyType() {
    convert job;
    job.readRelais(parseArray(R"([1, "x", null, [0], {"measure": 3, "states": "0"}])"));
    QCOMPARE(job.relaisValues.size(), 5);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(job.relaisValues[i].size(), 10);
        QVERIFY(allNull(job.relaisValues[i], 0, 9));
    }
    QCOMPARE(job.relaisValues[4][2], text("0"));
    QVERIFY(allNull(job.relaisValues[4], 3, 9));
}

void TestReaders::relaysReplacedNotAccumulated() {
    convert job;
    job.readRelais(parseArray(R"([{}, {}, {}])"));
    QCOMPARE(job.relaisValues.size(), 3);
    job.readRelais(parseArray(R"([{"lowThreshold": 4}])"));
    QCOMPARE(job.relaisValues.size(), 1);
    QCOMPARE(job.relaisValues[0][0], QVariant(4.0));
    job.readRelais(QJsonArray());
    QVERIFY(job.relaisValues.isEmpty());
}

void TestReaders::displayEntriesInOrder() {
    convert job;
    job.readDisplay(
        parseObject(R"({"values": {"6": 16, "5": 15, "4": 14, "3": 13, "2": 12, "1": 11},
        "sensors": 5, "lcdCalibration": 4, "tlfEnabled": false, "rotation": 2, "brightness": 80,
        "state": true, "unknown": 1})"));
    const QVector<QVariant> expected = {true, 80.0, 2.0,  false, 4.0,  5.0,
                                        11.0, 12.0, 13.0, 14.0,  15.0, 16.0};
    QCOMPARE(job.displayValues, expected);
}

void TestReaders::displayValuesPartlyMissing() {
    convert job;
    job.readDisplay(parseObject(R"({"state": true, "values": {"2": 2, "5": "five"}})"));
    QCOMPARE(job.displayValues.size(), 12);
    QCOMPARE(job.displayValues[0], QVariant(true));
    QVERIFY(allNull(job.displayValues, 1, 6));
    QCOMPARE(job.displayValues[7], QVariant(2.0));
    QVERIFY(allNull(job.displayValues, 8, 9));
    QCOMPARE(job.displayValues[10], text("five"));
    QVERIFY(job.displayValues[11].isNull());
}

void TestReaders::displayValuesNotAnObject() {
    convert job;
    job.readDisplay(parseObject(R"({"values": [1, 2, 3, 4, 5, 6], "sensors": [1, 2]})"));
    QCOMPARE(job.displayValues.size(), 12);
    QCOMPARE(job.displayValues[5], QVariant(QVariantList{1.0, 2.0}));
    QVERIFY(allNull(job.displayValues, 6, 11));
}

void TestReaders::displayReplaced() {
    convert job;
    job.readDisplay(parseObject(R"({"state": true, "brightness": 80})"));
    job.readDisplay(parseObject(R"({"brightness": 20})"));
    QCOMPARE(job.displayValues.size(), 12);
    QVERIFY(job.displayValues[0].isNull());
    QCOMPARE(job.displayValues[1], QVariant(20.0));
}

void TestReaders::tlfEntriesInOrder() {
    convert job;
    job.readTlf(parseObject(R"({"measure": )" + numberedMeasure + R"(, "lcdRotation": 7,
        "highColor": 6, "middleColor": 5, "lowColor": 4, "highThreshold": 3, "lowThreshold": 2,
        "enabled": true})"));
    const QVector<QVariant> expected = {true,       2.0, 3.0, 4.0,  5.0,  6.0,  7.0,
                                        text("M7"), 8.0, 9.0, 10.0, 11.0, 12.0, 13.0};
    QCOMPARE(job.tlfValues, expected);
}

void TestReaders::tlfWithoutMeasure() {
    convert job;
    job.readTlf(parseObject(R"({"enabled": false, "lowColor": "3"})"));
    QCOMPARE(job.tlfValues.size(), 14);
    QCOMPARE(job.tlfValues[0], QVariant(false));
    QCOMPARE(job.tlfValues[3], text("3"));
    QVERIFY(allNull(job.tlfValues, 7, 13));
}

void TestReaders::tlfReplaced() {
    convert job;
    job.readTlf(parseObject(R"({"enabled": true})"));
    job.readTlf(QJsonObject());
    QCOMPARE(job.tlfValues.size(), 14);
    QVERIFY(allNull(job.tlfValues, 0, 13));
}

void TestReaders::modbusAndService() {
    convert job;
    job.readModbus(parseObject(
        R"({"parity": "even", "mode": 1, "address": 17, "transmissionRate": 19200, "offset": 0})"));
    QCOMPARE(job.modbusValues,
             QVector<QVariant>({0.0, 19200.0, 17.0, 1.0, QStringLiteral("even")}));
    job.readService(parseObject(R"({"nextCalibration": 730, "lastCalibration": "2025-11-04",
        "nextService": 365, "lastService": "2026-03-17T10:15:00"})"));
    QCOMPARE(job.serviceValues, QVector<QVariant>({QStringLiteral("2026-03-17T10:15:00"), 365.0,
                                                   QStringLiteral("2025-11-04"), 730.0}));
    job.readModbus(QJsonObject());
    job.readService(QJsonObject());
    QCOMPARE(job.modbusValues.size(), 5);
    QCOMPARE(job.serviceValues.size(), 4);
    QVERIFY(allNull(job.modbusValues, 0, 4));
    QVERIFY(allNull(job.serviceValues, 0, 3));
}

void TestReaders::offsetsAreNeverKept() {
    convert job;
    job.offsetValues = {{1.0, 2.0}};
    job.readOffset(parseArray(R"([0.5, {"a": 1}, [1]])"));
    QVERIFY(job.offsetValues.isEmpty());
}

void TestReaders::emptyDocumentGivesFixedSections() {
    convert job;
    job.readMainConfiguration(QJsonObject());
    QCOMPARE(job.mainValues.size(), 8);
    QVERIFY(job.outputValues.isEmpty());
    QVERIFY(job.relaisValues.isEmpty());
    QVERIFY(job.offsetValues.isEmpty());
    QCOMPARE(job.displayValues.size(), 12);
    QCOMPARE(job.tlfValues.size(), 14);
    QCOMPARE(job.modbusValues.size(), 5);
    QCOMPARE(job.serviceValues.size(), 4);
    QVERIFY(allNull(job.displayValues, 0, 11));
    QVERIFY(allNull(job.tlfValues, 0, 13));
}

void TestReaders::secondFileReplacesEverySection() {
    convert job;
    readConfiguration(job, R"({"outputs": [{}, {}], "relais": [{}, {}, {}],
        "display": {"state": true}, "tlf": {"enabled": true}, "offsets": [1],
        "modbus": {"offset": 1}, "service": {"nextService": 2}})");
    QCOMPARE(job.outputValues.size(), 2);
    QCOMPARE(job.relaisValues.size(), 3);
    readConfiguration(job, R"({"outputs": [{"channel": 7}], "display": 5, "tlf": [],
        "relais": {}, "modbus": {"mode": 3}})");
    QCOMPARE(job.outputValues.size(), 1);
    QCOMPARE(job.outputValues[0][0], QVariant(7.0));
    QVERIFY(job.relaisValues.isEmpty());
    QCOMPARE(job.displayValues.size(), 12);
    QVERIFY(allNull(job.displayValues, 0, 11));
    QCOMPARE(job.tlfValues.size(), 14);
    QVERIFY(allNull(job.tlfValues, 0, 13));
    QCOMPARE(job.modbusValues,
             QVector<QVariant>({QVariant(), QVariant(), QVariant(), 3.0, QVariant()}));
    QCOMPARE(job.serviceValues.size(), 4);
    QVERIFY(allNull(job.serviceValues, 0, 3));
}

QTEST_MAIN(TestReaders)
#include "tst_readers.moc"
