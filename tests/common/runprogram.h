// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_RUNPROGRAM_H
#define BREVIO_TESTS_RUNPROGRAM_H

#include <QByteArray>
#include <QElapsedTimer>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <memory>

class QProcess;

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
    // Standard output and error as text, decoded as the locale says (byte
    // for byte where a test installed the file-name codec).
    QString outText() const { return QString::fromLocal8Bit(out); }
    QString errText() const { return QString::fromLocal8Bit(err); }
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

// This build's brevio-convert.
QString converterProgram();

// Runs this build's brevio-convert as a terminal without a display runs it:
// in headlessEnvironment() with the variables of extra added, from
// workingFolder when one is given.
ProgramRun runConverter(const QStringList& arguments, const QString& workingFolder = QString(),
                        const QProcessEnvironment& extra = QProcessEnvironment(),
                        int timeoutMs = 120000);

// brevio-convert's standard error without its warning lines, for the tests
// of what becomes of files and reports: their example's maker name is wider
// than its column and is warned about (tst_brevioconvert pins that warning).
QString withoutWarnings(const QString& err);

// A child process the test acts on while it runs: it reads its output as it
// comes, removes files under it, sends it a signal or closes its input, and
// then lets it end with finish(). One that is never finished is killed
// when this goes.
class StartedProgram {
public:
    StartedProgram(
        const QString& program, const QStringList& arguments,
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
        const QString& workingFolder = QString());
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    // Waits until the process runs; false when it could not be started.
    bool waitForStarted(int timeoutMs = 30000);
    bool isRunning() const;
    qint64 processId() const;
    // The standard output that came since the last call, waiting at most
    // waitMs for some when none is there yet; empty when none came or the
    // process has ended.
    QByteArray readOutput(int waitMs);
    // All of standard error so far, for failure messages.
    QByteArray errorSoFar();
    bool sendSignal(int signalNumber);
    // Closes its standard input, which tells a program reading it to end.
    void closeInput();
    // Waits at most timeoutMs for the process to end, as runProgram does,
    // and returns the whole run: out holds what readOutput() returned too.
    ProgramRun finish(int timeoutMs);

private:
    std::unique_ptr<QProcess> process_;
    QElapsedTimer clock_;
    QByteArray out_;
    QByteArray err_;
};

// The id of a process that has ended: a process id nothing runs under
// (unless the system has already given it to another); 0 when no process
// could be started or it did not end.
qint64 pidOfEndedProcess();

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
