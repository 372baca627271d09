// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "winerun.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

namespace {

ProgramRun run(const QString& program, const QStringList& arguments,
               const QProcessEnvironment& environment, const QString& workingFolder,
               int timeoutMs) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingFolder);
    process.start(program, arguments);
    ProgramRun result;
    if (!process.waitForStarted(timeoutMs))
        return result;
    result.finished = process.waitForFinished(timeoutMs);
    if (!result.finished) {
        process.kill();
        process.waitForFinished();
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

} // namespace

QProcessEnvironment wineEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WINEPREFIX"), QStringLiteral(BREVIO_WINE_PREFIX));
    // Wine's own notes about unimplemented corners are not the program's.
    environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    // No Mono or Gecko installer prompts in a new prefix.
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    return environment;
}

ProgramRun runUnderWine(const QString& program, const QStringList& arguments,
                        const QString& workingFolder, int timeoutMs) {
    return run(QStringLiteral(BREVIO_WINE), QStringList{program} + arguments, wineEnvironment(),
               workingFolder, timeoutMs);
}

ProgramRun runNative(const QString& program, const QStringList& arguments,
                     const QString& workingFolder, int timeoutMs) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return run(program, arguments, environment, workingFolder, timeoutMs);
}

QString windowsProgram(const QString& name) {
    return QStringLiteral(BREVIO_WINDOWS_BUILD_DIR "/") + name;
}

QString linuxConverter() {
    return QStringLiteral(BREVIO_LINUX_CONVERTER);
}

QString windowsPathOf(const QString& linuxPath) {
    return QStringLiteral("Z:") + QString(linuxPath).replace(QLatin1Char('/'), QLatin1Char('\\'));
}
