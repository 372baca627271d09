// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The temporary report folders: the registry a signal handler empties, and
// the sweep that removes a folder a killed process left behind only when it
// is certainly stale.

#include "files/reportfile.h"
#include "files/temporaryfolders.h"
#include "runprogram.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray bootId() {
    QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void ageBy(const QString& path, qint64 seconds) {
    const timespec times[2] = {{0, UTIME_OMIT}, {time_t(::time(nullptr) - seconds), 0}};
    QVERIFY(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0);
}

QStringList hiddenEntries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                                  QDir::Name);
}

} // namespace

class TestTemporaryFolders : public QObject {
    Q_OBJECT

private slots:
    void removeAllNowEmptiesTheRegistry();
    void ownFolderIsRecordedAndLocked();
    void staleOnlyWhenCertain_data();
    void staleOnlyWhenCertain();
};

// What a signal handler does: every running report's folder goes, whatever
// the report has written so far.
void TestTemporaryFolders::removeAllNowEmptiesTheRegistry() {
    QTemporaryDir dir;
    ReportFile first(dir.filePath(QStringLiteral("a.pdf")));
    ReportFile second(dir.filePath(QStringLiteral("b.pdf")));
    QVERIFY(first.isOpen() && second.isOpen());
    write(first.temporaryPath(), "%PDF-1.4 half");
    QCOMPARE(hiddenEntries(dir.path()).size(), 2);
    temporaryFolders::removeAllNow();
    QCOMPARE(hiddenEntries(dir.path()), QStringList());
}

// A running report's folder names this process and this boot, and its
// record is locked, so no sweep takes it, not even this process's own.
void TestTemporaryFolders::ownFolderIsRecordedAndLocked() {
    QTemporaryDir dir;
    ReportFile output(dir.filePath(QStringLiteral("a.pdf")));
    QVERIFY(output.isOpen());
    const QString folder = QFileInfo(output.temporaryPath()).path();
    QFile owner(folder + QStringLiteral("/.owner"));
    QVERIFY(owner.open(QIODevice::ReadOnly));
    QCOMPARE(owner.readAll(),
             "brevio " + QByteArray::number(qint64(::getpid())) + ' ' + bootId() + '\n');
    QVERIFY(::flock(owner.handle(), LOCK_EX | LOCK_NB) != 0);
    // Aged far beyond a day, it is still in use.
    ageBy(folder, 3 * 24 * 3600);
    QCOMPARE(temporaryFolders::removeStale(dir.path()), 0);
    QVERIFY(QFileInfo::exists(folder));
}

void TestTemporaryFolders::staleOnlyWhenCertain_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("owner");
    QTest::addColumn<qint64>("ageSeconds");
    QTest::addColumn<QString>("extra");
    QTest::addColumn<bool>("removed");
    const qint64 fresh = 0;
    const qint64 twoDays = 2 * 24 * 3600;
    QTest::newRow("owner gone") << ".brevio-Ab12Cd"
                                << "dead" << fresh << "" << true;
    QTest::newRow("owner of another boot") << ".brevio-Ab12Cd"
                                           << "other boot" << fresh << "" << true;
    QTest::newRow("owner running") << ".brevio-Ab12Cd"
                                   << "alive" << twoDays << "" << false;
    QTest::newRow("owner gone, record locked") << ".brevio-Ab12Cd"
                                               << "dead locked" << fresh << "" << false;
    QTest::newRow("no record, two days old") << ".brevio-Ab12Cd"
                                             << "none" << twoDays << "" << true;
    QTest::newRow("no record, fresh") << ".brevio-Ab12Cd"
                                      << "none" << fresh << "" << false;
    QTest::newRow("record not ours, fresh") << ".brevio-Ab12Cd"
                                            << "garbage" << fresh << "" << false;
    QTest::newRow("something else inside") << ".brevio-Ab12Cd"
                                           << "dead" << fresh << "folder" << false;
    QTest::newRow("a link inside") << ".brevio-Ab12Cd"
                                   << "dead" << fresh << "link" << false;
    QTest::newRow("another name") << ".brevio-Ab12Cd-mine"
                                  << "dead" << twoDays << "" << false;
}

void TestTemporaryFolders::staleOnlyWhenCertain() {
    QFETCH(QString, name);
    QFETCH(QString, owner);
    QFETCH(qint64, ageSeconds);
    QFETCH(QString, extra);
    QFETCH(bool, removed);
    QTemporaryDir dir;
    const QString folder = dir.filePath(name);
    QVERIFY(QDir().mkdir(folder));
    write(folder + QStringLiteral("/a.pdf"), "%PDF-1.4 cut");
    QFile record(folder + QStringLiteral("/.owner"));
    if (owner != QLatin1String("none")) {
        qint64 pid = ::getpid();
        QByteArray boot = bootId();
        if (owner.startsWith(QLatin1String("dead"))) {
            pid = pidOfEndedProcess();
            QVERIFY(pid > 0);
        }
        if (owner == QLatin1String("other boot"))
            boot = "00000000-0000-0000-0000-000000000000";
        const QByteArray text = owner == QLatin1String("garbage")
                                    ? QByteArray("not a record\n")
                                    : "brevio " + QByteArray::number(pid) + ' ' + boot + '\n';
        QVERIFY(record.open(QIODevice::ReadWrite));
        QCOMPARE(record.write(text), qint64(text.size()));
        record.flush();
        if (owner.endsWith(QLatin1String("locked")))
            QVERIFY(::flock(record.handle(), LOCK_SH) == 0);
    }
    if (extra == QLatin1String("folder"))
        QVERIFY(QDir().mkdir(folder + QStringLiteral("/keep")));
    if (extra == QLatin1String("link"))
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("elsewhere")),
                            folder + QStringLiteral("/b.pdf")));
    ageBy(folder, ageSeconds);

    QCOMPARE(temporaryFolders::removeStale(dir.path()), removed ? 1 : 0);
    QCOMPARE(QFileInfo::exists(folder), !removed);
    if (!removed)
        QVERIFY(QFileInfo::exists(folder + QStringLiteral("/a.pdf")));
}

QTEST_GUILESS_MAIN(TestTemporaryFolders)
#include "tst_temporaryfolders.moc"
