// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// A report is drawn into a file of its own next to its name and takes the
// name only when complete; jobs of one process take turns at one report.

#include "files/filepaths.h"
#include "files/reportfile.h"
#include "files/reportlock.h"
#include "testfiles.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QtConcurrent>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// The inode of the directory entry itself, a link not followed: a new file
// at the name has another.
ino_t entryInode(const QString& path) {
    struct stat info {};
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : 0;
}

const QByteArray completePdf = "%PDF-1.4\nbody\n%%EOF\n";

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class TestReportFile : public QObject {
    Q_OBJECT

private slots:
    void commitReplacesTheName_data();
    void commitReplacesTheName();
    void incompleteFileNeverTakesTheName_data();
    void incompleteFileNeverTakesTheName();
    void folderThatCannotBeCreated();
    void temporaryFolderIsPrivate();
    void isCompletePdf_data();
    void isCompletePdf();
    void sameReportTakesTurns();
    void otherReportsDoNotWait();
};

void TestReportFile::commitReplacesTheName_data() {
    QTest::addColumn<QString>("before");
    QTest::newRow("nothing") << "nothing";
    QTest::newRow("older report") << "older";
    QTest::newRow("link to another file") << "link";
    QTest::newRow("hard link") << "hard link";
}

void TestReportFile::commitReplacesTheName() {
    QFETCH(QString, before);
    QTemporaryDir dir;
    const QString report = dir.filePath(QStringLiteral("a.pdf"));
    const QString other = writeFile(dir.path(), QStringLiteral("other.txt"), "other");
    if (before == QLatin1String("older"))
        QVERIFY(write(report, "older"));
    else if (before == QLatin1String("link"))
        QVERIFY(QFile::link(other, report));
    else if (before == QLatin1String("hard link"))
        QVERIFY(QFile::link(other, report) && QFile::remove(report) &&
                ::link(QFile::encodeName(other).constData(),
                       QFile::encodeName(report).constData()) == 0);
    const ino_t old = entryInode(report);
    {
        ReportFile output(report);
        QVERIFY(output.isOpen());
        QVERIFY(output.temporaryPath().endsWith(QStringLiteral("/a.pdf")));
        QVERIFY(output.temporaryPath() != report);
        QCOMPARE(QFileInfo(QFileInfo(output.temporaryPath()).path()).path(), dir.path());
        QVERIFY(write(output.temporaryPath(), completePdf));
        QVERIFY(output.commit());
    }
    QCOMPARE(contentOf(report), completePdf);
    QVERIFY(!QFileInfo(report).isSymLink());
    QVERIFY(entryInode(report) != old);
    QCOMPARE(contentOf(other), QByteArray("other"));
    QCOMPARE(folderEntries(dir.path()),
             (QStringList{QStringLiteral("a.pdf"), QStringLiteral("other.txt")}));
}

void TestReportFile::incompleteFileNeverTakesTheName_data() {
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("nothing written") << QByteArray();
    QTest::newRow("cut before the end") << QByteArray("%PDF-1.4\nbody\n");
    QTest::newRow("not a PDF") << QByteArray("body\n%%EOF\n");
}

void TestReportFile::incompleteFileNeverTakesTheName() {
    QFETCH(QByteArray, written);
    QTemporaryDir dir;
    const QString report = dir.filePath(QStringLiteral("a.pdf"));
    QVERIFY(write(report, "older"));
    {
        ReportFile output(report);
        QVERIFY(output.isOpen());
        if (!written.isEmpty())
            QVERIFY(write(output.temporaryPath(), written));
        QVERIFY(!output.commit());
    }
    QCOMPARE(contentOf(report), QByteArray("older"));
    QCOMPARE(folderEntries(dir.path()), QStringList{QStringLiteral("a.pdf")});
}

void TestReportFile::folderThatCannotBeCreated() {
    QTemporaryDir dir;
    ReportFile output(dir.filePath(QStringLiteral("missing/a.pdf")));
    QVERIFY(!output.isOpen());
    QVERIFY(!output.commit());
    QCOMPARE(folderEntries(dir.path()), QStringList());
}

// Nobody else may create, swap or link anything where the printer writes.
void TestReportFile::temporaryFolderIsPrivate() {
    QTemporaryDir dir;
    ReportFile output(dir.filePath(QStringLiteral("a.pdf")));
    QVERIFY(output.isOpen());
    struct stat info {};
    const QString folder = QFileInfo(output.temporaryPath()).path();
    QVERIFY(::lstat(QFile::encodeName(folder).constData(), &info) == 0);
    QVERIFY(S_ISDIR(info.st_mode));
    QCOMPARE(int(info.st_mode & 0777), 0700);
    QVERIFY(QFileInfo(folder).fileName().startsWith(QLatin1Char('.')));
}

void TestReportFile::isCompletePdf_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("complete");
    QTest::newRow("complete") << completePdf << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("no end marker") << QByteArray("%PDF-1.4\n") << false;
    QTest::newRow("no header") << QByteArray("%%EOF") << false;
    QTest::newRow("end marker far from the end")
        << QByteArray("%PDF-1.4\n%%EOF\n") + QByteArray(4096, ' ') << false;
}

void TestReportFile::isCompletePdf() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, complete);
    QTemporaryDir dir;
    QFile file(writeFile(dir.path(), QStringLiteral("a.pdf"), bytes));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(ReportFile::isCompletePdf(file), complete);
}

// The second holder of a report's lock gets it only after the first has
// let go, on every spelling of the name.
void TestReportFile::sameReportTakesTurns() {
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("w")));
    QVERIFY(QFile::link(dir.filePath(QStringLiteral("w")), dir.filePath(QStringLiteral("link"))));
    const QString first = filePaths::reportKey(dir.filePath(QStringLiteral("w/a.pdf")));
    const QString second = filePaths::reportKey(dir.filePath(QStringLiteral("link/a.pdf")));

    QAtomicInt inside = 0;
    QAtomicInt overlaps = 0;
    QSemaphore firstInside;
    QSemaphore release;
    QFuture<void> holder = QtConcurrent::run([&] {
        const ReportLock lock(first);
        inside.ref();
        firstInside.release();
        release.acquire();
        inside.deref();
    });
    firstInside.acquire();
    QAtomicInt secondGotIt = 0;
    QFuture<void> waiter = QtConcurrent::run([&] {
        const ReportLock lock(second);
        if (inside.loadAcquire() != 0)
            overlaps.ref();
        secondGotIt.ref();
    });
    QThread::msleep(200);
    QCOMPARE(secondGotIt.loadAcquire(), 0);
    release.release();
    waiter.waitForFinished();
    holder.waitForFinished();
    QCOMPARE(secondGotIt.loadAcquire(), 1);
    QCOMPARE(overlaps.loadAcquire(), 0);
}

void TestReportFile::otherReportsDoNotWait() {
    QTemporaryDir dir;
    const ReportLock held(filePaths::reportKey(dir.filePath(QStringLiteral("a.pdf"))));
    QFuture<bool> other = QtConcurrent::run([&] {
        const ReportLock lock(filePaths::reportKey(dir.filePath(QStringLiteral("b.pdf"))));
        return true;
    });
    QVERIFY(other.result());
}

QTEST_GUILESS_MAIN(TestReportFile)
#include "tst_reportfile.moc"
