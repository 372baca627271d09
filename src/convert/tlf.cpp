// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/jsonrecord.h"
#include "convert/reportlayout.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPrinter>

using namespace reportLayout;

namespace {

// Entries up to the measure name (index 7) are needed to draw the lines.
constexpr int tlfPrintedEntries = 8;
// The heading box reaches 1000 beyond the full-width line; left-aligned text
// never gets there, so the wider box changes nothing on the page.
constexpr int tlfHeadingWidth = 9924;

QString colourName(const QVariant& code) {
    switch (code.toInt()) {
    case 2:
        return QCoreApplication::translate("convert", "Gelb");
    case 3:
        return QCoreApplication::translate("convert", "Rot");
    default:
        // The device starts every range green, so any other code means green.
        return QCoreApplication::translate("convert", "Grün");
    }
}

} // namespace

void convert::readTlf(const QJsonObject& tlf) {
    tlfValues.clear();
    tlfValues.reserve(14);
    appendMembers(tlfValues, tlf,
                  {"enabled", "lowThreshold", "highThreshold", "lowColor", "middleColor",
                   "highColor", "lcdRotation"});
    appendMeasure(tlfValues, tlf);
}

void convert::printTlf(QPainter& painter, QPrinter& printer) {
    painter.setFont(headingFont);
    // One empty line separates this section from the display's last line.
    advanceLine(printer);
    advanceLine(printer);
    drawLine(painter, QRect(marginLeft, reportCursor, tlfHeadingWidth, lineHeight), tr("TLF:"));
    painter.setFont(bodyFont);
    if (tlfValues.size() < tlfPrintedEntries)
        return;

    // Both columns of a line share one cursor value, so a line is never
    // split by a page break.
    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor), tr("Messgröße: ") + tlfValues[7].toString());
    drawLine(painter, rightColumn(reportCursor), tr("Enabled: ") + tlfValues[0].toString());

    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor), tr("Schwellwert 1: ") + tlfValues[1].toString());
    drawLine(painter, rightColumn(reportCursor), tr("Schwellwert 2: ") + tlfValues[2].toString());

    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor), tr("Farbe Bereich 1: ") + colourName(tlfValues[3]));
    drawLine(painter, rightColumn(reportCursor),
             tr("Farbe Bereich 2: ") + colourName(tlfValues[4]));

    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor), tr("Farbe Bereich 3: ") + colourName(tlfValues[5]));
    // The cursor stays on this line; the relay section steps from here.
}
