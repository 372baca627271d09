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

} // namespace

class TestDisplay : public QObject {
    Q_OBJECT

private slots:
    void section();
    void withoutDisplay();
    void state_data();
    void state();
    void brightness_data();
    void brightness();
    void rotation_data();
    void rotation();
    void tlfEnabled_data();
    void tlfEnabled();
    void headingAloneAtPageFoot();
    void headingBeyondLimit();
    void lineStepBoundary_data();
    void lineStepBoundary();
    void fewerThanFourEntriesDrawHeadingOnly_data();
    void fewerThanFourEntriesDrawHeadingOnly();
    void fonts();
    void longBrightnessIsCutAtLeftColumn();
    void displayOfFile();
};

void TestDisplay::section() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(parseObject(
        R"({"state": true, "brightness": 80, "rotation": 1, "tlfEnabled": true, "sensors": 2})"));
    const int top = 3000;
    const SectionRun run = printSections(job, top, {&convert::printDisplay}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 1);
    QCOMPARE(report.texts(0),
             QStringList({"Display:", "Status: Display vorhanden", "Helligkeit[%]: 80",
                          "Rotation[°]: 90", "TLF aktiviert: Ja"}));
    const Expected expected[] = {
        {QStringLiteral("Display:"), fullLine(top)},
        {QStringLiteral("Status: Display vorhanden"), leftColumn(top + 330)},
        {QStringLiteral("Helligkeit[%]: 80"), leftColumn(top + 660)},
        {QStringLiteral("Rotation[°]: 90"), leftColumn(top + 990)},
        {QStringLiteral("TLF aktiviert: Ja"), leftColumn(top + 1320)},
    };
    for (const Expected& line : expected)
        QVERIFY2(report.line(0, line.text).sitsIn(line.rect),
                 qPrintable(line.text + "\n" + report.dump()));
    // The cursor stays on the last line drawn.
    QCOMPARE(run.cursorAfter, top + 1320);
}

void TestDisplay::withoutDisplay() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(QJsonObject());
    QCOMPARE(job.displayValues.size(), 12);
    const SectionRun run = printSections(job, 1000, {&convert::printDisplay}, dir);
    QCOMPARE(run.report->texts(0),
             QStringList({"Display:", "Status: Kein Display vorhanden",
                          "Helligkeit[%]:", "Rotation[°]: 0", "TLF aktiviert: Ja"}));
    QVERIFY2(run.report->line(0, "Helligkeit[%]:").sitsIn(leftColumn(1660)), describe(*run.report));
}

void TestDisplay::state_data() {
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("text");
    const QString present = QStringLiteral("Status: Display vorhanden");
    const QString absent = QStringLiteral("Status: Kein Display vorhanden");
    QTest::newRow("true") << QByteArray("true") << present;
    QTest::newRow("false") << QByteArray("false") << absent;
    QTest::newRow("number 1") << QByteArray("1") << present;
    QTest::newRow("number 0") << QByteArray("0") << absent;
    QTest::newRow("missing") << QByteArray() << absent;
    QTest::newRow("null") << QByteArray("null") << absent;
    QTest::newRow("string true") << QByteArray("\"true\"") << present;
    QTest::newRow("string false") << QByteArray("\"false\"") << absent;
    QTest::newRow("empty string") << QByteArray("\"\"") << absent;
}

void TestDisplay::state() {
    QFETCH(QByteArray, state);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readDisplay(parseObject(state.isNull() ? QByteArray("{}") : "{\"state\": " + state + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printDisplay}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(1330)), describe(*run.report));
}

void TestDisplay::brightness_data() {
    QTest::addColumn<QByteArray>("brightness");
    QTest::addColumn<QString>("text");
    QTest::newRow("80") << QByteArray("80") << "Helligkeit[%]: 80";
    QTest::newRow("12.5") << QByteArray("12.5") << "Helligkeit[%]: 12.5";
    QTest::newRow("-0") << QByteArray("-0") << "Helligkeit[%]: 0";
    QTest::newRow("1e308") << QByteArray("1e308") << "Helligkeit[%]: 1e+308";
    QTest::newRow("text") << QByteArray("\"hell\"") << "Helligkeit[%]: hell";
    QTest::newRow("boolean") << QByteArray("true") << "Helligkeit[%]: true";
    QTest::newRow("null") << QByteArray("null") << "Helligkeit[%]:";
}

void TestDisplay::brightness() {
    QFETCH(QByteArray, brightness);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readDisplay(parseObject("{\"brightness\": " + brightness + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printDisplay}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(1660)), describe(*run.report));
}

void TestDisplay::rotation_data() {
    QTest::addColumn<QByteArray>("rotation");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << QByteArray("0") << "Rotation[°]: 0";
    QTest::newRow("1") << QByteArray("1") << "Rotation[°]: 90";
    QTest::newRow("2") << QByteArray("2") << "Rotation[°]: 180";
    QTest::newRow("3") << QByteArray("3") << "Rotation[°]: 270";
    QTest::newRow("5 is not limited") << QByteArray("5") << "Rotation[°]: 450";
    QTest::newRow("-1") << QByteArray("-1") << "Rotation[°]: -90";
    QTest::newRow("missing") << QByteArray() << "Rotation[°]: 0";
    QTest::newRow("string 3") << QByteArray("\"3\"") << "Rotation[°]: 270";
    QTest::newRow("word") << QByteArray("\"links\"") << "Rotation[°]: 0";
    // The integer conversion comes first: no fractional angle is printed.
    QTest::newRow("fraction 2.4") << QByteArray("2.4") << "Rotation[°]: 180";
    QTest::newRow("true") << QByteArray("true") << "Rotation[°]: 90";
}

void TestDisplay::rotation() {
    QFETCH(QByteArray, rotation);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readDisplay(
        parseObject(rotation.isNull() ? QByteArray("{}") : "{\"rotation\": " + rotation + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printDisplay}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(1990)), describe(*run.report));
}

void TestDisplay::tlfEnabled_data() {
    QTest::addColumn<QByteArray>("enabled");
    QTest::addColumn<QString>("text");
    QTest::newRow("false") << QByteArray("false") << "TLF aktiviert: Nein";
    QTest::newRow("string false") << QByteArray("\"false\"") << "TLF aktiviert: Nein";
    QTest::newRow("true") << QByteArray("true") << "TLF aktiviert: Ja";
    QTest::newRow("number 0") << QByteArray("0") << "TLF aktiviert: Ja";
    QTest::newRow("missing") << QByteArray() << "TLF aktiviert: Ja";
    QTest::newRow("null") << QByteArray("null") << "TLF aktiviert: Ja";
    QTest::newRow("capital False") << QByteArray("\"False\"") << "TLF aktiviert: Ja";
    QTest::newRow("false with blank") << QByteArray("\"false \"") << "TLF aktiviert: Ja";
}

void TestDisplay::tlfEnabled() {
    QFETCH(QByteArray, enabled);
    QFETCH(QString, text);
    QTemporaryDir dir;
    convert job;
    job.readDisplay(
        parseObject(enabled.isNull() ? QByteArray("{}") : "{\"tlfEnabled\": " + enabled + "}"));
    const SectionRun run = printSections(job, 1000, {&convert::printDisplay}, dir);
    QVERIFY2(run.report->line(0, text).sitsIn(leftColumn(2320)), describe(*run.report));
}

void TestDisplay::headingAloneAtPageFoot() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(parseObject(R"({"state": true, "brightness": 80, "rotation": 2})"));
    const SectionRun run = printSections(job, 12800, {&convert::printDisplay}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 2);
    QCOMPARE(report.texts(0), QStringList({"Display:"}));
    QVERIFY2(report.line(0, "Display:").sitsIn(fullLine(12800)), describe(report));
    QVERIFY2(report.line(1, "Status: Display vorhanden").sitsIn(leftColumn(500)), describe(report));
    QVERIFY2(report.line(1, "Helligkeit[%]: 80").sitsIn(leftColumn(830)), describe(report));
    QVERIFY2(report.line(1, "Rotation[°]: 180").sitsIn(leftColumn(1160)), describe(report));
    QVERIFY2(report.line(1, "TLF aktiviert: Ja").sitsIn(leftColumn(1490)), describe(report));
    QCOMPARE(run.cursorAfter, 1490);
}

void TestDisplay::headingBeyondLimit() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(QJsonObject());
    const SectionRun run = printSections(job, 13100, {&convert::printDisplay}, dir);
    const PdfReport& report = *run.report;
    QCOMPARE(report.pageCount(), 2);
    QVERIFY2(report.line(0, "Display:").sitsIn(fullLine(13100)), describe(report));
    QVERIFY2(report.line(1, "Status: Kein Display vorhanden").sitsIn(leftColumn(500)),
             describe(report));
}

void TestDisplay::lineStepBoundary_data() {
    QTest::addColumn<int>("cursor");
    QTest::addColumn<int>("lastOnFirstPage");
    // From 11708 the fourth step ends at exactly 13028: still on the page.
    QTest::newRow("11708 fits") << 11708 << 4;
    QTest::newRow("11709 breaks before the last line") << 11709 << 3;
    QTest::newRow("12368 breaks before the last two lines") << 12368 << 2;
    QTest::newRow("12698 keeps the first line at 13028") << 12698 << 1;
    QTest::newRow("12699 breaks before the first line") << 12699 << 0;
}

void TestDisplay::lineStepBoundary() {
    QFETCH(int, cursor);
    QFETCH(int, lastOnFirstPage);
    QTemporaryDir dir;
    convert job;
    job.readDisplay(QJsonObject());
    const SectionRun run = printSections(job, cursor, {&convert::printDisplay}, dir);
    const PdfReport& report = *run.report;
    const QStringList texts = {"Display:", "Status: Kein Display vorhanden",
                               "Helligkeit[%]:", "Rotation[°]: 0", "TLF aktiviert: Ja"};
    QCOMPARE(report.pageCount(), lastOnFirstPage == 4 ? 1 : 2);
    for (int i = 0; i < texts.size(); ++i) {
        const bool first = i <= lastOnFirstPage;
        const int top = first ? cursor + 330 * i : 500 + 330 * (i - lastOnFirstPage - 1);
        const QRect rect = i == 0 ? fullLine(top) : leftColumn(top);
        QVERIFY2(report.line(first ? 0 : 1, texts[i]).sitsIn(rect),
                 qPrintable(texts[i] + "\n" + report.dump()));
    }
}

void TestDisplay::fewerThanFourEntriesDrawHeadingOnly_data() {
    QTest::addColumn<int>("entries");
    QTest::addColumn<int>("lines");
    QTest::newRow("none") << 0 << 1;
    QTest::newRow("three") << 3 << 1;
    QTest::newRow("four") << 4 << 5;
}

void TestDisplay::fewerThanFourEntriesDrawHeadingOnly() {
    QFETCH(int, entries);
    QFETCH(int, lines);
    QTemporaryDir dir;
    convert job;
    job.displayValues = QVector<QVariant>(entries, QVariant(1.0));
    const SectionRun run = printSections(job, 2000, {&convert::printDisplay}, dir);
    QCOMPARE(run.report->lines(0).size(), lines);
    QVERIFY(run.report->line(0, "Display:").sitsIn(fullLine(2000)));
    QCOMPARE(run.cursorAfter, 2000 + 330 * (lines - 1));
}

void TestDisplay::fonts() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(QJsonObject());
    const SectionRun run = printSections(job, 2000, {&convert::printDisplay}, dir);
    const PdfReport& report = *run.report;
    QVERIFY(drawnWith(report.line(0, "Display:"), reportHeadingFont()));
    for (const char* row :
         {"Status: Kein Display vorhanden", "Rotation[°]: 0", "TLF aktiviert: Ja"})
        QVERIFY2(drawnWith(report.line(0, QString::fromUtf8(row)), reportBodyFont()), row);
}

void TestDisplay::longBrightnessIsCutAtLeftColumn() {
    QTemporaryDir dir;
    convert job;
    job.readDisplay(parseObject("{\"brightness\": \"" + QByteArray(300, '9') + "\"}"));
    const SectionRun run = printSections(job, 2000, {&convert::printDisplay}, dir);
    const int row = 2660;
    QVERIFY(run.report->lineStartingWith(0, "Helligkeit[%]: 999").sitsIn(leftColumn(row)));
    QVERIFY(run.report->hasInk(0, QRect(4700, row, 260, 250)));
    QVERIFY(!run.report->hasInk(0, QRect(4964, row, 9921 - 4964 - 500, 250)));
}

void TestDisplay::displayOfFile() {
    const auto converted = convertConfiguration(
        R"({"display": {"state": 1, "brightness": 65, "rotation": 2, "tlfEnabled": "false"}})");
    QVERIFY(converted->outcome.finished());
    QVERIFY(reportedAllSteps(converted->outcome));
    const PdfReport& report = *converted->report;
    const int top = firstSectionTop;
    QVERIFY2(report.line(0, "Display:").sitsIn(fullLine(top)), describe(report));
    QVERIFY2(report.line(0, "Status: Display vorhanden").sitsIn(leftColumn(top + 330)),
             describe(report));
    QVERIFY2(report.line(0, "Helligkeit[%]: 65").sitsIn(leftColumn(top + 660)), describe(report));
    QVERIFY2(report.line(0, "Rotation[°]: 180").sitsIn(leftColumn(top + 990)), describe(report));
    QVERIFY2(report.line(0, "TLF aktiviert: Nein").sitsIn(leftColumn(top + 1320)),
             describe(report));
    QVERIFY2(report.line(0, "TLF:").sitsIn(fullLine(top + 1980)), describe(report));
}

QTEST_MAIN(TestDisplay)
#include "tst_display.moc"
