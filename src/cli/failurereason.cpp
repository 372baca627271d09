// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/failurereason.h"

#include <QMetaEnum>

namespace failureReason {

namespace {

QString notWritten(const ConversionOutcome& outcome) {
    // The system's words say what to fix: a read-only folder, a full disk,
    // a folder in the report's place.
    QString reason = QStringLiteral("report not written");
    if (!outcome.detail.isEmpty())
        reason += QStringLiteral(": ") + outcome.detail;
    // Every failure to write leaves an older report as it was; saying so
    // tells the user that the file they see is not this run's.
    if (outcome.olderReportKept)
        reason += QStringLiteral(" (the old report was left in place)");
    return reason;
}

// The first few cut lines as printed, each ending in "…" where the column
// ends; a report with thousands of long values needs no list of them all.
QString cutOffWarning(const QStringList& lines) {
    constexpr int listed = 3;
    QStringList quoted;
    for (const QString& line : lines.mid(0, listed))
        quoted << QLatin1Char('"') + line + QChar(0x2026) + QLatin1Char('"');
    if (lines.size() > listed)
        quoted << QStringLiteral("...");
    return QStringLiteral("%1 %2 cut off at the column edge: %3")
        .arg(lines.size())
        .arg(lines.size() == 1 ? QStringLiteral("text is") : QStringLiteral("texts are"))
        .arg(quoted.join(QStringLiteral(", ")));
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
    case Reason::UnexpectedError:
        return outcome.detail.isEmpty()
                   ? QStringLiteral("not converted (unexpected error)")
                   : QStringLiteral("not converted (unexpected error: %1)").arg(outcome.detail);
    case Reason::ReportTaken:
        return QStringLiteral("same report as ") + outcome.detail;
    case Reason::NotRun:
        return QStringLiteral("not converted (no thread could be started)");
    }
    return QStringLiteral("not converted");
}

QString code(const ConversionOutcome& outcome) {
    return QString::fromLatin1(
        QMetaEnum::fromType<ConversionOutcome::Reason>().valueToKey(int(outcome.reason)));
}

ConversionOutcome workingFolderGone() {
    // There is no other place to look for a relative name, "/" least of
    // all.
    ConversionOutcome outcome;
    outcome.fail(ConversionOutcome::Reason::CannotOpen,
                 QStringLiteral("the working folder no longer exists"));
    return outcome;
}

ConversionOutcome reportTaken(const QString& other) {
    ConversionOutcome outcome;
    outcome.fail(ConversionOutcome::Reason::ReportTaken, other);
    return outcome;
}

ConversionOutcome noThread() {
    ConversionOutcome outcome;
    outcome.fail(ConversionOutcome::Reason::NotRun);
    return outcome;
}

QString sameReportWarning(const QString& other) {
    return QStringLiteral("same report as ") + other;
}

QStringList warnings(const ConversionOutcome& outcome) {
    QStringList found;
    // A report made from no configuration still prints every label, with
    // what the readers make of missing values ("Imp", "Ja", "Grün"): such
    // values look like facts, so the user is told where they come from.
    const QString defaultsOnly = QStringLiteral("; the report shows only defaults");
    if (outcome.jsonInvalid)
        found << QStringLiteral("not valid JSON (%1 at offset %2)")
                         .arg(outcome.jsonError)
                         .arg(outcome.jsonErrorOffset) +
                     defaultsOnly;
    else if (outcome.topLevelNotObject)
        found << QStringLiteral("the top level is not a JSON object") + defaultsOnly;
    else if (outcome.noConfiguration)
        found << QStringLiteral("no \"configuration\" object") + defaultsOnly;
    const int missing = outcome.undrawable.size();
    if (missing > 0)
        found << QStringLiteral("%1 %2 cannot be drawn: %3")
                     .arg(missing)
                     .arg(missing == 1 ? QStringLiteral("character") : QStringLiteral("characters"))
                     .arg(codePointList(outcome.undrawable));
    if (!outcome.cutOff.isEmpty())
        found << cutOffWarning(outcome.cutOff);
    return found;
}

} // namespace failureReason
