// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_PDFREPORT_H
#define BREVIO_TESTS_PDFREPORT_H

#include <QHash>
#include <QImage>
#include <QRect>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

namespace Poppler {
class Document;
}

// One line of text read back from a report page. The box is in the job's
// device pixels (1200 dpi, origin at the printer's top-left margin), so it
// compares directly with the rectangles the report is drawn into.
struct PdfTextLine {
    QString text;
    QRectF box;

    bool isNull() const { return box.isNull(); }
    // True when the text starts at the rectangle's left edge and is
    // vertically centred in it, as drawText with AlignLeft | AlignVCenter puts it.
    bool sitsIn(const QRect& rect) const;
};

// Reads a PDF written by a conversion job back with poppler.
class PdfReport {
public:
    explicit PdfReport(const QString& path);
    ~PdfReport();

    bool isValid() const;
    int pageCount() const;
    QSizeF pageSizePoints(int page) const;

    // Text lines of a page, top to bottom; words further apart than a few
    // blanks (two columns on one line) are separate lines.
    QVector<PdfTextLine> lines(int page) const;
    QStringList texts(int page) const;
    // The first line on the page whose text is exactly text; null if none.
    PdfTextLine line(int page, const QString& text) const;
    // The first line on the page starting with prefix; null if none.
    PdfTextLine lineStartingWith(int page, const QString& prefix) const;
    // Every page's lines, prefixed "page N: ", for failure messages.
    QString dump() const;

    // Document information and the fonts the PDF uses (their names as the
    // PDF gives them, each once).
    QString title() const;
    QString creator() const;
    QStringList fontNames() const;

    QImage render(int page, double dpi) const;
    // Renders only the given rectangle of device pixels, at the given dpi.
    QImage renderBand(int page, const QRect& deviceRect, double renderDpi) const;
    // True when some pixel of the rectangle is darker than paper.
    bool hasInk(int page, const QRect& deviceRect) const;

    // Device pixel (0, 0) of the job's printer, in device pixels from the
    // page's top-left corner.
    static QPointF deviceOrigin();
    static constexpr double dpi = 1200.0;

private:
    QVector<PdfTextLine> readLines(int page) const;

    std::unique_ptr<Poppler::Document> document;
    // Each page's lines, read once: poppler lays out a page's text anew on
    // every call, and the checks of a long report ask for it many times.
    mutable QHash<int, QVector<PdfTextLine>> linesRead;
};

#endif
