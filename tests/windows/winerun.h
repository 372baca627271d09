// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_WINERUN_H
#define BREVIO_TESTS_WINERUN_H

#include "runprogram.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Runs a Windows program of build-windows under wine64, in a Wine prefix of
// the suite's own (made on the first run), from the folder workingFolder.
ProgramRun runUnderWine(const QString& program, const QStringList& arguments,
                        const QString& workingFolder, int timeoutMs = 120000);
// The environment a Windows program runs in under Wine: the suite's
// prefix, Wine's own notes silenced, no Mono or Gecko prompts, and no
// headless platform inherited from the test suite.
QProcessEnvironment wineEnvironment();

// Runs a Linux program the same way, headless.
ProgramRun runNative(const QString& program, const QStringList& arguments,
                     const QString& workingFolder, int timeoutMs = 120000);

// The Windows programs under test and Linux's brevio-convert to compare with.
QString windowsProgram(const QString& name);
QString linuxConverter();

// The path Wine's Windows programs see for a Linux path (drive Z: is "/").
QString windowsPathOf(const QString& linuxPath);

#endif
