// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "jobrunner.h"

#include "convert/bootstrap.h"
#include "convert/convert.h"
#include "convert/runonpool.h"
#include "files/filepaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

namespace {

// Every test runs its jobs in a process started as the programs start
// theirs, as soon as the test's application exists and before any test
// function runs: reports in the bundled font, file names that are not
// UTF-8 kept byte for byte, and the window's name and version, since the
// jobs here run the way the window runs them.
void startLikeThePrograms() {
    bootstrap::initApplication(QStringLiteral("brevio"));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startLikeThePrograms)

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

QString reportPathFor(const QString& jsonPath) {
    return filePaths::reportFor(jsonPath);
}

QStringList folderEntries(const QString& folder) {
    QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                               QDir::NoDotAndDotDot);
    names.sort();
    return names;
}

QString exampleFile(const QString& name) {
    return QStringLiteral(BREVIO_SOURCE_DIR "/examples/") + name;
}

QString copyInto(const QString& source, const QString& dir, const QString& as) {
    const QString target = QDir(dir).filePath(as.isEmpty() ? QFileInfo(source).fileName() : as);
    QFile::remove(target);
    QFile::copy(source, target);
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                      QFile::ReadOther);
    return target;
}

QString writeFile(const QString& dir, const QString& name, const QByteArray& bytes) {
    const QString target = QDir(dir).filePath(name);
    QFile file(target);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
    return target;
}

QString withoutWarnings(const QString& err) {
    QStringList kept;
    const QStringList lines = err.split(QLatin1Char('\n'));
    for (const QString& line : lines)
        if (!line.contains(QLatin1String(": warning: ")))
            kept << line;
    return kept.join(QLatin1Char('\n'));
}
