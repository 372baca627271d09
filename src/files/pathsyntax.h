// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_PATHSYNTAX_H
#define BREVIO_PATHSYNTAX_H

#include <QString>

// How the system spells a path: which paths are absolute, where the root
// ends and what separates the components. POSIX knows only "/"; Windows
// takes "\" and "/" alike, a drive ("C:\") or a share ("\\server\share\")
// as the root. Nothing here touches the file system.
namespace pathSyntax {

bool isSeparator(QChar c);
// How many characters of path are its root: 1 for "/x", 3 for "C:\x", the
// whole "\\server\share\" for a share, 0 for a relative path. A path with a
// root of its own is absolute, except Windows' "\x" (the current drive's
// root) and "C:x" (the drive's own working folder), which count as
// relative and are completed by absoluteOn().
int rootLength(const QString& path);
bool isAbsolute(const QString& path);
// path, relative, completed against the absolute folder base: base + "/" +
// path, or on Windows the drive of base in front of "\x".
QString absoluteOn(const QString& path, const QString& base);
// The separator the system shows in paths it names.
QChar nativeSeparator();

} // namespace pathSyntax

#endif
