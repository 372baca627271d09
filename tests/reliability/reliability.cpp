// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "reliability.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <unistd.h>

namespace reliability {

QString ProcessRun::describe() const {
    return QStringLiteral(
               "started %1, timed out %2, crashed %3, exit %4, %5 ms\nstdout:\n%6\nstderr:\n%7")
        .arg(started)
        .arg(timedOut)
        .arg(crashed)
        .arg(exitCode)
        .arg(elapsedMs)
        .arg(out.left(4000), err.left(4000));
}

ProcessRun runProcess(const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment, int timeoutMs) {
    ProcessRun run;
    QProcess process;
    process.setProcessEnvironment(environment);
    QEventLoop loop;
    QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                     &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop,
                     [&loop](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             loop.quit();
                     });
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, &loop, [&] {
        run.timedOut = true;
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
    run.crashed = !run.timedOut && process.exitStatus() == QProcess::CrashExit;
    run.exitCode = process.exitCode();
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

QProcessEnvironment headlessEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    environment.remove(QStringLiteral("BREVIO_DEBUG"));
    return environment;
}

ProcessRun runConverter(const QStringList& arguments, int timeoutMs,
                        const QProcessEnvironment& extra) {
    QProcessEnvironment environment = headlessEnvironment();
    environment.insert(extra);
    return runProcess(QStringLiteral(BREVIO_CONVERT_BINARY), arguments, environment, timeoutMs);
}

QByteArray fileHash(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return hash.result().toHex();
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

} // namespace reliability
