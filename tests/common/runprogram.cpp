// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "runprogram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <unistd.h>

QString ProgramRun::describe() const {
    return QStringLiteral("started %1, finished %2, crashed %3, exit %4, %5 ms\nstdout:\n%6\n"
                          "stderr:\n%7")
        .arg(started)
        .arg(finished)
        .arg(crashed)
        .arg(exitCode)
        .arg(elapsedMs)
        .arg(QString::fromLocal8Bit(out.left(4000)), QString::fromLocal8Bit(err.left(4000)));
}

ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment, int timeoutMs,
                      const QString& workingFolder) {
    ProgramRun run;
    QProcess process;
    process.setProcessEnvironment(environment);
    if (!workingFolder.isEmpty())
        process.setWorkingDirectory(workingFolder);
    QEventLoop loop;
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop,
                     [&loop](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             loop.quit();
                     });
    bool timedOut = false;
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, &loop, [&] {
        timedOut = true;
        loop.quit();
    });
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    timeout.start(timeoutMs);
    loop.exec();
    run.elapsedMs = clock.elapsed();
    run.started = process.error() != QProcess::FailedToStart;
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(10000);
    }
    run.finished = run.started && !timedOut;
    run.crashed = run.finished && process.exitStatus() == QProcess::CrashExit;
    run.exitCode = run.finished ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

QProcessEnvironment headlessEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "BREVIO_DEBUG"})
        environment.remove(QString::fromLatin1(name));
    return environment;
}

bool runningAsRoot() {
    return geteuid() == 0;
}

QStringList unprivileged(const QString& program, const QStringList& arguments) {
    if (!runningAsRoot())
        return QStringList{program} + arguments;
    return QStringList{QStringLiteral("setpriv"),
                       QStringLiteral("--reuid=65534"),
                       QStringLiteral("--regid=65534"),
                       QStringLiteral("--clear-groups"),
                       QStringLiteral("--"),
                       program} +
           arguments;
}

void openForEveryone(const QString& folder) {
    const QString temp = QDir::tempPath();
    QString current = QFileInfo(folder).absoluteFilePath();
    while (current.startsWith(temp + QLatin1Char('/'))) {
        QFile::setPermissions(current, QFile::permissions(current) | QFile::ExeOther |
                                           QFile::ReadOther | QFile::ExeGroup | QFile::ReadGroup);
        current = QFileInfo(current).absolutePath();
    }
}
