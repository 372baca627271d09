#include "failurereason.h"

#include "regularfile.h"
#include "reportfile.h"
#include "reportlayout.h"
#include "undrawable.h"

#include <QFile>
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

QStringList warnings(const QString& jsonPath) {
    QStringList found;
    QFile file;
    QByteArray content;
    if (openRegularFile(file, jsonPath))
        content = file.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
        found << QStringLiteral("not valid JSON (%1 at offset %2); the report has empty values")
                     .arg(error.errorString())
                     .arg(error.offset);
    else if (!document.isObject())
        found << QStringLiteral("the top level is not a JSON object; the report has empty values");

    // The path is printed under the title.
    QString text = jsonPath + QLatin1Char('\n');
    appendStrings(document.object().value(QLatin1String("configuration")), text);
    const QVector<uint> missing =
        undrawableCharacters(text, reportFont(reportLayout::bodyPixelSize, QFont::Normal));
    if (!missing.isEmpty())
        found << QStringLiteral("%1 %2 cannot be drawn: %3")
                     .arg(missing.size())
                     .arg(missing.size() == 1 ? QStringLiteral("character")
                                              : QStringLiteral("characters"))
                     .arg(codePointList(missing));
    return found;
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
