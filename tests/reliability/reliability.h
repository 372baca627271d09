// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_RELIABILITY_H
#define BREVIO_TESTS_RELIABILITY_H

#include "runprogram.h"

#include <QByteArray>
#include <QString>

// Helpers shared by the tests that feed Brevio hostile files, hostile
// output places and a hostile print service. Children, brevio-convert
// among them, are run through runprogram.h.
namespace reliability {

// SHA-256 of the file's bytes; empty when it cannot be read.
QByteArray fileHash(const QString& path);

} // namespace reliability

#endif
