// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_BOXEDTEXT_H
#define BREVIO_BOXEDTEXT_H

#include <QRectF>
#include <QString>

class QPainter;

// Draws text into box as QPainter::drawText(box, flags, text, laidOut) does,
// for the flags the report uses (Qt::AlignLeft, Qt::AlignVCenter and
// Qt::TextWordWrap): the same layout, the same clip to the box when the text
// does not fit, the same marks on the page. What differs is what lies
// entirely outside the clip: drawText writes every glyph of a text run into
// the PDF, clipped or not, at positions that a long value takes past the
// +-32,767 that PDF/A-1 allows; glyphs beyond those, far off the page, are
// left out here, and so is a box that lies beyond them. laidOut, when given, receives the bounds
// drawText reports, and every line is laid out for it, as drawText does then.
void drawBoxedText(QPainter& painter, const QRectF& box, int flags, const QString& text,
                   QRectF* laidOut = nullptr);

#endif
