// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/boxedtext.h"
#include "convert/reportlabels.h"
#include "convert/reportlayout.h"
#include "files/filepaths.h"
#include "files/reportfile.h"
#include "files/reportlock.h"
#include "files/temporaryfolders.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QRectF>

#include <memory>
#include <stdexcept>

using namespace reportLayout;

namespace {

// A report is only ever written to a PDF file, yet QPrinter's constructor asks
// the print service for a default printer first, and a print server that
// accepts connections but never answers would hold every job forever. Pointing
// the client library at a socket that cannot exist makes that question fail
// at once. This runs before main, while the process still has one thread, so
// changing the environment races with nothing.
const bool printServiceDetached = [] {
    qputenv("CUPS_SERVER", "/nonexistent/brevio/no-print-server");
    return true;
}();

// Decoded once per process; QImage is implicitly shared and only read, so
// every job can draw the same copy from its own thread. An archived report
// may hold no transparency, so the logo's alpha channel is laid onto the
// page's white here: the page looks the same, and the PDF gets no soft mask.
const QImage& reportLogo() {
    static const QImage logo = [] {
        const QImage drawn(QStringLiteral(":/img/veltrixLogoMain.png"));
        if (!drawn.hasAlphaChannel())
            return drawn;
        QImage opaque(drawn.size(), QImage::Format_RGB32);
        opaque.fill(Qt::white);
        QPainter painter(&opaque);
        painter.drawImage(0, 0, drawn);
        painter.end();
        return opaque;
    }();
    return logo;
}

// QPrinter's constructor loads the print support plugin the first time
// without a lock, so two jobs creating their first printers at once both
// load it and one copy is lost. A function-local static is initialised
// exactly once, under the compiler's guard, before any job goes on.
void loadPrintSupportOnce() {
    static const bool printSupportLoaded = [] {
        QPrinter first(QPrinter::HighResolution);
        return true;
    }();
    Q_UNUSED(printSupportLoaded)
}

// A PDF/A-1 string holds at most 65,535 bytes. Qt writes the title as UTF-16
// after a byte order mark, two bytes a code unit.
constexpr int longestTitle = (65535 - 2) / 2;

// What XML 1.0 can carry at all; the title also goes into the XMP packet,
// where anything else leaves the metadata unreadable.
bool xmlCharacter(uint c) {
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

// Qt writes the document information's title without escaping any byte but
// parentheses and backslashes, and a reader takes a bare byte 0x0D in a PDF
// string for a line end, which it reads as 0x0A: U+010D 'č' would come back
// as U+010A 'Ċ', and U+000D as a line feed, while the XMP packet keeps them.
bool holdsCarriageReturnByte(const QString& units) {
    for (const QChar unit : units)
        if (unit.row() == 0x0D || unit.cell() == 0x0D)
            return true;
    return false;
}

// The report's title as both the document information and the XMP metadata
// can hold it, so that the two are the same text: what XML cannot carry (most
// control characters, U+FFFE, U+FFFF, a surrogate without its partner) becomes
// U+FFFD, as does a character the PDF string would change, unless its
// canonical decomposition avoids that (c and a combining caron for 'č', which
// looks the same). Cut, between characters, where the PDF string would grow
// too long.
QString documentTitle(const QString& name) {
    QString title;
    for (int i = 0; i < name.size();) {
        const bool pair =
            name.at(i).isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate();
        const int units = pair ? 2 : 1;
        QString character = name.mid(i, units);
        i += units;
        const uint c = pair ? QChar::surrogateToUcs4(character.at(0), character.at(1))
                            : character.at(0).unicode();
        if (QChar::isSurrogate(c) || !xmlCharacter(c)) {
            character = QChar(QChar::ReplacementCharacter);
        } else if (holdsCarriageReturnByte(character)) {
            const QString decomposed = character.normalized(QString::NormalizationForm_D);
            character = decomposed != character && !holdsCarriageReturnByte(decomposed)
                            ? decomposed
                            : QString(QChar(QChar::ReplacementCharacter));
        }
        if (title.size() + character.size() > longestTitle)
            break;
        title += character;
    }
    return title;
}

void setUpPrinter(QPrinter& printer, const QString& plantName, const QString& sourcePath) {
    printer.setOutputFormat(QPrinter::PdfFormat);
    // Reports are kept for years: PDF/A-1b, with XMP metadata that repeats
    // the document information and an sRGB output intent.
    printer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
    // Without an explicit page the size follows the machine's default
    // printer; the layout is made for A4 portrait.
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(QPageLayout::Portrait);
    // Document information: the plant's name, or the file's when the
    // configuration has none, and the program that wrote the report. Qt
    // repeats the title in the XMP metadata from this one text.
    printer.setDocName(
        documentTitle(plantName.isEmpty() ? QFileInfo(sourcePath).fileName() : plantName));
    printer.setCreator(QStringLiteral("Brevio " BREVIO_VERSION));
}

// Asking drawText for the bounds of what it draws changes the drawing
// of a text that breaks into more than one line: it then lays out every
// line and centres them all, where it otherwise stops at the box's height.
// A text breaks at a line break, and at a width of 2^24 pixels, which a few
// thousand characters cannot reach; tabs are measured differently by the
// two ways. Only a short text of printable characters asks for the bounds.
bool singleLineForSure(const QString& text) {
    if (text.size() > 4096)
        return false;
    for (const QChar c : text)
        if (c.unicode() < 0x20 || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            return false;
    return true;
}

} // namespace

void convert::drawLine(QPainter& painter, const QRect& box, const QString& text) {
    if (singleLineForSure(text)) {
        // The line is laid out for drawing anyway, which tells its natural
        // width, so a line that fits, nearly every one, costs no second
        // layout. The drawing is that of drawText's QRect overload, which
        // only rounds the bounds it returns.
        QRectF laidOut;
        drawBoxedText(painter, QRectF(box), lineFlags, text, &laidOut);
        if (qRound(laidOut.width()) <= box.width())
            return;
    } else {
        drawBoxedText(painter, QRectF(box), lineFlags, text);
    }
    // Measured as the painter lays it out on this device, in its font.
    const QFontMetrics metrics(painter.font(), painter.device());
    if (metrics.horizontalAdvance(text) <= box.width())
        return;
    // What the reader sees: the longest start of the text that ends within
    // the box, found by halving, since a value may be tens of thousands of
    // characters long.
    int shown = 0;
    int tooLong = text.size();
    while (tooLong - shown > 1) {
        const int middle = shown + (tooLong - shown) / 2;
        if (metrics.horizontalAdvance(text.left(middle)) <= box.width())
            shown = middle;
        else
            tooLong = middle;
    }
    if (shown < text.size() && text.at(shown).isLowSurrogate() && shown > 0)
        --shown;
    result.cutOff.append(text.left(shown));
}

void convert::advanceLine(QPrinter& printer) {
    // A console that closes on Windows waits for the reports being drawn
    // to be given up: only a closed report can be removed there.
    if (temporaryFolders::interrupted())
        throw std::runtime_error("interrupted");
    if (newPage(reportCursor))
        printer.newPage();
}

void convert::keepBlockOnOnePage(QPrinter& printer, int reserve) {
    // Stricter than the line step: a block that would end exactly at the
    // limit moves too.
    if (reportCursor + reserve >= pageLimit) {
        printer.newPage();
        reportCursor = pageTop;
    }
}

void convert::printPdf(QString pdfPath) {
    loadPrintSupportOnce();
    // On the heap, so that a failure halfway can leave them undestroyed: see
    // below.
    std::unique_ptr<QPrinter> printer(new QPrinter(QPrinter::HighResolution));
    setUpPrinter(*printer, mainValues.value(0).toString(), sourcePath);

    pdfPath = chosenReportPath.isEmpty() ? filePaths::reportFor(pdfPath) : chosenReportPath;
    result.reportPath = pdfPath;
    // Jobs of this process take turns at one report, and each draws into a
    // file of its own that replaces the report only once it is complete.
    const ReportLock turn(filePaths::reportKey(pdfPath));
    ReportFile output(pdfPath);
    printer->setOutputFileName(output.temporaryPath());
    std::unique_ptr<QPainter> painter(new QPainter);
    if (!output.isOpen() || !painter->begin(printer.get())) {
        // There is nothing to draw on, but the job still counts through its
        // steps and finishes; an older report stays as it was.
        recordReport(output, false);
        for (int step = 9; step <= 17; ++step)
            emit newPbarValue(step);
        return;
    }
    try {
        drawReport(*painter, *printer);
        painter->end();
    } catch (...) {
        // Running out of memory while drawing: an active painter's
        // destructor ends the document, which allocates and may throw
        // again, and a second exception during unwinding is the end of
        // the process. The document is ended here instead, where a failure
        // can be caught; when even that fails, painter and printer are
        // given up undestroyed, a small leak in place of an abort.
        try {
            painter->end();
        } catch (...) {
            Q_UNUSED(painter.release())
            Q_UNUSED(printer.release())
        }
        throw;
    }
    recordReport(output, output.commit());
}

void convert::drawReport(QPainter& painter, QPrinter& printer) {
    headingFont = reportLayout::headingFont();
    bodyFont = reportLayout::bodyFont();
    painter.setFont(bodyFont);

    const QImage& logo = reportLogo();
    const int logoWidth = logoScale * logo.width();
    const int logoHeight = logoScale * logo.height();
    painter.drawImage(QRectF(marginLeft, pageTop, logoWidth, logoHeight), logo);
    const int titleLeft = titleRight - logoWidth;
    drawBoxedText(painter, QRectF(titleLeft, pageTop, logoWidth, logoHeight), wrapFlags,
                  tr(reportLabels::title) + mainValues.value(1).toString());
    painter.setFont(reportLayout::pathFont());
    drawBoxedText(painter, QRectF(titleLeft, pathTop, logoWidth, logoHeight), wrapFlags,
                  sourcePath);
    emit newPbarValue(9);

    reportCursor = pageTop + logoHeight + logoGap;
    printGeneral(painter, printer);
    emit newPbarValue(10);
    printOutput(painter, printer);
    emit newPbarValue(11);
    printDisplay(painter, printer);
    emit newPbarValue(12);
    printTlf(painter, printer);
    emit newPbarValue(13);
    printRelais(painter, printer);
    emit newPbarValue(14);
    emit newPbarValue(15);
    printModbus(painter, printer);
    emit newPbarValue(16);
    printService(painter, printer);
    emit newPbarValue(17);
}

void convert::printGeneral(QPainter& painter, QPrinter& printer) {
    painter.setFont(headingFont);
    drawLine(painter, QRect(marginLeft, reportCursor, fullWidth, headingLineHeight),
             tr(reportLabels::generalHeading));
    advanceLine(printer);
    painter.setFont(bodyFont);

    if (mainValues.size() >= 8) {
        const int c = reportCursor;
        const QRect generalRight(rightColumnLeft, c, generalRightWidth, lineHeight);
        drawLine(painter, leftColumn(c), tr(reportLabels::name) + mainValues[0].toString());
        drawLine(painter, leftColumn(c + lineStep), tr("Ort: ") + mainValues[2].toString());
        drawLine(painter, leftColumn(c + 2 * lineStep),
                 tr("Spannungsuntergrenze [V]: ") + mainValues[4].toString());
        drawLine(painter, leftColumn(c + 3 * lineStep),
                 tr("Versionsnummer: ") + mainValues[7].toString());
        drawLine(painter, generalRight,
                 tr("Einheitensystem: ") +
                     (mainValues[5].toInt() == 1 ? QStringLiteral("Si") : QStringLiteral("Imp")));
        drawLine(painter, generalRight.translated(0, lineStep),
                 tr(reportLabels::altitude) + mainValues[3].toString());
    }
    // The block takes the same room whether or not the configuration had
    // enough entries to draw its rows.
    reportCursor += generalBlockHeight;
}
