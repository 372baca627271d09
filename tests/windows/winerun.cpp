// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "winerun.h"

#include <QProcessEnvironment>

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
    return runProgram(QStringLiteral(BREVIO_WINE), QStringList{program} + arguments,
                      wineEnvironment(), timeoutMs, workingFolder);
}

ProgramRun runNative(const QString& program, const QStringList& arguments,
                     const QString& workingFolder, int timeoutMs) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return runProgram(program, arguments, environment, timeoutMs, workingFolder);
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
