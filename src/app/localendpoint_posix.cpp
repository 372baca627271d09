// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/localendpoint_posix.h"
#include "app/localendpoint.h"

#include "app/onewindow.h"

#include <QFile>
#include <QLocalServer>

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

} // namespace localEndpoint
