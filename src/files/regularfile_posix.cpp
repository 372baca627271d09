// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/regularfile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

bool openRegularFile(QFile& file, const QString& path, QString* reason) {
    const int fd =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) {
        if (reason)
            *reason = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        if (reason)
            *reason = S_ISDIR(info.st_mode) ? QStringLiteral("it is a directory")
                                            : QStringLiteral("not a regular file");
        ::close(fd);
        return false;
    }
    // Reads from a regular file never wait, so O_NONBLOCK changes nothing
    // from here on; it is cleared all the same to leave a plain descriptor.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        if (reason)
            *reason = file.errorString();
        ::close(fd);
        return false;
    }
    return true;
}
