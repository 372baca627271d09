// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// 200 files converted at once, by brevio-convert with eight threads and by
// 200 jobs started together on the global pool the way the window's
// convert-all starts them. Every report must show its own file's values in
// their places, and every job object must be gone afterwards. The figures
// (wall time, peak memory) come from stress_convert.

#include "reliability.h"
#include "stressfiles.h"
#include "testfiles.h"

#include "convert/convert.h"
#include "convert/runonpool.h"

#include <QCryptographicHash>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

using namespace reliability;

namespace {
constexpr int fileCount = 200;
}

class TestParallelStress : public QObject {
    Q_OBJECT

private slots:
    void brevioConvertWithEightJobs();
    void twoHundredJobsAtOnce();
};

void TestParallelStress::brevioConvertWithEightJobs() {
    QTemporaryDir dir;
    const QStringList files = stressFiles::write(dir.path(), fileCount);
    QStringList hashes;
    for (const QString& file : files)
        hashes.append(QString::fromLatin1(fileHash(file)));

    const ProgramRun run =
        runConverter(QStringList{QStringLiteral("--jobs"), QStringLiteral("8")} + files, QString(),
                     QProcessEnvironment(), 900000);
    QVERIFY2(run.finished && !run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.status(), 0);
    QCOMPARE(withoutWarnings(run.errText()), QString());
    QStringList expected;
    for (const QString& file : files)
        expected.append(reportPathFor(file));
    QCOMPARE(run.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);

    for (int i = 0; i < fileCount; ++i) {
        const QString problem = stressFiles::problemsInReport(expected[i], files[i], i);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(QString::fromLatin1(fileHash(files[i])), hashes[i]);
    }
}

void TestParallelStress::twoHundredJobsAtOnce() {
    QTemporaryDir dir;
    const QStringList files = stressFiles::write(dir.path(), fileCount);
    QThreadPool::globalInstance()->setMaxThreadCount(8);

    int finished = 0;
    int aborted = 0;
    int destroyed = 0;
    QVector<QList<int>> progress(fileCount);
    QEventLoop loop;
    for (int i = 0; i < fileCount; ++i) {
        // As the window starts a row: the outcome first, then deleteLater.
        auto* job = new convert(nullptr);
        QObject::connect(job, &QObject::destroyed, &loop, [&] {
            if (++destroyed == fileCount)
                loop.quit();
        });
        JobHandlers handlers;
        handlers.progressReceiver = &loop;
        handlers.progress = [&progress, i](int value) { progress[i].append(value); };
        handlers.outcomeReceiver = &loop;
        handlers.ended = [&](JobSignal sent, const ConversionOutcome&) {
            ++(sent == JobSignal::Finished ? finished : aborted);
        };
        runOnPool(job, files[i], handlers);
    }
    QTimer::singleShot(600000, &loop, &QEventLoop::quit);
    loop.exec();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();

    QCOMPARE(finished, fileCount);
    QCOMPARE(aborted, 0);
    // No job object outlives its conversion.
    QCOMPARE(destroyed, fileCount);
    QList<int> steps;
    for (int value = 1; value <= 17; ++value)
        steps.append(value);
    for (int i = 0; i < fileCount; ++i) {
        QCOMPARE(progress[i], steps);
        const QString problem = stressFiles::problemsInReport(reportPathFor(files[i]), files[i], i);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }
}

QTEST_MAIN(TestParallelStress)
#include "tst_parallelstress.moc"
