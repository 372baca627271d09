// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/pathsyntax.h"

namespace pathSyntax {

bool isSeparator(QChar c) {
    return c == QLatin1Char('/');
}

int rootLength(const QString& path) {
    return path.startsWith(QLatin1Char('/')) ? 1 : 0;
}

bool isAbsolute(const QString& path) {
    return rootLength(path) > 0;
}

QString absoluteOn(const QString& path, const QString& base) {
    if (base.endsWith(QLatin1Char('/')))
        return base + path;
    return base + QLatin1Char('/') + path;
}

QChar nativeSeparator() {
    return QLatin1Char('/');
}

} // namespace pathSyntax
