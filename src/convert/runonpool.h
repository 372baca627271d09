// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_RUNONPOOL_H
#define BREVIO_RUNONPOOL_H

#include "convert/conversionoutcome.h"

#include <QString>

#include <functional>

class QObject;
class convert;

// The last signal a job sent.
enum class JobSignal { Finished, Aborted };

// What the starter of a job wants to hear from it. Each handler runs on
// the thread of its receiver (queued from the worker) and is disconnected
// when the receiver is destroyed; a handler without a receiver is not
// connected.
struct JobHandlers {
    QObject* progressReceiver = nullptr;
    std::function<void(int value)> progress;

    // Called once, after finished() or aborted(), with which of the two it
    // was and what the job came to. finished() says only that the job ran
    // to its end: whether a report was written, outcome.converted() tells.
    QObject* outcomeReceiver = nullptr;
    std::function<void(JobSignal sent, const ConversionOutcome& outcome)> ended;

    // Called on the pool thread as the job starts running there: a job that
    // never gets that far is waiting for a thread.
    std::function<void()> started;
};

// Starts job->readJsonFile(path, path) on the global thread pool, the way
// every job is run: the caller's handlers are connected first, then the
// job's own deletion on finished(), aborted() and the application's
// aboutToQuit. Queued calls are delivered in the order of their
// connections, so each handler still sees the job alive. Nobody waits for
// the job; it deletes itself.
void runOnPool(convert* job, const QString& path, const JobHandlers& handlers = JobHandlers());

#endif
