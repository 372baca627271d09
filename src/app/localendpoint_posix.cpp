// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/localendpoint_posix.h"
#include "app/localendpoint.h"

#include "app/onewindow.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <cerrno>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace localEndpoint {

namespace {

// A folder that is this user's own, not a link, and closed to everyone else.
bool isPrivateFolder(const QByteArray& folder) {
    struct stat info {};
    if (::lstat(folder.constData(), &info) != 0)
        return false;
    return S_ISDIR(info.st_mode) && info.st_uid == ::getuid() && (info.st_mode & 077) == 0;
}

} // namespace

QString privateFolder() {
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && runtime.startsWith('/') && isPrivateFolder(runtime))
        return QFile::decodeName(runtime);
    const QByteArray fallback = "/tmp/brevio-" + QByteArray::number(::getuid());
    // An existing folder is taken only as it is: whoever made it first may
    // not be this user, and a changed mode would not make it ours.
    if (::mkdir(fallback.constData(), 0700) != 0 && errno != EEXIST)
        return QString();
    return isPrivateFolder(fallback) ? QFile::decodeName(fallback) : QString();
}

bool peerIsUser(qintptr descriptor, uid_t user) {
    struct ucred credentials {};
    socklen_t size = sizeof credentials;
    if (::getsockopt(int(descriptor), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0 ||
        size != sizeof credentials)
        return false;
    return credentials.uid == user;
}

QString serverName() {
    const QString folder = privateFolder();
    if (folder.isEmpty())
        return QString();
    return folder + QLatin1Char('/') + oneWindow::socketName(oneWindow::currentDisplay());
}

QString lockPath(const QString& serverName) {
    return serverName + QStringLiteral(".lock");
}

void prepare(QLocalServer&) {
    // Qt's own access option renames a fresh socket over the name, which
    // would push aside a window that still runs: restrict() closes it.
}

void restrict(const QLocalServer& server) {
    // The socket itself is closed to others too, not only its folder.
    ::chmod(QFile::encodeName(server.fullServerName()).constData(), 0600);
}

bool peerIsThisUser(qintptr descriptor) {
    return peerIsUser(descriptor, ::getuid());
}

bool answer(QLocalSocket& socket, const QByteArray& answer) {
    // Straight to the system rather than through the socket's buffer, which
    // would write it later: only the write itself tells whether the start
    // still takes answers. A few bytes on a fresh connection go in whole
    // or not at all; a start that shut its end (or is gone) makes it fail
    // with EPIPE, without a SIGPIPE.
    ssize_t written;
    do {
        written = ::send(int(socket.socketDescriptor()), answer.constData(), size_t(answer.size()),
                         MSG_NOSIGNAL);
    } while (written < 0 && errno == EINTR);
    return written == answer.size();
}

bool refuseLateAnswers(QLocalSocket& socket) {
    // Shutting this end for reading shuts the window's end for writing, in
    // the same step in which the system queues or refuses each write: an
    // answer is either here to be read or refused at the window.
    return ::shutdown(int(socket.socketDescriptor()), SHUT_RD) == 0;
}

} // namespace localEndpoint
