// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_WINDOWSPATH_H
#define BREVIO_WINDOWSPATH_H

#include <QString>

#include <string>

// What the Windows implementations of this library hand to the system.
namespace windowsPath {

// path as the wide-character API takes it: backslashes, and an absolute
// path in its long form ("\\?\C:\...", "\\?\UNC\server\share\..."), so
// that names beyond 260 characters work as well as short ones.
std::wstring forSystem(const QString& path);

// The system's words for an error code (GetLastError()), without the
// line break Windows ends them with.
QString errorText(unsigned long code);

} // namespace windowsPath

#endif
