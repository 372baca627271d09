// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"
#include "convert/runonpool.h"
#include "jobrunner.h"
#include "pdfreport.h"
#include "testfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QMutex>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray sha256(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

QList<int> oneToSeventeen() {
    QList<int> steps;
    for (int step = 1; step <= 17; ++step)
        steps.append(step);
    return steps;
}

} // namespace

using Reason = ConversionOutcome::Reason;
Q_DECLARE_METATYPE(Reason)

class TestConvertJob : public QObject {
    Q_OBJECT

private slots:
    void signalsInOrder();
    void refusedFiles_data();
    void refusedFiles();
    void reportWithEmptyValues_data();
    void reportWithEmptyValues();
    void progressOfATypicalFile();
    void inputFileUnchanged_data();
    void inputFileUnchanged();
    void reportPath_data();
    void reportPath();
    void newPageRule_data();
    void newPageRule();
    void generalSettingsRecord_data();
    void generalSettingsRecord();
    void emptyDocumentRecord();
    void secondFileReplacesRecord();
    void twoJobsAtOnce();
    void reportCannotBeCreated();
    void undrawableCharactersRecorded();
    void nameNotUtf8();
    void runOnPoolOrder();
    void runOnPoolReceiverGone();
};

void TestConvertJob::signalsInOrder() {
    const QMetaObject& meta = convert::staticMetaObject;
    QCOMPARE(meta.className(), "convert");
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 3);
    QCOMPARE(meta.method(meta.methodOffset() + 0).methodSignature(),
             QByteArray("newPbarValue(int)"));
    QCOMPARE(meta.method(meta.methodOffset() + 0).parameterNames(),
             QList<QByteArray>{QByteArray("value")});
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodSignature(), QByteArray("finished()"));
    QCOMPARE(meta.method(meta.methodOffset() + 2).methodSignature(), QByteArray("aborted()"));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
}

void TestConvertJob::refusedFiles_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    // kind: "file" writes content, "none" leaves the path missing, "dir" and
    // "fifo" create those instead, "unreadable" removes every permission.
    QTest::addColumn<QString>("kind");
    // What the job records about itself: the reason and the system's words.
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("detail");

    const QByteArray valid = "{\"configuration\":{\"name\":\"x\"}}";
    QTest::newRow("ending .Json") << "config.Json" << valid << "file" << Reason::NotJsonName
                                  << QString();
    QTest::newRow("ending .JSON") << "config.JSON" << valid << "file" << Reason::NotJsonName
                                  << QString();
    QTest::newRow("ending .json.bak")
        << "config.json.bak" << valid << "file" << Reason::NotJsonName << QString();
    QTest::newRow("missing file") << "missing.json" << QByteArray() << "none" << Reason::CannotOpen
                                  << "No such file or directory";
    QTest::newRow("zero bytes") << "empty.json" << QByteArray() << "file" << Reason::EmptyFile
                                << QString();
    QTest::newRow("directory named .json")
        << "folder.json" << QByteArray() << "dir" << Reason::CannotOpen << "it is a directory";
    QTest::newRow("fifo named .json")
        << "pipe.json" << QByteArray() << "fifo" << Reason::CannotOpen << "not a regular file";
    // Root reads every file whatever its permissions, so the case only exists
    // for an ordinary user.
    if (geteuid() != 0)
        QTest::newRow("no read permission")
            << "locked.json" << valid << "unreadable" << Reason::CannotOpen << "Permission denied";
}

void TestConvertJob::refusedFiles() {
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    QFETCH(Reason, reason);
    QFETCH(QString, detail);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(name);
    if (kind == QLatin1String("file") || kind == QLatin1String("unreadable"))
        writeFile(dir.path(), name, content);
    if (kind == QLatin1String("unreadable"))
        QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
    if (kind == QLatin1String("dir"))
        QVERIFY(QDir(dir.path()).mkdir(name));
    if (kind == QLatin1String("fifo"))
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);

    const QStringList before = QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    const JobOutcome outcome = runJob(path, 20000);
    QVERIFY2(!outcome.timedOut, "the job did not end");
    QVERIFY(outcome.aborted());
    QVERIFY(outcome.progress.isEmpty());
    QCOMPARE(outcome.recorded.reason, reason);
    QCOMPARE(outcome.recorded.detail, detail);
    QVERIFY(!outcome.recorded.converted());
    // No report, nor anything else, appears next to the file.
    QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), before);
}

void TestConvertJob::reportWithEmptyValues_data() {
    QTest::addColumn<QByteArray>("content");
    // The warnings the job records from its own parse: the parser's error
    // and offset, or a valid document that is not an object.
    QTest::addColumn<QString>("jsonError");
    QTest::addColumn<int>("offset");
    QTest::addColumn<bool>("notObject");
    QTest::newRow("empty object") << QByteArray("{}") << QString() << 0 << false;
    QTest::newRow("array top level") << QByteArray("[1,2]") << QString() << 0 << true;
    QTest::newRow("plain text") << QByteArray("Dies ist keine Konfiguration.\n") << "illegal value"
                                << 1 << false;
    QTest::newRow("truncated json") << QByteArray("{\"configuration\": {\"name\": \"Halle")
                                    << "unterminated string" << 34 << false;
    QTest::newRow("configuration not an object")
        << QByteArray("{\"configuration\": 42}") << QString() << 0 << false;
    QTest::newRow("single blank") << QByteArray(" ") << "illegal value" << 1 << false;
}

void TestConvertJob::reportWithEmptyValues() {
    QFETCH(QByteArray, content);
    QFETCH(QString, jsonError);
    QFETCH(int, offset);
    QFETCH(bool, notObject);
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), content);

    const JobOutcome outcome = runJob(path);
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.progress, oneToSeventeen());
    QCOMPARE(outcome.recorded.reason, Reason::Converted);
    QCOMPARE(outcome.recorded.jsonInvalid, !jsonError.isEmpty());
    QCOMPARE(outcome.recorded.jsonError, jsonError);
    QCOMPARE(outcome.recorded.jsonErrorOffset, offset);
    QCOMPARE(outcome.recorded.topLevelNotObject, notObject);
    QVERIFY(outcome.recorded.undrawable.isEmpty());

    PdfReport report(dir.filePath(QStringLiteral("anlage.pdf")));
    QVERIFY(report.isValid());
    QCOMPARE(report.pageCount(), 1);
    QVERIFY2(!report.line(0, QStringLiteral("Name:")).isNull(), qPrintable(report.dump()));
    QVERIFY(!report.line(0, QStringLiteral("Ort:")).isNull());
    QVERIFY(!report.line(0, QStringLiteral("Versionsnummer:")).isNull());
    QVERIFY(!report.line(0, QStringLiteral("Einheitensystem: Imp")).isNull());
    QVERIFY(!report.line(0, QStringLiteral("Quandel Protokoll vom:")).isNull());
}

void TestConvertJob::progressOfATypicalFile() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("pressure-transmitter.json"));
    QVERIFY(QFile::copy(exampleFile(QStringLiteral("pressure-transmitter.json")), path));
    const JobOutcome outcome = runJob(path);
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.progress, oneToSeventeen());
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("pressure-transmitter.pdf"))).size() > 0);
}

void TestConvertJob::inputFileUnchanged_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("typical") << [] {
        QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }();
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("invalid") << QByteArray("{]");
    QTest::newRow("zero bytes") << QByteArray();
}

void TestConvertJob::inputFileUnchanged() {
    QFETCH(QByteArray, content);
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), content);
    const QByteArray before = sha256(path);
    const QDateTime modified = QFileInfo(path).lastModified();
    runJob(path);
    QCOMPARE(sha256(path), before);
    QCOMPARE(QFileInfo(path).lastModified(), modified);
}

void TestConvertJob::reportPath_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain name") << "d/a.json"
                                << "d/a.pdf";
    QTest::newRow("every occurrence") << "d/x.json.d/a.json"
                                      << "d/x.pdf.d/a.pdf";
    QTest::newRow("already .pdf") << "d/a.pdf"
                                  << "d/a.pdf";
    QTest::newRow("upper-case ending") << "d/a.JSON"
                                       << "d/a.JSON";
    QTest::newRow("no ending at all") << "d/report"
                                      << "d/report";
}

void TestConvertJob::reportPath() {
    QFETCH(QString, given);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("d/x.pdf.d")));

    convert job;
    job.readMainConfiguration(QJsonObject());
    job.printPdf(dir.filePath(given));
    PdfReport report(dir.filePath(expected));
    QVERIFY2(report.isValid(), qPrintable(expected));
    QCOMPARE(report.pageCount(), 1);
}

void TestConvertJob::newPageRule_data() {
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<bool>("newPage");
    QTest::newRow("top of page") << 500 << 830 << false;
    QTest::newRow("last line still fits") << 12698 << 13028 << false;
    QTest::newRow("beyond the limit") << 13028 << 500 << true;
    QTest::newRow("one below the limit") << 12699 << 500 << true;
    QTest::newRow("far beyond") << 20000 << 500 << true;
}

void TestConvertJob::newPageRule() {
    QFETCH(int, before);
    QFETCH(int, after);
    QFETCH(bool, newPage);
    convert job;
    int y = before;
    QCOMPARE(job.newPage(y), newPage);
    QCOMPARE(y, after);
}

void TestConvertJob::generalSettingsRecord_data() {
    QTest::addColumn<QByteArray>("configuration");
    QTest::addColumn<QVariantList>("expected");
    QTest::newRow("all members")
        << QByteArray(R"({"name":"A","date":"2026-01-02","location":"L","altitude":400,)"
                      R"("voltage":1.5,"measureSystem":1,"boardType":"X","version":"2.1"})")
        << QVariantList{"A", "2026-01-02", "L", 400.0, 1.5, 1.0, "X", "2.1"};
    QTest::newRow("missing members are null")
        << QByteArray(R"({"name":"A"})")
        << QVariantList{"A",        QVariant(), QVariant(), QVariant(),
                        QVariant(), QVariant(), QVariant(), QVariant()};
    QTest::newRow("types kept unconverted")
        << QByteArray(R"({"name":12,"altitude":"400","measureSystem":"1","version":true,)"
                      R"("boardType":[1]})")
        << QVariantList{12.0,       QVariant(), QVariant(),        "400",
                        QVariant(), "1",        QVariantList{1.0}, true};
}

void TestConvertJob::generalSettingsRecord() {
    QFETCH(QByteArray, configuration);
    QFETCH(QVariantList, expected);
    const QByteArray document = "{\"name\":\"outside\",\"configuration\":" + configuration + "}";
    convert job;
    QSignalSpy progress(&job, &convert::newPbarValue);
    job.readMainConfiguration(QJsonDocument::fromJson(document).object());
    QCOMPARE(job.mainValues.size(), 8);
    for (int i = 0; i < 8; ++i) {
        QCOMPARE(job.mainValues[i].isNull(), expected[i].isNull());
        QCOMPARE(job.mainValues[i], expected[i]);
    }
    QCOMPARE(progress.count(), 8);
    for (int i = 0; i < 8; ++i)
        QCOMPARE(progress[i][0].toInt(), i + 1);
}

void TestConvertJob::emptyDocumentRecord() {
    convert job;
    job.readMainConfiguration(QJsonObject());
    QCOMPARE(job.mainValues.size(), 8);
    for (const QVariant& value : job.mainValues)
        QVERIFY(value.isNull());
    QVERIFY(job.outputValues.isEmpty());
    QVERIFY(job.relaisValues.isEmpty());
    QVERIFY(job.offsetValues.isEmpty());
    QCOMPARE(job.modbusValues.size(), 5);
    QCOMPARE(job.serviceValues.size(), 4);
}

void TestConvertJob::secondFileReplacesRecord() {
    convert job;
    job.readMainConfiguration(
        QJsonDocument::fromJson(
            R"({"configuration":{"name":"first","offsets":[1,2],"modbus":{"offset":3}}})")
            .object());
    job.readMainConfiguration(
        QJsonDocument::fromJson(R"({"configuration":{"name":"second"}})").object());
    QCOMPARE(job.mainValues.size(), 8);
    QCOMPARE(job.mainValues[0].toString(), QStringLiteral("second"));
    QCOMPARE(job.modbusValues.size(), 5);
    QVERIFY(job.modbusValues[0].isNull());
    QVERIFY(job.offsetValues.isEmpty());
}

void TestConvertJob::twoJobsAtOnce() {
    QTemporaryDir dir;
    const QString first = writeFile(dir.path(), QStringLiteral("erste.json"),
                                    R"({"configuration":{"name":"Erste Anlage"}})");
    const QString second = writeFile(dir.path(), QStringLiteral("zweite.json"),
                                     R"({"configuration":{"name":"Zweite Anlage"}})");
    QThreadPool::globalInstance()->setMaxThreadCount(qMax(2, QThread::idealThreadCount()));

    int ended = 0;
    QEventLoop loop;
    QList<int> progressFirst, progressSecond;
    auto start = [&](const QString& path, QList<int>& progress) {
        JobHandlers handlers;
        handlers.progressReceiver = &loop;
        handlers.progress = [&progress](int v) { progress.append(v); };
        handlers.outcomeReceiver = &loop;
        handlers.ended = [&](JobSignal sent, const ConversionOutcome&) {
            if (sent == JobSignal::Finished && ++ended == 2)
                loop.quit();
        };
        runOnPool(new convert, path, handlers);
    };
    start(first, progressFirst);
    start(second, progressSecond);
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    loop.exec();
    QCOMPARE(ended, 2);
    QCOMPARE(progressFirst, oneToSeventeen());
    QCOMPARE(progressSecond, oneToSeventeen());

    PdfReport one(reportPathFor(first));
    PdfReport two(reportPathFor(second));
    QVERIFY(!one.line(0, QStringLiteral("Name: Erste Anlage")).isNull());
    QVERIFY(one.line(0, QStringLiteral("Name: Zweite Anlage")).isNull());
    QVERIFY(!two.line(0, QStringLiteral("Name: Zweite Anlage")).isNull());
    QVERIFY(!one.lineStartingWith(0, first).isNull());
    QVERIFY(!two.lineStartingWith(0, second).isNull());
}

namespace {
QStringList capturedMessages;
QMutex capturedMutex;
void captureMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
    QMutexLocker lock(&capturedMutex);
    capturedMessages.append(message);
}
} // namespace

void TestConvertJob::reportCannotBeCreated() {
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("blocked.json"), "{}");
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("blocked.pdf")));
    capturedMessages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureMessage);
    const JobOutcome outcome = runJob(path);
    qInstallMessageHandler(previous);
    // No report, no message, and the job still counts to the end.
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.progress, oneToSeventeen());
    QCOMPARE(capturedMessages, QStringList());
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("blocked.pdf"))).isDir());
    // The job knows it did not write the report, and why.
    QCOMPARE(outcome.recorded.reason, Reason::CommitFailed);
    QCOMPARE(outcome.recorded.detail, QStringLiteral("Is a directory"));
    QVERIFY(!outcome.recorded.olderReportKept);
    QCOMPARE(folderEntries(dir.path()),
             (QStringList{QStringLiteral("blocked.json"), QStringLiteral("blocked.pdf")}));
}

// Characters of the file that no font can draw are named, and the report is
// written all the same; characters of the path under the title count too.
void TestConvertJob::undrawableCharactersRecorded() {
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("Halle \U0010FFFE")));
    const QString path =
        writeFile(dir.filePath(QStringLiteral("Halle \U0010FFFE")), QStringLiteral("anlage.json"),
                  "{\"configuration\":{\"name\":\"Kessel \xf4\x8f\xbf\xbd\",\"location\":\"Ort "
                  "\xf4\x8f\xbf\xbd\","
                  "\"unused\":\"\xf3\xb0\x80\x80\"}}");
    const JobOutcome outcome = runJob(path);
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.recorded.reason, Reason::Converted);
    // In order of appearance, each once: the path first, then the name; a
    // member the report never reads does not count.
    QCOMPARE(outcome.recorded.undrawable, (QVector<uint>{0x10FFFE, 0x10FFFD}));
    QVERIFY(QFileInfo(reportPathFor(path)).isFile());
}

// The tests start as the programs do, so a job is given a name that is not
// UTF-8 as the programs give it: decoded from its bytes, and encoded back to
// the same bytes when the file is opened and the report named.
void TestConvertJob::nameNotUtf8() {
    QTemporaryDir dir;
    const QByteArray folder = QFile::encodeName(dir.path());
    const QByteArray name = folder + "/Kessel \xe4\xff.json";
    const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    QVERIFY(descriptor >= 0);
    const QByteArray content = "{\"configuration\":{\"name\":\"Kessel\"}}";
    QCOMPARE(::write(descriptor, content.constData(), size_t(content.size())),
             ssize_t(content.size()));
    ::close(descriptor);

    const QString path = QFile::decodeName(name);
    QCOMPARE(QFile::encodeName(path), name);
    const JobOutcome outcome = runJob(path);
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.recorded.reason, Reason::Converted);
    struct stat report {};
    const QByteArray reportName = folder + "/Kessel \xe4\xff.pdf";
    QCOMPARE(::stat(reportName.constData(), &report), 0);
    QVERIFY(S_ISREG(report.st_mode));
}

// Every job is started the same way: the started hook on the pool thread
// before any progress, the outcome while the job still exists, and the job
// gone once the outcome has been handled.
void TestConvertJob::runOnPoolOrder() {
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), "{}");
    QList<QString> events;
    QMutex eventsLock;
    QThread* startedOn = nullptr;
    auto* job = new convert;
    QPointer<convert> alive(job);
    QEventLoop loop;
    JobHandlers handlers;
    handlers.started = [&] {
        QMutexLocker lock(&eventsLock);
        startedOn = QThread::currentThread();
        events << QStringLiteral("started");
    };
    handlers.progressReceiver = &loop;
    handlers.progress = [&](int value) {
        QMutexLocker lock(&eventsLock);
        if (value == 1 || value == 17)
            events << QString::number(value);
    };
    handlers.outcomeReceiver = &loop;
    handlers.ended = [&](JobSignal sent, const ConversionOutcome& outcome) {
        QVERIFY(!alive.isNull());
        events << (sent == JobSignal::Finished ? QStringLiteral("finished")
                                               : QStringLiteral("aborted"));
        QCOMPARE(outcome.reason, Reason::Converted);
        loop.quit();
    };
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    runOnPool(job, path, handlers);
    loop.exec();
    QTRY_VERIFY_WITH_TIMEOUT(alive.isNull(), 10000);
    QCOMPARE(events, (QList<QString>{QStringLiteral("started"), QStringLiteral("1"),
                                     QStringLiteral("17"), QStringLiteral("finished")}));
    QVERIFY(startedOn != nullptr);
    QVERIFY(startedOn != QThread::currentThread());
}

// A receiver that is gone hears nothing, and the job still deletes itself.
void TestConvertJob::runOnPoolReceiverGone() {
    QTemporaryDir dir;
    const QString path = writeFile(dir.path(), QStringLiteral("anlage.json"), "{}");
    auto* job = new convert;
    QPointer<convert> alive(job);
    int calls = 0;
    {
        QObject receiver;
        JobHandlers handlers;
        handlers.progressReceiver = &receiver;
        handlers.progress = [&calls](int) { ++calls; };
        handlers.outcomeReceiver = &receiver;
        handlers.ended = [&calls](JobSignal, const ConversionOutcome&) { ++calls; };
        runOnPool(job, path, handlers);
    }
    QTRY_VERIFY_WITH_TIMEOUT(alive.isNull(), 60000);
    QCOMPARE(calls, 0);
}

QTEST_MAIN(TestConvertJob)
#include "tst_convertjob.moc"
