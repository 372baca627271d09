// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/jsonrecord.h"
#include "convert/reportlayout.h"

#include <QPainter>
#include <QPrinter>

using namespace reportLayout;

namespace {

// The four entries the report shows: state, brightness, rotation, tlfEnabled.
constexpr int displayPrintedEntries = 4;
constexpr unsigned quarterTurnDegrees = 90;

} // namespace

void convert::readDisplay(const QJsonObject& display) {
    displayValues.clear();
    displayValues.reserve(12);
    appendMembers(displayValues, display,
                  {"state", "brightness", "rotation", "tlfEnabled", "lcdCalibration", "sensors"});
    appendMembers(displayValues, display.value(QLatin1String("values")).toObject(),
                  {"1", "2", "3", "4", "5", "6"});
}

void convert::printDisplay(QPainter& painter, QPrinter& printer) {
    // The output section leaves the cursor on a free line, so the heading
    // goes exactly there, even past the page limit; the first step below
    // then moves on to a new page.
    painter.setFont(headingFont);
    drawLine(painter, fullLine(reportCursor), tr("Display: "));
    painter.setFont(bodyFont);
    if (displayValues.size() < displayPrintedEntries)
        return;

    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor),
             tr("Status: ") + (displayValues[0].toBool() ? tr("Display vorhanden")
                                                         : tr("Kein Display vorhanden")));

    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor),
             tr("Helligkeit[%]: ") + displayValues[1].toString());

    // The file counts quarter turns. The product wraps around like the
    // firmware's int arithmetic instead of overflowing, so absurd counts
    // still print a number.
    const unsigned quarterTurns = static_cast<unsigned>(displayValues[2].toInt());
    const int degrees = static_cast<int>(quarterTurns * quarterTurnDegrees);
    advanceLine(printer);
    drawLine(painter, leftColumn(reportCursor), tr("Rotation[°]: ") + QString::number(degrees));

    // Only the exact text "false" switches the function off; anything else,
    // a missing member included, counts as switched on.
    advanceLine(printer);
    const bool tlfOff = displayValues[3].toString() == QLatin1String("false");
    drawLine(painter, leftColumn(reportCursor),
             tr("TLF aktiviert: ") + (tlfOff ? tr("Nein") : tr("Ja")));
    // The cursor stays on the last line; the traffic-light section makes its
    // own space.
}
