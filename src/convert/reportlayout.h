// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTLAYOUT_H
#define BREVIO_REPORTLAYOUT_H

#include <QFont>
#include <QRect>
#include <Qt>

// Page geometry of a report, in device pixels of a 1200 dpi printer on an A4
// portrait page. Every section draws with these numbers.
namespace reportLayout {

constexpr int pageTop = 500;
constexpr int lineStep = 330;
// A line may start at most here; one more step moves to the next page.
constexpr int pageLimit = 13028;
constexpr int marginLeft = 500;
constexpr int lineHeight = 250;
constexpr int fullWidth = 8924;
constexpr int columnWidth = 4462;
constexpr int rightColumnLeft = 4962;

// The title block: the logo at the top left, the protocol date and the
// configuration's path in a box of the logo's size at the right.
// The logo bitmap is small for a 1200 dpi page, so it is drawn at this
// multiple of its pixel size.
constexpr int logoScale = 4;
// The title box ends where the full-width line ends, so however wide the logo
// is, the title never reaches into the right margin.
constexpr int titleRight = marginLeft + fullWidth;
// The path box is the title box moved down far enough that the path, in its
// smaller font, stands clear below the two lines of the date.
constexpr int pathTop = 950;
// Space between the logo's foot and the general heading. The path box ends
// pathTop - pageTop below the logo's foot, so the heading still stands clear
// of it.
constexpr int logoGap = 740;

// The general block. Its heading box is taller than a body line because the
// heading font is larger.
constexpr int headingLineHeight = 280;
// The general block's right column is wider than the section columns and
// reaches past the full-width line's end; its text is left-aligned and never
// gets there, so the extra width changes nothing on the page. That it equals
// rightColumnLeft is a coincidence, not a rule.
constexpr int generalRightWidth = 4962;
// From the first row of the general block to the first output channel: four
// rows and the empty space that separates the two sections.
constexpr int generalBlockHeight = 1810;

constexpr int headingPixelSize = 220;
constexpr int bodyPixelSize = 200;
constexpr int pathPixelSize = 150;

// The report's fonts, in the application's default family: the bundled one,
// which both programs register as they start. The report is drawn in them,
// and they are what the job asks whether its text can be drawn at all.
// Section headings:
inline QFont headingFont() {
    QFont font;
    font.setPixelSize(headingPixelSize);
    font.setWeight(QFont::Bold);
    return font;
}
// The title and every other line:
inline QFont bodyFont() {
    QFont font;
    font.setPixelSize(bodyPixelSize);
    return font;
}
// The configuration's path under the title:
inline QFont pathFont() {
    QFont font;
    font.setPixelSize(pathPixelSize);
    return font;
}

constexpr int lineFlags = Qt::AlignLeft | Qt::AlignVCenter;
constexpr int wrapFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

inline QRect fullLine(int top) {
    return QRect(marginLeft, top, fullWidth, lineHeight);
}
inline QRect leftColumn(int top) {
    return QRect(marginLeft, top, columnWidth, lineHeight);
}
// The right column of the section blocks ends at the full-width line's edge.
inline QRect rightColumn(int top) {
    return QRect(rightColumnLeft, top, columnWidth, lineHeight);
}

} // namespace reportLayout

#endif
