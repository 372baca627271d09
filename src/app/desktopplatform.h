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

} // namespace desktopPlatform

#endif
