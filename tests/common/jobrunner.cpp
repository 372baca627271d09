// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "jobrunner.h"

#include "convert/convert.h"
#include "convert/runonpool.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

JobOutcome runJob(const QString& path, int timeoutMs) {
    JobOutcome outcome;
    QEventLoop loop;
    JobHandlers handlers;
    // Queued into this thread, as the window receives them.
    handlers.progressReceiver = &loop;
    handlers.progress = [&outcome](int value) { outcome.progress.append(value); };
    handlers.outcomeReceiver = &loop;
    handlers.ended = [&](JobSignal sent, const ConversionOutcome& recorded) {
        ++(sent == JobSignal::Finished ? outcome.finishedCount : outcome.abortedCount);
        outcome.recorded = recorded;
        loop.quit();
    };
    QTimer::singleShot(timeoutMs, &loop, [&] {
        outcome.timedOut = true;
        loop.quit();
    });
    runOnPool(new convert(nullptr), path, handlers);
    loop.exec();
    // Let the deferred deletion and any late signal arrive.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return outcome;
}
