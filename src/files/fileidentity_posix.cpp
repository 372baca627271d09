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

namespace {

Identity fromStat(int result, const struct stat& info) {
    Identity identity;
    if (result == 0) {
        identity.exists = true;
        identity.device = quint64(info.st_dev);
        identity.inode = quint64(info.st_ino);
    }
    return identity;
}

} // namespace

Identity identityOf(const QString& path) {
    struct stat info {};
    return fromStat(::stat(QFile::encodeName(path).constData(), &info), info);
}

} // namespace filePaths
