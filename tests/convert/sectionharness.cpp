// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "sectionharness.h"

#include "testfiles.h"

#include <QFontMetricsF>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>

namespace sections {

QFont reportHeadingFont() {
    QFont font;
    font.setPixelSize(220);
    font.setWeight(QFont::Bold);
    return font;
}

QFont reportBodyFont() {
    QFont font;
    font.setPixelSize(200);
    return font;
}

void setReportFonts(convert& job) {
    job.headingFont = reportHeadingFont();
    job.bodyFont = reportBodyFont();
}

bool drawnWith(const PdfTextLine& line, const QFont& font) {
    return drawnAs(line, line.text, font);
}

bool drawnAs(const PdfTextLine& line, const QString& text, const QFont& font) {
    if (line.isNull())
        return false;
    // Pixel-sized fonts measure the same on any device; a blank's width or a
    // different weight is far beyond this tolerance.
    const double expected = QFontMetricsF(font).horizontalAdvance(text);
    return qAbs(line.box.width() - expected) <= qMax(4.0, expected * 0.004);
}

SectionRun printSections(convert& job, int cursor, std::initializer_list<SectionPrinter> printers,
                         const QTemporaryDir& dir, const QString& name) {
    SectionRun run;
    const QString path = dir.filePath(name);
    {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setPageOrientation(QPageLayout::Portrait);
        printer.setOutputFileName(path);
        QPainter painter(&printer);
        setReportFonts(job);
        painter.setFont(job.bodyFont);
        job.reportCursor = cursor;
        for (SectionPrinter print : printers)
            (job.*print)(painter, printer);
        run.cursorAfter = job.reportCursor;
        painter.end();
    }
    run.report = std::make_unique<PdfReport>(path);
    return run;
}

std::unique_ptr<ConvertedFile> convertDocument(const QByteArray& document) {
    auto result = std::make_unique<ConvertedFile>();
    result->jsonPath = writeFile(result->dir.path(), QStringLiteral("anlage.json"), document);
    result->outcome = runJob(result->jsonPath);
    if (result->outcome.finished())
        result->report = std::make_unique<PdfReport>(reportPathFor(result->jsonPath));
    return result;
}

std::unique_ptr<ConvertedFile> convertConfiguration(const QByteArray& configuration) {
    return convertDocument("{\"configuration\":" + configuration + "}");
}

void readConfiguration(convert& job, const QByteArray& configuration) {
    job.readMainConfiguration(
        QJsonDocument::fromJson("{\"configuration\":" + configuration + "}").object());
}

bool hasLineIn(const PdfReport& report, int page, const QString& text, const QRect& rect) {
    for (const PdfTextLine& line : report.lines(page))
        if (line.text == text && line.sitsIn(rect))
            return true;
    return false;
}

QByteArray describe(const PdfReport& report) {
    return report.dump().toUtf8();
}

bool reportedAllSteps(const JobOutcome& outcome) {
    QList<int> expected;
    for (int step = 1; step <= 17; ++step)
        expected.append(step);
    return outcome.progress == expected;
}

} // namespace sections
