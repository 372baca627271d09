// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_JOBRUNNER_H
#define BREVIO_TESTS_JOBRUNNER_H

#include "convert/conversionoutcome.h"

#include <QList>
#include <QString>
#include <QStringList>

// A test linked with this starts as the programs start (see
// bootstrap::initApplication), before any of its test functions runs.

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

// The report path a job writes for a configuration path.
QString reportPathFor(const QString& jsonPath);

// Every entry of a folder, hidden ones included, sorted: for checking that
// nothing was left behind.
QStringList folderEntries(const QString& folder);

// The absolute path of a bundled example configuration.
QString exampleFile(const QString& name);

// Copies a file into dir under the given name (its own when empty),
// readable by everyone and writable by its owner, and returns the copy's path.
QString copyInto(const QString& source, const QString& dir, const QString& as = QString());

// Test files live in a data/ folder beside the sources of the suites that
// use them; brevio_add_test names that folder in BREVIO_TEST_DATA_DIR, so
// these are defined only in tests.
#ifdef BREVIO_TEST_DATA_DIR
// The absolute path of a file in the suite's data/ folder.
inline QString testData(const QString& name) {
    return QStringLiteral(BREVIO_TEST_DATA_DIR "/") + name;
}

// Copies a file from the suite's data/ folder into dir under the given name
// and returns the copy's path.
inline QString copyTestData(const QString& name, const QString& dir,
                            const QString& as = QString()) {
    return copyInto(testData(name), dir, as);
}
#endif

// brevio-convert's standard error without its warning lines, for the tests
// of what becomes of files and reports: their example's maker name is wider
// than its column and is warned about (tst_brevioconvert pins that warning).
QString withoutWarnings(const QString& err);

// Writes bytes to dir/name and returns the path.
QString writeFile(const QString& dir, const QString& name, const QByteArray& bytes);

#endif
