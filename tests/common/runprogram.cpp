// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "runprogram.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <csignal>
#include <sys/types.h>
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
    return StartedProgram(program, arguments, environment, workingFolder).finish(timeoutMs);
}

QString converterProgram() {
    return QStringLiteral(BREVIO_CONVERT_BINARY);
}

ProgramRun runConverter(const QStringList& arguments, const QString& workingFolder,
                        const QProcessEnvironment& extra, int timeoutMs) {
    QProcessEnvironment environment = headlessEnvironment();
    environment.insert(extra);
    return runProgram(converterProgram(), arguments, environment, timeoutMs, workingFolder);
}

QString withoutWarnings(const QString& err) {
    QStringList kept;
    const QStringList lines = err.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        if (!line.contains(QLatin1String(": warning: ")))
            kept << line;
    return kept.join(QLatin1Char('\n'));
}

StartedProgram::StartedProgram(const QString& program, const QStringList& arguments,
                               const QProcessEnvironment& environment, const QString& workingFolder)
    : process_(new QProcess) {
    process_->setProcessEnvironment(environment);
    if (!workingFolder.isEmpty())
        process_->setWorkingDirectory(workingFolder);
    clock_.start();
    process_->start(program, arguments);
}

StartedProgram::~StartedProgram() {
    if (process_->state() != QProcess::NotRunning) {
        process_->kill();
        process_->waitForFinished(10000);
    }
}

bool StartedProgram::waitForStarted(int timeoutMs) {
    return process_->waitForStarted(timeoutMs);
}

bool StartedProgram::isRunning() const {
    return process_->state() == QProcess::Running;
}

qint64 StartedProgram::processId() const {
    return process_->processId();
}

QByteArray StartedProgram::readOutput(int waitMs) {
    if (process_->bytesAvailable() == 0 && process_->state() == QProcess::Running)
        process_->waitForReadyRead(waitMs);
    const QByteArray more = process_->readAllStandardOutput();
    out_ += more;
    return more;
}

QByteArray StartedProgram::errorSoFar() {
    err_ += process_->readAllStandardError();
    return err_;
}

bool StartedProgram::sendSignal(int signalNumber) {
    return process_->processId() > 0 && ::kill(pid_t(process_->processId()), signalNumber) == 0;
}

void StartedProgram::closeInput() {
    process_->closeWriteChannel();
}

ProgramRun StartedProgram::finish(int timeoutMs) {
    ProgramRun run;
    bool timedOut = false;
    // It may have ended already, or failed to start, while the test acted.
    if (process_->state() != QProcess::NotRunning) {
        QEventLoop loop;
        QObject::connect(process_.get(),
                         QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &loop,
                         &QEventLoop::quit);
        QObject::connect(process_.get(), &QProcess::errorOccurred, &loop,
                         [&loop](QProcess::ProcessError error) {
                             if (error == QProcess::FailedToStart)
                                 loop.quit();
                         });
        QTimer timeout;
        timeout.setSingleShot(true);
        QObject::connect(&timeout, &QTimer::timeout, &loop, [&] {
            timedOut = true;
            loop.quit();
        });
        timeout.start(timeoutMs);
        loop.exec();
    }
    run.elapsedMs = clock_.elapsed();
    run.started = process_->error() != QProcess::FailedToStart;
    if (process_->state() != QProcess::NotRunning) {
        process_->kill();
        process_->waitForFinished(10000);
    }
    run.finished = run.started && !timedOut;
    run.crashed = run.finished && process_->exitStatus() == QProcess::CrashExit;
    run.exitCode = run.finished ? process_->exitCode() : -1;
    out_ += process_->readAllStandardOutput();
    err_ += process_->readAllStandardError();
    run.out = out_;
    run.err = err_;
    return run;
}

qint64 pidOfEndedProcess() {
    StartedProgram gone(QStringLiteral("true"), QStringList());
    if (!gone.waitForStarted())
        return 0;
    const qint64 pid = gone.processId();
    return gone.finish(30000).finished ? pid : 0;
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
