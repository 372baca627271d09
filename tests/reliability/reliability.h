// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_RELIABILITY_H
#define BREVIO_TESTS_RELIABILITY_H

#include "runprogram.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Helpers shared by the tests that feed Brevio hostile files, hostile
// output places and a hostile print service. Children are run with
// runProgram (runprogram.h).
namespace reliability {

// brevio-convert as the tests run it: no display, toolkit messages quiet,
// with the variables of extra added. Conversions of the biggest hostile
// files take minutes, hence the long default.
ProgramRun runConverter(const QStringList& arguments, int timeoutMs = 300000,
                        const QProcessEnvironment& extra = QProcessEnvironment());

// SHA-256 of the file's bytes; empty when it cannot be read.
QByteArray fileHash(const QString& path);

} // namespace reliability

#endif
