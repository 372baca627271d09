#include "batchconverter.h"

#include "convert.h"
#include "failurereason.h"

#include <QCoreApplication>
#include <QHash>
#include <QThreadPool>
#include <QtConcurrent>

#include <unistd.h>

namespace {

// How often, and how many times in a row, the batch looks for jobs that
// wait while none of its jobs runs: a pool thread that exists takes the next
// waiting job at once, so a queue that stands still this long has no thread
// left to run it.
constexpr int watchdogIntervalMs = 500;
constexpr int idleChecksBeforeGivingUp = 6;

void printLine(std::FILE* stream, const QString& line) {
    // The locale's codec gives a file name back byte for byte.
    const QByteArray bytes = line.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

} // namespace

BatchConverter::BatchConverter(const QStringList& files, std::FILE* out, std::FILE* err,
                               QObject* parent)
    : QObject(parent), started(new std::atomic<bool>[size_t(files.size())]), out(out), err(err),
      progressOnTerminal(isatty(fileno(err)) == 1) {
    entries.reserve(files.size());
    for (int index = 0; index < files.size(); ++index) {
        Entry entry;
        entry.given = files[index];
        entry.jsonPath = filePaths::absolute(entry.given);
        entry.reportPath = filePaths::reportFor(entry.jsonPath);
        entries.append(entry);
        started[size_t(index)] = false;
    }
    watchdog.setInterval(watchdogIntervalMs);
    connect(&watchdog, &QTimer::timeout, this, &BatchConverter::checkForLostJobs);
}

void BatchConverter::settleSharedReports() {
    QHash<QString, int> firstForReport;
    for (int index = 0; index < entries.size(); ++index) {
        Entry& entry = entries[index];
        const QString key = filePaths::reportKey(entry.reportPath);
        const auto first = firstForReport.constFind(key);
        if (first == firstForReport.constEnd()) {
            firstForReport.insert(key, index);
            continue;
        }
        const Entry& original = entries[*first];
        const filePaths::Identity configuration = filePaths::identityOf(entry.jsonPath);
        const bool sameConfiguration =
            entry.jsonPath == original.jsonPath ||
            (configuration.exists && configuration == filePaths::identityOf(original.jsonPath));
        entry.ended = true;
        entry.converted = sameConfiguration;
        entry.reason = QStringLiteral("same report as ") + original.given;
        ++endedCount;
    }
}

void BatchConverter::start() {
    settleSharedReports();
    for (int index = 0; index < entries.size(); ++index) {
        Entry& entry = entries[index];
        if (entry.ended)
            continue;
        entry.reportBefore = filePaths::entryIdentityOf(entry.reportPath);

        auto* job = new convert(nullptr);
        // Queued calls are posted in connection order, and once the deferred
        // deletion has run a call still waiting for the deleted sender is
        // dropped: the outcome must be connected before deleteLater.
        connect(job, &convert::finished, this, [this, index] { jobEnded(index, true); });
        connect(job, &convert::aborted, this, [this, index] { jobEnded(index, false); });
        connect(job, &convert::finished, job, &QObject::deleteLater);
        connect(job, &convert::aborted, job, &QObject::deleteLater);
        connect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater);
        std::atomic<bool>* running = &started[size_t(index)];
        const QString path = entry.jsonPath;
        QtConcurrent::run(QThreadPool::globalInstance(), [job, path, running] {
            running->store(true);
            job->readJsonFile(path, path);
        });
    }
    flushReady();
    if (endedCount == entries.size()) {
        emit done();
        return;
    }
    watchdog.start();
}

bool BatchConverter::allConverted() const {
    for (const Entry& entry : entries)
        if (!entry.converted)
            return false;
    return true;
}

bool BatchConverter::threadsLost() const {
    return lostJobs;
}

void BatchConverter::jobEnded(int index, bool finished) {
    Entry& entry = entries[index];
    if (entry.ended)
        return;
    if (finished) {
        entry.reason = failureReason::forFinishedJob(entry.reportPath, entry.reportBefore);
        if (entry.reason.isEmpty())
            entry.reason = failureReason::labelFailure();
        entry.converted = entry.reason.isEmpty();
        entry.warnings = failureReason::warnings(entry.jsonPath);
    } else {
        entry.reason = failureReason::forAbortedJob(entry.jsonPath);
    }
    endEntry(index);
}

void BatchConverter::endEntry(int index) {
    entries[index].ended = true;
    ++endedCount;
    idleChecks = 0;
    flushReady();
    if (endedCount == entries.size()) {
        watchdog.stop();
        if (progressOnTerminal)
            std::fputs("\r\033[K", err);
        emit done();
    }
}

void BatchConverter::checkForLostJobs() {
    bool anyRunning = false;
    for (int index = 0; index < entries.size(); ++index)
        if (!entries[index].ended && started[size_t(index)].load())
            anyRunning = true;
    if (anyRunning) {
        idleChecks = 0;
        return;
    }
    if (++idleChecks < idleChecksBeforeGivingUp)
        return;
    lostJobs = true;
    for (int index = 0; index < entries.size(); ++index) {
        Entry& entry = entries[index];
        if (entry.ended)
            continue;
        entry.reason = QStringLiteral("not converted (no thread could be started)");
        endEntry(index);
    }
}

void BatchConverter::flushReady() {
    if (progressOnTerminal)
        std::fputs("\r\033[K", err);
    for (; nextToPrint < entries.size() && entries[nextToPrint].ended; ++nextToPrint) {
        const Entry& entry = entries[nextToPrint];
        const QString prefix =
            QStringLiteral("brevio-convert: ") + entry.given + QStringLiteral(": ");
        for (const QString& warning : entry.warnings)
            printLine(err, prefix + QStringLiteral("warning: ") + warning);
        if (entry.converted && entry.reason.isEmpty())
            printLine(out, entry.reportPath);
        else
            printLine(err, prefix + entry.reason);
    }
    showProgress();
}

void BatchConverter::showProgress() {
    if (!progressOnTerminal || endedCount == entries.size())
        return;
    std::fprintf(err, "%d/%d", endedCount, int(entries.size()));
    std::fflush(err);
}
