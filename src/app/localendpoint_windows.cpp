// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/localendpoint.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

#include <windows.h>

namespace localEndpoint {

namespace {

QString userName() {
    wchar_t name[257] = {};
    DWORD size = 257;
    if (!GetUserNameW(name, &size))
        return QString();
    return QString::fromWCharArray(name);
}

} // namespace

QString serverName() {
    // Pipe names are one namespace for the whole machine: the user's name
    // and the logon session keep a window of another user, or of the same
    // user on another desktop session, out of reach.
    DWORD session = 0;
    if (!ProcessIdToSessionId(GetCurrentProcessId(), &session))
        return QString();
    const QString user = userName();
    if (user.isEmpty())
        return QString();
    return QStringLiteral("brevio-window-%1-").arg(session) +
           QString::fromLatin1(user.toUtf8().toPercentEncoding("-_"));
}

QString lockPath(const QString& serverName) {
    // The temporary folder is the user's own (under the profile).
    return QDir::tempPath() + QLatin1Char('/') + serverName + QStringLiteral(".lock");
}

void prepare(QLocalServer& server) {
    // The pipe's access list names this user alone.
    server.setSocketOptions(QLocalServer::UserAccessOption);
}

void restrict(const QLocalServer&) {
    // prepare() set the pipe's access list before it was created.
}

bool peerIsThisUser(qintptr) {
    // Only this user can open the pipe at all.
    return true;
}

bool answer(QLocalSocket& socket, const QByteArray& answer) {
    // The pipe writes in the background and reports a failure only later;
    // the window takes the files unless the pipe refuses the answer now.
    const bool taken = socket.write(answer) == answer.size();
    socket.flush();
    return taken;
}

bool refuseLateAnswers(QLocalSocket&) {
    // A pipe cannot be closed for reading alone.
    return false;
}

} // namespace localEndpoint
