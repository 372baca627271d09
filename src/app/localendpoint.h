// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_LOCALENDPOINT_H
#define BREVIO_LOCALENDPOINT_H

#include <QByteArray>
#include <QString>

class QLocalServer;
class QLocalSocket;

// Where the running window listens for the files of later starts, and who
// may reach it, the system's own way: on POSIX a socket in a folder only
// the user can enter, named for the display; on Windows a named pipe named
// for the user and the logon session, open to that user alone.
namespace localEndpoint {

// The server name for this user here, or empty when none can be had (each
// start then opens a window of its own).
QString serverName();
// The file whose lock lets one start at a time find out whether a window
// listens at serverName.
QString lockPath(const QString& serverName);
// Before server listens: what the system lets a server set up front.
void prepare(QLocalServer& server);
// After server listens: closes the endpoint to everyone but the user.
void restrict(const QLocalServer& server);
// Whether the process at the other end of a connected socket runs as this
// user: asked of the system where it can tell (SO_PEERCRED); a pipe open
// only to the user has nobody else at its end.
bool peerIsThisUser(qintptr descriptor);

// The window's side: writes answer to the connected socket at once and
// returns whether it reached a start that still waits for it. On POSIX the
// system says so: a start that gave up has shut its end for answers
// (refuseLateAnswers), and the write fails. A Windows pipe tells only
// later, so there it is true whenever the pipe took the answer.
bool answer(QLocalSocket& socket, const QByteArray& answer);
// The start's side, when it stops waiting: from now on no answer reaches
// this end, and the window learns so when it tries to give one; what came
// before can still be read. False where the system cannot do this (a
// Windows pipe): a late answer then may still be given.
bool refuseLateAnswers(QLocalSocket& socket);

} // namespace localEndpoint

#endif
