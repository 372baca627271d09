// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/desktopplatform.h"

namespace desktopPlatform {

QString defaultName() {
    return QStringLiteral("xcb");
}

} // namespace desktopPlatform
