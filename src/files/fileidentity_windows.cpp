// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/filepaths.h"
#include "files/windowspath.h"

#include <QDir>

#include <windows.h>

namespace filePaths {

QString workingFolder() {
    // Windows cannot remove a folder that a process works in, so there is
    // always one to name.
    return QDir::toNativeSeparators(QDir::currentPath());
}

namespace {

// The volume's serial number and the file's index: NTFS's inode.
Identity identityThrough(const QString& path) {
    Identity identity;
    const HANDLE handle = CreateFileW(windowsPath::forSystem(path).c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return identity;
    BY_HANDLE_FILE_INFORMATION info{};
    if (GetFileInformationByHandle(handle, &info)) {
        identity.exists = true;
        identity.device = info.dwVolumeSerialNumber;
        identity.inode = (quint64(info.nFileIndexHigh) << 32) | info.nFileIndexLow;
    }
    CloseHandle(handle);
    return identity;
}

} // namespace

Identity identityOf(const QString& path) {
    return identityThrough(path);
}

} // namespace filePaths
