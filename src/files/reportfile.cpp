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
    // One descriptor serves the check and the flush: the file is read back
    // once, and what is flushed is what was checked.
    QFile written;
    if (!openRegularFile(written, temporaryPath()) || !isCompletePdf(written))
        return fail(Failure::Incomplete);
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    if (::fdatasync(written.handle()) != 0)
        return fail(Failure::NotSaved, errno);
    written.close();
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
    return openRegularFile(report, path) && isCompletePdf(report);
}

bool ReportFile::isCompletePdf(QFile& report) {
    const QByteArray head = report.read(5);
    const qint64 size = report.size();
    if (!report.seek(qMax<qint64>(0, size - 1024)))
        return false;
    return head == "%PDF-" && report.readAll().contains("%%EOF");
}
