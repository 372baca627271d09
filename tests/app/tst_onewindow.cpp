// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/listwidgetcontainer.h"
#include "app/localendpoint.h"
#include "app/localendpoint_posix.h"
#include "app/mainwindow.h"
#include "app/onewindow.h"
#include "files/filenamecodec.h"
#include "windowtest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QtConcurrent>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

Q_DECLARE_METATYPE(oneWindow::Received::State)
Q_DECLARE_METATYPE(OneWindow::HandOver)

namespace {

QByteArray paths(std::initializer_list<QByteArray> list) {
    QByteArray message("BREVIO-FILES 1\n");
    for (const QByteArray& path : list)
        message += path + '\0';
    return message;
}

// The address of the local socket at path.
sockaddr_un addressOf(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray bytes = QFile::encodeName(path);
    qstrncpy(address.sun_path, bytes.constData(), sizeof address.sun_path);
    return address;
}

// A socket file that nobody listens on any more, as a killed window leaves.
bool leaveStaleSocket(const QString& path) {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = addressOf(path);
    const bool bound =
        ::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(descriptor, 1) == 0;
    ::close(descriptor);
    return bound && QFileInfo::exists(path);
}

// The start's side runs on a thread of its own: it waits for the window's
// answer, which the window gives from this thread's event loop.
QFuture<OneWindow::HandOver> handOverFromAnotherStart(const QString& socket,
                                                      const QStringList& files) {
    return QtConcurrent::run([socket, files] { return OneWindow(socket).handOver(files); });
}

struct Sent {
    OneWindow::HandOver handed = OneWindow::HandOver::NoWindow;
    // How long the start waited, from its first try to the verdict.
    qint64 ms = -1;
};

QFuture<Sent> timedHandOver(const QString& socket, const QStringList& files) {
    return QtConcurrent::run([socket, files] {
        QElapsedTimer clock;
        clock.start();
        Sent sent;
        sent.handed = OneWindow(socket).handOver(files);
        sent.ms = clock.elapsed();
        return sent;
    });
}

// A start's end of the connection, held open by the test itself.
int connectTo(const QString& path) {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = addressOf(path);
    if (::connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace

class TestOneWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void decode_data();
    void decode();
    void encodeKeepsEveryByte();
    void batchesKeepLimitsAndOrder();
    void endpointPerLanguage_data();
    void endpointPerLanguage();
    void socketName_data();
    void socketName();
    void peerUser();
    void privateFolderRefusesOpenRuntimeFolder();
    void filesJoinTheRunningWindow();
    void noWindowNoHandOver();
    void staleSocketIsTakenOver();
    void secondWindowDoesNotServe();
    void badMessagesAddNothing_data();
    void badMessagesAddNothing();
    void busyWindowAnswersAtOnce_data();
    void busyWindowAnswersAtOnce();
    void startThatGaveUpGetsNothingListed();
    void startSaysWhatHappened_data();
    void startSaysWhatHappened();
    void notHandedOver_data();
    void notHandedOver();

private:
    QTemporaryDir folder;
};

void TestOneWindow::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    FileNameCodec::useForLocale();
    QVERIFY(folder.isValid());
}

void TestOneWindow::decode_data() {
    using State = oneWindow::Received::State;
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<State>("state");
    QTest::addColumn<QStringList>("files");

    const QByteArray end(1, '\0');
    QTest::newRow("two files") << paths({"/a/b.json", "/c.json"}) + end << State::Complete
                               << QStringList{"/a/b.json", "/c.json"};
    QTest::newRow("no files") << paths({}) + end << State::Complete << QStringList();
    QTest::newRow("kept order, repeats kept")
        << paths({"/b.json", "/a.json", "/b.json"}) + end << State::Complete
        << QStringList{"/b.json", "/a.json", "/b.json"};
    QTest::newRow("any ending: the list decides")
        << paths({"/notes.txt"}) + end << State::Complete << QStringList{"/notes.txt"};
    QTest::newRow("half a header") << QByteArray("BREVIO-FI") << State::Incomplete << QStringList();
    QTest::newRow("no end mark yet") << paths({"/a.json"}) << State::Incomplete << QStringList();
    QTest::newRow("half a path") << paths({"/a.json"}) + "/b.js" << State::Incomplete
                                 << QStringList();
    QTest::newRow("other header") << QByteArray("BREVIO-FILES 2\n/a.json") + end + end
                                  << State::Invalid << QStringList();
    QTest::newRow("not ours") << QByteArray("GET / HTTP/1.0\r\n\r\n") << State::Invalid
                              << QStringList();
    QTest::newRow("relative path")
        << paths({"/a.json", "b.json"}) + end << State::Invalid << QStringList();
    QTest::newRow("something after the end")
        << paths({"/a.json"}) + end + "/b.json" << State::Invalid << QStringList();
    QTest::newRow("path beyond PATH_MAX")
        << paths({"/" + QByteArray(oneWindow::maxPathBytes, 'a')}) + end << State::Invalid
        << QStringList();
    QTest::newRow("unfinished path beyond PATH_MAX")
        << paths({}) + "/" + QByteArray(oneWindow::maxPathBytes, 'a') << State::Invalid
        << QStringList();
    QByteArray many("BREVIO-FILES 1\n");
    for (int i = 0; i <= oneWindow::maxFiles; ++i)
        many += "/" + QByteArray::number(i) + ".json" + end;
    QTest::newRow("one file too many") << many + end << State::Invalid << QStringList();
    QByteArray huge("BREVIO-FILES 1\n");
    while (huge.size() <= oneWindow::maxMessageBytes)
        huge += "/" + QByteArray(1000, 'x') + end;
    QTest::newRow("beyond the size limit") << huge << State::Invalid << QStringList();
}

void TestOneWindow::decode() {
    QFETCH(QByteArray, message);
    QFETCH(oneWindow::Received::State, state);
    QFETCH(QStringList, files);
    const oneWindow::Received received = oneWindow::decode(message);
    QCOMPARE(int(received.state), int(state));
    QCOMPARE(received.files, files);
}

void TestOneWindow::encodeKeepsEveryByte() {
    // A Latin-1 folder name, not UTF-8.
    const QByteArray latin1("/data/Geb\xe4ude/a.json");
    const QStringList files{QFile::decodeName(latin1), QStringLiteral("/b.json")};
    const QByteArray message = oneWindow::encode(files);
    QVERIFY(message.contains(latin1 + '\0'));
    const oneWindow::Received received = oneWindow::decode(message);
    QCOMPARE(int(received.state), int(oneWindow::Received::Complete));
    QCOMPARE(received.files, files);
    QCOMPARE(QFile::encodeName(received.files.first()), latin1);
}

void TestOneWindow::batchesKeepLimitsAndOrder() {
    QStringList files;
    for (int i = 0; i < 2 * oneWindow::maxFiles + 5; ++i)
        files.append(QStringLiteral("/data/%1.json").arg(i));
    // Names long enough that the byte limit splits before the count does.
    for (int i = 0; i < 600; ++i)
        files.append(QStringLiteral("/") + QString(3000, QLatin1Char('n')) + QString::number(i));
    const QList<QStringList> batches = oneWindow::batches(files);
    QStringList joined;
    for (const QStringList& batch : batches) {
        QVERIFY(batch.size() <= oneWindow::maxFiles);
        const QByteArray message = oneWindow::encode(batch);
        QVERIFY(message.size() <= oneWindow::maxMessageBytes);
        QCOMPARE(int(oneWindow::decode(message).state), int(oneWindow::Received::Complete));
        joined += batch;
    }
    QCOMPARE(joined, files);
    QVERIFY(batches.size() >= 4);
    // No files is still one (empty) message: the window comes forward.
    QCOMPARE(oneWindow::batches(QStringList()), QList<QStringList>{QStringList()});
}

void TestOneWindow::endpointPerLanguage_data() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("endpoint");
    QTest::newRow("German keeps the name") << "de"
                                           << "/run/user/1/brevio-window-%3A0";
    QTest::newRow("English has its own") << "en"
                                         << "/run/user/1/brevio-window-%3A0-en";
}

void TestOneWindow::endpointPerLanguage() {
    // "brevio --language en a.json" beside a German window opens an English
    // window of its own instead of handing the file to the German one.
    QFETCH(QString, language);
    QFETCH(QString, endpoint);
    QCOMPARE(oneWindow::forLanguage(QStringLiteral("/run/user/1/brevio-window-%3A0"), language),
             endpoint);
    QVERIFY(oneWindow::endpointFor(QStringLiteral("en")) !=
            oneWindow::endpointFor(QStringLiteral("de")));
}

void TestOneWindow::socketName_data() {
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("name");
    QTest::newRow("display") << ":0"
                             << "brevio-window-:0";
    QTest::newRow("screen dropped") << ":0.1"
                                    << "brevio-window-:0";
    QTest::newRow("other display") << ":1"
                                   << "brevio-window-:1";
    QTest::newRow("remote") << "host.lan:10.0"
                            << "brevio-window-host.lan:10";
    QTest::newRow("no slash in a name") << "../x:3"
                                        << "brevio-window-..%2Fx:3";
}

void TestOneWindow::socketName() {
    QFETCH(QString, display);
    QFETCH(QString, name);
    QCOMPARE(oneWindow::socketName(display), name);
}

void TestOneWindow::peerUser() {
    int pair[2];
    QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    QVERIFY(localEndpoint::peerIsUser(pair[0], ::getuid()));
    QVERIFY(!localEndpoint::peerIsUser(pair[0], ::getuid() + 1));
    ::close(pair[0]);
    ::close(pair[1]);
    // Not a socket at all.
    QVERIFY(!localEndpoint::peerIsUser(-1, ::getuid()));
}

void TestOneWindow::privateFolderRefusesOpenRuntimeFolder() {
    const QByteArray saved = qgetenv("XDG_RUNTIME_DIR");
    const QString runtime = folder.path() + QStringLiteral("/runtime");
    QVERIFY(QDir().mkpath(runtime));
    ::chmod(QFile::encodeName(runtime).constData(), 0700);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    QCOMPARE(localEndpoint::privateFolder(), runtime);

    // Open to the group: not a place for the socket.
    ::chmod(QFile::encodeName(runtime).constData(), 0750);
    const QString fallback = localEndpoint::privateFolder();
    qputenv("XDG_RUNTIME_DIR", saved);
    QCOMPARE(fallback, QStringLiteral("/tmp/brevio-%1").arg(::getuid()));
    struct stat info {};
    QCOMPARE(::lstat("/tmp", &info), 0);
    QCOMPARE(::lstat(QFile::encodeName(fallback).constData(), &info), 0);
    QVERIFY(S_ISDIR(info.st_mode));
    QCOMPARE(info.st_uid, ::getuid());
    QCOMPARE(int(info.st_mode & 0777), 0700);
}

void TestOneWindow::filesJoinTheRunningWindow() {
    const QString socket = folder.path() + QStringLiteral("/join");
    MainWindow window;
    window.show();
    OneWindow server(socket);
    QVERIFY(server.serve(window));
    QVERIFY(QFileInfo::exists(socket));
    // Only this user may even connect.
    QCOMPARE(QFileInfo(socket).permissions() &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
             QFile::Permissions());

    window.addListWidgetItem(QStringLiteral("/srv/a.json"));
    ModalAnswerer answerer(clickMessageBoxOk);
    QFuture<OneWindow::HandOver> sent = handOverFromAnotherStart(
        socket, {QStringLiteral("/srv/b.json"), QStringLiteral("/srv/a.json"),
                 QStringLiteral("/srv/c.JSON"), QStringLiteral("/srv/d.json")});
    QTRY_VERIFY(sent.isFinished());
    QCOMPARE(int(sent.result()), int(OneWindow::HandOver::Taken));
    const QStringList expected{QStringLiteral("/srv/a.pdf"), QStringLiteral("/srv/b.pdf"),
                               QStringLiteral("/srv/d.pdf")};
    QTRY_COMPARE(rowPaths(window), expected);
    // The duplicate gets its box in the running window, as a drop would.
    QCOMPARE(answerer.count(), 1);
    QCOMPARE(answerer.dialogs.first().title, QStringLiteral("Fehler"));
    QCOMPARE(answerer.dialogs.first().text,
             QStringLiteral("Die Datei /srv/a.pdf befindest sich schon in der Liste"));
}

void TestOneWindow::noWindowNoHandOver() {
    const QString socket = folder.path() + QStringLiteral("/nobody");
    QCOMPARE(int(OneWindow(socket).handOver({QStringLiteral("/a.json")})),
             int(OneWindow::HandOver::NoWindow));
}

void TestOneWindow::staleSocketIsTakenOver() {
    const QString socket = folder.path() + QStringLiteral("/stale");
    QVERIFY(leaveStaleSocket(socket));
    QCOMPARE(int(OneWindow(socket).handOver({QStringLiteral("/a.json")})),
             int(OneWindow::HandOver::NoWindow));

    MainWindow window;
    OneWindow server(socket);
    QVERIFY(server.serve(window));
    QFuture<OneWindow::HandOver> sent =
        handOverFromAnotherStart(socket, {QStringLiteral("/srv/e.json")});
    QTRY_VERIFY(sent.isFinished());
    QCOMPARE(int(sent.result()), int(OneWindow::HandOver::Taken));
    QTRY_COMPARE(rowPaths(window), QStringList{QStringLiteral("/srv/e.pdf")});
}

void TestOneWindow::secondWindowDoesNotServe() {
    const QString socket = folder.path() + QStringLiteral("/two");
    MainWindow first;
    OneWindow firstServer(socket);
    QVERIFY(firstServer.serve(first));
    // brevio --new-window: a window of its own, the first one keeps serving.
    MainWindow second;
    OneWindow secondServer(socket);
    QVERIFY(!secondServer.serve(second));

    QFuture<OneWindow::HandOver> sent =
        handOverFromAnotherStart(socket, {QStringLiteral("/srv/f.json")});
    QTRY_VERIFY(sent.isFinished());
    QCOMPARE(int(sent.result()), int(OneWindow::HandOver::Taken));
    QTRY_COMPARE(rowPaths(first), QStringList{QStringLiteral("/srv/f.pdf")});
    QCOMPARE(rowPaths(second), QStringList());
}

void TestOneWindow::badMessagesAddNothing_data() {
    QTest::addColumn<QByteArray>("message");
    const QByteArray end(1, '\0');
    QTest::newRow("relative path") << paths({"/srv/g.json", "h.json"}) + end;
    QTest::newRow("not ours") << QByteArray("hello\n");
    QTest::newRow("never finished") << paths({"/srv/g.json"});
    QTest::newRow("too large") << paths({}) + QByteArray(oneWindow::maxMessageBytes + 10, 'x');
}

void TestOneWindow::badMessagesAddNothing() {
    QFETCH(QByteArray, message);
    const QString socket = folder.path() + QStringLiteral("/bad");
    MainWindow window;
    OneWindow server(socket);
    QVERIFY(server.serve(window));
    QList<QStringList> received;
    connect(&server, &OneWindow::filesReceived, this,
            [&received](const QStringList& files) { received.append(files); });

    QLocalSocket client;
    client.connectToServer(socket);
    QVERIFY(client.waitForConnected(1000));
    client.write(message);
    // The window hangs up on it (at the latest after its receive timeout)
    // without an answer.
    QTRY_VERIFY_WITH_TIMEOUT(client.state() == QLocalSocket::UnconnectedState,
                             oneWindow::receiveTimeoutMs + 3000);
    QCOMPARE(client.readAll(), QByteArray());
    QTest::qWait(50);
    QCOMPARE(received, QList<QStringList>());
    QCOMPARE(rowPaths(window), QStringList());
}

void TestOneWindow::busyWindowAnswersAtOnce_data() {
    // Files waiting to be listed before the start's file, and whether the
    // window's thread is held without an event loop meanwhile.
    QTest::addColumn<int>("waiting");
    QTest::addColumn<bool>("held");
    QTest::newRow("held, no event loop") << 0 << true;
    QTest::newRow("listing 2,000 files") << 2000 << false;
}

void TestOneWindow::busyWindowAnswersAtOnce() {
    // A window busy listing an earlier batch, or held up altogether, still
    // answers a later start within a second; the start's files are listed
    // once the window gets to them, after what was waiting, exactly once.
    QFETCH(int, waiting);
    QFETCH(bool, held);
    const QString socket = folder.path() + QStringLiteral("/busy-%1").arg(waiting);
    MainWindow window;
    window.show();
    OneWindow server(socket);
    QVERIFY(server.serve(window));
    int handOvers = 0;
    connect(&server, &OneWindow::filesReceived, this, [&handOvers] { ++handOvers; });
    ModalAnswerer unexpected;

    QStringList expected;
    QStringList earlier;
    for (int i = 0; i < waiting; ++i) {
        earlier.append(QStringLiteral("/srv/many/%1.json").arg(i));
        expected.append(QStringLiteral("/srv/many/%1.pdf").arg(i));
    }
    window.addListWidgetItems(earlier);
    expected.append(QStringLiteral("/srv/late.pdf"));

    // Far longer than any answer takes, even on a loaded machine.
    constexpr int busyMs = 5000;
    QFuture<Sent> sent = timedHandOver(socket, {QStringLiteral("/srv/late.json")});
    if (held) {
        // The window's thread does nothing else meanwhile: no event loop.
        QElapsedTimer clock;
        clock.start();
        while (!sent.isFinished() && clock.elapsed() < busyMs)
            QThread::msleep(10);
        QVERIFY2(sent.isFinished(), "no answer while the window was held");
        // Answered on receipt, before anything was listed.
        QCOMPARE(rowPaths(window), QStringList());
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(sent.isFinished(), busyMs);
    }
    QCOMPARE(int(sent.result().handed), int(OneWindow::HandOver::Taken));
    QVERIFY2(sent.result().ms < 1000, qPrintable(QString::number(sent.result().ms)));

    QTRY_COMPARE_WITH_TIMEOUT(listOf(window)->count(), expected.size(), 60000);
    QTest::qWait(100);
    QCOMPARE(rowPaths(window), expected);
    QCOMPARE(handOvers, 1);
    QCOMPARE(unexpected.count(), 0);
}

void TestOneWindow::startThatGaveUpGetsNothingListed() {
    // A start that stopped waiting for the answer shuts its end for answers
    // and says the files were not taken; the window, reading the message
    // only then, finds its answer refused and must not list them.
    const QString socket = folder.path() + QStringLiteral("/gave-up");
    MainWindow window;
    OneWindow server(socket);
    QVERIFY(server.serve(window));
    QList<QStringList> received;
    connect(&server, &OneWindow::filesReceived, this,
            [&received](const QStringList& files) { received.append(files); });

    const int start = connectTo(socket);
    QVERIFY(start >= 0);
    QCOMPARE(::shutdown(start, SHUT_RD), 0);
    const QByteArray message = oneWindow::encode({QStringLiteral("/srv/gave-up.json")});
    QCOMPARE(::write(start, message.constData(), size_t(message.size())), ssize_t(message.size()));

    // A start after it is served: by then the window has dealt with the
    // first message, which came before it.
    QFuture<OneWindow::HandOver> next =
        handOverFromAnotherStart(socket, {QStringLiteral("/srv/next.json")});
    QTRY_VERIFY(next.isFinished());
    QCOMPARE(int(next.result()), int(OneWindow::HandOver::Taken));
    QTRY_COMPARE(rowPaths(window), QStringList{QStringLiteral("/srv/next.pdf")});
    ::close(start);
    QCOMPARE(received, QList<QStringList>{QStringList{QStringLiteral("/srv/next.json")}});
}

namespace {

// What a stand-in window does with each message it is sent.
enum class Window { Answers, HangsUp, AnswersOtherwise, AnswersAfterTheStartGaveUp, NeverReads };

} // namespace

Q_DECLARE_METATYPE(Window)

void TestOneWindow::startSaysWhatHappened_data() {
    QTest::addColumn<int>("files");
    QTest::addColumn<QList<Window>>("window");
    QTest::addColumn<int>("answerTimeoutMs");
    QTest::addColumn<OneWindow::HandOver>("handed");
    QTest::addColumn<int>("taken");

    using HandOver = OneWindow::HandOver;
    const int wait = oneWindow::answerTimeoutMs;
    // A start that waits a little only, for the windows that keep it waiting.
    const int little = 300;
    QTest::newRow("answered") << 3 << QList<Window>{Window::Answers} << wait << HandOver::Taken
                              << 3;
    QTest::newRow("hung up without an answer")
        << 3 << QList<Window>{Window::HangsUp} << wait << HandOver::NotTaken << 0;
    QTest::newRow("answered otherwise")
        << 3 << QList<Window>{Window::AnswersOtherwise} << wait << HandOver::NotTaken << 0;
    QTest::newRow("answered after the start gave up")
        << 3 << QList<Window>{Window::AnswersAfterTheStartGaveUp} << little << HandOver::NotTaken
        << 0;
    QTest::newRow("never read a message too large to wait in the system")
        << oneWindow::maxFiles << QList<Window>{Window::NeverReads} << little << HandOver::NotTaken
        << 0;
    QTest::newRow("answered the first message, hung up on the second")
        << oneWindow::maxFiles + 5 << QList<Window>{Window::Answers, Window::HangsUp} << wait
        << HandOver::NotTaken << oneWindow::maxFiles;
    QTest::newRow("answered both messages")
        << oneWindow::maxFiles + 5 << QList<Window>{Window::Answers, Window::Answers} << wait
        << HandOver::Taken << oneWindow::maxFiles + 5;
}

void TestOneWindow::startSaysWhatHappened() {
    // The start calls the files not taken only when the window certainly
    // did not take them, and a late answer is refused, not lost: the window
    // learns that the start has given up.
    QFETCH(int, files);
    QFETCH(QList<Window>, window);
    QFETCH(int, answerTimeoutMs);
    QFETCH(OneWindow::HandOver, handed);
    QFETCH(int, taken);
    const QString socket = folder.path() + QStringLiteral("/stand-in");
    QLocalServer standIn;
    QVERIFY(standIn.listen(socket));

    QStringList names;
    // Long names, so that a full message is larger than what the system
    // holds for a reader that does not read.
    for (int i = 0; i < files; ++i)
        names.append(QStringLiteral("/srv/") + QString(900, QLatin1Char('n')) + QString::number(i) +
                     QStringLiteral(".json"));
    QFuture<QPair<OneWindow::HandOver, int>> sent = QtConcurrent::run([=] {
        OneWindow start(socket, answerTimeoutMs);
        const OneWindow::HandOver result = start.handOver(names);
        return qMakePair(result, start.filesTaken());
    });

    // Only blocking calls here: an event loop would read for the stand-in.
    for (const Window does : window) {
        if (does == Window::NeverReads)
            break;
        QVERIFY(standIn.waitForNewConnection(10000));
        QLocalSocket* connection = standIn.nextPendingConnection();
        QByteArray message;
        while (oneWindow::decode(message).state == oneWindow::Received::Incomplete &&
               connection->waitForReadyRead(10000))
            message += connection->readAll();
        QCOMPARE(int(oneWindow::decode(message).state), int(oneWindow::Received::Complete));
        switch (does) {
        case Window::Answers:
            QVERIFY(localEndpoint::answer(*connection, oneWindow::answerTaken));
            break;
        case Window::AnswersOtherwise:
            QVERIFY(localEndpoint::answer(*connection, QByteArrayLiteral("no\n")));
            break;
        case Window::AnswersAfterTheStartGaveUp:
            sent.waitForFinished();
            QVERIFY(!localEndpoint::answer(*connection, oneWindow::answerTaken));
            break;
        case Window::HangsUp:
        case Window::NeverReads:
            break;
        }
        connection->disconnectFromServer();
        delete connection;
    }
    sent.waitForFinished();
    QCOMPARE(sent.result().first, handed);
    QCOMPARE(sent.result().second, taken);
}

void TestOneWindow::notHandedOver_data() {
    QTest::addColumn<OneWindow::HandOver>("handed");
    QTest::addColumn<int>("taken");
    QTest::addColumn<QString>("message");
    using HandOver = OneWindow::HandOver;
    QTest::newRow("none taken") << HandOver::NotTaken << 0
                                << "brevio: the open window did not take the files; "
                                   "brevio --new-window opens another";
    QTest::newRow("some taken") << HandOver::NotTaken << 1000
                                << "brevio: the open window took the first 1000 of 1005 files, "
                                   "not the others";
    QTest::newRow("no answer") << HandOver::Unanswered << 0
                               << "brevio: the open window has not answered; it may still list "
                                  "the files once it is free";
    QTest::newRow("some taken, then no answer")
        << HandOver::Unanswered << 1000
        << "brevio: the open window took the first 1000 of 1005 files and has not answered for "
           "the others; it may still list them once it is free";
}

void TestOneWindow::notHandedOver() {
    // A window that may still take the files is never said not to have.
    QFETCH(OneWindow::HandOver, handed);
    QFETCH(int, taken);
    QFETCH(QString, message);
    QCOMPARE(oneWindow::notHandedOver(handed, taken, 1005), message);
}

QTEST_MAIN(TestOneWindow)
#include "tst_onewindow.moc"
