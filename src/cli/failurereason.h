#ifndef BREVIO_FAILUREREASON_H
#define BREVIO_FAILUREREASON_H

#include <QDateTime>
#include <QString>

// Plain-sentence explanations of a job's outcome for the command line. The
// job itself only says aborted() or finished(); these look at the files.
namespace failureReason {

// Why a job that ended with aborted() did not convert jsonPath.
QString forAbortedJob(const QString& jsonPath);

// Empty when the report at reportPath is a complete PDF written by this run;
// otherwise why it is not.
QString forFinishedJob(const QString& reportPath, bool existedBefore,
                       const QDateTime& modifiedBefore);

// A warning when the file's content is not a JSON object, empty otherwise.
QString jsonWarning(const QString& jsonPath);

// A warning naming the characters of the report's text from this file (every
// string in its configuration, and the file's path printed under the title)
// that no font on this machine can draw; empty when every one is drawn.
// Needs the GUI thread.
QString undrawableWarning(const QString& jsonPath);

// Empty when the report's own labels can be drawn in the report's fonts;
// otherwise why no report is usable. Needs the GUI thread.
QString labelFailure();

} // namespace failureReason

#endif
