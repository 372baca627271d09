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

// The outcome's reason as a stable word for scripts: the key of its code
// ("Converted", "CannotOpen", "ReportTaken", ...), the same in every
// language and release.
QString code(const ConversionOutcome& outcome);

// The outcomes of files that no job is run for, worded by forOutcome() like
// every other.
// A relative name given in a working folder that no longer exists.
ConversionOutcome workingFolderGone();
// A file whose report another configuration of the batch, named other as
// quoted for the user, writes.
ConversionOutcome reportTaken(const QString& other);
// A job that never got a thread to run on.
ConversionOutcome noThread();

// The warning of a file given again, converted once for both names.
QString sameReportWarning(const QString& other);

// The warnings of a conversion, each without the "warning: " prefix: the
// file is not valid JSON or not a JSON object, and characters no font on
// this machine can draw.
QStringList warnings(const ConversionOutcome& outcome);

} // namespace failureReason

#endif
