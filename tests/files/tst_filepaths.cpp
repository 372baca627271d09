// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Paths as the system reads them, and opening files for reading without
// waiting on anything that is not a regular file.

#include "files/filepaths.h"
#include "files/regularfile.h"
#include "testfiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class TestFilePaths : public QObject {
    Q_OBJECT

private slots:
    void absoluteKeepsTheGivenText_data();
    void absoluteKeepsTheGivenText();
    void absoluteStartsAtTheWorkingDirectory();
    void reportFor_data();
    void reportFor();
    void configurationFor_data();
    void configurationFor();
    void folderOf_data();
    void folderOf();
    void reportKeyIsOneForEverySpelling();
    void identities();
    void openRegularFile_data();
    void openRegularFile();
};

void TestFilePaths::absoluteKeepsTheGivenText_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("expected");
    QTest::newRow("relative") << "a.json"
                              << "/srv/anlage"
                              << "/srv/anlage/a.json";
    QTest::newRow("parent kept") << "../b.json"
                                 << "/srv/anlage"
                                 << "/srv/anlage/../b.json";
    QTest::newRow("dot-dot after a link kept") << "lnk/../plant.json"
                                               << "/srv"
                                               << "/srv/lnk/../plant.json";
    QTest::newRow("dot kept") << "./sub/c.json"
                              << "/srv"
                              << "/srv/./sub/c.json";
    QTest::newRow("at the root") << "d.json"
                                 << "/"
                                 << "/d.json";
    QTest::newRow("absolute") << "/data/../e.json"
                              << "/srv"
                              << "/data/../e.json";
}

void TestFilePaths::absoluteKeepsTheGivenText() {
    QFETCH(QString, given);
    QFETCH(QString, base);
    QFETCH(QString, expected);
    QCOMPARE(filePaths::absolute(given, base), expected);
}

void TestFilePaths::absoluteStartsAtTheWorkingDirectory() {
    QCOMPARE(filePaths::absolute(QStringLiteral("lnk/../a.json")),
             QDir::currentPath() + QStringLiteral("/lnk/../a.json"));
    QCOMPARE(filePaths::absolute(QStringLiteral("/a.json")), QStringLiteral("/a.json"));
}

void TestFilePaths::reportFor_data() {
    QTest::addColumn<QString>("json");
    QTest::addColumn<QString>("report");
    QTest::newRow("plain") << "/data/a.json"
                           << "/data/a.pdf";
    QTest::newRow("every occurrence") << "/data/x.json.d/a.json"
                                      << "/data/x.pdf.d/a.pdf";
    QTest::newRow("ends in .pdf") << "/data/a.pdf"
                                  << "/data/a.pdf";
    QTest::newRow("upper case") << "/data/a.JSON"
                                << "/data/a.JSON";
    QTest::newRow("dot-dot kept") << "/data/lnk/../a.json"
                                  << "/data/lnk/../a.pdf";
}

void TestFilePaths::reportFor() {
    QFETCH(QString, json);
    QFETCH(QString, report);
    QCOMPARE(filePaths::reportFor(json), report);
}

// The way back from a row's report name to the configuration it is made
// from: every ".pdf" becomes ".json", in folder names too, and case counts.
void TestFilePaths::configurationFor_data() {
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("configuration");
    QTest::newRow("plain") << "/data/anlage.pdf"
                           << "/data/anlage.json";
    QTest::newRow("pdf in a folder name") << "/data/x.pdf.d/anlage.pdf"
                                          << "/data/x.json.d/anlage.json";
    QTest::newRow("renamed row") << "/data/neu.pdf"
                                 << "/data/neu.json";
    QTest::newRow("upper case kept") << "/data/ANLAGE.PDF"
                                     << "/data/ANLAGE.PDF";
    QTest::newRow("no ending") << "/data/anlage"
                               << "/data/anlage";
    QTest::newRow("twice") << "/data/a.pdf.pdf"
                           << "/data/a.json.json";
    QTest::newRow("relative") << "a.pdf"
                              << "a.json";
}

void TestFilePaths::configurationFor() {
    QFETCH(QString, report);
    QFETCH(QString, configuration);
    QCOMPARE(filePaths::configurationFor(report), configuration);
    // A report named by the rule leads back to the configuration it came
    // from whenever the configuration's path holds no ".pdf" of its own.
    if (configuration.endsWith(QLatin1String(".json")) &&
        !configuration.contains(QLatin1String(".pdf")))
        QCOMPARE(filePaths::configurationFor(filePaths::reportFor(configuration)), configuration);
}

void TestFilePaths::folderOf_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::newRow("nested") << "/data/sub/a.pdf"
                            << "/data/sub";
    QTest::newRow("root") << "/a.pdf"
                          << "/";
    QTest::newRow("no folder") << "a.pdf"
                               << ".";
    QTest::newRow("dot-dot") << "/data/lnk/../a.pdf"
                             << "/data/lnk/..";
}

void TestFilePaths::folderOf() {
    QFETCH(QString, path);
    QFETCH(QString, folder);
    QCOMPARE(filePaths::folderOf(path), folder);
}

void TestFilePaths::reportKeyIsOneForEverySpelling() {
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("w/sub")));
    QVERIFY(QFile::link(dir.filePath(QStringLiteral("w")), dir.filePath(QStringLiteral("link"))));
    const QString key = filePaths::reportKey(dir.filePath(QStringLiteral("w/a.pdf")));
    QCOMPARE(filePaths::reportKey(dir.filePath(QStringLiteral("link/a.pdf"))), key);
    QCOMPARE(filePaths::reportKey(dir.filePath(QStringLiteral("w/sub/../a.pdf"))), key);
    QCOMPARE(filePaths::reportKey(dir.filePath(QStringLiteral("w/./a.pdf"))), key);
    QVERIFY(filePaths::reportKey(dir.filePath(QStringLiteral("w/b.pdf"))) != key);
    QVERIFY(filePaths::reportKey(dir.filePath(QStringLiteral("w/sub/a.pdf"))) != key);
    // A folder that does not exist: the path itself.
    const QString missing = dir.filePath(QStringLiteral("missing/a.pdf"));
    QCOMPARE(filePaths::reportKey(missing), missing);
}

void TestFilePaths::identities() {
    QTemporaryDir dir;
    const QString file = writeFile(dir.path(), QStringLiteral("a.json"), "{}");
    const QString link = dir.filePath(QStringLiteral("link.json"));
    QVERIFY(QFile::link(file, link));
    const filePaths::Identity target = filePaths::identityOf(file);
    QVERIFY(target.exists);
    // The file's own device and inode, and the link followed to them.
    struct stat info {};
    QCOMPARE(::stat(QFile::encodeName(file).constData(), &info), 0);
    QCOMPARE(target.device, quint64(info.st_dev));
    QCOMPARE(target.inode, quint64(info.st_ino));
    QCOMPARE(filePaths::identityOf(link), target);
    QCOMPARE(::lstat(QFile::encodeName(link).constData(), &info), 0);
    QVERIFY(quint64(info.st_ino) != target.inode);
    QVERIFY(!filePaths::identityOf(dir.filePath(QStringLiteral("missing"))).exists);
}

void TestFilePaths::openRegularFile_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<QString>("reason");
    QTest::newRow("regular file") << "file" << true << "";
    QTest::newRow("link to a regular file") << "link" << true << "";
    QTest::newRow("fifo without a writer") << "fifo" << false << "not a regular file";
    QTest::newRow("directory") << "directory" << false << "it is a directory";
    QTest::newRow("character device") << "device" << false << "not a regular file";
    QTest::newRow("missing") << "missing" << false << "No such file or directory";
    QTest::newRow("link loop") << "loop" << false << "Too many levels of symbolic links";
}

void TestFilePaths::openRegularFile() {
    QFETCH(QString, kind);
    QFETCH(bool, opens);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("input"));
    if (kind == QLatin1String("file")) {
        path = writeFile(dir.path(), QStringLiteral("input"), "{}");
    } else if (kind == QLatin1String("link")) {
        QVERIFY(QFile::link(writeFile(dir.path(), QStringLiteral("target"), "{}"), path));
    } else if (kind == QLatin1String("fifo")) {
        QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
    } else if (kind == QLatin1String("directory")) {
        QVERIFY(QDir().mkdir(path));
    } else if (kind == QLatin1String("device")) {
        path = QStringLiteral("/dev/null");
    } else if (kind == QLatin1String("loop")) {
        QVERIFY(QFile::link(path, path));
    }
    QElapsedTimer clock;
    clock.start();
    QFile file;
    QString why;
    QCOMPARE(::openRegularFile(file, path, &why), opens);
    // Not waiting for a FIFO's writer: this returns at once, or never.
    QVERIFY(clock.elapsed() < 10000);
    QCOMPARE(file.isOpen(), opens);
    QCOMPARE(why, reason);
    if (opens)
        QCOMPARE(file.readAll(), QByteArray("{}"));
}

QTEST_GUILESS_MAIN(TestFilePaths)
#include "tst_filepaths.moc"
