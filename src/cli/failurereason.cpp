#include "failurereason.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonParseError>

namespace failureReason {

QString forAbortedJob(const QString& jsonPath) {
    if (!jsonPath.endsWith(QLatin1String(".json")))
        return QStringLiteral("not a \".json\" file name");
    const QFileInfo info(jsonPath);
    if (!info.exists()) {
        // The system's own reason tells a missing file from a link loop.
        QFile file(jsonPath);
        file.open(QIODevice::ReadOnly);
        return QStringLiteral("cannot be opened: ") + file.errorString();
    }
    if (info.isDir())
        return QStringLiteral("cannot be opened: it is a directory");
    if (!info.isFile())
        return QStringLiteral("cannot be opened: not a regular file");
    QFile file(jsonPath);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be opened: ") + file.errorString();
    if (file.size() == 0)
        return QStringLiteral("empty file");
    return QStringLiteral("not converted");
}

QString forFinishedJob(const QString& reportPath, bool existedBefore,
                       const QDateTime& modifiedBefore) {
    const QFileInfo info(reportPath);
    if (!info.isFile())
        return QStringLiteral("report not written");
    if (existedBefore && info.lastModified() == modifiedBefore)
        return QStringLiteral("report not written (the old report was left in place)");
    QFile report(reportPath);
    if (!report.open(QIODevice::ReadOnly))
        return QStringLiteral("report not written (cannot read it back: ") + report.errorString() +
               QLatin1Char(')');
    // A complete PDF starts with its header and ends with the trailer's
    // end-of-file marker; a full disk leaves a file without the latter.
    const QByteArray head = report.read(5);
    const qint64 size = report.size();
    report.seek(qMax<qint64>(0, size - 1024));
    const QByteArray tail = report.readAll();
    if (head != "%PDF-" || !tail.contains("%%EOF"))
        return QStringLiteral("report not written (the file is incomplete)");
    return QString();
}

QString jsonWarning(const QString& jsonPath) {
    QFile file(jsonPath);
    if (!file.open(QIODevice::ReadOnly))
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
