// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/reportfile.h"

#include "files/regularfile.h"
#include "files/temporaryfolders.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

QString systemWords(int errorNumber) {
    return QString::fromLocal8Bit(std::strerror(errorNumber));
}

} // namespace

QString ReportFile::makeFolder(const QString& parent) {
    QByteArray pattern = QFile::encodeName(parent + QStringLiteral("/.brevio-XXXXXX"));
    if (::mkdtemp(pattern.data()) == nullptr)
        return systemWords(errno);
    folder = QFile::decodeName(pattern);
    return QString();
}

void ReportFile::removeByPath() {
    ::unlink(QFile::encodeName(file).constData());
    ::unlink(QFile::encodeName(folder + QLatin1Char('/') +
                               QLatin1String(temporaryFolders::ownerFileName))
                 .constData());
    ::rmdir(QFile::encodeName(folder).constData());
}

bool ReportFile::commit() {
    if (!isOpen())
        return false;
    // One descriptor serves the check and the flush: the file is read back
    // once, and what is flushed is what was checked.
    QFile written;
    QString why;
    // Gone by its name: the folder was removed, moved or renamed while the
    // report was drawn.
    if (!openRegularFile(written, temporaryPath(), &why))
        return fail(Failure::Incomplete, why);
    if (!isCompletePdf(written)) {
        if (reachedSizeLimit(written.size()))
            return fail(Failure::FileSizeLimit, systemWords(EFBIG));
        return fail(Failure::Incomplete, fileSystemFull(written) ? systemWords(ENOSPC) : QString());
    }
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    if (::fdatasync(written.handle()) != 0)
        return fail(Failure::NotSaved, systemWords(errno));
    written.close();
    if (std::rename(QFile::encodeName(file).constData(),
                    QFile::encodeName(reportName).constData()) != 0)
        return fail(Failure::NotSaved, systemWords(errno));
    return true;
}

bool ReportFile::fileSystemFull(const QFile& written) const {
    // The printer keeps the system's error to itself; a report cut short
    // on a file system with (next to) no room left was cut by that. The
    // last write that failed may have left less than its own size free.
    struct statvfs space {};
    return ::fstatvfs(written.handle(), &space) == 0 &&
           quint64(space.f_bavail) * quint64(space.f_frsize) < fullBelowBytes;
}

bool ReportFile::reachedSizeLimit(qint64 size) {
    // The printer keeps the system's error to itself. A write past the
    // limit stores what still fits and fails, so a cut file that ends
    // exactly at the limit was stopped by it.
    struct rlimit limit {};
    return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && size >= 0 &&
           rlim_t(size) >= limit.rlim_cur;
}

bool ReportFile::reportNameHoldsFile() const {
    struct stat info {};
    return ::lstat(QFile::encodeName(reportName).constData(), &info) == 0 && S_ISREG(info.st_mode);
}
