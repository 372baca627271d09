// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pdfreport.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPrinter>

#include <poppler-qt5.h>

#include <algorithm>

namespace {

constexpr double pointsToDevice = PdfReport::dpi / 72.0;
// Two words on one line belong to different texts when the gap between them
// is wider than this many device pixels (a blank at 220 px is about 70).
constexpr double columnGap = 180.0;

QRectF toDevice(const QRectF& points) {
    const QPointF origin = PdfReport::deviceOrigin();
    return QRectF(points.x() * pointsToDevice - origin.x(),
                  points.y() * pointsToDevice - origin.y(), points.width() * pointsToDevice,
                  points.height() * pointsToDevice);
}

} // namespace

bool PdfTextLine::sitsIn(const QRect& rect) const {
    if (isNull())
        return false;
    const double leftTolerance = 40.0;
    const double centreTolerance = 60.0;
    return std::abs(box.left() - rect.left()) <= leftTolerance &&
           std::abs(box.center().y() - (rect.top() + rect.height() / 2.0)) <= centreTolerance;
}

PdfReport::PdfReport(const QString& path) : document(Poppler::Document::load(path)) {}

PdfReport::~PdfReport() = default;

bool PdfReport::isValid() const {
    return document && !document->isLocked();
}

int PdfReport::pageCount() const {
    return isValid() ? document->numPages() : 0;
}

QSizeF PdfReport::pageSizePoints(int page) const {
    if (page < 0 || page >= pageCount())
        return QSizeF();
    std::unique_ptr<Poppler::Page> p(document->page(page));
    return p ? p->pageSizeF() : QSizeF();
}

QVector<PdfTextLine> PdfReport::lines(int page) const {
    const auto read = linesRead.constFind(page);
    if (read != linesRead.constEnd())
        return *read;
    const QVector<PdfTextLine> result = readLines(page);
    linesRead.insert(page, result);
    return result;
}

QVector<PdfTextLine> PdfReport::readLines(int page) const {
    QVector<PdfTextLine> result;
    if (page < 0 || page >= pageCount())
        return result;
    std::unique_ptr<Poppler::Page> p(document->page(page));
    if (!p)
        return result;
    const QList<Poppler::TextBox*> boxes = p->textList();
    Poppler::TextBox* previous = nullptr;
    for (Poppler::TextBox* box : boxes) {
        const QRectF rect = toDevice(box->boundingBox());
        const bool continues = previous && previous->nextWord() == box &&
                               rect.left() - result.last().box.right() < columnGap;
        // Ligatures (ff, fi) come back as single compatibility characters.
        const QString word = box->text().normalized(QString::NormalizationForm_KC);
        if (continues) {
            PdfTextLine& line = result.last();
            if (previous->hasSpaceAfter())
                line.text += QLatin1Char(' ');
            line.text += word;
            line.box = line.box.united(rect);
        } else {
            result.append(PdfTextLine{word, rect});
        }
        previous = box;
    }
    qDeleteAll(boxes);
    std::stable_sort(result.begin(), result.end(), [](const PdfTextLine& a, const PdfTextLine& b) {
        return a.box.center().y() + 1 < b.box.center().y();
    });
    return result;
}

QStringList PdfReport::texts(int page) const {
    QStringList result;
    for (const PdfTextLine& line : lines(page))
        result.append(line.text);
    return result;
}

PdfTextLine PdfReport::line(int page, const QString& text) const {
    for (const PdfTextLine& line : lines(page))
        if (line.text == text)
            return line;
    return PdfTextLine();
}

PdfTextLine PdfReport::lineStartingWith(int page, const QString& prefix) const {
    for (const PdfTextLine& line : lines(page))
        if (line.text.startsWith(prefix))
            return line;
    return PdfTextLine();
}

QString PdfReport::dump() const {
    QString out;
    for (int page = 0; page < pageCount(); ++page)
        for (const PdfTextLine& line : lines(page))
            out += QStringLiteral("page %1: [%2] at x %3, y %4..%5\n")
                       .arg(page + 1)
                       .arg(line.text)
                       .arg(line.box.left(), 0, 'f', 0)
                       .arg(line.box.top(), 0, 'f', 0)
                       .arg(line.box.bottom(), 0, 'f', 0);
    return out;
}

QImage PdfReport::render(int page, double renderDpi) const {
    if (page < 0 || page >= pageCount())
        return QImage();
    std::unique_ptr<Poppler::Page> p(document->page(page));
    return p ? p->renderToImage(renderDpi, renderDpi) : QImage();
}

QImage PdfReport::renderBand(int page, const QRect& deviceRect, double renderDpi) const {
    if (page < 0 || page >= pageCount())
        return QImage();
    std::unique_ptr<Poppler::Page> p(document->page(page));
    if (!p)
        return QImage();
    const double scale = renderDpi / dpi;
    const QPointF origin = deviceOrigin();
    return p->renderToImage(renderDpi, renderDpi, int((deviceRect.x() + origin.x()) * scale),
                            int((deviceRect.y() + origin.y()) * scale),
                            int(deviceRect.width() * scale), int(deviceRect.height() * scale));
}

bool PdfReport::hasInk(int page, const QRect& deviceRect) const {
    // 600 dpi: one rendered pixel is two device pixels.
    const QImage band =
        renderBand(page, deviceRect, 600).convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < band.height(); ++y) {
        const uchar* row = band.constScanLine(y);
        for (int x = 0; x < band.width(); ++x)
            if (row[x] < 160)
                return true;
    }
    return false;
}

QPointF PdfReport::deviceOrigin() {
    // The job's printer keeps the default margins, so its device pixels start
    // at the top-left margin; ask a printer set up the same way where that is.
    static const QPointF origin = [] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setPageSize(QPageSize(QPageSize::A4));
        printer.setPageOrientation(QPageLayout::Portrait);
        return QPointF(printer.pageLayout().paintRectPixels(int(dpi)).topLeft());
    }();
    return origin;
}

QString PdfReport::title() const {
    return isValid() ? document->info(QStringLiteral("Title")) : QString();
}

QString PdfReport::creator() const {
    return isValid() ? document->info(QStringLiteral("Creator")) : QString();
}

QStringList PdfReport::fontNames() const {
    QStringList names;
    if (!isValid())
        return names;
    for (const Poppler::FontInfo& font : document->fonts())
        if (!names.contains(font.name()))
            names.append(font.name());
    return names;
}
