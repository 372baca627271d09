// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TEMPORARYFOLDERS_H
#define BREVIO_TEMPORARYFOLDERS_H

#include <QString>
#include <QtGlobal>

// The temporary report folders (".brevio-XXXXXX") of the jobs that are
// running, kept where a signal handler can reach them. A process ended by
// Ctrl-C, a logout (SIGHUP, SIGTERM) or kill removes them on its way out;
// only SIGKILL and a power loss leave one behind, and a later run finds those
// by their owner record and removes them once they are certainly stale.
namespace temporaryFolders {

// The file inside each temporary folder that names its owner: process id,
// boot id and program, one line. Its descriptor stays open, with a shared
// lock on it, for as long as the folder is in use.
constexpr const char ownerFileName[] = ".owner";

// Registers the folder named folderName (one path component, such as
// ".brevio-Ab12Cd") inside the folder parent, holding a file named
// fileName. On POSIX the registry keeps parent open, so the folder is found
// by its handle even after parent has been renamed or moved. Returns the
// slot to hand to removeNow(), or -1 when the registry is full or parent
// cannot be opened (the folder is then only removed by its owner, or by a
// later run).
int add(const QString& parent, const QString& folderName, const QString& fileName);
// Removes the file, the owner record and the folder of slot through the
// registered handle, then forgets it. Nothing happens for -1.
void removeNow(int slot);

// Brackets making a folder and registering it: an interrupt that arrives
// in between would miss the folder, so it waits for the registration (on
// POSIX the last maker ends the process by the signal once it is done).
void beginCreating();
void endCreating();
class CreationGuard {
public:
    CreationGuard() { beginCreating(); }
    ~CreationGuard() { endCreating(); }
    CreationGuard(const CreationGuard&) = delete;
    CreationGuard& operator=(const CreationGuard&) = delete;
};

// Removes the file, the owner record and the folder of every registered
// entry. Async-signal-safe on POSIX: only unlinkat() on data prepared
// beforehand.
void removeAllNow() noexcept;

// Ends the process's run the way its console or terminal asks, with the
// registered folders removed first: handlers for SIGINT, SIGTERM and SIGHUP
// that call removeAllNow() and then end the process by the same signal with
// its default action, so that the parent sees the usual status; on Windows
// a console control handler for Ctrl-C, Ctrl-Break and the console's
// closing.
void removeOnInterrupt();
// True once an interrupt asks the running jobs to stop: on Windows a
// report still being drawn cannot be removed while the printer holds it,
// so the jobs give up their reports and the handler waits for them.
bool interrupted();

// Opens the owner record of the folder at folderPath, newly created, and
// writes this process into it: process id and boot id, or on Windows the
// process's start time; the record stays locked for as long as the handle
// is open. Returns the handle, or -1.
qintptr createOwner(const QString& folderPath);
void closeOwner(qintptr owner);

// Removes every ".brevio-XXXXXX" folder in folder that is certainly
// stale: its owner record names a process of another boot, or a process
// that no longer runs on this one; or it has no record and was last
// changed more than a day ago. Never a folder whose owner record is locked
// by a running process, and never anything but the owner record, one
// report file and the folder itself. Returns the number of folders removed.
int removeStale(const QString& folder);
// The same, once per folder name and process: a sweep reads the whole
// folder, and what this process leaves it removes itself.
void removeStaleOnce(const QString& folder);

} // namespace temporaryFolders

#endif
