// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_NAMEQUOTING_H
#define BREVIO_NAMEQUOTING_H

#include <QString>

namespace nameQuoting {

// True for a name that holds a control character (U+0001 to U+001F,
// U+007F to U+009F): printed as it is, it would break or rewrite the line
// it is on.
bool needsQuoting(const QString& name);

// The name as brevio-convert prints it: unchanged when needsQuoting() is
// false; otherwise quoted for a POSIX shell the way GNU ls does with
// --quoting-style=shell-escape, control characters as $'\n' or octal
// escapes, so that each report stays one line and the text can be pasted
// back into a shell: 'dir/ok.pdf'$'\n''x.json'.
QString quoted(const QString& name);

} // namespace nameQuoting

#endif
