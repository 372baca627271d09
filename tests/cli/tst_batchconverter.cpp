// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A batch of files run in this process, its report list and messages
// written to streams the test reads back: what is said for a converted,
// refused, missing, shared and failed file, in text and as JSON.

#include "cli/batchconverter.h"
#include "testfiles.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

QByteArray contentOf(std::FILE* stream) {
    std::fflush(stream);
    std::rewind(stream);
    QByteArray content;
    char buffer[4096];
    size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, stream)) > 0)
        content.append(buffer, int(read));
    return content;
}

struct BatchRun {
    QByteArray out;
    QByteArray err;
    bool allConverted = false;
    bool done = false;
};

BatchRun runBatch(const QStringList& files, const BatchConverter::Options& options) {
    const Stream out(std::tmpfile());
    const Stream err(std::tmpfile());
    BatchRun run;
    if (!out || !err)
        return run;
    BatchConverter batch(files, options, out.get(), err.get());
    QSignalSpy done(&batch, &BatchConverter::done);
    // As brevio-convert does: the jobs start inside the event loop that
    // receives their signals.
    QTimer::singleShot(0, &batch, &BatchConverter::start);
    run.done = done.wait(60000) || done.count() == 1;
    run.allConverted = batch.allConverted();
    run.out = contentOf(out.get());
    run.err = contentOf(err.get());
    return run;
}

} // namespace

class TestBatchConverter : public QObject {
    Q_OBJECT

private slots:
    void init();
    void records_data();
    void records();

private:
    std::unique_ptr<QTemporaryDir> dir;
};

// Every row finds the same folder: a configuration that converts, an empty
// one, one with a wrong name, one whose report's place a folder takes, a
// second configuration of the same name in sub/, and an output folder.
void TestBatchConverter::init() {
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
    const QString path = dir->path();
    const QByteArray configuration("{\"configuration\": {}}\n");
    writeFile(path, QStringLiteral("ok.json"), configuration);
    writeFile(path, QStringLiteral("leer.json"), QByteArray());
    writeFile(path, QStringLiteral("b.JSON"), configuration);
    writeFile(path, QStringLiteral("blocked.json"), configuration);
    QVERIFY(QDir(path).mkpath(QStringLiteral("blocked.pdf")));
    writeFile(dir->filePath(QStringLiteral("blocked.pdf")), QStringLiteral("keep"), "x");
    QVERIFY(QDir(path).mkpath(QStringLiteral("sub")));
    writeFile(dir->filePath(QStringLiteral("sub")), QStringLiteral("ok.json"), configuration);
    QVERIFY(QDir(path).mkpath(QStringLiteral("out")));
    QVERIFY(QDir::setCurrent(path));
}

// In the expected texts %D stands for the test's folder.
void TestBatchConverter::records_data() {
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("outputFolder");
    QTest::addColumn<bool>("allConverted");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("messages");
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("converted")
        << QStringList{"ok.json"} << QString() << true << QByteArray("%D/ok.pdf\n") << QByteArray()
        << QByteArray("{\"file\": \"ok.json\", \"report\": \"%D/ok.pdf\", \"converted\": true, "
                      "\"code\": \"Converted\", \"reason\": null, \"warnings\": []}\n");
    QTest::newRow("refused name")
        << QStringList{"b.JSON"} << QString() << false << QByteArray()
        << QByteArray("brevio-convert: b.JSON: not a \".json\" file name\n")
        << QByteArray("{\"file\": \"b.JSON\", \"report\": null, \"converted\": false, "
                      "\"code\": \"NotJsonName\", \"reason\": \"not a \\\".json\\\" file name\", "
                      "\"warnings\": []}\n");
    QTest::newRow("missing")
        << QStringList{"fehlt.json"} << QString() << false << QByteArray()
        << QByteArray("brevio-convert: fehlt.json: cannot be opened: No such file or directory\n")
        << QByteArray("{\"file\": \"fehlt.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"CannotOpen\", \"reason\": \"cannot be opened: No such file or "
                      "directory\", \"warnings\": []}\n");
    QTest::newRow("empty") << QStringList{"leer.json"} << QString() << false << QByteArray()
                           << QByteArray("brevio-convert: leer.json: empty file\n")
                           << QByteArray("{\"file\": \"leer.json\", \"report\": null, "
                                         "\"converted\": false, \"code\": \"EmptyFile\", "
                                         "\"reason\": \"empty file\", \"warnings\": []}\n");
    QTest::newRow("report not written")
        << QStringList{"blocked.json"} << QString() << false << QByteArray()
        << QByteArray("brevio-convert: blocked.json: report not written: Is a directory\n")
        << QByteArray("{\"file\": \"blocked.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"CommitFailed\", \"reason\": \"report not written: Is a "
                      "directory\", \"warnings\": []}\n");
    // The same file twice is converted once, for both names.
    QTest::newRow("shared")
        << QStringList{"ok.json", "./ok.json"} << QString() << true
        << QByteArray("%D/ok.pdf\n%D/ok.pdf\n")
        << QByteArray("brevio-convert: ./ok.json: warning: same report as ok.json\n")
        << QByteArray("{\"file\": \"ok.json\", \"report\": \"%D/ok.pdf\", \"converted\": true, "
                      "\"code\": \"Converted\", \"reason\": null, \"warnings\": []}\n"
                      "{\"file\": \"./ok.json\", \"report\": \"%D/ok.pdf\", \"converted\": true, "
                      "\"code\": \"Converted\", \"reason\": null, \"warnings\": [\"same report as "
                      "ok.json\"]}\n");
    // ... and not converted for either when it fails.
    QTest::newRow("shared, failed")
        << QStringList{"leer.json", "./leer.json"} << QString() << false << QByteArray()
        << QByteArray("brevio-convert: leer.json: empty file\n"
                      "brevio-convert: ./leer.json: warning: same report as leer.json\n"
                      "brevio-convert: ./leer.json: empty file\n")
        << QByteArray("{\"file\": \"leer.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"EmptyFile\", \"reason\": \"empty file\", \"warnings\": []}\n"
                      "{\"file\": \"./leer.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"EmptyFile\", \"reason\": \"empty file\", \"warnings\": "
                      "[\"same report as leer.json\"]}\n");
    // Two configurations of one name give one report name in a folder: the
    // second is refused, the first converted.
    QTest::newRow("report taken")
        << QStringList{"ok.json", "sub/ok.json"} << QStringLiteral("out") << false
        << QByteArray("%D/out/ok.pdf\n")
        << QByteArray("brevio-convert: sub/ok.json: same report as ok.json\n")
        << QByteArray("{\"file\": \"ok.json\", \"report\": \"%D/out/ok.pdf\", \"converted\": "
                      "true, \"code\": \"Converted\", \"reason\": null, \"warnings\": []}\n"
                      "{\"file\": \"sub/ok.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"ReportTaken\", \"reason\": \"same report as ok.json\", "
                      "\"warnings\": []}\n");
    // Results come in the order the files were given, whichever job ends
    // first.
    QTest::newRow("in the order given")
        << QStringList{"leer.json", "ok.json", "fehlt.json", "sub/ok.json"} << QString() << false
        << QByteArray("%D/ok.pdf\n%D/sub/ok.pdf\n")
        << QByteArray("brevio-convert: leer.json: empty file\n"
                      "brevio-convert: fehlt.json: cannot be opened: No such file or directory\n")
        << QByteArray("{\"file\": \"leer.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"EmptyFile\", \"reason\": \"empty file\", \"warnings\": []}\n"
                      "{\"file\": \"ok.json\", \"report\": \"%D/ok.pdf\", \"converted\": true, "
                      "\"code\": \"Converted\", \"reason\": null, \"warnings\": []}\n"
                      "{\"file\": \"fehlt.json\", \"report\": null, \"converted\": false, "
                      "\"code\": \"CannotOpen\", \"reason\": \"cannot be opened: No such file or "
                      "directory\", \"warnings\": []}\n"
                      "{\"file\": \"sub/ok.json\", \"report\": \"%D/sub/ok.pdf\", \"converted\": "
                      "true, \"code\": \"Converted\", \"reason\": null, \"warnings\": []}\n");
}

void TestBatchConverter::records() {
    QFETCH(QStringList, files);
    QFETCH(QString, outputFolder);
    QFETCH(bool, allConverted);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, messages);
    QFETCH(QByteArray, json);
    const QByteArray folder = dir->path().toUtf8();

    for (const bool asJson : {false, true}) {
        // The reports of the text run are written again by the JSON run.
        BatchConverter::Options options;
        options.json = asJson;
        if (!outputFolder.isEmpty())
            options.outputFolder = dir->filePath(outputFolder);
        const BatchRun run = runBatch(files, options);
        QVERIFY(run.done);
        QCOMPARE(run.allConverted, allConverted);
        if (asJson) {
            QCOMPARE(run.out, QByteArray(json).replace("%D", folder));
            // A script reading JSON gets nothing on the other stream.
            QCOMPARE(run.err, QByteArray());
        } else {
            QCOMPARE(run.out, QByteArray(text).replace("%D", folder));
            QCOMPARE(run.err, QByteArray(messages).replace("%D", folder));
        }
    }
    // Only the reports listed exist: none for a file that failed.
    for (const QByteArray& line : QByteArray(text).replace("%D", folder).split('\n'))
        if (!line.isEmpty())
            QVERIFY2(QFileInfo(QString::fromUtf8(line)).isFile(), line.constData());
    QVERIFY(!QFileInfo::exists(dir->filePath(QStringLiteral("leer.pdf"))));
    QVERIFY(QFileInfo(dir->filePath(QStringLiteral("blocked.pdf"))).isDir());
}

QTEST_MAIN(TestBatchConverter)
#include "tst_batchconverter.moc"
