// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/windowspath.h"

#include "files/pathsyntax.h"

#include <QDir>

#include <windows.h>

namespace windowsPath {

std::wstring forSystem(const QString& path) {
    QString native = QDir::toNativeSeparators(path);
    if (pathSyntax::isAbsolute(native) && !native.startsWith(QLatin1String("\\\\?\\"))) {
        // The long form takes the name literally: "." and ".." are the
        // system's to resolve first.
        native = QDir::toNativeSeparators(QDir::cleanPath(QDir::fromNativeSeparators(native)));
        if (native.startsWith(QLatin1String("\\\\")))
            native = QStringLiteral("\\\\?\\UNC\\") + native.mid(2);
        else
            native = QStringLiteral("\\\\?\\") + native;
    }
    return native.toStdWString();
}

QString errorText(unsigned long code) {
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    QString text = length > 0 ? QString::fromWCharArray(buffer, int(length)).trimmed()
                              : QStringLiteral("error %1").arg(code);
    if (buffer)
        LocalFree(buffer);
    // "Access is denied." reads as one sentence after "report not written: ".
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

} // namespace windowsPath
