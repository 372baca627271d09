// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TEMPORARYFOLDERS_H
#define BREVIO_TEMPORARYFOLDERS_H

#include <QString>

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
// ".brevio-Ab12Cd") inside the folder open at parentFd, holding a file
// named fileName. The registry takes a duplicate of parentFd. Returns the
// slot to hand to remove(), or -1 when the registry is full (the folder is
// then only removed by its owner, or by a later run).
int add(int parentFd, const char* folderName, const char* fileName);
// The folder is gone or now belongs to its report: forget it.
void remove(int slot);

// Removes the file, the owner record and the folder of every registered
// entry. Async-signal-safe: only unlinkat() on data prepared beforehand.
void removeAllNow() noexcept;

// Installs handlers for SIGINT, SIGTERM and SIGHUP that call removeAllNow()
// and then end the process by the same signal with its default action, so
// that the parent sees the usual status.
void removeOnInterrupt();

// Writes the owner record into the open descriptor ownerFd; false when it
// cannot be written.
bool writeOwner(int ownerFd);

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
