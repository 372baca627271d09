// brevio-convert's account of a finished job: a report counts as written
// when its name holds a new, complete file, whatever the time stamps say
// (file systems with 1 s or 2 s stamps give a quick rewrite the old time).

#include "failurereason.h"
#include "filepaths.h"
#include "jobrunner.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

const QByteArray completePdf = "%PDF-1.4\nbody\n%%EOF\n";

// Gives path the modification time of model, to the nanosecond.
bool copyTime(const QString& model, const QString& path) {
    struct stat info {};
    if (::stat(QFile::encodeName(model).constData(), &info) != 0)
        return false;
    const timespec times[2] = {info.st_atim, info.st_mtim};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0;
}

} // namespace

class TestFailureReason : public QObject {
    Q_OBJECT

private slots:
    void finishedJob_data();
    void finishedJob();
};

void TestFailureReason::finishedJob_data() {
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("reason");
    QTest::newRow("new file with the old time stamp") << "replaced, same time"
                                                      << "";
    QTest::newRow("new file") << "replaced"
                              << "";
    QTest::newRow("old file with a new time stamp")
        << "touched"
        << "report not written (the old report was left in place)";
    QTest::newRow("old file untouched") << "untouched"
                                        << "report not written (the old report was left in place)";
    QTest::newRow("new file cut short") << "replaced, incomplete"
                                        << "report not written (the file is incomplete)";
    QTest::newRow("removed") << "removed"
                             << "report not written";
}

void TestFailureReason::finishedJob() {
    QFETCH(QString, change);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    const QString report = writeFile(dir.path(), QStringLiteral("a.pdf"), completePdf);
    const filePaths::Identity before = filePaths::entryIdentityOf(report);

    if (change.startsWith(QLatin1String("replaced"))) {
        const QString fresh = writeFile(
            dir.path(), QStringLiteral("fresh.pdf"),
            change.endsWith(QLatin1String("incomplete")) ? QByteArray("%PDF-1.4\n") : completePdf);
        if (change.endsWith(QLatin1String("same time")))
            QVERIFY(copyTime(report, fresh));
        QVERIFY(std::rename(QFile::encodeName(fresh).constData(),
                            QFile::encodeName(report).constData()) == 0);
    } else if (change == QLatin1String("touched")) {
        QFile file(report);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60),
                                 QFileDevice::FileModificationTime));
    } else if (change == QLatin1String("removed")) {
        QVERIFY(QFile::remove(report));
    }
    QCOMPARE(failureReason::forFinishedJob(report, before), reason);
}

QTEST_MAIN(TestFailureReason)
#include "tst_failurereason.moc"
