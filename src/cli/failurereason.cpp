#include "cli/failurereason.h"

namespace failureReason {

namespace {

QString notWritten(const ConversionOutcome& outcome) {
    // Every failure to write leaves an older report as it was; saying so
    // tells the user that the file they see is not this run's.
    return outcome.olderReportKept
               ? QStringLiteral("report not written (the old report was left in place)")
               : QStringLiteral("report not written");
}

} // namespace

QString forOutcome(const ConversionOutcome& outcome) {
    using Reason = ConversionOutcome::Reason;
    switch (outcome.reason) {
    case Reason::Converted:
        return QString();
    case Reason::NotJsonName:
        return QStringLiteral("not a \".json\" file name");
    case Reason::CannotOpen:
        return QStringLiteral("cannot be opened: ") + outcome.detail;
    case Reason::EmptyFile:
        return QStringLiteral("empty file");
    case Reason::NoTemporaryFolder:
    case Reason::PainterFailed:
    case Reason::ReportIncomplete:
    case Reason::CommitFailed:
        return notWritten(outcome);
    case Reason::LabelsUndrawable:
        return QStringLiteral("report not written (no font can draw its text)");
    case Reason::FileSizeLimit:
        return outcome.olderReportKept
                   ? QStringLiteral("report not written (file size limit; the old report was "
                                    "left in place)")
                   : QStringLiteral("report not written (file size limit)");
    case Reason::OutOfMemory:
        return QStringLiteral("not converted (out of memory)");
    case Reason::NotRun:
        break;
    }
    return QStringLiteral("not converted");
}

QStringList warnings(const ConversionOutcome& outcome) {
    QStringList found;
    if (outcome.jsonInvalid)
        found << QStringLiteral("not valid JSON (%1 at offset %2); the report has empty values")
                     .arg(outcome.jsonError)
                     .arg(outcome.jsonErrorOffset);
    else if (outcome.topLevelNotObject)
        found << QStringLiteral("the top level is not a JSON object; the report has empty values");
    const int missing = outcome.undrawable.size();
    if (missing > 0)
        found << QStringLiteral("%1 %2 cannot be drawn: %3")
                     .arg(missing)
                     .arg(missing == 1 ? QStringLiteral("character") : QStringLiteral("characters"))
                     .arg(codePointList(outcome.undrawable));
    return found;
}

} // namespace failureReason
