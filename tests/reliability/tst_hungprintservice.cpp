// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A print service that accepts connections and never answers, as a hung
// print server on the network does. Reports are only written to files, so
// a conversion must not wait on it: brevio-convert and a job (in a process
// of its own, started with the same environment) are pointed at it through
// CUPS_SERVER and must finish in about their usual time.

#include "pdfreport.h"
#include "reliability.h"
#include "testfiles.h"

#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace reliability;

namespace {

// Far above a conversion's usual fraction of a second, far below the
// minutes a client waits on a silent server.
constexpr qint64 boundMs = 20000;

// Listens on a free port of the loopback address, accepts every connection
// and keeps it open without ever sending a byte. Stopped when destroyed.
class SilentService : public QObject {
public:
    SilentService() {
        connect(&server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = server.nextPendingConnection()) {
                ++connections;
                held.append(socket);
            }
        });
        server.listen(QHostAddress::LocalHost, 0);
    }
    ~SilentService() override {
        server.close();
        qDeleteAll(held);
    }
    bool isListening() const { return server.isListening(); }
    quint16 port() const { return server.serverPort(); }
    int connections = 0;

private:
    QTcpServer server;
    QList<QTcpSocket*> held;
};

QString example(const QString& dir) {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    file.open(QIODevice::ReadOnly);
    return writeFile(dir, QStringLiteral("anlage.json"), file.readAll());
}

QProcessEnvironment pointedAt(const SilentService& service) {
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("CUPS_SERVER"),
                       QStringLiteral("127.0.0.1:%1").arg(service.port()));
    return environment;
}

} // namespace

class TestHungPrintService : public QObject {
    Q_OBJECT

private slots:
    void serviceReallyHangs();
    void brevioConvertDoesNotWait();
    void jobDoesNotWait();
};

// The service is what it claims: a request to it gets no answer.
void TestHungPrintService::serviceReallyHangs() {
    SilentService service;
    QVERIFY(service.isListening());
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, service.port());
    QVERIFY(client.waitForConnected(5000));
    client.write("POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 0\r\n\r\n");
    QVERIFY(client.waitForBytesWritten(5000));
    QTest::qWait(1000);
    QCOMPARE(client.bytesAvailable(), qint64(0));
    QCOMPARE(client.state(), QAbstractSocket::ConnectedState);
    QCOMPARE(service.connections, 1);
}

void TestHungPrintService::brevioConvertDoesNotWait() {
    QTemporaryDir dir;
    const QString json = example(dir.path());

    const ProgramRun usual = runConverter({json});
    QCOMPARE(usual.status(), 0);

    SilentService service;
    QVERIFY(service.isListening());
    QVERIFY(QFile::remove(reportPathFor(json)));
    const ProgramRun hung = runConverter({json}, QString(), pointedAt(service), 120000);
    qInfo("brevio-convert: %lld ms as usual, %lld ms with a hung print service "
          "(%d connections to it)",
          usual.elapsedMs, hung.elapsedMs, service.connections);
    QVERIFY2(hung.finished && !hung.crashed, qPrintable(hung.describe()));
    QCOMPARE(hung.status(), 0);
    QCOMPARE(hung.outText(), reportPathFor(json) + QLatin1Char('\n'));
    QVERIFY2(hung.elapsedMs < boundMs, qPrintable(QString::number(hung.elapsedMs)));
    PdfReport report(reportPathFor(json));
    QVERIFY(!report.line(0, QStringLiteral("Name: Lüftung Halle 2 – Zuluft")).isNull());
}

// The job as the window runs it, in a child whose environment names the
// hung service from its start, as a user's session would.
void TestHungPrintService::jobDoesNotWait() {
    QTemporaryDir dir;
    const QString json = example(dir.path());
    SilentService service;
    QVERIFY(service.isListening());
    QProcessEnvironment environment = headlessEnvironment();
    environment.insert(pointedAt(service));
    const ProgramRun run =
        runProgram(QStringLiteral(BREVIO_JOBPROBE_BINARY), {json}, environment, 120000);
    qInfo("job: %lld ms with a hung print service (%d connections to it)", run.elapsedMs,
          service.connections);
    QVERIFY2(run.finished && !run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.outText().section(QLatin1Char('\n'), 0, 0), QStringLiteral("finished"));
    QVERIFY2(run.elapsedMs < boundMs, qPrintable(QString::number(run.elapsedMs)));
    PdfReport report(reportPathFor(json));
    QVERIFY(!report.line(0, QStringLiteral("Name: Lüftung Halle 2 – Zuluft")).isNull());
}

QTEST_MAIN(TestHungPrintService)
#include "tst_hungprintservice.moc"
