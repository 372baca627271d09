// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/regularfile.h"

#include "files/windowspath.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

bool openRegularFile(QFile& file, const QString& path, QString* reason) {
    // Others may go on reading, writing, renaming or deleting the file (a
    // companion app saving it anew); this read sees the file it opened.
    // Folders open too, so that they are told apart from a denied file.
    const HANDLE handle =
        CreateFileW(windowsPath::forSystem(path).c_str(), GENERIC_READ,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        if (reason)
            *reason = windowsPath::errorText(GetLastError());
        return false;
    }
    BY_HANDLE_FILE_INFORMATION info{};
    const bool known = GetFileInformationByHandle(handle, &info) != 0;
    // A console, a pipe or a printer port answer to file names too (CON,
    // \\.\pipe\...); only a file on a disk is read.
    if (!known || GetFileType(handle) != FILE_TYPE_DISK ||
        (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        if (reason)
            *reason = known && (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0
                          ? QStringLiteral("it is a directory")
                          : QStringLiteral("not a regular file");
        CloseHandle(handle);
        return false;
    }
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    if (fd < 0) {
        CloseHandle(handle);
        if (reason)
            *reason = QStringLiteral("cannot be opened");
        return false;
    }
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        if (reason)
            *reason = file.errorString();
        _close(fd);
        return false;
    }
    return true;
}
