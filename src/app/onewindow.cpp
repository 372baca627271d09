// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/onewindow.h"

#include "app/localendpoint.h"
#include "app/mainwindow.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

#include <memory>

namespace oneWindow {

QString endpointFor(const QString& language) {
    const QString base = localEndpoint::serverName();
    return base.isEmpty() ? base : forLanguage(base, language);
}

QString forLanguage(const QString& endpoint, const QString& language) {
    // German windows keep the name they always had.
    if (language == QLatin1String("de"))
        return endpoint;
    return endpoint + QLatin1Char('-') +
           QString::fromLatin1(language.toUtf8().toPercentEncoding("-_"));
}

QString socketName(const QString& display) {
    QString screenless = display;
    // ":0.0" and ":0" are the same display; "host:10.1" is "host:10".
    const int colon = screenless.lastIndexOf(QLatin1Char(':'));
    const int dot = screenless.indexOf(QLatin1Char('.'), colon + 1);
    if (colon >= 0 && dot > colon)
        screenless.truncate(dot);
    return QStringLiteral("brevio-window-") +
           QString::fromLatin1(screenless.toUtf8().toPercentEncoding(".:-_"));
}

QString currentDisplay() {
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        return QString::fromLocal8Bit(qgetenv("DISPLAY"));
    if (platform.startsWith(QLatin1String("wayland"))) {
        const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
        return QStringLiteral("wayland:") +
               QString::fromLocal8Bit(wayland.isEmpty() ? QByteArray("wayland-0") : wayland);
    }
    return platform + QLatin1Char(':') + QString::fromLocal8Bit(qgetenv("DISPLAY"));
}

QString notHandedOver(OneWindow::HandOver handed, int taken, int files) {
    if (handed == OneWindow::HandOver::Unanswered) {
        if (taken == 0)
            return QStringLiteral("brevio: the open window has not answered; it may still list "
                                  "the files once it is free");
        return QStringLiteral("brevio: the open window took the first %1 of %2 files and has "
                              "not answered for the others; it may still list them once it is "
                              "free")
            .arg(taken)
            .arg(files);
    }
    if (taken == 0)
        return QStringLiteral("brevio: the open window did not take the files; "
                              "brevio --new-window opens another");
    return QStringLiteral("brevio: the open window took the first %1 of %2 files, not the others")
        .arg(taken)
        .arg(files);
}

} // namespace oneWindow

namespace {

// One message to the window at path, and what became of it.
OneWindow::HandOver sendMessage(const QString& path, const QStringList& files,
                                int answerTimeoutMs) {
    using HandOver = OneWindow::HandOver;
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(1000))
        return HandOver::NoWindow;
    // The folder is private, but the other end is asked all the same.
    if (!localEndpoint::peerIsThisUser(socket.socketDescriptor()))
        return HandOver::NotTaken;
    socket.write(oneWindow::encode(files));
    QByteArray answer;
    const QDeadlineTimer deadline(answerTimeoutMs);
    while (!answer.endsWith('\n') && socket.waitForReadyRead(int(deadline.remainingTime())))
        answer += socket.readAll();
    answer += socket.readAll();
    // The window takes the files exactly when it answers; one that hung up
    // without an answer (a message it refused, or one it waited too long
    // for) took nothing.
    if (answer.endsWith('\n') || socket.state() != QLocalSocket::ConnectedState)
        return answer == oneWindow::answerTaken ? HandOver::Taken : HandOver::NotTaken;
    // No answer in time. The end mark goes last: while part of the message
    // is still here, the window cannot have it whole.
    if (socket.bytesToWrite() > 0)
        return HandOver::NotTaken;
    // The window may be stopped (Ctrl+Z in its terminal) or starved; it
    // would answer and list the files whenever it runs again. Refused from
    // here on, that answer fails at the window, which then keeps nothing;
    // an answer that came before the refusal is read and counts.
    if (!localEndpoint::refuseLateAnswers(socket))
        return HandOver::Unanswered;
    while (!answer.endsWith('\n') && socket.waitForReadyRead(1000))
        answer += socket.readAll();
    answer += socket.readAll();
    return answer == oneWindow::answerTaken ? HandOver::Taken : HandOver::NotTaken;
}

} // namespace

OneWindow::OneWindow() : OneWindow(oneWindow::endpointFor(QStringLiteral("de"))) {}

OneWindow::OneWindow(const QString& socketPath, int answerTimeoutMs)
    : path(socketPath), answerTimeoutMs(answerTimeoutMs) {}

OneWindow::~OneWindow() {
    stopServing();
}

bool OneWindow::lock() {
    if (path.isEmpty())
        return false;
    if (!socketLock) {
        socketLock = std::make_unique<QLockFile>(localEndpoint::lockPath(path));
        // A start that was killed while it held the lock leaves it behind.
        socketLock->setStaleLockTime(oneWindow::answerTimeoutMs * 2);
    }
    return socketLock->isLocked() || socketLock->tryLock(oneWindow::answerTimeoutMs * 2);
}

OneWindow::HandOver OneWindow::handOver(const QStringList& files) {
    taken = 0;
    if (!lock())
        return HandOver::NoWindow;
    bool first = true;
    for (const QStringList& batch : oneWindow::batches(files)) {
        HandOver handed = sendMessage(path, batch, answerTimeoutMs);
        // Gone between two messages: the earlier ones are in its list.
        if (handed == HandOver::NoWindow && !first)
            handed = HandOver::NotTaken;
        if (handed != HandOver::Taken)
            return handed;
        first = false;
        taken += batch.size();
    }
    socketLock->unlock();
    return HandOver::Taken;
}

bool OneWindow::serve(MainWindow& target) {
    window = &target;
    if (!lock())
        return false;
    listening = std::make_unique<QThread>();
    listener = new QObject;
    listener->moveToThread(listening.get());
    // Deleted on its own thread as that ends, and the server and its
    // connections with it.
    connect(listening.get(), &QThread::finished, listener, &QObject::deleteLater);
    listening->start();
    bool listens = false;
    QMetaObject::invokeMethod(
        listener, [this, &listens] { listens = listen(); }, Qt::BlockingQueuedConnection);
    socketLock->unlock();
    if (!listens) {
        stopServing();
        return false;
    }
    // A window that is closing answers no more starts: an answer would
    // promise a list that is about to go.
    if (QCoreApplication::instance())
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                &OneWindow::stopServing);
    return true;
}

void OneWindow::stopServing() {
    if (!listening)
        return;
    listening->quit();
    listening->wait();
    listening.reset();
    listener = nullptr;
    server = nullptr;
}

bool OneWindow::listen() {
    server = new QLocalServer(listener);
    localEndpoint::prepare(*server);
    bool listens = server->listen(path);
    if (!listens && server->serverError() == QAbstractSocket::AddressInUseError) {
        QLocalSocket probe;
        probe.connectToServer(path);
        if (!probe.waitForConnected(1000)) {
            // Nobody answers: the window that made it was killed.
            QLocalServer::removeServer(path);
            listens = server->listen(path);
        }
    }
    if (!listens)
        return false;
    localEndpoint::restrict(*server);
    connect(server, &QLocalServer::newConnection, listener, [this] {
        while (QLocalSocket* socket = server->nextPendingConnection())
            accept(socket);
    });
    return true;
}

void OneWindow::accept(QLocalSocket* socket) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!localEndpoint::peerIsThisUser(socket->socketDescriptor())) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    // A sender that never finishes is not waited for.
    QTimer::singleShot(oneWindow::receiveTimeoutMs, socket, [socket] { socket->abort(); });
    auto buffer = std::make_shared<QByteArray>();
    connect(socket, &QLocalSocket::readyRead, socket, [this, socket, buffer] {
        // Never more than one byte beyond the limit is held.
        buffer->append(socket->read(oneWindow::maxMessageBytes + 1 - buffer->size()));
        const oneWindow::Received received = oneWindow::decode(*buffer);
        if (received.state == oneWindow::Received::Incomplete)
            return;
        if (received.state == oneWindow::Received::Invalid) {
            socket->abort();
            return;
        }
        // The answer goes out before anything is listed, from this thread,
        // however busy the window's own is.
        const bool answered = localEndpoint::answer(*socket, oneWindow::answerTaken);
        socket->disconnectFromServer();
        // Refused: the start stopped waiting and has said that the window
        // did not take the files, so it does not.
        if (!answered)
            return;
        QMetaObject::invokeMethod(
            this, [this, files = received.files] { receive(files); }, Qt::QueuedConnection);
    });
}

void OneWindow::receive(const QStringList& files) {
    emit filesReceived(files);
    if (!window)
        return;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
    // The same way as files on the command line: after this handler, one
    // by one, each refused or taken by the list's own rules.
    window->openWhenShown(files);
}
