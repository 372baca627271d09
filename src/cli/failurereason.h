#ifndef BREVIO_FAILUREREASON_H
#define BREVIO_FAILUREREASON_H

#include "filepaths.h"

#include <QString>
#include <QStringList>

// Plain-sentence explanations of a job's outcome for the command line. The
// job itself only says aborted() or finished(); these look at the files.
namespace failureReason {

// Why a job that ended with aborted() did not convert jsonPath.
QString forAbortedJob(const QString& jsonPath);

// Empty when the name reportPath now holds a new, complete PDF; otherwise
// why it does not. before is the name's directory entry from before the
// job: a report is written by renaming a new file over the name, so a
// written report always has another identity, whatever the file system's
// time stamps can tell.
QString forFinishedJob(const QString& reportPath, const filePaths::Identity& before);

// Warnings about the report of the file at jsonPath, read once: when its
// content is not a JSON object, and which characters of the report's text
// from this file (every string in its configuration, and the path printed
// under the title) no font on this machine can draw. Needs the GUI thread.
QStringList warnings(const QString& jsonPath);

// Empty when the report's own labels can be drawn in the report's fonts;
// otherwise why no report is usable. Needs the GUI thread.
QString labelFailure();

} // namespace failureReason

#endif
