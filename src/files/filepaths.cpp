// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/filepaths.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace filePaths {

QString workingFolder() {
    // currentPath() is getcwd(): the physical folder, links already resolved.
    const QString current = QDir::currentPath();
    if (!current.isEmpty())
        return current;
    // A folder that is gone keeps no links: it can hold no file.
    struct stat info {};
    if (::stat(".", &info) != 0 || info.st_nlink == 0)
        return QString();
    return QStringLiteral(".");
}

QString absolute(const QString& path) {
    return absolute(path, workingFolder());
}

QString absolute(const QString& path, const QString& base) {
    if (path.startsWith(QLatin1Char('/')))
        return path;
    if (base == QLatin1String("."))
        return path;
    if (base.isEmpty())
        return QString();
    if (base.endsWith(QLatin1Char('/')))
        return base + path;
    return base + QLatin1Char('/') + path;
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

QString folderOf(const QString& path) {
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QStringLiteral(".");
    if (slash == 0)
        return QStringLiteral("/");
    return path.left(slash);
}

namespace {

Identity fromStat(int result, const struct stat& info) {
    Identity identity;
    if (result == 0) {
        identity.exists = true;
        identity.device = info.st_dev;
        identity.inode = info.st_ino;
        identity.regularFile = S_ISREG(info.st_mode);
    }
    return identity;
}

} // namespace

Identity identityOf(const QString& path) {
    struct stat info {};
    return fromStat(::stat(QFile::encodeName(path).constData(), &info), info);
}

Identity entryIdentityOf(const QString& path) {
    struct stat info {};
    return fromStat(::lstat(QFile::encodeName(path).constData(), &info), info);
}

QString reportKey(const QString& reportPath) {
    const Identity folder = identityOf(folderOf(reportPath));
    if (!folder.exists)
        return reportPath;
    const QString name = reportPath.mid(reportPath.lastIndexOf(QLatin1Char('/')) + 1);
    return QStringLiteral("%1:%2/").arg(qulonglong(folder.device)).arg(qulonglong(folder.inode)) +
           name;
}

} // namespace filePaths
