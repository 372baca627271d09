// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_ONEWINDOW_H
#define BREVIO_ONEWINDOW_H

#include "app/handovermessage.h"

#include <QByteArray>
#include <QLockFile>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>

class MainWindow;
class QLocalServer;
class QLocalSocket;
class QThread;

// One window per user and display: "brevio FILE..." started while a window
// runs hands its files to that window, which lists them as if they had been
// dropped on it, and ends. The window listens on a local socket in a folder
// only its user can enter, named for the display, so a window on another
// display, or another user's, is never reached. Whatever arrives is taken
// for what it is, bytes from another process: only a bounded list of
// absolute paths is accepted, and each then meets the list's own rules.
//
// The window answers a message as soon as it has it whole, from a thread of
// its own, and lists the files afterwards on the window's thread: a window
// busy with a long listing still answers at once. The answer is the
// hand-over: the window takes the files exactly when its answer reaches a
// start that still waits for it (where the system tells; a Windows pipe
// does not), so the start can say what happened.
class OneWindow : public QObject {
    Q_OBJECT

public:
    // The socket of this user on this display (empty when no private folder
    // could be had: each start then opens a window of its own), for a
    // German window.
    OneWindow();
    // A socket at the given path: oneWindow::endpointFor(language), or one
    // of the tests'. A start waits answerTimeoutMs for each answer.
    explicit OneWindow(const QString& socketPath, int answerTimeoutMs = oneWindow::answerTimeoutMs);
    ~OneWindow() override;

    enum class HandOver {
        // Nobody listens (or only a killed window's socket is left).
        NoWindow,
        // The running window has taken all the files; it lists them as
        // soon as it gets to them.
        Taken,
        // The window certainly did not take the files from filesTaken() on:
        // the message never reached it whole, it hung up without an answer,
        // or its answer came after the start had stopped waiting and was
        // refused, so that the window did not take them either.
        NotTaken,
        // No answer in time, and the system cannot refuse a later one (a
        // Windows pipe): the window may still take the files from
        // filesTaken() on once it gets to them.
        Unanswered,
    };
    // Sends the files (absolute paths, in order) to the running window.
    // Until serve() the socket stays locked, so two starts at once do not
    // both find nobody and both open a window.
    HandOver handOver(const QStringList& files);
    // How many of the files given to the last handOver(), from the first,
    // the window has taken (several messages carry a long list).
    int filesTaken() const { return taken; }

    // Listens for later starts; a socket left by a window that was killed
    // is taken over. Returns whether it listens (it does not while another
    // window does, after --new-window).
    bool serve(MainWindow& window);

    QString socketPath() const { return path; }

    // Received files are passed on here (to the window's list by default),
    // on the window's thread, after the start has had its answer.
    void receive(const QStringList& files);

signals:
    void filesReceived(const QStringList& files);

private:
    // No more starts are answered and the socket is gone, so the next start
    // opens a window of its own: for a window that is closing, whose list
    // is about to go.
    void stopServing();
    bool lock();
    // These run on the listening thread.
    bool listen();
    void accept(QLocalSocket* socket);

    QString path;
    int answerTimeoutMs;
    int taken = 0;
    std::unique_ptr<QLockFile> socketLock;
    // The thread that takes the connections and answers them; listener
    // lives in it and owns the server, which owns the connections.
    std::unique_ptr<QThread> listening;
    QObject* listener = nullptr;
    QLocalServer* server = nullptr;
    QPointer<MainWindow> window;
};

namespace oneWindow {

// What a start says when the files did not all go to the running window
// (one line, no line end), for handOver()'s verdict, the files the window
// took (from the first) and the files given.
QString notHandedOver(OneWindow::HandOver handed, int taken, int files);

// The endpoint of windows in language ("de", "en") for this user here:
// a start in another language than the running window's opens a window of
// its own rather than hand its files to a window that would not speak it.
QString endpointFor(const QString& language);
// endpoint itself for German, else endpoint with "-" and the language.
QString forLanguage(const QString& endpoint, const QString& language);
// "brevio-window-" and the display with its screen number dropped
// (":0.0" is ":0"); anything but letters, digits and ".:-_" is escaped.
QString socketName(const QString& display);
// The display this process shows its windows on: DISPLAY for X11,
// WAYLAND_DISPLAY for Wayland, else the platform's name.
QString currentDisplay();

} // namespace oneWindow

#endif
