// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace sections;

namespace {

enum class Font { Heading, Body, NotChecked };

struct Row {
    int page;
    QString text;
    QRect rect;
    Font font;
};

Row heading(int page, const char* text, int top) {
    return {page, QString::fromUtf8(text), fullLine(top), Font::Heading};
}
Row channelHeading(int page, const char* text, int top) {
    return {page, QString::fromUtf8(text), leftColumn(top), Font::Heading};
}
Row left(int page, const char* text, int top) {
    return {page, QString::fromUtf8(text), leftColumn(top), Font::Body};
}
Row right(int page, const char* text, int top) {
    return {page, QString::fromUtf8(text), rightColumn(top), Font::Body};
}

// The report of examples/multi-page-plant.json, line by line. Page 1 holds
// the frame and five channels (tops 4344 + n * 1650); the sixth would start
// at 12594, past the block limit, so it opens page 2. Relay 4 would start
// at 12050, past the relay limit, so it opens page 3.
std::vector<Row> expectedRows() {
    std::vector<Row> rows = {
        {0, QStringLiteral("Allgemeine Einstellungen:"), QRect(500, 2204, 8924, 280),
         Font::Heading},
        left(0, "Name: Lüftungszentrale Bürogebäude Ost", 2534),
        left(0, "Ort: Hafenstraße 12, Technikraum 3. OG", 2864),
        left(0, "Spannungsuntergrenze [V]: 21.6", 3194),
        left(0, "Versionsnummer: 3.1.0", 3524),
        {0, QStringLiteral("Einheitensystem: Si"), QRect(4962, 2534, 4962, 250), Font::Body},
        {0, QStringLiteral("Höhe [m]: 312"), QRect(4962, 2864, 4962, 250), Font::Body},

        channelHeading(0, "Ausgang 1: CO2", 4344),
        left(0, "K-Faktor: 1", 4674),
        right(0, "Einheit: ppm", 4674),
        left(0, "Hersteller: Ziehl-Abegg/EBM-Papst", 5004),
        right(0, "Messbereich Untergrenze: 0", 5004),
        left(0, "Ansprechzeit [s]: 60", 5334),
        right(0, "Messbereich Obergrenze: 2000", 5334),

        channelHeading(0, "Ausgang 2: TEMPERATURE", 5994),
        left(0, "K-Faktor: 1", 6324),
        // The unit text carries a trailing blank that the PDF text drops.
        right(0, "Einheit: Grad_C", 6324),
        // Wider than its column: drawn cut off, so its width is not checked.
        {0, QStringLiteral("Hersteller: Rosenberg/Comefri/Gebhardt Nicotra"), leftColumn(6654),
         Font::NotChecked},
        right(0, "Messbereich Untergrenze: -20", 6654),
        left(0, "Ansprechzeit [s]: 30", 6984),
        right(0, "Messbereich Obergrenze: 60", 6984),

        channelHeading(0, "Ausgang 3: PRESSURE", 7644),
        left(0, "Einheit: Pa", 7974),
        left(0, "Messbereich Untergrenze: 0", 8304),
        left(0, "Messbereich Obergrenze: 500", 8634),

        channelHeading(0, "Ausgang 4: HUMIDITY", 9294),
        left(0, "K-Faktor: 1.25", 9624),
        right(0, "Einheit: Prozent", 9624),
        left(0, "Hersteller: Fläkt Woods", 9954),
        right(0, "Messbereich Untergrenze: 0", 9954),
        left(0, "Ansprechzeit [s]: 15", 10284),
        right(0, "Messbereich Obergrenze: 100", 10284),

        channelHeading(0, "Ausgang 5: VOLUMEFLOW", 10944),
        left(0, "K-Faktor: 148.5", 11274),
        right(0, "Einheit: m3_h", 11274),
        left(0, "Hersteller: Ziehl-Abegg/EBM-Papst", 11604),
        right(0, "Messbereich Untergrenze: 0", 11604),
        left(0, "Ansprechzeit [s]: 1.5", 11934),
        right(0, "Messbereich Obergrenze: 12000", 11934),

        channelHeading(1, "Ausgang 6: PRESSURE", 500),
        left(1, "Einheit: Pa", 830),
        left(1, "Messbereich Untergrenze: -250", 1160),
        left(1, "Messbereich Obergrenze: 250", 1490),

        heading(1, "Display:", 2150),
        left(1, "Status: Display vorhanden", 2480),
        left(1, "Helligkeit[%]: 75", 2810),
        left(1, "Rotation[°]: 90", 3140),
        left(1, "TLF aktiviert: Ja", 3470),

        heading(1, "TLF:", 4130),
        left(1, "Messgröße: CO2", 4460),
        right(1, "Enabled: true", 4460),
        left(1, "Schwellwert 1: 800", 4790),
        right(1, "Schwellwert 2: 1400", 4790),
        left(1, "Farbe Bereich 1: Grün", 5120),
        right(1, "Farbe Bereich 2: Gelb", 5120),
        left(1, "Farbe Bereich 3: Rot", 5450),

        heading(1, "Relais 1: CO2", 6110),
        left(1, "Schwellwert 1: 1000", 6440),
        right(1, "Schwellwert 2: 1500", 6440),
        left(1, "Zustand 1: Geöffnet", 6770),
        left(1, "Zustand 2: Geschlossen", 7100),
        left(1, "Zustand 3: Geschlossen", 7430),

        heading(1, "Relais 2: TEMPERATURE", 8090),
        left(1, "Schwellwert 1: 18.5", 8420),
        right(1, "Schwellwert 2: 26", 8420),
        left(1, "Zustand 1: Geöffnet", 8750),
        left(1, "Zustand 2: Geöffnet", 9080),

        heading(1, "Relais 3: PRESSURE", 9740),
        left(1, "Schwellwert 1: 120", 10070),
        right(1, "Schwellwert 2: 380", 10070),
        left(1, "Zustand 1: Geschlossen", 10400),
        left(1, "Zustand 2: Geöffnet", 10730),
        left(1, "Zustand 3: Geschlossen", 11060),
        left(1, "Zustand 4: Geöffnet", 11390),

        heading(2, "Relais 4: HUMIDITY", 500),
        left(2, "Schwellwert 1: 35", 830),
        right(2, "Schwellwert 2: 65", 830),
        left(2, "Zustand 1: Geöffnet", 1160),

        heading(2, "Relais 5: VOLUMEFLOW", 1820),
        left(2, "Schwellwert 1: 2500", 2150),
        right(2, "Schwellwert 2: 9000", 2150),
        left(2, "Zustand 1: Geschlossen", 2480),
        left(2, "Zustand 2: Geschlossen", 2810),

        heading(2, "Relais 6: PRESSURE", 3470),
        left(2, "Schwellwert 1: -100", 3800),
        right(2, "Schwellwert 2: 100", 3800),

        heading(2, "Modbus", 4460),
        left(2, "Offset: 1", 4790),
        left(2, "Baudrate: 9600", 5120),
        left(2, "Adresse: 42", 5450),
        left(2, "Übertragungsart: 1", 5780),
        left(2, "Parität: 2", 6110),

        heading(2, "Service:", 6770),
        left(2, "Letzter Service: 2026-04-28", 7100),
        left(2, "Nächster Service: 359 Tage", 7430),
        left(2, "Letzte Kalibrierung: 2025-10-13", 7760),
        {2, QStringLiteral("Nächste Kalibirierung: 527 Tage"), leftColumn(8090), Font::NotChecked},
    };
    return rows;
}

} // namespace

class TestExampleReport : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void finishesWithEveryStep();
    void hasThreeA4Pages();
    void header();
    void everyLineOnItsPage();
    void linesUseTheirFonts();
    void doubleBlankOfCalibrationLabel();

private:
    QTemporaryDir dir{QDir::tempPath() + QStringLiteral("/ex-XXXXXX")};
    QString jsonPath;
    JobOutcome outcome;
    std::unique_ptr<PdfReport> report;
};

void TestExampleReport::initTestCase() {
    QVERIFY(dir.isValid());
    // The example stays untouched: the report is written next to a copy.
    jsonPath = dir.filePath(QStringLiteral("multi-page-plant.json"));
    QVERIFY(QFile::copy(exampleFile(QStringLiteral("multi-page-plant.json")), jsonPath));
    outcome = runJob(jsonPath);
    report = std::make_unique<PdfReport>(reportPathFor(jsonPath));
}

void TestExampleReport::finishesWithEveryStep() {
    QVERIFY(outcome.finished());
    QVERIFY(reportedAllSteps(outcome));
    QVERIFY(report->isValid());
}

void TestExampleReport::hasThreeA4Pages() {
    QCOMPARE(report->pageCount(), 3);
    for (int page = 0; page < 3; ++page) {
        const QSizeF size = report->pageSizePoints(page);
        QVERIFY(qAbs(size.width() - 595.3) < 1.0 && qAbs(size.height() - 841.9) < 1.0);
    }
}

void TestExampleReport::header() {
    const PdfTextLine title = report->line(0, QStringLiteral("Quandel Protokoll vom:"));
    const PdfTextLine date = report->line(0, QStringLiteral("2026-05-04T09:30:00"));
    const PdfTextLine path = report->line(0, jsonPath);
    QVERIFY2(!title.isNull() && !date.isNull() && !path.isNull(), describe(*report));
    QVERIFY(qAbs(title.box.left() - 5424) < 40);
    QVERIFY(qAbs(date.box.left() - 5424) < 40);
    QVERIFY(qAbs(path.box.left() - 5424) < 40);
    QVERIFY(title.box.top() >= 500 && date.box.top() > title.box.top());
    QVERIFY(path.box.top() > date.box.top() && path.box.bottom() < 950 + 964);
    // The logo is drawn in the top-left corner box.
    QVERIFY(report->hasInk(0, QRect(500, 500, 4000, 964)));
    // No header on later pages.
    QVERIFY(report->line(1, QStringLiteral("Quandel Protokoll vom:")).isNull());
    QVERIFY(!report->hasInk(1, QRect(500, 100, 8924, 350)));
    QVERIFY(!report->hasInk(2, QRect(500, 100, 8924, 350)));
}

void TestExampleReport::everyLineOnItsPage() {
    const std::vector<Row> rows = expectedRows();
    for (int page = 0; page < report->pageCount(); ++page) {
        QVector<PdfTextLine> lines = report->lines(page);
        // The three header lines of page 1 are checked on their own.
        if (page == 0)
            lines.erase(
                std::remove_if(lines.begin(), lines.end(),
                               [&](const PdfTextLine& line) { return line.box.bottom() < 2000; }),
                lines.end());
        QVector<bool> used(lines.size(), false);
        int expectedOnPage = 0;
        for (const Row& row : rows) {
            if (row.page != page)
                continue;
            ++expectedOnPage;
            bool found = false;
            for (int i = 0; i < lines.size() && !found; ++i) {
                if (!used[i] && lines[i].text == row.text && lines[i].sitsIn(row.rect)) {
                    used[i] = true;
                    found = true;
                }
            }
            QVERIFY2(found, qPrintable(QStringLiteral("page %1: %2 at %3\n%4")
                                           .arg(page + 1)
                                           .arg(row.text)
                                           .arg(row.rect.top())
                                           .arg(report->dump())));
        }
        // Nothing else is on the page.
        QCOMPARE(lines.size(), expectedOnPage);
    }
}

void TestExampleReport::linesUseTheirFonts() {
    for (const Row& row : expectedRows()) {
        if (row.font == Font::NotChecked)
            continue;
        const QFont font = row.font == Font::Heading ? reportHeadingFont() : reportBodyFont();
        QVERIFY2(drawnWith(report->line(row.page, row.text), font), qPrintable(row.text));
    }
}

void TestExampleReport::doubleBlankOfCalibrationLabel() {
    const PdfTextLine line = report->line(2, QStringLiteral("Nächste Kalibirierung: 527 Tage"));
    QVERIFY(drawnAs(line, QStringLiteral("Nächste  Kalibirierung: 527 Tage"), reportBodyFont()));
}

QTEST_MAIN(TestExampleReport)
#include "tst_examplereport.moc"
