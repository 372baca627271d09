// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/handovermessage.h"

#include "files/pathsyntax.h"

#include <QFile>

namespace oneWindow {

const QByteArray answerTaken = QByteArrayLiteral("ok\n");

namespace {

const QByteArray header = QByteArrayLiteral("BREVIO-FILES 1\n");

} // namespace

QByteArray encode(const QStringList& files) {
    QByteArray message = header;
    for (const QString& file : files) {
        message += QFile::encodeName(file);
        message += '\0';
    }
    message += '\0';
    return message;
}

QList<QStringList> batches(const QStringList& files) {
    QList<QStringList> result;
    QStringList batch;
    int bytes = header.size() + 1;
    for (const QString& file : files) {
        const int size = QFile::encodeName(file).size() + 1;
        if (!batch.isEmpty() && (batch.size() == maxFiles || bytes + size > maxMessageBytes)) {
            result.append(batch);
            batch.clear();
            bytes = header.size() + 1;
        }
        batch.append(file);
        bytes += size;
    }
    if (!batch.isEmpty() || result.isEmpty())
        result.append(batch);
    return result;
}

Received decode(const QByteArray& message) {
    Received received;
    if (message.size() > maxMessageBytes) {
        received.state = Received::Invalid;
        return received;
    }
    const int headerPart = qMin(message.size(), header.size());
    if (message.left(headerPart) != header.left(headerPart)) {
        received.state = Received::Invalid;
        return received;
    }
    if (message.size() < header.size())
        return received;

    int at = header.size();
    while (true) {
        const int end = message.indexOf('\0', at);
        if (end < 0) {
            // A path longer than any the system opens will not get shorter.
            if (message.size() - at > maxPathBytes)
                received.state = Received::Invalid;
            received.files.clear();
            return received;
        }
        const QByteArray path = message.mid(at, end - at);
        if (path.isEmpty()) {
            // The end mark; nothing may follow it.
            received.state = end + 1 == message.size() ? Received::Complete : Received::Invalid;
            if (received.state == Received::Invalid)
                received.files.clear();
            return received;
        }
        if (!pathSyntax::isAbsolute(QFile::decodeName(path)) || path.size() > maxPathBytes ||
            received.files.size() == maxFiles) {
            received.state = Received::Invalid;
            received.files.clear();
            return received;
        }
        received.files.append(QFile::decodeName(path));
        at = end + 1;
    }
}

} // namespace oneWindow
