// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_HANDOVERMESSAGE_H
#define BREVIO_HANDOVERMESSAGE_H

#include <QByteArray>
#include <QList>
#include <QStringList>

// What a later start sends the running window over its socket, and the
// window's answer. Whatever arrives is bytes from another process, so
// decode() accepts only a whole, well-formed message within the limits.
namespace oneWindow {

// What one message may hold; a start with more files sends several.
constexpr int maxMessageBytes = 1 << 20;
constexpr int maxFiles = 1000;
// PATH_MAX: no longer name can be opened.
constexpr int maxPathBytes = 4096;
// How long a window waits for a whole message, and a start for the answer
// (which a window gives at once, busy or not).
constexpr int receiveTimeoutMs = 5000;
constexpr int answerTimeoutMs = 10000;

// "BREVIO-FILES 1\n", each path's bytes and a NUL, and an empty path to end.
QByteArray encode(const QStringList& files);
// The window's answer to a whole message: it takes the files.
extern const QByteArray answerTaken;
// Splits the files into messages within the limits, in order.
QList<QStringList> batches(const QStringList& files);

struct Received {
    enum State { Incomplete, Complete, Invalid } state = Incomplete;
    QStringList files;
};
// Accepts only the whole message: the header, at most maxFiles absolute
// paths of at most maxPathBytes each, the end mark, nothing after it and
// never more than maxMessageBytes.
Received decode(const QByteArray& message);

} // namespace oneWindow

#endif
