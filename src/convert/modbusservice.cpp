// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/jsonrecord.h"
#include "convert/reportlabels.h"
#include "convert/reportlayout.h"

#include <QPainter>
#include <QPrinter>
#include <QStringList>

using namespace reportLayout;

namespace {

// The text before the first capital "T" of a date-time such as
// 2020-03-17T10:15:00.
QString datePart(const QVariant& value) {
    return value.toString().split(QLatin1Char('T')).first();
}

} // namespace

void convert::readOffset(const QJsonArray& offsets) {
    // The device's offsets are not part of the report.
    Q_UNUSED(offsets)
    offsetValues.clear();
}

void convert::readModbus(const QJsonObject& modbus) {
    modbusValues.clear();
    appendMembers(modbusValues, modbus,
                  {"offset", "transmissionRate", "address", "mode", "parity"});
}

void convert::readService(const QJsonObject& service) {
    serviceValues.clear();
    appendMembers(serviceValues, service,
                  {"lastService", "nextService", "lastCalibration", "nextCalibration"});
}

void convert::printModbus(QPainter& painter, QPrinter& printer) {
    // The relay section leaves the cursor on the heading's line.
    painter.setFont(headingFont);
    drawLine(painter, fullLine(reportCursor), tr(reportLabels::modbusHeading));
    painter.setFont(bodyFont);
    if (modbusValues.size() >= 5) {
        const QString labels[] = {tr("Offset: "), tr("Baudrate: "), tr("Adresse: "),
                                  tr("Übertragungsart: "), tr("Parität: ")};
        for (int i = 0; i < 5; ++i) {
            advanceLine(printer);
            drawLine(painter, leftColumn(reportCursor), labels[i] + modbusValues[i].toString());
        }
    }
}

void convert::printService(QPainter& painter, QPrinter& printer) {
    // One empty line separates this section from the last Modbus line.
    advanceLine(printer);
    advanceLine(printer);
    painter.setFont(headingFont);
    drawLine(painter, fullLine(reportCursor), tr("Service: "));
    painter.setFont(bodyFont);
    if (serviceValues.size() >= 4) {
        const QString lines[] = {tr("Letzter Service: ") + datePart(serviceValues[0]),
                                 tr("Nächster Service: ") + serviceValues[1].toString() +
                                     QLatin1Char(' ') + tr("Tage"),
                                 tr("Letzte Kalibrierung: ") + datePart(serviceValues[2]),
                                 tr("Nächste  Kalibirierung: ") + serviceValues[3].toString() +
                                     QLatin1Char(' ') + tr("Tage")};
        for (const QString& line : lines) {
            advanceLine(printer);
            drawLine(painter, leftColumn(reportCursor), line);
        }
    }
}
