// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one conversion job on the global thread pool, exactly as the tests'
// runJob() does, and prints how it ended: "finished" or "aborted", then the
// progress values. It lets a test run a job as another user (file
// permissions do not stop root) or under resource limits, away from the
// test process itself.

#include "jobrunner.h"

#include <QGuiApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: brevio_jobprobe FILE\n");
        return 2;
    }
    const JobOutcome outcome = runJob(QString::fromLocal8Bit(argv[1]), 600000);
    QStringList progress;
    for (int value : outcome.progress)
        progress.append(QString::number(value));
    const char* end = outcome.finished()  ? "finished"
                      : outcome.aborted() ? "aborted"
                      : outcome.timedOut  ? "timed-out"
                                          : "unclear";
    std::printf("%s\n%s\n", end, qPrintable(progress.join(QLatin1Char(','))));
    return 0;
}
