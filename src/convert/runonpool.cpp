// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/runonpool.h"

#include "convert/convert.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <QtConcurrent>

void runOnPool(convert* job, const QString& path, const JobHandlers& handlers) {
    if (handlers.progressReceiver && handlers.progress)
        QObject::connect(job, &convert::newPbarValue, handlers.progressReceiver, handlers.progress);
    // The job is read on the receiver's thread once its last signal has
    // arrived there, before the deletion connected below can run.
    if (handlers.outcomeReceiver && handlers.ended) {
        const auto ended = handlers.ended;
        QObject::connect(job, &convert::finished, handlers.outcomeReceiver,
                         [job, ended] { ended(JobSignal::Finished, job->outcome()); });
        QObject::connect(job, &convert::aborted, handlers.outcomeReceiver,
                         [job, ended] { ended(JobSignal::Aborted, job->outcome()); });
    }
    QObject::connect(job, &convert::finished, job, &QObject::deleteLater);
    QObject::connect(job, &convert::aborted, job, &QObject::deleteLater);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater);

    QtConcurrent::run(QThreadPool::globalInstance(), [job, path, started = handlers.started] {
        if (started)
            started();
        job->readJsonFile(path, path);
    });
}
