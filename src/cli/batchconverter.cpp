// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/batchconverter.h"

#include "cli/failurereason.h"
#include "cli/jsonline.h"
#include "cli/namequoting.h"
#include "cli/terminal.h"
#include "convert/convert.h"
#include "convert/runonpool.h"
#include "files/filepaths.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <cerrno>

namespace {

// How often, and how many times in a row, the batch looks for jobs that
// wait while none of its jobs runs: a pool thread that exists takes the next
// waiting job at once, so a queue that stands still this long has no thread
// left to run it.
constexpr int watchdogIntervalMs = 500;
constexpr int idleChecksBeforeGivingUp = 6;

int printBytes(std::FILE* stream, const QByteArray& bytes) {
    return terminal::writeBytes(stream, bytes);
}

// Writes one line as text for whoever reads it.
int printLine(std::FILE* stream, const QString& line) {
    return terminal::writeText(stream, line + QLatin1Char('\n'));
}

} // namespace

BatchConverter::BatchConverter(const QStringList& files, const Options& options, std::FILE* out,
                               std::FILE* err, QObject* parent)
    : QObject(parent), options(options), started(new std::atomic<bool>[size_t(files.size())]),
      out(out), err(err),
      // A script reading JSON gets nothing on err but what goes wrong.
      progressOnTerminal(!options.json && terminal::isTerminal(err)) {
    entries.reserve(files.size());
    for (int index = 0; index < files.size(); ++index) {
        Entry entry;
        entry.given = files[index];
        entry.jsonPath = filePaths::absolute(entry.given);
        if (entry.jsonPath.isEmpty()) {
            entry.outcome = failureReason::workingFolderGone();
            ++endedCount;
        }
        entry.reportPath =
            options.outputFolder.isEmpty()
                ? filePaths::reportFor(entry.jsonPath)
                : QDir(options.outputFolder)
                      .filePath(filePaths::reportFor(QFileInfo(entry.jsonPath).fileName()));
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
        if (entry.ended())
            continue;
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
        if (sameConfiguration) {
            // Converted once, for both names: whether it was, is known
            // only when the first one's job has ended.
            entry.sharesWith = *first;
            continue;
        }
        entry.outcome = failureReason::reportTaken(nameQuoting::quoted(original.given));
        ++endedCount;
    }
}

void BatchConverter::endSharers(int index) {
    const Entry& original = entries[index];
    for (int other = index + 1; other < entries.size(); ++other) {
        Entry& entry = entries[other];
        if (entry.sharesWith != index || entry.ended())
            continue;
        entry.outcome = original.outcome;
        entry.reportPath = original.reportPath;
        entry.warnings =
            QStringList{failureReason::sameReportWarning(nameQuoting::quoted(original.given))};
        ++endedCount;
    }
}

void BatchConverter::start() {
    settleSharedReports();
    for (int index = 0; index < entries.size(); ++index) {
        Entry& entry = entries[index];
        if (entry.ended() || entry.sharesWith >= 0)
            continue;
        JobHandlers handlers;
        handlers.outcomeReceiver = this;
        handlers.ended = [this, index](JobSignal, const ConversionOutcome& outcome) {
            jobEnded(index, outcome);
        };
        std::atomic<bool>* running = &started[size_t(index)];
        handlers.started = [running] { running->store(true); };
        auto* job = new convert(nullptr);
        if (!options.outputFolder.isEmpty())
            job->setReportPath(entry.reportPath);
        runOnPool(job, entry.jsonPath, handlers);
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
        if (!entry.converted())
            return false;
    return true;
}

bool BatchConverter::threadsLost() const {
    return lostJobs;
}

void BatchConverter::jobEnded(int index, const ConversionOutcome& outcome) {
    Entry& entry = entries[index];
    if (entry.ended())
        return;
    // The report the job itself decided on and wrote.
    if (!outcome.reportPath.isEmpty())
        entry.reportPath = outcome.reportPath;
    entry.warnings = failureReason::warnings(outcome);
    endEntry(index, outcome);
}

void BatchConverter::endEntry(int index, const ConversionOutcome& outcome) {
    entries[index].outcome = outcome;
    ++endedCount;
    endSharers(index);
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
        if (!entries[index].ended() && entries[index].sharesWith < 0 &&
            started[size_t(index)].load())
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
        // One that shares a report ends with the job it waits for.
        if (entry.ended() || entry.sharesWith >= 0)
            continue;
        endEntry(index, failureReason::noThread());
    }
}

void BatchConverter::flushReady() {
    if (progressOnTerminal)
        std::fputs("\r\033[K", err);
    for (; nextToPrint < entries.size() && entries[nextToPrint].ended(); ++nextToPrint) {
        const Entry& entry = entries[nextToPrint];
        if (options.json) {
            writeJson(entry);
            continue;
        }
        const QString prefix = QStringLiteral("brevio-convert: ") +
                               nameQuoting::quoted(entry.given) + QStringLiteral(": ");
        for (const QString& warning : entry.warnings)
            writeError(prefix + QStringLiteral("warning: ") + warning);
        if (entry.converted())
            writeReport(nameQuoting::quoted(entry.reportPath));
        else
            writeError(prefix + failureReason::forOutcome(*entry.outcome));
    }
    showProgress();
}

void BatchConverter::writeReport(const QString& line) {
    // After the first failure the list is broken; the reports are still
    // written, and the failure is told once, at the end.
    if (outError == 0)
        outError = printLine(out, line);
}

void BatchConverter::writeJson(const Entry& entry) {
    // A converted file has no reason (forOutcome() gives none): notes such
    // as "same report as" are warnings.
    const bool converted = entry.converted();
    const QByteArray line =
        jsonLine::record(entry.given, converted ? entry.reportPath : QString(), converted,
                         failureReason::code(*entry.outcome),
                         failureReason::forOutcome(*entry.outcome), entry.warnings) +
        '\n';
    // JSON is UTF-8 whatever the locale, names' stray bytes escaped.
    if (outError == 0)
        outError = printBytes(out, line);
}

void BatchConverter::writeError(const QString& line) {
    if (errError == 0)
        errError = printLine(err, line);
}

int BatchConverter::outputError() const {
    return outError;
}

int BatchConverter::errorOutputError() const {
    return errError;
}

void BatchConverter::showProgress() {
    if (!progressOnTerminal || endedCount == entries.size())
        return;
    std::fprintf(err, "%d/%d", endedCount, int(entries.size()));
    std::fflush(err);
}
