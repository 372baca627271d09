// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/filepaths.h"

#include "files/pathsyntax.h"

namespace filePaths {

QString absolute(const QString& path) {
    return absolute(path, workingFolder());
}

QString absolute(const QString& path, const QString& base) {
    if (pathSyntax::isAbsolute(path))
        return path;
    if (base == QLatin1String("."))
        return path;
    if (base.isEmpty())
        return QString();
    return pathSyntax::absoluteOn(path, base);
}

QString reportFor(const QString& jsonPath) {
    QString report = jsonPath;
    if (!report.endsWith(QLatin1String(".pdf")))
        report.replace(QLatin1String(".json"), QLatin1String(".pdf"));
    return report;
}

QString configurationFor(const QString& reportPath) {
    QString configuration = reportPath;
    configuration.replace(QLatin1String(".pdf"), QLatin1String(".json"));
    return configuration;
}

namespace {

int lastSeparator(const QString& path) {
    for (int at = path.size() - 1; at >= 0; --at)
        if (pathSyntax::isSeparator(path.at(at)))
            return at;
    return -1;
}

} // namespace

QString folderOf(const QString& path) {
    const int separator = lastSeparator(path);
    const int root = pathSyntax::rootLength(path);
    if (separator < 0 && root == 0)
        return QStringLiteral(".");
    // The root is a folder of its own: "/", "C:\", "\\server\share\".
    if (separator < root)
        return path.left(root);
    return path.left(separator);
}

QString fileNameOf(const QString& path) {
    return path.mid(qMax(lastSeparator(path) + 1, pathSyntax::rootLength(path)));
}

QString reportKey(const QString& reportPath) {
    const Identity folder = identityOf(folderOf(reportPath));
    if (!folder.exists)
        return reportPath;
    const QString name = fileNameOf(reportPath);
    return QStringLiteral("%1:%2/").arg(qulonglong(folder.device)).arg(qulonglong(folder.inode)) +
           name;
}

} // namespace filePaths
