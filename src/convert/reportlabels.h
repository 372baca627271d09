// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTLABELS_H
#define BREVIO_REPORTLABELS_H

#include <QtGlobal>

// Labels that every report draws, whatever its file holds, as the source
// texts the report passes to convert::tr(). They are written here once
// because the job also asks whether its fonts can draw them, in the
// language installed, to tell a report that shows nothing but bars.
namespace reportLabels {

// In the body font: the title above the date, and the first and last label
// of the general block.
constexpr const char* title = QT_TRANSLATE_NOOP("convert", "Quandel Protokoll vom:\n");
constexpr const char* name = QT_TRANSLATE_NOOP("convert", "Name: ");
constexpr const char* altitude = QT_TRANSLATE_NOOP("convert", "Höhe [m]: ");

// In the heading font: the general block's heading and the Modbus heading.
constexpr const char* generalHeading = QT_TRANSLATE_NOOP("convert", "Allgemeine Einstellungen:");
constexpr const char* modbusHeading = QT_TRANSLATE_NOOP("convert", "Modbus");

} // namespace reportLabels

#endif
