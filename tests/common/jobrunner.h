// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_JOBRUNNER_H
#define BREVIO_TESTS_JOBRUNNER_H

#include "convert/conversionoutcome.h"

#include <QList>
#include <QString>

// A test linked with brevio_testsupport starts as the programs start (see
// programstart.cpp), before any of its test functions runs.

// What one conversion job reported, in the order it reported it.
struct JobOutcome {
    QList<int> progress;
    int finishedCount = 0;
    int abortedCount = 0;
    bool timedOut = false;
    // What the job recorded about itself, read as its last signal arrived.
    ConversionOutcome recorded;

    bool finished() const { return finishedCount == 1 && abortedCount == 0 && !timedOut; }
    bool aborted() const { return abortedCount == 1 && finishedCount == 0 && !timedOut; }
};

// Runs convert::readJsonFile(path, path) on the global thread pool, the way
// the window starts a job, and waits (event loop running) until it ends.
JobOutcome runJob(const QString& path, int timeoutMs = 60000);

#endif
