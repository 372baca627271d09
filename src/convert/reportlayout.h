#ifndef BREVIO_REPORTLAYOUT_H
#define BREVIO_REPORTLAYOUT_H

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

constexpr int headingPixelSize = 220;
constexpr int bodyPixelSize = 200;
constexpr int pathPixelSize = 150;

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
