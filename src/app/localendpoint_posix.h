// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_LOCALENDPOINT_POSIX_H
#define BREVIO_LOCALENDPOINT_POSIX_H

#include <QString>

#include <sys/types.h>

// The POSIX pieces of localEndpoint, for its tests.
namespace localEndpoint {

// A folder only this user can enter: XDG_RUNTIME_DIR when it is one, else
// /tmp/brevio-UID, made with mode 0700 and refused unless it is this
// user's own folder (not a link) that nobody else can enter. Empty if
// neither can be had.
QString privateFolder();

// Whether the process at the other end of the connected local socket runs
// as the given user (SO_PEERCRED).
bool peerIsUser(qintptr descriptor, uid_t user);

} // namespace localEndpoint

#endif
