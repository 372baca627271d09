// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/undrawable.h"

#include <QGlyphRun>
#include <QRawFont>
#include <QSet>
#include <QTextLayout>

namespace {

bool neverDrawn(uint codePoint) {
    switch (QChar::category(codePoint)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

// Lays the character out the way drawText does, through the font's whole
// fallback chain; a glyph index of 0 is the "missing glyph" that is left when
// no font in the chain has the character.
bool drawableThroughFallback(uint codePoint, const QFont& font) {
    QTextLayout layout(QString::fromUcs4(&codePoint, 1), font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const auto runs = layout.glyphRuns();
    if (runs.isEmpty())
        return false;
    for (const QGlyphRun& run : runs)
        for (quint32 glyph : run.glyphIndexes())
            if (glyph == 0)
                return false;
    return true;
}

} // namespace

QVector<uint> undrawableCharacters(const QString& text, const QFont& font) {
    QVector<uint> missing;
    // The font itself draws every character it has, without any fallback;
    // only the rest needs the costlier layout, and most reports have none.
    const QRawFont own = QRawFont::fromFont(font);
    QSet<uint> seen;
    for (uint codePoint : text.toUcs4()) {
        if (seen.contains(codePoint))
            continue;
        seen.insert(codePoint);
        if (neverDrawn(codePoint) || (own.isValid() && own.supportsCharacter(codePoint)))
            continue;
        if (!drawableThroughFallback(codePoint, font))
            missing.append(codePoint);
    }
    return missing;
}
