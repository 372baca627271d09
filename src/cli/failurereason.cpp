#include "failurereason.h"

#include "regularfile.h"
#include "reportfile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>

namespace failureReason {

QString forAbortedJob(const QString& jsonPath) {
    if (!jsonPath.endsWith(QLatin1String(".json")))
        return QStringLiteral("not a \".json\" file name");
    QFile file;
    QString reason;
    if (!openRegularFile(file, jsonPath, &reason))
        return QStringLiteral("cannot be opened: ") + reason;
    if (file.size() == 0)
        return QStringLiteral("empty file");
    return QStringLiteral("not converted");
}

QString forFinishedJob(const QString& reportPath, const filePaths::Identity& before) {
    const filePaths::Identity now = filePaths::entryIdentityOf(reportPath);
    if (!now.exists)
        return QStringLiteral("report not written");
    if (now == before)
        return before.regularFile
                   ? QStringLiteral("report not written (the old report was left in place)")
                   : QStringLiteral("report not written");
    QFile report;
    QString reason;
    if (!openRegularFile(report, reportPath, &reason))
        return QStringLiteral("report not written (cannot read it back: ") + reason +
               QLatin1Char(')');
    report.close();
    if (!ReportFile::isCompletePdf(reportPath))
        return QStringLiteral("report not written (the file is incomplete)");
    return QString();
}

QString jsonWarning(const QString& jsonPath) {
    QFile file;
    if (!openRegularFile(file, jsonPath))
        return QString();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError)
        return QStringLiteral("not valid JSON (%1 at offset %2); the report has empty values")
            .arg(error.errorString())
            .arg(error.offset);
    if (!document.isObject())
        return QStringLiteral("the top level is not a JSON object; the report has empty values");
    return QString();
}

} // namespace failureReason
