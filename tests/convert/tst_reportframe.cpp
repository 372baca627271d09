// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "jobrunner.h"
#include "pdfreport.h"
#include "testfiles.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

// Where the frame puts things with the shipped 1000 x 241 logo.
constexpr int generalHeadingTop = 2204;
constexpr int generalTop = 2534;
constexpr int rowStep = 330;

QRect leftColumn(int top) {
    return QRect(500, top, 4462, 250);
}
QRect generalRightColumn(int top) {
    return QRect(4962, top, 4962, 250);
}

struct Converted {
    QTemporaryDir dir;
    QString jsonPath;
    std::unique_ptr<PdfReport> report;
};

// Converts a configuration object (the text inside "configuration") with a
// whole job and opens its report.
std::unique_ptr<Converted> convertConfiguration(const QByteArray& configuration) {
    auto result = std::make_unique<Converted>();
    result->jsonPath = writeFile(result->dir.path(), QStringLiteral("anlage.json"),
                                 "{\"configuration\":" + configuration + "}");
    const JobOutcome outcome = runJob(result->jsonPath);
    if (outcome.finished())
        result->report = std::make_unique<PdfReport>(reportPathFor(result->jsonPath));
    return result;
}

} // namespace

class TestReportFrame : public QObject {
    Q_OBJECT

private slots:
    void pageIsA4Portrait();
    void header();
    void generalBlock();
    void unitSystem_data();
    void unitSystem();
    void numbersAsText_data();
    void numbersAsText();
    void longLeftColumnTextIsCut();
    void rightColumnIsCutOnlyAtItsOwnEdge();
    void generalBlockStaysOnFirstPage();
};

void TestReportFrame::pageIsA4Portrait() {
    auto converted = convertConfiguration("{}");
    QVERIFY(converted->report && converted->report->isValid());
    QCOMPARE(converted->report->pageCount(), 1);
    const QSizeF size = converted->report->pageSizePoints(0);
    // A4 is 210 x 297 mm, 595.3 x 841.9 points.
    QVERIFY2(qAbs(size.width() - 595.3) < 1.0, qPrintable(QString::number(size.width())));
    QVERIFY2(qAbs(size.height() - 841.9) < 1.0, qPrintable(QString::number(size.height())));
}

void TestReportFrame::header() {
    auto converted = convertConfiguration(R"({"date": "2026-03-17T10:15:00"})");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;

    const PdfTextLine title = report.line(0, QStringLiteral("Quandel Protokoll vom:"));
    const PdfTextLine date = report.line(0, QStringLiteral("2026-03-17T10:15:00"));
    const PdfTextLine path = report.line(0, converted->jsonPath);
    QVERIFY2(!title.isNull() && !date.isNull() && !path.isNull(), qPrintable(report.dump()));
    // The title box is as large as the drawn logo and ends at x 9423.
    QVERIFY(qAbs(title.box.left() - 5424) < 40);
    QVERIFY(qAbs(date.box.left() - 5424) < 40);
    QVERIFY(qAbs(path.box.left() - 5424) < 40);
    // Two lines centred in 500..1464: the date stands on the second.
    QVERIFY(title.box.bottom() <= date.box.top() + 10);
    QVERIFY(title.box.top() > 500 && date.box.bottom() < 1464);
    QVERIFY(qAbs((title.box.top() + date.box.bottom()) / 2 - 982) < 60);
    // The path's box starts 450 lower and its text is smaller.
    QVERIFY(qAbs(path.box.center().y() - (950 + 482)) < 60);
    QVERIFY(path.box.height() < title.box.height());
    // The logo covers 500..4500 x 500..1464 and draws no text.
    QVERIFY(report.hasInk(0, QRect(500, 500, 4000, 964)));
    QVERIFY(!report.hasInk(0, QRect(4510, 500, 900, 964)));
}

void TestReportFrame::generalBlock() {
    auto converted = convertConfiguration(
        R"({"name": "Lüftung Halle 2", "location": "Werk Nord", "altitude": 412,)"
        R"( "voltage": 18.5, "measureSystem": 1, "boardType": "BOARD-XYZ", "version": "2.4.1"})");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;

    QVERIFY2(report.line(0, QStringLiteral("Allgemeine Einstellungen:"))
                 .sitsIn(QRect(500, generalHeadingTop, 8924, 280)),
             qPrintable(report.dump()));
    const struct {
        const char* text;
        QRect rect;
    } expected[] = {
        {"Name: Lüftung Halle 2", leftColumn(generalTop)},
        {"Ort: Werk Nord", leftColumn(generalTop + rowStep)},
        {"Spannungsuntergrenze [V]: 18.5", leftColumn(generalTop + 2 * rowStep)},
        {"Versionsnummer: 2.4.1", leftColumn(generalTop + 3 * rowStep)},
        {"Einheitensystem: Si", generalRightColumn(generalTop)},
        {"Höhe [m]: 412", generalRightColumn(generalTop + rowStep)},
    };
    for (const auto& line : expected)
        QVERIFY2(report.line(0, QString::fromUtf8(line.text)).sitsIn(line.rect),
                 qPrintable(QString::fromUtf8(line.text) + "\n" + report.dump()));
    // The board type is kept but never printed.
    for (const QString& text : report.texts(0))
        QVERIFY(!text.contains(QLatin1String("BOARD-XYZ")));
}

void TestReportFrame::unitSystem_data() {
    QTest::addColumn<QByteArray>("member");
    QTest::addColumn<QString>("expected");
    QTest::newRow("number 1") << QByteArray(R"("measureSystem": 1)") << "Si";
    QTest::newRow("string 1") << QByteArray(R"("measureSystem": "1")") << "Si";
    QTest::newRow("number 0") << QByteArray(R"("measureSystem": 0)") << "Imp";
    QTest::newRow("number 2") << QByteArray(R"("measureSystem": 2)") << "Imp";
    QTest::newRow("null") << QByteArray(R"("measureSystem": null)") << "Imp";
    QTest::newRow("missing") << QByteArray(R"("other": 1)") << "Imp";
    QTest::newRow("text") << QByteArray(R"("measureSystem": "Si")") << "Imp";
    QTest::newRow("boolean true") << QByteArray(R"("measureSystem": true)") << "Si";
}

void TestReportFrame::unitSystem() {
    QFETCH(QByteArray, member);
    QFETCH(QString, expected);
    auto converted = convertConfiguration("{" + member + "}");
    QVERIFY(converted->report);
    QVERIFY2(converted->report->line(0, QStringLiteral("Einheitensystem: ") + expected)
                 .sitsIn(generalRightColumn(generalTop)),
             qPrintable(converted->report->dump()));
}

void TestReportFrame::numbersAsText_data() {
    QTest::addColumn<QByteArray>("altitude");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole number") << QByteArray("400") << "400";
    QTest::newRow("fraction") << QByteArray("1.5") << "1.5";
    QTest::newRow("negative") << QByteArray("-12") << "-12";
    // Qt 5.15 prints whole doubles without an exponent up to this size.
    QTest::newRow("one million") << QByteArray("1000000") << "1000000";
    QTest::newRow("large exponent") << QByteArray("1e21") << "1e+21";
    QTest::newRow("string kept") << QByteArray("\"0400\"") << "0400";
    QTest::newRow("boolean") << QByteArray("false") << "false";
    QTest::newRow("null") << QByteArray("null") << "";
}

void TestReportFrame::numbersAsText() {
    QFETCH(QByteArray, altitude);
    QFETCH(QString, expected);
    auto converted = convertConfiguration(R"({"altitude": )" + altitude + "}");
    QVERIFY(converted->report);
    const QString text = (QStringLiteral("Höhe [m]: ") + expected).trimmed();
    QVERIFY2(converted->report->line(0, text).sitsIn(generalRightColumn(generalTop + rowStep)),
             qPrintable(converted->report->dump()));
}

void TestReportFrame::longLeftColumnTextIsCut() {
    const QByteArray longText(400, 'W');
    auto converted = convertConfiguration(R"({"voltage": ")" + longText + R"("})");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const int top = generalTop + 2 * rowStep;
    // The voltage row has nothing in the right column: ink reaches the
    // column's edge and stops there.
    QVERIFY(report.hasInk(0, QRect(4800, top, 160, 250)));
    QVERIFY(!report.hasInk(0, QRect(4964, top, 9923 - 4964, 250)));
}

void TestReportFrame::rightColumnIsCutOnlyAtItsOwnEdge() {
    const QByteArray longText(400, 'W');
    auto converted = convertConfiguration(R"({"altitude": ")" + longText + R"("})");
    QVERIFY(converted->report);
    const PdfReport& report = *converted->report;
    const int top = generalTop + rowStep;
    // The text runs on past the full-width edge at 9423; the column's own
    // edge at 9923 lies beyond the paper's right margin.
    QVERIFY(report.hasInk(0, QRect(9430, top, 250, 250)));
}

void TestReportFrame::generalBlockStaysOnFirstPage() {
    // Without sections the report is the frame alone, on one page.
    auto converted = convertConfiguration(R"({"name": "N"})");
    QVERIFY(converted->report);
    QCOMPARE(converted->report->pageCount(), 1);
    QVERIFY(!converted->report->line(0, QStringLiteral("Modbus")).isNull());
    QVERIFY(!converted->report->line(0, QStringLiteral("Service:")).isNull());
}

QTEST_MAIN(TestReportFrame)
#include "tst_reportframe.moc"
