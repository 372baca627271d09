// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_RELIABILITY_H
#define BREVIO_TESTS_RELIABILITY_H

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Helpers shared by the tests that feed Brevio hostile files, hostile
// output places and a hostile print service.
namespace reliability {

// One finished (or killed) child process.
struct ProcessRun {
    bool started = false;
    bool timedOut = false;
    bool crashed = false; // ended by a signal
    int exitCode = -1;
    QString out;
    QString err;
    qint64 elapsedMs = 0;

    // For failure messages.
    QString describe() const;
};

// Runs program with arguments and waits at most timeoutMs, keeping the
// event loop of the calling thread running (so servers of the test keep
// answering). A process still running then is killed and marked timedOut.
ProcessRun runProcess(const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment, int timeoutMs);

// brevio-convert as the tests run it: no display, toolkit messages quiet.
ProcessRun runConverter(const QStringList& arguments, int timeoutMs = 300000,
                        const QProcessEnvironment& extra = QProcessEnvironment());

// The environment a child gets: this process's, without any display.
QProcessEnvironment headlessEnvironment();

// SHA-256 of the file's bytes; empty when it cannot be read.
QByteArray fileHash(const QString& path);

bool runningAsRoot();

// As root, permission bits do not stop reading or writing. This wraps a
// command so that it runs as the unprivileged user "nobody" (through
// setpriv from util-linux); for anyone else it returns the command as it is.
// Returns {program, arguments}.
QStringList unprivileged(const QString& program, const QStringList& arguments);

// Makes the folder and its parents down from /tmp enterable by everyone,
// so an unprivileged child can reach files the test made in it.
void openForEveryone(const QString& folder);

} // namespace reliability

#endif
