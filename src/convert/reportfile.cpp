#include "reportfile.h"

#include "filepaths.h"
#include "regularfile.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

ReportFile::ReportFile(const QString& reportPath) : reportName(QFile::encodeName(reportPath)) {
    const QString name = reportPath.mid(reportPath.lastIndexOf(QLatin1Char('/')) + 1);
    QByteArray pattern =
        QFile::encodeName(filePaths::folderOf(reportPath) + QStringLiteral("/.brevio-XXXXXX"));
    if (::mkdtemp(pattern.data()) == nullptr)
        return;
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
    if (!isOpen() || !isCompletePdf(temporaryPath()))
        return false;
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    const int fd = ::open(file.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool synced = ::fdatasync(fd) == 0;
    ::close(fd);
    return synced && std::rename(file.constData(), reportName.constData()) == 0;
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
