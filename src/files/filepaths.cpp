#include "files/filepaths.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace filePaths {

QString absolute(const QString& path) {
    // currentPath() is getcwd(): the physical folder, links already resolved.
    return absolute(path, QDir::currentPath());
}

QString absolute(const QString& path, const QString& base) {
    if (path.startsWith(QLatin1Char('/')))
        return path;
    if (base.endsWith(QLatin1Char('/')))
        return base + path;
    return base + QLatin1Char('/') + path;
}

QString reportFor(const QString& jsonPath) {
    QString report = jsonPath;
    if (!report.endsWith(QLatin1String(".pdf")))
        report.replace(QLatin1String(".json"), QLatin1String(".pdf"));
    return report;
}

QString configurationFor(const QString& reportPath) {
    QString configuration = reportPath;
    configuration.replace(QLatin1String(".pdf"), QLatin1String(".json"));
    return configuration;
}

QString folderOf(const QString& path) {
    const int slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return QStringLiteral(".");
    if (slash == 0)
        return QStringLiteral("/");
    return path.left(slash);
}

namespace {

Identity fromStat(int result, const struct stat& info) {
    Identity identity;
    if (result == 0) {
        identity.exists = true;
        identity.device = info.st_dev;
        identity.inode = info.st_ino;
        identity.regularFile = S_ISREG(info.st_mode);
    }
    return identity;
}

} // namespace

Identity identityOf(const QString& path) {
    struct stat info {};
    return fromStat(::stat(QFile::encodeName(path).constData(), &info), info);
}

Identity entryIdentityOf(const QString& path) {
    struct stat info {};
    return fromStat(::lstat(QFile::encodeName(path).constData(), &info), info);
}

QString reportKey(const QString& reportPath) {
    const Identity folder = identityOf(folderOf(reportPath));
    if (!folder.exists)
        return reportPath;
    const QString name = reportPath.mid(reportPath.lastIndexOf(QLatin1Char('/')) + 1);
    return QStringLiteral("%1:%2/").arg(qulonglong(folder.device)).arg(qulonglong(folder.inode)) +
           name;
}

} // namespace filePaths
