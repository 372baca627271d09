// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REPORTFONTS_H
#define BREVIO_REPORTFONTS_H

#include <QString>

// The report is drawn in a font that comes with the program, so that it looks
// and breaks its lines the same on every machine, whatever the machine's
// font configuration calls sans-serif.

// The family name of the bundled faces.
QString reportFontFamily();

// Registers the bundled regular and bold faces from the resources and makes
// their family the application's default font, keeping the default's size,
// so that every default-constructed QFont (the job's fonts among them) uses
// it. Call once on the GUI thread after the application object exists and
// before the first job. Returns false if a face could not be registered;
// reports then fall back to the machine's fonts.
bool registerReportFonts();

#endif
