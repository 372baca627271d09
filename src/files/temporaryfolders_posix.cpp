// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/temporaryfolders.h"

#include <QFile>
#include <QVector>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace temporaryFolders {

namespace {

// One registered folder. Everything the signal handler needs is prepared
// when the folder is added: relative names under an open folder, so the
// handler builds nothing and a folder whose full path is too long for the
// system can still be removed.
struct Slot {
    // free: nobody uses it; filling: add() is writing it; live: the handler
    // may use it.
    std::atomic<int> state{0};
    int parentFd = -1;
    char folder[64] = {};
    char file[64 + 1 + NAME_MAX + 1] = {};
    char owner[64 + sizeof ownerFileName + 1] = {};
};

enum : int { slotFree = 0, slotFilling = 1, slotLive = 2 };

// More than the jobs that run at once: as many as there are pool threads.
constexpr int slotCount = 1024;
Slot registered[slotCount];

bool copyName(char* to, size_t room, const char* a, const char* b = nullptr,
              const char* c = nullptr) {
    const int written = std::snprintf(to, room, "%s%s%s", a, b ? b : "", c ? c : "");
    return written >= 0 && size_t(written) < room;
}

// Makers between mkdtemp() and registration, and a signal that came while
// there were any.
std::atomic<int> creating{0};
std::atomic<int> deferredSignal{0};

extern "C" void removeAndReraise(int signalNumber) {
    const int savedErrno = errno;
    // A folder made but not registered yet would be left behind: its maker
    // registers it and then ends the process by this signal itself.
    if (creating.load() > 0) {
        deferredSignal.store(signalNumber);
        if (creating.load() > 0) {
            errno = savedErrno;
            return;
        }
    }
    removeAllNow();
    // The disposition is back at its default (SA_RESETHAND); the signal
    // raised here is held until the handler returns and then ends the
    // process with the status its sender expects.
    ::raise(signalNumber);
    errno = savedErrno;
}

QByteArray readBootId() {
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray("unknown");
    return file.readAll().trimmed();
}

const QByteArray& bootId() {
    static const QByteArray id = readBootId();
    return id;
}

constexpr time_t staleWithoutOwnerSeconds = 24 * 60 * 60;

bool isTemporaryFolderName(const char* name) {
    static const char prefix[] = ".brevio-";
    return std::strncmp(name, prefix, sizeof prefix - 1) == 0 &&
           std::strlen(name) == sizeof prefix - 1 + 6;
}

// Whether the folder open at folderFd is certainly left over by a process
// that is gone. ownerFd is its owner record, or -1 without one.
bool certainlyStale(int folderFd, int ownerFd) {
    if (ownerFd >= 0) {
        // A running owner holds a shared lock for as long as it uses the
        // folder, wherever it runs: a process of another pid namespace
        // included.
        if (::flock(ownerFd, LOCK_EX | LOCK_NB) != 0)
            return false;
        char record[256] = {};
        const ssize_t got = ::pread(ownerFd, record, sizeof record - 1, 0);
        long pid = 0;
        char boot[64] = {};
        if (got > 0 && std::sscanf(record, "brevio %ld %63s", &pid, boot) == 2 && pid > 0) {
            if (bootId() != boot)
                return true;
            return ::kill(pid_t(pid), 0) != 0 && errno == ESRCH;
        }
        // A record not written yet, or not ours: only its age can tell.
    }
    struct stat info {};
    if (::fstat(folderFd, &info) != 0)
        return false;
    return info.st_mtime < std::time(nullptr) - staleWithoutOwnerSeconds;
}

// Removes the owner record, one report file and the folder; leaves the
// folder alone when it holds anything else.
bool removeFolder(int parentFd, int folderFd, const char* name) {
    DIR* listing = ::fdopendir(::dup(folderFd));
    if (listing == nullptr)
        return false;
    QVector<QByteArray> files;
    bool onlyOurs = true;
    while (dirent* entry = ::readdir(listing)) {
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        struct stat info {};
        if (::fstatat(folderFd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(info.st_mode))
            onlyOurs = false;
        files.append(entry->d_name);
    }
    ::closedir(listing);
    if (!onlyOurs || files.size() > 2)
        return false;
    for (const QByteArray& file : files)
        ::unlinkat(folderFd, file.constData(), 0);
    return ::unlinkat(parentFd, name, AT_REMOVEDIR) == 0;
}

} // namespace

int add(const QString& parent, const QString& folderName, const QString& fileName) {
    const int parentFd =
        ::open(QFile::encodeName(parent).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (parentFd < 0)
        return -1;
    const QByteArray folder = QFile::encodeName(folderName);
    const QByteArray file = QFile::encodeName(fileName);
    for (int index = 0; index < slotCount; ++index) {
        Slot& slot = registered[index];
        int expected = slotFree;
        if (!slot.state.compare_exchange_strong(expected, slotFilling))
            continue;
        slot.parentFd = parentFd;
        if (!copyName(slot.folder, sizeof slot.folder, folder.constData()) ||
            !copyName(slot.file, sizeof slot.file, folder.constData(), "/", file.constData()) ||
            !copyName(slot.owner, sizeof slot.owner, folder.constData(), "/", ownerFileName)) {
            slot.parentFd = -1;
            slot.state.store(slotFree);
            break;
        }
        slot.state.store(slotLive);
        return index;
    }
    ::close(parentFd);
    return -1;
}

void removeNow(int slot) {
    if (slot < 0 || slot >= slotCount)
        return;
    Slot& entry = registered[slot];
    // Taken out of the handler's sight first, so that it never works on a
    // closed descriptor.
    entry.state.store(slotFilling);
    // By the open parent, not by path: a folder moved or renamed while the
    // report was drawn is still the one cleaned up.
    ::unlinkat(entry.parentFd, entry.file, 0);
    ::unlinkat(entry.parentFd, entry.owner, 0);
    ::unlinkat(entry.parentFd, entry.folder, AT_REMOVEDIR);
    ::close(entry.parentFd);
    entry.parentFd = -1;
    entry.state.store(slotFree);
}

void beginCreating() {
    creating.fetch_add(1);
}

void endCreating() {
    if (creating.fetch_sub(1) != 1)
        return;
    // The handler ran while a folder was being made and left the end to
    // us; its disposition is the default again (SA_RESETHAND).
    if (const int signalNumber = deferredSignal.load()) {
        removeAllNow();
        ::raise(signalNumber);
    }
}

void removeAllNow() noexcept {
    for (Slot& slot : registered) {
        if (slot.state.load() != slotLive)
            continue;
        ::unlinkat(slot.parentFd, slot.file, 0);
        ::unlinkat(slot.parentFd, slot.owner, 0);
        ::unlinkat(slot.parentFd, slot.folder, AT_REMOVEDIR);
    }
}

void removeOnInterrupt() {
    bootId();
    struct sigaction action {};
    action.sa_handler = removeAndReraise;
    sigemptyset(&action.sa_mask);
    // Each handler runs once: a second signal while it removes the folders
    // ends the process at once.
    action.sa_flags = SA_RESETHAND;
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        // A signal ignored by whoever started us (nohup) stays ignored.
        if (::sigaction(signalNumber, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN)
            continue;
        ::sigaction(signalNumber, &action, nullptr);
    }
}

bool interrupted() {
    // The handlers end the process themselves; nobody is asked to stop.
    return false;
}

qintptr createOwner(const QString& folderPath) {
    const int ownerFd = ::open(
        QFile::encodeName(folderPath + QLatin1Char('/') + QLatin1String(ownerFileName)).constData(),
        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (ownerFd < 0)
        return -1;
    ::flock(ownerFd, LOCK_SH);
    const QByteArray record = QByteArrayLiteral("brevio ") +
                              QByteArray::number(qint64(::getpid())) + ' ' + bootId() + '\n';
    if (::pwrite(ownerFd, record.constData(), size_t(record.size()), 0) != record.size()) {
        ::close(ownerFd);
        return -1;
    }
    return ownerFd;
}

void closeOwner(qintptr owner) {
    if (owner >= 0)
        ::close(int(owner));
}

int removeStale(const QString& folder) {
    const int parentFd =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parentFd < 0)
        return 0;
    DIR* listing = ::fdopendir(::dup(parentFd));
    if (listing == nullptr) {
        ::close(parentFd);
        return 0;
    }
    QVector<QByteArray> candidates;
    while (dirent* entry = ::readdir(listing))
        if (isTemporaryFolderName(entry->d_name))
            candidates.append(entry->d_name);
    ::closedir(listing);

    int removed = 0;
    for (const QByteArray& name : candidates) {
        const int folderFd =
            ::openat(parentFd, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (folderFd < 0)
            continue;
        const int ownerFd =
            ::openat(folderFd, ownerFileName, O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
        if (certainlyStale(folderFd, ownerFd) && removeFolder(parentFd, folderFd, name.constData()))
            ++removed;
        if (ownerFd >= 0)
            ::close(ownerFd);
        ::close(folderFd);
    }
    ::close(parentFd);
    return removed;
}

} // namespace temporaryFolders
