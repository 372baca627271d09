// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_FILEPATHS_H
#define BREVIO_FILEPATHS_H

#include <QString>
#include <QtGlobal>

// Paths as the system sees them. A name is never cleaned as text: in
// "lnk/../plant.json" the ".." leads out of wherever lnk points, which only
// the kernel knows, so paths are handed to it as given.
namespace filePaths {

// The folder relative names are taken from, as a name to put in front of
// them: getcwd()'s answer; "." when the working folder is there but cannot
// be named (its path is longer than the system takes, deeper than 4096
// bytes, or a folder above it cannot be read), so that relative names stay
// relative and the kernel looks them up in the working folder itself; empty
// when the working folder has been removed and holds nothing.
QString workingFolder();

// path made absolute by putting base (by default workingFolder()) in front
// when it is relative; nothing else changes. A base of "." keeps a relative
// path as it is; an empty base gives an empty path, never a name in "/".
QString absolute(const QString& path);
QString absolute(const QString& path, const QString& base);

// The report a job writes for the configuration at jsonPath: every ".json"
// replaced by ".pdf", unless the name already ends in ".pdf".
QString reportFor(const QString& jsonPath);

// The configuration a report is made from, the other way round: every
// ".pdf" replaced by ".json", in folder names too, so that a report renamed
// in the window names the configuration it is to be made from.
QString configurationFor(const QString& reportPath);

// The folder part of path: everything before its last separator ("/", and
// on Windows "\\" too), the root itself where that is all there is.
QString folderOf(const QString& path);
// The last component of path: everything after its last separator.
QString fileNameOf(const QString& path);

// Identifies a file: its device and inode number, on Windows its volume's
// serial number and its file index.
struct Identity {
    bool exists = false;
    quint64 device = 0;
    quint64 inode = 0;

    bool operator==(const Identity& other) const {
        return exists == other.exists && device == other.device && inode == other.inode;
    }
    bool operator!=(const Identity& other) const { return !(*this == other); }
};

// The file that path names, links followed.
Identity identityOf(const QString& path);

// The same key for every spelling of one report name: the device and inode
// of its folder plus its file name; the path itself when the folder cannot
// be looked up.
QString reportKey(const QString& reportPath);

} // namespace filePaths

#endif
