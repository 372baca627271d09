// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/reportfile.h"

#include "files/filepaths.h"
#include "files/regularfile.h"
#include "files/temporaryfolders.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

ReportFile::ReportFile(const QString& reportPath) : reportName(QFile::encodeName(reportPath)) {
    const QString name = reportPath.mid(reportPath.lastIndexOf(QLatin1Char('/')) + 1);
    const QString parent = filePaths::folderOf(reportPath);
    // Folders that a killed run left here go first, once per folder.
    temporaryFolders::removeStaleOnce(parent);
    QByteArray pattern = QFile::encodeName(parent + QStringLiteral("/.brevio-XXXXXX"));
    if (::mkdtemp(pattern.data()) == nullptr) {
        fail(Failure::NoFolder, errno);
        return;
    }
    folder = pattern;
    file = folder + '/' + QFile::encodeName(name.isEmpty() ? QStringLiteral("report.pdf") : name);
    // The owner record tells a later run whether this folder is still in
    // use; its lock lasts as long as this object.
    ownerFd = ::open(QByteArray(folder + '/' + temporaryFolders::ownerFileName).constData(),
                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (ownerFd >= 0) {
        ::flock(ownerFd, LOCK_SH);
        temporaryFolders::writeOwner(ownerFd);
    }
    // Known to the signal handler by names relative to the open parent, so
    // that an interrupt removes it however long its path is.
    const int parentFd =
        ::open(QFile::encodeName(parent).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (parentFd >= 0) {
        const QByteArray folderName = folder.mid(folder.lastIndexOf('/') + 1);
        const QByteArray fileName = file.mid(file.lastIndexOf('/') + 1);
        registration =
            temporaryFolders::add(parentFd, folderName.constData(), fileName.constData());
        ::close(parentFd);
    }
}

ReportFile::~ReportFile() {
    if (folder.isEmpty())
        return;
    ::unlink(file.constData());
    ::unlink(QByteArray(folder + '/' + temporaryFolders::ownerFileName).constData());
    ::rmdir(folder.constData());
    temporaryFolders::remove(registration);
    if (ownerFd >= 0)
        ::close(ownerFd);
}

bool ReportFile::isOpen() const {
    return !folder.isEmpty();
}

QString ReportFile::temporaryPath() const {
    return QFile::decodeName(file);
}

bool ReportFile::commit() {
    if (!isOpen())
        return false;
    // One descriptor serves the check and the flush: the file is read back
    // once, and what is flushed is what was checked.
    QFile written;
    if (!openRegularFile(written, temporaryPath()))
        return fail(Failure::Incomplete);
    if (!isCompletePdf(written))
        return reachedSizeLimit(written.size()) ? fail(Failure::FileSizeLimit, EFBIG)
                                                : fail(Failure::Incomplete);
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    if (::fdatasync(written.handle()) != 0)
        return fail(Failure::NotSaved, errno);
    written.close();
    if (std::rename(file.constData(), reportName.constData()) != 0)
        return fail(Failure::NotSaved, errno);
    return true;
}

bool ReportFile::reachedSizeLimit(qint64 size) {
    // The printer keeps the system's error to itself. A write past the
    // limit stores what still fits and fails, so a cut file that ends
    // exactly at the limit was stopped by it.
    struct rlimit limit {};
    return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && size >= 0 &&
           rlim_t(size) >= limit.rlim_cur;
}

ReportFile::Failure ReportFile::failure() const {
    return failed;
}

QString ReportFile::errorString() const {
    return error;
}

bool ReportFile::reportNameHoldsFile() const {
    struct stat info {};
    return ::lstat(reportName.constData(), &info) == 0 && S_ISREG(info.st_mode);
}

bool ReportFile::fail(Failure why, int errorNumber) {
    failed = why;
    error = errorNumber != 0 ? QString::fromLocal8Bit(std::strerror(errorNumber)) : QString();
    return false;
}

bool ReportFile::isCompletePdf(const QString& path) {
    QFile report;
    return openRegularFile(report, path) && isCompletePdf(report);
}

bool ReportFile::isCompletePdf(QFile& report) {
    const QByteArray head = report.read(5);
    const qint64 size = report.size();
    if (!report.seek(qMax<qint64>(0, size - 1024)))
        return false;
    return head == "%PDF-" && report.readAll().contains("%%EOF");
}
