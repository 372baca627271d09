// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints figures for parallel conversions; not a test (tst_parallelstress
// checks the reports). For brevio-convert: wall time and peak resident
// memory for 50, 200 and 1000 files with --jobs 8 (and 200 with --jobs 2).
// In process: resident memory after each of five rounds of 200 jobs
// started at once, to show that it stays flat.
//   stress_convert [ROUNDS]

#include "stressfiles.h"

#include "convert/convert.h"
#include "convert/runonpool.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtConcurrent>

#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct ChildFigures {
    int status = -1;
    double seconds = 0;
    long peakKiB = 0;
};

// fork + exec + wait4, for the child's own peak resident size.
ChildFigures runChild(const QStringList& arguments) {
    std::vector<QByteArray> bytes;
    for (const QString& argument : arguments)
        bytes.push_back(QFile::encodeName(argument));
    std::vector<char*> argv;
    for (QByteArray& argument : bytes)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    ChildFigures figures;
    // Or the child would print what is still buffered here once more.
    std::fflush(stdout);
    QElapsedTimer clock;
    clock.start();
    const pid_t pid = fork();
    if (pid == 0) {
        // The reports' paths on stdout are not figures.
        if (!freopen("/dev/null", "w", stdout))
            _exit(127);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (pid > 0 && wait4(pid, &status, 0, &usage) == pid) {
        figures.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        figures.peakKiB = usage.ru_maxrss;
    }
    figures.seconds = clock.nsecsElapsed() / 1e9;
    return figures;
}

long residentKiB() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

long peakKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Starts every file's job at once and waits until all are deleted.
int convertAll(const QStringList& files) {
    int finished = 0;
    int destroyed = 0;
    QEventLoop loop;
    for (const QString& file : files) {
        auto* job = new convert(nullptr);
        QObject::connect(job, &QObject::destroyed, &loop, [&] {
            if (++destroyed == files.size())
                loop.quit();
        });
        JobHandlers handlers;
        handlers.outcomeReceiver = &loop;
        handlers.ended = [&finished](JobSignal sent, const ConversionOutcome&) {
            finished += sent == JobSignal::Finished ? 1 : 0;
        };
        runOnPool(job, file, handlers);
    }
    loop.exec();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return finished;
}

} // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const int rounds = argc > 1 ? QByteArray(argv[1]).toInt() : 5;

    QTemporaryDir dir;
    const QStringList files = stressFiles::write(dir.path(), 1000);
    std::printf("machine: %ld cores online\n\n", sysconf(_SC_NPROCESSORS_ONLN));

    std::printf("brevio-convert (whole process)\n");
    std::printf("%7s %6s %10s %12s %14s %6s\n", "files", "jobs", "wall s", "reports/s",
                "peak RSS MiB", "exit");
    const struct {
        int files;
        int jobs;
    } runs[] = {{50, 8}, {200, 8}, {200, 2}, {1000, 8}};
    for (const auto& run : runs) {
        QStringList arguments{QStringLiteral(BREVIO_CONVERT_BINARY), QStringLiteral("--jobs"),
                              QString::number(run.jobs)};
        arguments += files.mid(0, run.files);
        const ChildFigures figures = runChild(arguments);
        std::printf("%7d %6d %10.2f %12.1f %14.1f %6d\n", run.files, run.jobs, figures.seconds,
                    run.files / figures.seconds, figures.peakKiB / 1024.0, figures.status);
    }

    std::printf("\nin process: rounds of 200 jobs started at once, pool of 8 threads\n");
    std::printf("%6s %10s %10s %16s %14s\n", "round", "finished", "wall s", "RSS after MiB",
                "peak RSS MiB");
    QThreadPool::globalInstance()->setMaxThreadCount(8);
    const QStringList batch = files.mid(0, 200);
    std::printf("%6s %10s %10s %16.1f %14.1f\n", "start", "-", "-", residentKiB() / 1024.0,
                peakKiB() / 1024.0);
    for (int round = 1; round <= rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        const int finished = convertAll(batch);
        std::printf("%6d %10d %10.2f %16.1f %14.1f\n", round, finished, clock.nsecsElapsed() / 1e9,
                    residentKiB() / 1024.0, peakKiB() / 1024.0);
        std::fflush(stdout);
    }
    return 0;
}
