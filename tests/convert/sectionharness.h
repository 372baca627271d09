// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_SECTIONHARNESS_H
#define BREVIO_TESTS_SECTIONHARNESS_H

#include "convert/convert.h"
#include "jobrunner.h"
#include "pdfreport.h"

#include <QByteArray>
#include <QFont>
#include <QRect>
#include <QString>
#include <QTemporaryDir>

#include <initializer_list>
#include <memory>

class QPainter;
class QPrinter;

namespace sections {

// Report geometry in device pixels, as the reports are expected to show it.
constexpr int pageTop = 500;
constexpr int lineStep = 330;
constexpr int pageLimit = 13028;
// With the shipped logo the first section starts here: 500 + 4 * 241 + 740
// for the general heading, one step, then 1810 below the general block.
constexpr int firstSectionTop = 4344;

inline QRect fullLine(int top) {
    return QRect(500, top, 8924, 250);
}
inline QRect leftColumn(int top) {
    return QRect(500, top, 4462, 250);
}
inline QRect rightColumn(int top) {
    return QRect(4962, top, 4462, 250);
}

using SectionPrinter = void (convert::*)(QPainter&, QPrinter&);

// One or more section printers run alone on a fresh A4 PDF.
struct SectionRun {
    int cursorAfter = 0;
    std::unique_ptr<PdfReport> report;
};

// The report's fonts: headings 220 px bold, lines 200 px normal weight.
QFont reportHeadingFont();
QFont reportBodyFont();

// Sets the job's fonts the way the report does before its sections run.
void setReportFonts(convert& job);

// True when the line's width on the page is the width of its text in font:
// size and weight both change it, so this tells the fonts apart.
bool drawnWith(const PdfTextLine& line, const QFont& font);
// The same for a text whose blanks the PDF text does not show (poppler
// merges runs of blanks): true when the line is as wide as text in font.
bool drawnAs(const PdfTextLine& line, const QString& text, const QFont& font);

// Opens a 1200 dpi A4 PDF printer on dir/name, sets the job's cursor, runs
// the printers in order and reads the file back.
SectionRun printSections(convert& job, int cursor, std::initializer_list<SectionPrinter> printers,
                         const QTemporaryDir& dir, const QString& name = QStringLiteral("s.pdf"));

// A whole conversion of a file holding {"configuration": configuration}.
struct ConvertedFile {
    QTemporaryDir dir;
    QString jsonPath;
    JobOutcome outcome;
    std::unique_ptr<PdfReport> report;
};

std::unique_ptr<ConvertedFile> convertConfiguration(const QByteArray& configuration);
std::unique_ptr<ConvertedFile> convertDocument(const QByteArray& document);

// The sections of a file filled with the readers, as a conversion does.
void readConfiguration(convert& job, const QByteArray& configuration);

// True when some line of the page has exactly this text and sits in rect;
// unlike PdfReport::line() it also finds the later of two equal texts.
bool hasLineIn(const PdfReport& report, int page, const QString& text, const QRect& rect);

// Every page's lines of text, for failure messages.
QByteArray describe(const PdfReport& report);

// The progress a finished conversion reports: 1 to 17 in order.
bool reportedAllSteps(const JobOutcome& outcome);

} // namespace sections

#endif
