// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_RUNPROGRAM_H
#define BREVIO_TESTS_RUNPROGRAM_H

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// One child process, run to its end or killed.
struct ProgramRun {
    bool started = false;
    // Ended by itself within the time given; otherwise it was killed.
    bool finished = false;
    // Ended by a signal (the signal's number is then in exitCode).
    bool crashed = false;
    // The exit status when it ended normally; -1 when it did not start or
    // was killed.
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
    qint64 elapsedMs = 0;

    // The exit status when it ended normally, for QCOMPARE; -1 otherwise.
    int status() const { return finished && !crashed ? exitCode : -1; }
    // For failure messages.
    QString describe() const;
};

// Runs program with arguments and waits at most timeoutMs, keeping the
// event loop of the calling thread running (servers of the test keep
// answering). A process still running then is killed.
ProgramRun
runProgram(const QString& program, const QStringList& arguments,
           const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
           int timeoutMs = 120000, const QString& workingFolder = QString());

// The environment a child gets: this process's, without any display, and
// without the toolkit's debug output switched on.
QProcessEnvironment headlessEnvironment();

bool runningAsRoot();

// As root, permission bits do not stop reading or writing. This wraps a
// command so that it runs as the unprivileged user "nobody" (through
// setpriv from util-linux); for anyone else it returns the command as it is.
// Returns {program, arguments...}.
QStringList unprivileged(const QString& program, const QStringList& arguments);

// Makes the folder and its parents down from the temporary folder
// enterable and readable by everyone, so an unprivileged child can reach
// files the test made in it.
void openForEveryone(const QString& folder);

#endif
