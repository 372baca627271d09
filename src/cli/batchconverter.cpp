#include "cli/batchconverter.h"

#include "cli/failurereason.h"
#include "convert/convert.h"
#include "convert/runonpool.h"
#include "files/filepaths.h"

#include <QHash>

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
        JobHandlers handlers;
        handlers.outcomeReceiver = this;
        handlers.ended = [this, index](bool, const ConversionOutcome& outcome) {
            jobEnded(index, outcome);
        };
        std::atomic<bool>* running = &started[size_t(index)];
        handlers.started = [running] { running->store(true); };
        runOnPool(new convert(nullptr), entry.jsonPath, handlers);
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

void BatchConverter::jobEnded(int index, const ConversionOutcome& outcome) {
    Entry& entry = entries[index];
    if (entry.ended)
        return;
    entry.reason = failureReason::forOutcome(outcome);
    entry.converted = entry.reason.isEmpty();
    entry.warnings = failureReason::warnings(outcome);
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
