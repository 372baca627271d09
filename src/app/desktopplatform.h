// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_DESKTOPPLATFORM_H
#define BREVIO_DESKTOPPLATFORM_H

#include <QString>

// The window system the window is built for.
namespace desktopPlatform {

// The platform plugin Qt loads when neither -platform nor QT_QPA_PLATFORM
// names one: "xcb" on Linux, "windows" on Windows.
QString defaultName();

// Before the application object: a report cut off by the file size limit
// (ulimit -f, POSIX only) is a failed write like one to a full disk: its
// job fails and removes its temporary folder, while the window and its
// list stay. By default SIGXFSZ would end the whole window.
void prepareProcess();

// Whether the window's file dialogs are Qt's own rather than the
// system's: the same German dialog everywhere.
bool toolkitDialogs();

// The widget style the window is drawn in, or empty for the desktop's own.
QString styleName();

} // namespace desktopPlatform

#endif
