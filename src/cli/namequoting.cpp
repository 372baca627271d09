// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/namequoting.h"

namespace nameQuoting {

namespace {

bool isControl(QChar c) {
    const ushort code = c.unicode();
    return (code >= 0x01 && code <= 0x1f) || (code >= 0x7f && code <= 0x9f);
}

void appendEscape(QString& out, QChar c) {
    switch (c.unicode()) {
    case '\a':
        out += QLatin1String("\\a");
        return;
    case '\b':
        out += QLatin1String("\\b");
        return;
    case '\t':
        out += QLatin1String("\\t");
        return;
    case '\n':
        out += QLatin1String("\\n");
        return;
    case '\v':
        out += QLatin1String("\\v");
        return;
    case '\f':
        out += QLatin1String("\\f");
        return;
    case '\r':
        out += QLatin1String("\\r");
        return;
    default:
        break;
    }
    // Every byte of the character's UTF-8 form in octal, as the shell reads
    // $'...' back.
    for (const char byte : QString(c).toUtf8())
        out += QStringLiteral("\\%1").arg(uint(uchar(byte)), 3, 8, QLatin1Char('0'));
}

} // namespace

bool needsQuoting(const QString& name) {
    for (const QChar c : name)
        if (isControl(c))
            return true;
    return false;
}

QString quoted(const QString& name) {
    if (!needsQuoting(name))
        return name;
    // Plain text goes inside '...', control characters inside $'...', and
    // a single quote between the two as \'.
    QString out = QStringLiteral("'");
    bool inEscapes = false;
    for (const QChar c : name) {
        if (isControl(c)) {
            if (!inEscapes)
                out += QLatin1String("'$'");
            inEscapes = true;
            appendEscape(out, c);
        } else if (c == QLatin1Char('\'')) {
            out += QLatin1String("'\\''");
            inEscapes = false;
        } else {
            if (inEscapes)
                out += QLatin1String("''");
            inEscapes = false;
            out += c;
        }
    }
    out += QLatin1Char('\'');
    return out;
}

} // namespace nameQuoting
