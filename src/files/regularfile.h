// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_REGULARFILE_H
#define BREVIO_REGULARFILE_H

#include <QFile>
#include <QString>

// Opens path for reading only if it is a regular file, as one step on one
// descriptor: the open does not wait (a FIFO put in the file's place would
// otherwise block until some writer appears) and the type is checked on the
// opened descriptor, so a swap after a check cannot slip anything else in.
// On failure file stays closed and reason says why, in the system's words
// where it has any.
bool openRegularFile(QFile& file, const QString& path, QString* reason = nullptr);

#endif
