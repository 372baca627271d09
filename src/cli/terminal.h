// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TERMINAL_H
#define BREVIO_TERMINAL_H

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdio>

// What brevio-convert needs of its process and its terminal or console,
// each the system's own way.
namespace terminal {

// Before anything else in main(): standard streams that whoever started
// the program closed are taken by a placeholder (POSIX), a reader that goes
// away (SIGPIPE) and the file size limit (SIGXFSZ) become failed writes
// instead of the end of the process, and output is written byte for byte
// (Windows: no "\r" is added, and the system's fonts are found by the
// headless platform the reports are drawn on).
void prepareProcess();

// The program's arguments as the user typed them: on POSIX the bytes of
// argv through the locale's codec; on Windows the wide command line, since
// argv holds only what the ANSI code page can carry.
QStringList arguments(int argc, char* argv[]);

// Whether stream is a terminal or console a person reads.
bool isTerminal(std::FILE* stream);

// Writes text and flushes it: in the locale's encoding on POSIX; on a
// Windows console as the console's own UTF-16, so that every character
// shows, and as UTF-8 where output is redirected. Returns the errno of a
// failure, or 0.
int writeText(std::FILE* stream, const QString& text);

// Writes bytes as they are and flushes them; the errno of a failure, or 0.
int writeBytes(std::FILE* stream, const QByteArray& bytes);

} // namespace terminal

#endif
