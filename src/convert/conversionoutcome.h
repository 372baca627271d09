// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_CONVERSIONOUTCOME_H
#define BREVIO_CONVERSIONOUTCOME_H

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

class QDebug;

// What one conversion job came to, recorded by the job at the place where
// it happened: whether a complete report was written, and if not, why, in a
// code and in the system's own words where it had any. Warnings do not stop
// a report: the parser's complaint about the file and the characters no
// font could draw. A plain value, copied out of the job once its last
// signal has arrived.
class ConversionOutcome {
    Q_GADGET

public:
    enum class Reason {
        // The report is written and complete.
        Converted,
        // The job never ran to its end: set until it does, and kept for a
        // job that never got a thread to run on.
        NotRun,
        NotJsonName,
        CannotOpen,
        EmptyFile,
        OutOfMemory,
        // No folder for the temporary report next to the report.
        NoTemporaryFolder,
        // The printer would not start on the temporary report.
        PainterFailed,
        // The printer stopped before the PDF's end (a full disk).
        ReportIncomplete,
        // The finished report could not be flushed or put in place.
        CommitFailed,
        // Written, but not even the report's own labels could be drawn.
        LabelsUndrawable,
        // The printer stopped at the file size limit of the process
        // (ulimit -f), not at a full disk.
        FileSizeLimit,
        // The job stopped at an exception nobody expected; the report
        // begun by then has been cleaned up.
        UnexpectedError,
        // Not started: another configuration of the same batch names the
        // same report (detail: that configuration's name as quoted for the
        // user). Set by whoever starts the jobs.
        ReportTaken,
    };
    Q_ENUM(Reason)

    bool converted() const { return reason == Reason::Converted; }

    Reason reason = Reason::NotRun;
    // The report the job decided on, once it got that far (empty before):
    // written there when converted(). The one place that derives it, so
    // that whoever started the job names the file it really wrote.
    QString reportPath;
    // The words that go with the reason, where there are any: the
    // system's (strerror) for a file that could not be opened or written,
    // the exception's for UnexpectedError, the other configuration's name
    // for ReportTaken.
    QString detail;
    // True when the report could not be written and a regular file of an
    // earlier conversion still stands at the report's name.
    bool olderReportKept = false;

    // The parser's error, when the file is not valid JSON; the report then
    // shows the empty object the parser gave up with.
    bool jsonInvalid = false;
    QString jsonError;
    int jsonErrorOffset = 0;
    // Valid JSON whose top level is not an object, such as an array.
    bool topLevelNotObject = false;
    // An object without a "configuration" object: the report then shows
    // only what the readers make of missing values.
    bool noConfiguration = false;
    // Each line cut off at its column's edge, as far as it is printed, in
    // the order drawn.
    QStringList cutOff;
    // Code points of the report's text that no font could draw, each once,
    // in order of appearance.
    QVector<uint> undrawable;

    void fail(Reason why, const QString& systemWords = QString()) {
        reason = why;
        detail = systemWords;
    }
};

Q_DECLARE_METATYPE(ConversionOutcome)

// "U+4E1C U+4EAC" for the code points given.
QString codePointList(const QVector<uint>& codePoints);

// For the logs: "Converted" or the reason with the system's words.
QDebug operator<<(QDebug debug, const ConversionOutcome& outcome);

#endif
