// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Compiled into every test that links brevio_testsupport (it is one of
// that library's interface sources, so no linker can leave it out): the
// test starts as the programs start, as soon as its application exists
// and before any test function runs. Reports come out in the bundled font,
// file names that are not UTF-8 are kept byte for byte, and the
// application has the window's name and version, since the jobs run in
// these tests the way the window runs them. The fonts need a
// QGuiApplication: such a test uses QTEST_MAIN.

#include "convert/bootstrap.h"

#include <QCoreApplication>

namespace {

void startLikeThePrograms() {
    bootstrap::initApplication(QStringLiteral("brevio"));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startLikeThePrograms)
