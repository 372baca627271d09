// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_BATCHCONVERTER_H
#define BREVIO_BATCHCONVERTER_H

#include "convert/conversionoutcome.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QVector>

#include <atomic>
#include <cstdio>
#include <memory>
#include <optional>

// Converts a list of configuration files with one convert job each on the
// global thread pool, the way the window does, and reports every file's
// outcome in the order the files were given.
class BatchConverter : public QObject {
    Q_OBJECT

public:
    struct Options {
        // An absolute folder for every report, named by the report rule
        // applied to the configuration's file name; empty: beside each
        // configuration.
        QString outputFolder;
        // One JSON object per file on out, warnings and reasons included,
        // instead of report paths on out and messages on err.
        bool json = false;
    };

    BatchConverter(const QStringList& files, const Options& options, std::FILE* out, std::FILE* err,
                   QObject* parent = nullptr);

    // Starts every job; emits done() once all have ended.
    void start();
    bool allConverted() const;
    // True when some job never got a thread to run on. The pool still counts
    // such a job as active and would wait for it forever when the program
    // ends, so the program has to end without waiting for the pool.
    bool threadsLost() const;
    // The errno of the first write to the report list (out) or to the
    // messages (err) that failed, or 0.
    int outputError() const;
    int errorOutputError() const;

signals:
    void done();

private:
    struct Entry {
        QString given;
        QString jsonPath;
        // Where the report goes: derived from the name before the job
        // runs, and then the path the job itself decided on.
        QString reportPath;
        // Empty until the file's outcome is known: its job's, or the one
        // decided without a job.
        std::optional<ConversionOutcome> outcome;
        QStringList warnings;
        // The earlier entry whose report this one shares (the same file
        // given twice): it ends with that entry's outcome.
        int sharesWith = -1;

        bool ended() const { return outcome.has_value(); }
        bool converted() const { return outcome && outcome->converted(); }
    };

    // Marks every file after the first one that names the same report:
    // two jobs must never write one report, and one report cannot belong to
    // two different configurations. The same file given again waits for
    // the first one's outcome; another file's is refused at once.
    void settleSharedReports();
    // Gives every entry that shares index's report index's outcome.
    void endSharers(int index);
    void jobEnded(int index, const ConversionOutcome& outcome);
    void endEntry(int index, const ConversionOutcome& outcome);
    void checkForLostJobs();
    void flushReady();
    void showProgress();
    void writeReport(const QString& line);
    void writeJson(const Entry& entry);
    void writeError(const QString& line);

    Options options;
    QVector<Entry> entries;
    // Set by each job's task the moment a pool thread runs it.
    std::unique_ptr<std::atomic<bool>[]> started;
    int nextToPrint = 0;
    int endedCount = 0;
    int idleChecks = 0;
    bool lostJobs = false;
    QTimer watchdog;
    std::FILE* out;
    std::FILE* err;
    bool progressOnTerminal;
    int outError = 0;
    int errError = 0;
};

#endif
