#include "failurereason.h"

#include "reportlayout.h"
#include "undrawable.h"

#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace {

// Every string value below value, each followed by a line break, which
// is never drawn.
void appendStrings(const QJsonValue& value, QString& text) {
    if (value.isString()) {
        text += value.toString();
        text += QLatin1Char('\n');
    } else if (value.isArray()) {
        for (const QJsonValue& element : value.toArray())
            appendStrings(element, text);
    } else if (value.isObject()) {
        for (const QJsonValue& member : value.toObject())
            appendStrings(member, text);
    }
}

// The fonts the job draws with: default-constructed, so in the
// application's family, at the report's sizes.
QFont reportFont(int pixelSize, QFont::Weight weight) {
    QFont font;
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

} // namespace

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

QString undrawableWarning(const QString& jsonPath) {
    QString text = jsonPath + QLatin1Char('\n');
    QFile file(jsonPath);
    if (file.open(QIODevice::ReadOnly)) {
        const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
        appendStrings(document.value(QLatin1String("configuration")), text);
    }
    const QVector<uint> missing =
        undrawableCharacters(text, reportFont(reportLayout::bodyPixelSize, QFont::Normal));
    if (missing.isEmpty())
        return QString();
    return QStringLiteral("%1 %2 cannot be drawn: %3")
        .arg(missing.size())
        .arg(missing.size() == 1 ? QStringLiteral("character") : QStringLiteral("characters"))
        .arg(codePointList(missing));
}

QString labelFailure() {
    // With neither the bundled font nor any font of the machine usable,
    // every line of a report is a black bar; the labels tell, since they
    // are always printed.
    static const bool labelsDrawn =
        undrawableCharacters(QStringLiteral("Allgemeine Einstellungen: Modbus"),
                             reportFont(reportLayout::headingPixelSize, QFont::Bold))
            .isEmpty() &&
        undrawableCharacters(QStringLiteral("Quandel Protokoll vom: Name: Höhe [m]:"),
                             reportFont(reportLayout::bodyPixelSize, QFont::Normal))
            .isEmpty();
    return labelsDrawn ? QString()
                       : QStringLiteral("report not written (no font can draw its text)");
}

} // namespace failureReason
