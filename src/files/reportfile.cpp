#include "files/reportfile.h"

#include "files/filepaths.h"
#include "files/regularfile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

ReportFile::ReportFile(const QString& reportPath) : reportName(QFile::encodeName(reportPath)) {
    const QString name = reportPath.mid(reportPath.lastIndexOf(QLatin1Char('/')) + 1);
    QByteArray pattern =
        QFile::encodeName(filePaths::folderOf(reportPath) + QStringLiteral("/.brevio-XXXXXX"));
    if (::mkdtemp(pattern.data()) == nullptr) {
        fail(Failure::NoFolder, errno);
        return;
    }
    folder = pattern;
    file = folder + '/' + QFile::encodeName(name.isEmpty() ? QStringLiteral("report.pdf") : name);
}

ReportFile::~ReportFile() {
    if (folder.isEmpty())
        return;
    ::unlink(file.constData());
    ::rmdir(folder.constData());
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
    if (!isCompletePdf(temporaryPath()))
        return fail(Failure::Incomplete);
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    const int fd = ::open(file.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return fail(Failure::NotSaved, errno);
    if (::fdatasync(fd) != 0) {
        const int syncError = errno;
        ::close(fd);
        return fail(Failure::NotSaved, syncError);
    }
    ::close(fd);
    if (std::rename(file.constData(), reportName.constData()) != 0)
        return fail(Failure::NotSaved, errno);
    return true;
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
    if (!openRegularFile(report, path))
        return false;
    const QByteArray head = report.read(5);
    const qint64 size = report.size();
    if (!report.seek(qMax<qint64>(0, size - 1024)))
        return false;
    return head == "%PDF-" && report.readAll().contains("%%EOF");
}
