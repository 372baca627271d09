// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/desktopplatform.h"

#include <csignal>

namespace desktopPlatform {

QString defaultName() {
    return QStringLiteral("xcb");
}

void prepareProcess() {
    std::signal(SIGXFSZ, SIG_IGN);
}

bool toolkitDialogs() {
    // Without a platform theme Qt's own dialog is what Linux shows anyway;
    // a desktop's theme brings its own, in the desktop's language.
    return false;
}

QString styleName() {
    // A Linux desktop's style (Breeze, Adwaita, Fusion) lays the rows out
    // as intended; the user's choice stays.
    return QString();
}

} // namespace desktopPlatform
