// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/unitname.h"

QString unitName(int code) {
    switch (code) {
    case 1:
        // The firmware's own name carries the blank; reports have always shown it.
        return QStringLiteral("Grad_C ");
    case 2:
        return QStringLiteral("Grad_F");
    case 3:
        return QStringLiteral("Prozent");
    case 4:
        return QStringLiteral("g_m3");
    case 5:
        return QStringLiteral("kJ_kg");
    case 6:
        return QStringLiteral("BTU_lb");
    case 7:
        return QStringLiteral("ppm");
    case 8:
        return QStringLiteral("ppb");
    case 9:
        return QStringLiteral("Pa");
    case 10:
        return QStringLiteral("hPa");
    case 11:
        return QStringLiteral("kPa");
    case 12:
        return QStringLiteral("mbar");
    case 13:
        return QStringLiteral("bar");
    case 14:
        return QStringLiteral("inchWC");
    case 15:
        return QStringLiteral("m3_s");
    case 16:
        return QStringLiteral("m3_h");
    case 17:
        return QStringLiteral("cfm");
    case 18:
        return QStringLiteral("klux");
    case 19:
        return QStringLiteral("lux");
    case 20:
        return QStringLiteral("fc");
    case 21:
        return QStringLiteral("grain_ft3");
    case 2147483647:
        // The firmware's end marker of its unit enumeration.
        return QStringLiteral("MAX2");
    default:
        return QString();
    }
}
