#ifndef BREVIO_FAILUREREASON_H
#define BREVIO_FAILUREREASON_H

#include "filepaths.h"

#include <QString>

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

// A warning when the file's content is not a JSON object, empty otherwise.
QString jsonWarning(const QString& jsonPath);

} // namespace failureReason

#endif
