// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/jsonline.h"

namespace jsonLine {

namespace {

void appendEscape(QString& out, ushort unit) {
    out += QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0'));
}

QByteArray orNull(const QString& text) {
    return text.isEmpty() ? QByteArrayLiteral("null") : quoted(text);
}

} // namespace

QByteArray quoted(const QString& text) {
    QString out;
    out.reserve(text.size() + 2);
    out += QLatin1Char('"');
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const ushort unit = c.unicode();
        if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            out += QLatin1Char('\\');
            out += c;
        } else if (c == QLatin1Char('\n')) {
            out += QStringLiteral("\\n");
        } else if (c == QLatin1Char('\t')) {
            out += QStringLiteral("\\t");
        } else if (unit < 0x20 || unit == 0x7f) {
            appendEscape(out, unit);
        } else if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            out += c;
            out += text.at(++i);
        } else if (c.isSurrogate()) {
            // UTF-8 has no form for a surrogate on its own.
            appendEscape(out, unit);
        } else {
            out += c;
        }
    }
    out += QLatin1Char('"');
    return out.toUtf8();
}

QByteArray record(const QString& file, const QString& report, bool converted, const QString& code,
                  const QString& reason, const QStringList& warnings) {
    QByteArray line =
        QByteArrayLiteral("{\"file\": ") + quoted(file) + QByteArrayLiteral(", \"report\": ") +
        orNull(report) + QByteArrayLiteral(", \"converted\": ") +
        (converted ? QByteArrayLiteral("true") : QByteArrayLiteral("false")) +
        QByteArrayLiteral(", \"code\": ") + quoted(code) + QByteArrayLiteral(", \"reason\": ") +
        orNull(reason) + QByteArrayLiteral(", \"warnings\": [");
    for (int i = 0; i < warnings.size(); ++i) {
        if (i > 0)
            line += QByteArrayLiteral(", ");
        line += quoted(warnings[i]);
    }
    return line + QByteArrayLiteral("]}");
}

} // namespace jsonLine
