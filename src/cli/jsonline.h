// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_JSONLINE_H
#define BREVIO_JSONLINE_H

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace jsonLine {

// text as a JSON string, in UTF-8. A byte of a file name that is not UTF-8
// reaches us as the lone surrogate U+DC80 to U+DCFF (the file-name codec
// keeps it so); it is written as the escape "\udcXX", which a reader that
// knows the convention (Python's surrogateescape) turns back into the byte.
QByteArray quoted(const QString& text);

// One file's result as one line of JSON, without the line break:
// {"file": ..., "report": ... or null, "converted": true|false,
//  "code": ..., "reason": ... or null, "warnings": [...]}.
// An empty report or reason is null.
QByteArray record(const QString& file, const QString& report, bool converted, const QString& code,
                  const QString& reason, const QStringList& warnings);

} // namespace jsonLine

#endif
