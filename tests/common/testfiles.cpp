// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "testfiles.h"

#include "files/filepaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QString writeFile(const QString& dir, const QString& name, const QByteArray& bytes) {
    const QString target = QDir(dir).filePath(name);
    QFile file(target);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
    return target;
}

QString copyInto(const QString& source, const QString& dir, const QString& as) {
    const QString target = QDir(dir).filePath(as.isEmpty() ? QFileInfo(source).fileName() : as);
    QFile::remove(target);
    QFile::copy(source, target);
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                      QFile::ReadOther);
    return target;
}

QString exampleFile(const QString& name) {
    return QStringLiteral(BREVIO_SOURCE_DIR "/examples/") + name;
}

QString reportPathFor(const QString& jsonPath) {
    return filePaths::reportFor(jsonPath);
}

QStringList folderEntries(const QString& folder) {
    QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                               QDir::NoDotAndDotDot);
    names.sort();
    return names;
}
