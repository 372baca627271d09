// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/reportfile.h"

#include "files/filepaths.h"
#include "files/temporaryfolders.h"
#include "files/windowspath.h"

#include <QFile>
#include <QRandomGenerator>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

// Names Windows keeps for devices, with or without an extension: a report
// called "CON.pdf" would be written to the console, and "NUL.pdf" nowhere.
bool isDeviceName(const QString& name) {
    const QString stem = name.section(QLatin1Char('.'), 0, 0).trimmed().toUpper();
    static const QStringList devices = {QStringLiteral("CON"),    QStringLiteral("PRN"),
                                        QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                        QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
    if (devices.contains(stem))
        return true;
    // COM1 to COM9 and LPT1 to LPT9, superscript digits included.
    if (stem.size() == 4 &&
        (stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT")))) {
        const ushort digit = stem.at(3).unicode();
        return (digit >= '1' && digit <= '9') || digit == 0x00b9 || digit == 0x00b2 ||
               digit == 0x00b3;
    }
    return false;
}

// Why Windows cannot keep a report by this name, or nothing.
QString nameRefusal(const QString& name) {
    if (isDeviceName(name))
        return QStringLiteral("\"%1\" is a device name on Windows").arg(name);
    if (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        return QStringLiteral("Windows drops a dot or blank at the end of \"%1\"").arg(name);
    for (const QChar c : name)
        if (c.unicode() < 0x20 || QStringLiteral("<>:\"|?*").contains(c))
            return QStringLiteral("\"%1\" holds a character Windows does not take in names")
                .arg(name);
    return QString();
}

QString randomName() {
    static const char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    QString name = QStringLiteral(".brevio-");
    for (int i = 0; i < 6; ++i)
        name += QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof letters - 1))]);
    return name;
}

} // namespace

QString ReportFile::makeFolder(const QString& parent) {
    const QString refusal = nameRefusal(filePaths::fileNameOf(reportName));
    if (!refusal.isEmpty())
        return refusal;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString candidate = parent + QLatin1Char('/') + randomName();
        const std::wstring path = windowsPath::forSystem(candidate);
        if (CreateDirectoryW(path.c_str(), nullptr)) {
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
            folder = candidate;
            return QString();
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS)
            return windowsPath::errorText(GetLastError());
    }
    return windowsPath::errorText(ERROR_ALREADY_EXISTS);
}

void ReportFile::removeByPath() {
    DeleteFileW(windowsPath::forSystem(file).c_str());
    DeleteFileW(windowsPath::forSystem(folder + QLatin1Char('/') +
                                       QLatin1String(temporaryFolders::ownerFileName))
                    .c_str());
    RemoveDirectoryW(windowsPath::forSystem(folder).c_str());
}

bool ReportFile::commit() {
    if (!isOpen())
        return false;
    // One handle serves the check and the flush: what is flushed is what
    // was checked.
    const HANDLE handle =
        CreateFileW(windowsPath::forSystem(file).c_str(), GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // Gone by its name: the folder was removed while the report was drawn.
    if (handle == INVALID_HANDLE_VALUE)
        return fail(Failure::Incomplete, windowsPath::errorText(GetLastError()));
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    QFile written;
    if (fd < 0 || !written.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        if (fd >= 0)
            _close(fd);
        else
            CloseHandle(handle);
        return fail(Failure::Incomplete);
    }
    if (!isCompletePdf(written))
        return fail(Failure::Incomplete,
                    fileSystemFull(written) ? windowsPath::errorText(ERROR_DISK_FULL) : QString());
    // The data reaches the disk before the name does, so that a crash
    // leaves either the old report or the whole new one.
    if (!FlushFileBuffers(handle))
        return fail(Failure::NotSaved, windowsPath::errorText(GetLastError()));
    written.close();
    // Replaces an older report in one step; a viewer that holds it open
    // without sharing its deletion keeps it, and the system says so.
    if (!MoveFileExW(windowsPath::forSystem(file).c_str(),
                     windowsPath::forSystem(reportName).c_str(),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return fail(Failure::NotSaved, windowsPath::errorText(GetLastError()));
    return true;
}

bool ReportFile::fileSystemFull(const QFile&) const {
    // The printer keeps the system's error to itself; a report cut short
    // on a volume with (next to) no room left was cut by that.
    ULARGE_INTEGER available{};
    const std::wstring folderPath = windowsPath::forSystem(folder) + L"\\";
    return GetDiskFreeSpaceExW(folderPath.c_str(), &available, nullptr, nullptr) &&
           available.QuadPart < fullBelowBytes;
}

bool ReportFile::reachedSizeLimit(qint64) {
    // Windows has no per-process file size limit.
    return false;
}

bool ReportFile::reportNameHoldsFile() const {
    const DWORD attributes = GetFileAttributesW(windowsPath::forSystem(reportName).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}
