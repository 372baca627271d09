// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/pathsyntax.h"

namespace pathSyntax {

namespace {

bool isDrive(const QString& path) {
    return path.size() >= 2 && path.at(1) == QLatin1Char(':') && path.at(0).unicode() < 0x80 &&
           path.at(0).isLetter();
}

// "\\server\share\" and "\\?\C:\": two separators, then two components.
int shareRootLength(const QString& path) {
    if (path.size() < 2 || !isSeparator(path.at(0)) || !isSeparator(path.at(1)))
        return 0;
    int at = 2;
    for (int component = 0; component < 2; ++component) {
        while (at < path.size() && !isSeparator(path.at(at)))
            ++at;
        if (at < path.size())
            ++at;
    }
    return at;
}

} // namespace

bool isSeparator(QChar c) {
    return c == QLatin1Char('/') || c == QLatin1Char('\\');
}

int rootLength(const QString& path) {
    if (const int share = shareRootLength(path))
        return share;
    if (isDrive(path))
        return path.size() >= 3 && isSeparator(path.at(2)) ? 3 : 2;
    return path.isEmpty() || !isSeparator(path.at(0)) ? 0 : 1;
}

bool isAbsolute(const QString& path) {
    return shareRootLength(path) > 0 || (isDrive(path) && rootLength(path) == 3);
}

QString absoluteOn(const QString& path, const QString& base) {
    // "\x" is on the working folder's drive (or share); "C:x" is left to
    // the system, which keeps a working folder per drive.
    if (!path.isEmpty() && isSeparator(path.at(0))) {
        QString root = base.left(rootLength(base));
        while (!root.isEmpty() && isSeparator(root.at(root.size() - 1)))
            root.chop(1);
        return root + path;
    }
    if (isDrive(path))
        return path;
    if (!base.isEmpty() && isSeparator(base.at(base.size() - 1)))
        return base + path;
    return base + QLatin1Char('\\') + path;
}

QChar nativeSeparator() {
    return QLatin1Char('\\');
}

} // namespace pathSyntax
