// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/boxedtext.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QList>
#include <QPainter>
#include <QPointF>
#include <QTextLayout>
#include <QTextOption>
#include <QVector>
#include <QtMath>

#include <cmath>

namespace {

// PDF/A-1 allows no real number beyond this. The PDF engine writes a text
// run's first glyph at its position on the page, in printer pixels; a line
// of a few thousand characters starts runs (a new script, a new font, or
// every 4,096 characters) hundreds of thousands of pixels to the right.
constexpr qreal largestPosition = 32767;

// drawText's length variants: a text holding U+009C is several texts, of
// which it draws the first that fits its box, or the last.
constexpr ushort variantSeparator = 0x9C;

// The variant that starts at offset, with the characters drawText replaces
// before laying a text out: a carriage return and a tab become a space
// (tabs are only expanded on request), a line feed a line break. offset is
// left at the separator that ends it, or at the end.
QString variantAt(const QString& text, int& offset) {
    const int start = offset;
    while (offset < text.size() && text.at(offset).unicode() != variantSeparator)
        ++offset;
    QString variant = text.mid(start, offset - start);
    for (QChar& c : variant) {
        if (c == QLatin1Char('\r') || c == QLatin1Char('\t'))
            c = QLatin1Char(' ');
        else if (c == QLatin1Char('\n'))
            c = QChar::LineSeparator;
    }
    return variant;
}

// Lays the text out in lines as drawText does: a line as wide as the box
// when it wraps, else one that never breaks but at line breaks; lines
// placed on whole pixels, a font's leading apart; and, unless every line is
// asked for, no more lines than it takes to fill the box's height. Gives
// the widest line's width and the lines' height.
void layOut(QTextLayout& layout, const QPainter& painter, const QFontMetricsF& metrics,
            const QRectF& box, int flags, bool everyLine, qreal& width, qreal& height) {
    QTextOption option;
    option.setTextDirection(painter.layoutDirection());
    option.setAlignment(Qt::AlignLeft);
    layout.setTextOption(option);
    layout.setCacheEnabled(true);
    const qreal lineWidth = (flags & Qt::TextWordWrap) ? qMax<qreal>(0, box.width()) : 0x01000000;
    const qreal leading = metrics.leading();
    width = 0;
    height = -leading;
    layout.beginLayout();
    for (;;) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(lineWidth);
        height += leading;
        height = qCeil(height);
        line.setPosition(QPointF(0, height));
        height += line.ascent() + line.descent();
        width = qMax(width, line.naturalTextWidth());
        if (!everyLine && height >= box.height())
            break;
    }
    layout.endLayout();
}

// Whether every glyph of text laid out within bounds stands at a position
// PDF/A-1 allows. A glyph starts within its line's natural width (trailing
// spaces included); the margin covers marks set beside their base.
bool withinLimits(const QRectF& bounds, const QFontMetricsF& metrics) {
    const qreal margin = 4 * metrics.height();
    const QRectF reach = bounds.adjusted(-margin, -margin, margin, margin);
    return reach.left() >= -largestPosition && reach.right() <= largestPosition &&
           reach.top() >= -largestPosition && reach.bottom() <= largestPosition;
}

// Draws the glyphs of line that stand within the limits, where and as
// line.draw() would draw them; the others lie far off the page. Glyphs
// outside the box but within the limits stay, as drawText leaves them: a text
// layer without them would join the visible rest of a cut value to the
// next column's words. The glyph runs carry the positions the line draws
// with; the line rounds its origin to 1/64 pixel first, which is done here
// too so that the sums agree.
void drawGlyphsWithinLimits(QPainter& painter, const QTextLine& line, const QPointF& origin) {
    const QPointF start(std::trunc(origin.x() * 64) / 64, std::trunc(origin.y() * 64) / 64);
    const QRectF limits(-largestPosition, -largestPosition, 2 * largestPosition,
                        2 * largestPosition);
    const QList<QGlyphRun> runs = line.glyphRuns();
    for (QGlyphRun run : runs) {
        const QVector<quint32> glyphs = run.glyphIndexes();
        const QVector<QPointF> positions = run.positions();
        QVector<quint32> shownGlyphs;
        QVector<QPointF> shownPositions;
        for (int i = 0; i < glyphs.size(); ++i) {
            if (limits.contains(start + positions.at(i))) {
                shownGlyphs.append(glyphs.at(i));
                shownPositions.append(positions.at(i));
            }
        }
        if (shownGlyphs.isEmpty())
            continue;
        run.setGlyphIndexes(shownGlyphs);
        run.setPositions(shownPositions);
        painter.drawGlyphRun(start, run);
    }
}

} // namespace

void drawBoxedText(QPainter& painter, const QRectF& box, int flags, const QString& text,
                   QRectF* laidOut) {
    if (text.isEmpty() || painter.pen().style() == Qt::NoPen)
        return;
    // The painter takes its direction from the application's. Right to
    // left, drawText mirrors the alignment and places each line by parts of
    // the layout that are not public, so it is left to draw such text.
    if (painter.layoutDirection() == Qt::RightToLeft) {
        painter.drawText(box, flags, text, laidOut);
        return;
    }
    const QFontMetricsF metrics(painter.font());
    int offset = 0;
    for (;;) {
        const QString variant = variantAt(text, offset);
        const bool moreVariants = offset < text.size();
        QTextLayout layout(variant, painter.font());
        qreal width = 0;
        qreal height = metrics.height();
        if (!variant.isEmpty())
            layOut(layout, painter, metrics, box, flags, laidOut != nullptr, width, height);
        const qreal top = (flags & Qt::AlignVCenter) ? (box.height() - height) / 2 : 0;
        const QRectF bounds(box.x(), box.y() + top, width, height);
        if (moreVariants && !box.contains(bounds)) {
            ++offset;
            continue;
        }
        if (laidOut != nullptr)
            *laidOut = bounds;
        // A box that reaches past the limits lies far below the page (the
        // states of a relay run on past its foot, and the next heading with
        // them): nothing in it could be seen.
        if (variant.isEmpty() || !withinLimits(box, metrics))
            return;

        const bool clipped = !box.contains(bounds);
        if (clipped) {
            painter.save();
            painter.setClipRect(box, Qt::IntersectClip);
        }
        const QPointF origin(box.x(), box.y() + top);
        // Nearly every text is drawn by the layout itself, exactly as
        // drawText draws it. A text that reaches past the limits is clipped
        // (the box lies well within them), and what lies beyond them left
        // out.
        const bool drawnWhole = withinLimits(bounds, metrics);
        for (int i = 0; i < layout.lineCount(); ++i) {
            if (drawnWhole)
                layout.lineAt(i).draw(&painter, origin);
            else
                drawGlyphsWithinLimits(painter, layout.lineAt(i), origin);
        }
        if (clipped)
            painter.restore();
        return;
    }
}
