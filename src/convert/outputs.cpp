// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/jsonrecord.h"
#include "convert/reportlayout.h"
#include "convert/unitname.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPrinter>

using namespace reportLayout;

namespace {

// A channel block is a heading and three rows; the next block starts one
// empty line below the last row.
constexpr int outputBlockAdvance = 5 * lineStep;
// Room the whole block needs below its top before the page limit.
constexpr int outputBlockReserve = 6 * lineStep;
// An entry needs its values up to the upper range end (index 9) to be drawn.
constexpr int outputEntryMinimum = 10;

QString fanMakerName(int code) {
    switch (code) {
    case 0:
        return QStringLiteral("Rosenberg/Comefri/Gebhardt Nicotra");
    case 1:
        return QStringLiteral("Ziehl-Abegg/EBM-Papst");
    case 2:
        return QStringLiteral("Fläkt Woods");
    default:
        return QCoreApplication::translate("convert", "Unbekannst: Id ") + QString::number(code);
    }
}

} // namespace

void convert::readOutputs(const QJsonArray& outputs) {
    outputValues.clear();
    // The size is asked on every pass: each element yields exactly one entry,
    // whatever its type, so the channel numbers follow the array positions.
    for (int i = 0; i < outputs.size(); ++i) {
        const QJsonObject channel = outputs.at(i).toObject();
        QVector<QVariant> values;
        values.reserve(13);
        appendMembers(values, channel,
                      {"channel", "range", "unit", "k_factor", "producer", "response"});
        appendMeasure(values, channel);
        outputValues.append(std::move(values));
    }
}

void convert::printOutput(QPainter& painter, QPrinter& printer) {
    for (int i = 0; i < outputValues.size(); ++i) {
        const QVector<QVariant>& values = outputValues.at(i);
        // A short entry is left out but keeps its number, so the printed
        // channel numbers still match the device's channel positions.
        if (values.size() < outputEntryMinimum)
            continue;

        // The block is never split: if it would reach past the page limit it
        // moves to the next page as a whole.
        keepBlockOnOnePage(printer, outputBlockReserve);
        const int top = reportCursor;
        const int row1 = top + lineStep;
        const int row2 = top + 2 * lineStep;
        const int row3 = top + 3 * lineStep;

        painter.setFont(headingFont);
        drawLine(painter, leftColumn(top),
                 tr("Ausgang ") + QString::number(i + 1) + QStringLiteral(": ") +
                     values[6].toString());
        painter.setFont(bodyFont);

        const QString unit = unitName(values[7].toInt());
        if (values[6].toString() == QLatin1String("PRESSURE")) {
            // A pressure channel has no fan behind it: no K-factor, maker or
            // response time, so its rows stay in the left column.
            drawLine(painter, leftColumn(row1), tr("Einheit: ") + unit);
            drawLine(painter, leftColumn(row2),
                     tr("Messbereich Untergrenze: ") + values[8].toString());
            drawLine(painter, leftColumn(row3),
                     tr("Messbereich Obergrenze: ") + values[9].toString());
        } else {
            drawLine(painter, leftColumn(row1), tr("K-Faktor: ") + values[3].toString());
            drawLine(painter, rightColumn(row1), tr("Einheit: ") + unit);
            drawLine(painter, leftColumn(row2),
                     tr("Hersteller: ") + fanMakerName(values[4].toInt()));
            drawLine(painter, rightColumn(row2),
                     tr("Messbereich Untergrenze: ") + values[8].toString());
            drawLine(painter, leftColumn(row3), tr("Ansprechzeit [s]: ") + values[5].toString());
            drawLine(painter, rightColumn(row3),
                     tr("Messbereich Obergrenze: ") + values[9].toString());
        }
        // No page check here: the next block's own check decides its page,
        // and the display heading after the last block relies on this line.
        reportCursor = top + outputBlockAdvance;
    }
}
