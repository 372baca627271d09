// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_UNITNAME_H
#define BREVIO_UNITNAME_H

#include <QString>

// The unit text the device firmware uses for a unit code; an unknown code has
// no text. These words are the firmware's identifiers, so they are printed as
// they are and never translated.
QString unitName(int code);

#endif
