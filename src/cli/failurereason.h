// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_FAILUREREASON_H
#define BREVIO_FAILUREREASON_H

#include "convert/conversionoutcome.h"

#include <QString>
#include <QStringList>

// How brevio-convert words a job's outcome. Everything said here comes from
// what the job recorded while it ran; nothing looks at the files again.
namespace failureReason {

// Empty when the job wrote a complete report; otherwise why the file counts
// as not converted.
QString forOutcome(const ConversionOutcome& outcome);

// The warnings of a conversion, each without the "warning: " prefix: the
// file is not valid JSON or not a JSON object, and characters no font on
// this machine can draw.
QStringList warnings(const ConversionOutcome& outcome);

} // namespace failureReason

#endif
