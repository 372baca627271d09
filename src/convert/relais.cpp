// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/jsonrecord.h"
#include "convert/reportlayout.h"

#include <QPainter>
#include <QPrinter>
#include <QStringList>

#include <algorithm>

using namespace reportLayout;

namespace {

// A relay needs its thresholds and states (indices 0 to 2) and the measure
// name (index 3) to be drawn.
constexpr int relaisEntryMinimum = 4;
// Room for the heading, the threshold row and a few states before the page
// limit; longer state lists run on regardless.
constexpr int relaisBlockReserve = 5 * lineStep;
// State lines far below the page cannot be seen anyway; beyond this depth
// neither drawing positions nor the cursor may grow, so that a relay with
// millions of states cannot overflow the coordinates.
constexpr qint64 relaisDepthLimit = qint64(1) << 30;

} // namespace

void convert::readRelais(const QJsonArray& relais) {
    relaisValues.clear();
    for (int i = 0; i < relais.size(); ++i) {
        const QJsonObject relay = relais.at(i).toObject();
        QVector<QVariant> values;
        values.reserve(10);
        appendMembers(values, relay, {"lowThreshold", "highThreshold", "states"});
        appendMeasure(values, relay);
        relaisValues.append(std::move(values));
    }
}

void convert::printRelais(QPainter& painter, QPrinter& printer) {
    // The empty line before the section is made even when there are no
    // relays, so the Modbus heading always stands two lines further down.
    advanceLine(printer);
    advanceLine(printer);

    for (int i = 0; i < relaisValues.size(); ++i) {
        const QVector<QVariant>& values = relaisValues.at(i);
        // Skipped entries keep their number: relays are numbered by their
        // position in the device.
        if (values.size() < relaisEntryMinimum)
            continue;

        keepBlockOnOnePage(printer, relaisBlockReserve);
        const int top = reportCursor;

        painter.setFont(headingFont);
        drawLine(painter, fullLine(top),
                 tr("Relais") + QLatin1Char(' ') + QString::number(i + 1) + QStringLiteral(": ") +
                     values[3].toString());
        painter.setFont(bodyFont);

        const int thresholdRow = top + lineStep;
        drawLine(painter, leftColumn(thresholdRow), tr("Schwellwert 1: ") + values[0].toString());
        drawLine(painter, rightColumn(thresholdRow), tr("Schwellwert 2: ") + values[1].toString());

        // A state is open only when it is exactly 0 (number or text). The
        // state lines are not page-checked: a relay keeps its states together
        // with its heading, even if the last ones run past the page foot.
        const QStringList states = values[2].toStringList();
        for (int k = 1; k <= states.size(); ++k) {
            const qint64 stateTop = top + qint64(lineStep) * (k + 1);
            if (stateTop > relaisDepthLimit)
                break;
            const QString word =
                states.at(k - 1) == QLatin1String("0") ? tr("Geöffnet") : tr("Geschlossen");
            drawLine(painter, leftColumn(int(stateTop)), tr("Zustand %1: ").arg(k) + word);
        }
        // One empty line follows the last state (or the threshold row).
        const qint64 next = top + 3 * qint64(lineStep) + qint64(lineStep) * states.size();
        reportCursor = int(std::min(next, relaisDepthLimit));
    }
}
