// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/temporaryfolders.h"

#include "files/windowspath.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QVector>

#include <atomic>
#include <cstdio>
#include <cwchar>
#include <string>
#include <windows.h>

namespace temporaryFolders {

namespace {

// One registered folder, by full paths: Windows does not let a folder with
// an open file in it be moved, so the paths stay true while it is in use.
struct Slot {
    bool live = false;
    std::wstring folder;
    std::wstring file;
    std::wstring owner;
};

QMutex registryLock;
QVector<Slot>& registry() {
    static QVector<Slot> table;
    return table;
}

std::atomic<bool> stopRequested{false};
// Makers between creating a folder and registering it.
std::atomic<int> creating{0};

void removeSlotFiles(const Slot& slot) {
    DeleteFileW(slot.file.c_str());
    DeleteFileW(slot.owner.c_str());
    RemoveDirectoryW(slot.folder.c_str());
}

int liveCount() {
    QMutexLocker guard(&registryLock);
    int count = 0;
    for (const Slot& slot : registry())
        count += slot.live ? 1 : 0;
    return count;
}

// How long a console's closing waits for the jobs to give up their
// reports: Windows ends a process whose handler takes longer than 5 s.
constexpr int waitForJobsMs = 3000;

BOOL WINAPI onConsoleEvent(DWORD event) {
    switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
    case CTRL_CLOSE_EVENT:
    case CTRL_LOGOFF_EVENT:
    case CTRL_SHUTDOWN_EVENT:
        break;
    default:
        return FALSE;
    }
    // The printer keeps the report it draws open, and Windows removes no
    // open file: the jobs stop drawing, their reports close and each job
    // removes its own folder. What is still there after the wait goes here.
    stopRequested.store(true);
    for (int waited = 0; (creating.load() > 0 || liveCount() > 0) && waited < waitForJobsMs;
         waited += 50)
        Sleep(50);
    removeAllNow();
    // Windows' own handling follows: the process ends with the status a
    // console expects from Ctrl-C.
    return FALSE;
}

constexpr qint64 staleWithoutOwnerMs = 24LL * 60 * 60 * 1000;

quint64 toNumber(const FILETIME& time) {
    return (quint64(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

quint64 processStartTime(HANDLE process) {
    FILETIME created{}, exited{}, kernel{}, user{};
    if (!GetProcessTimes(process, &created, &exited, &kernel, &user))
        return 0;
    return toNumber(created);
}

// Whether the process pid that started at startTime is gone: it does not
// run, or the id now belongs to a process started later.
bool ownerGone(DWORD pid, quint64 startTime) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid);
    if (process == nullptr)
        return GetLastError() == ERROR_INVALID_PARAMETER;
    DWORD exitCode = 0;
    const bool running = GetExitCodeProcess(process, &exitCode) && exitCode == STILL_ACTIVE;
    const quint64 started = processStartTime(process);
    CloseHandle(process);
    return !running || (started != 0 && started != startTime);
}

bool isTemporaryFolderName(const QString& name) {
    return name.startsWith(QLatin1String(".brevio-")) && name.size() == 8 + 6;
}

// Whether the folder's owner record says it is certainly left over.
bool certainlyStale(const QString& folderPath) {
    const std::wstring ownerPath =
        windowsPath::forSystem(folderPath + QLatin1Char('/') + QLatin1String(ownerFileName));
    const HANDLE owner = CreateFileW(ownerPath.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (owner == INVALID_HANDLE_VALUE) {
        if (GetLastError() != ERROR_FILE_NOT_FOUND)
            return false;
        // No record: only its age can tell.
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExW(windowsPath::forSystem(folderPath).c_str(), GetFileExInfoStandard,
                                  &data))
            return false;
        FILETIME now{};
        GetSystemTimeAsFileTime(&now);
        return qint64(toNumber(now) - toNumber(data.ftLastWriteTime)) / 10000 > staleWithoutOwnerMs;
    }
    // A running owner holds a shared lock on its record.
    OVERLAPPED at{};
    if (!LockFileEx(owner, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, MAXDWORD,
                    MAXDWORD, &at)) {
        CloseHandle(owner);
        return false;
    }
    UnlockFileEx(owner, 0, MAXDWORD, MAXDWORD, &at);
    char record[128] = {};
    DWORD got = 0;
    const bool read = ReadFile(owner, record, sizeof record - 1, &got, nullptr) != 0;
    CloseHandle(owner);
    unsigned long pid = 0;
    unsigned long long startTime = 0;
    if (!read || std::sscanf(record, "brevio %lu %llu", &pid, &startTime) != 2 || pid == 0)
        return false;
    return ownerGone(DWORD(pid), startTime);
}

// Removes the owner record, one report file and the folder; leaves the
// folder alone when it holds anything else.
bool removeFolder(const QString& folderPath) {
    const QStringList entries =
        QDir(folderPath)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (entries.size() > 2)
        return false;
    for (const QString& entry : entries) {
        const QString path = folderPath + QLatin1Char('/') + entry;
        const DWORD attributes = GetFileAttributesW(windowsPath::forSystem(path).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES ||
            (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT)) != 0)
            return false;
    }
    for (const QString& entry : entries)
        DeleteFileW(windowsPath::forSystem(folderPath + QLatin1Char('/') + entry).c_str());
    return RemoveDirectoryW(windowsPath::forSystem(folderPath).c_str()) != 0;
}

} // namespace

int add(const QString& parent, const QString& folderName, const QString& fileName) {
    Slot slot;
    slot.live = true;
    const QString folder = parent + QLatin1Char('/') + folderName;
    slot.folder = windowsPath::forSystem(folder);
    slot.file = windowsPath::forSystem(folder + QLatin1Char('/') + fileName);
    slot.owner = windowsPath::forSystem(folder + QLatin1Char('/') + QLatin1String(ownerFileName));
    QMutexLocker guard(&registryLock);
    QVector<Slot>& table = registry();
    for (int index = 0; index < table.size(); ++index)
        if (!table[index].live) {
            table[index] = slot;
            return index;
        }
    table.append(slot);
    return table.size() - 1;
}

void removeNow(int slot) {
    QMutexLocker guard(&registryLock);
    QVector<Slot>& table = registry();
    if (slot < 0 || slot >= table.size() || !table[slot].live)
        return;
    removeSlotFiles(table[slot]);
    table[slot] = Slot();
}

void beginCreating() {
    creating.fetch_add(1);
}

void endCreating() {
    creating.fetch_sub(1);
}

void removeAllNow() noexcept {
    // A handler thread, not a signal: taking the lock is safe here.
    QMutexLocker guard(&registryLock);
    for (Slot& slot : registry())
        if (slot.live)
            removeSlotFiles(slot);
}

void removeOnInterrupt() {
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

bool interrupted() {
    return stopRequested.load();
}

qintptr createOwner(const QString& folderPath) {
    const HANDLE owner = CreateFileW(
        windowsPath::forSystem(folderPath + QLatin1Char('/') + QLatin1String(ownerFileName))
            .c_str(),
        GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
        FILE_ATTRIBUTE_NORMAL, nullptr);
    if (owner == INVALID_HANDLE_VALUE)
        return -1;
    const QByteArray record = QByteArrayLiteral("brevio ") +
                              QByteArray::number(quint64(GetCurrentProcessId())) + ' ' +
                              QByteArray::number(processStartTime(GetCurrentProcess())) + '\n';
    DWORD written = 0;
    OVERLAPPED at{};
    // Written first: a shared lock keeps even its holder from writing.
    if (!WriteFile(owner, record.constData(), DWORD(record.size()), &written, nullptr) ||
        written != DWORD(record.size()) || !LockFileEx(owner, 0, 0, MAXDWORD, MAXDWORD, &at)) {
        CloseHandle(owner);
        return -1;
    }
    return reinterpret_cast<qintptr>(owner);
}

void closeOwner(qintptr owner) {
    if (owner != -1)
        CloseHandle(reinterpret_cast<HANDLE>(owner));
}

int removeStale(const QString& folder) {
    const QStringList candidates =
        QDir(folder).entryList({QStringLiteral(".brevio-*")},
                               QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    int removed = 0;
    for (const QString& name : candidates) {
        if (!isTemporaryFolderName(name))
            continue;
        const QString path = folder + QLatin1Char('/') + name;
        if (certainlyStale(path) && removeFolder(path))
            ++removed;
    }
    return removed;
}

} // namespace temporaryFolders
