// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/desktopplatform.h"

namespace desktopPlatform {

QString defaultName() {
    return QStringLiteral("windows");
}

void prepareProcess() {
    // Windows has no file size limit per process, and no signal for it.
}

bool toolkitDialogs() {
    // The system's dialog speaks the language of the Windows installation;
    // Qt's own speaks the window's German, as on Linux.
    return true;
}

QString styleName() {
    // Windows' native style gives a progress bar a minimum width of about
    // 380 pixels, which crushes each row's path field to a few letters;
    // Fusion draws the rows as on Linux, the path taking the free width.
    return QStringLiteral("Fusion");
}

} // namespace desktopPlatform
