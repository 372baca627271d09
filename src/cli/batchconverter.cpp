#include "batchconverter.h"

#include "convert.h"
#include "failurereason.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThreadPool>
#include <QtConcurrent>

#include <unistd.h>

namespace {

// The job writes its report under the configuration's name with every
// ".json" replaced by ".pdf".
QString reportPathFor(const QString& jsonPath) {
    QString report = jsonPath;
    if (!report.endsWith(QLatin1String(".pdf")))
        report.replace(QLatin1String(".json"), QLatin1String(".pdf"));
    return report;
}

void printLine(std::FILE* stream, const QString& line) {
    const QByteArray bytes = line.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

} // namespace

BatchConverter::BatchConverter(const QStringList& files, std::FILE* out, std::FILE* err,
                               QObject* parent)
    : QObject(parent), out(out), err(err), progressOnTerminal(isatty(fileno(err)) == 1) {
    entries.reserve(files.size());
    for (const QString& given : files) {
        Entry entry;
        entry.given = given;
        entry.jsonPath = QFileInfo(given).absoluteFilePath();
        entry.reportPath = reportPathFor(entry.jsonPath);
        entries.append(entry);
    }
}

void BatchConverter::start() {
    if (entries.isEmpty()) {
        emit done();
        return;
    }
    for (int index = 0; index < entries.size(); ++index) {
        Entry& entry = entries[index];
        const QFileInfo report(entry.reportPath);
        entry.reportExisted = report.exists();
        entry.reportModifiedBefore = report.lastModified();

        auto* job = new convert(nullptr);
        // Queued calls are posted in connection order, and once the deferred
        // deletion has run a call still waiting for the deleted sender is
        // dropped: the outcome must be connected before deleteLater.
        connect(job, &convert::finished, this, [this, index] { jobEnded(index, true); });
        connect(job, &convert::aborted, this, [this, index] { jobEnded(index, false); });
        connect(job, &convert::finished, job, &QObject::deleteLater);
        connect(job, &convert::aborted, job, &QObject::deleteLater);
        connect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater);
        QtConcurrent::run(QThreadPool::globalInstance(), job, &convert::readJsonFile,
                          entry.jsonPath, entry.jsonPath);
    }
}

bool BatchConverter::allConverted() const {
    for (const Entry& entry : entries)
        if (!entry.converted)
            return false;
    return true;
}

void BatchConverter::jobEnded(int index, bool finished) {
    Entry& entry = entries[index];
    if (finished) {
        entry.reason = failureReason::forFinishedJob(entry.reportPath, entry.reportExisted,
                                                     entry.reportModifiedBefore);
        if (entry.reason.isEmpty())
            entry.reason = failureReason::labelFailure();
        entry.converted = entry.reason.isEmpty();
        entry.warning = failureReason::jsonWarning(entry.jsonPath);
        entry.fontWarning = failureReason::undrawableWarning(entry.jsonPath);
    } else {
        entry.reason = failureReason::forAbortedJob(entry.jsonPath);
    }
    entry.ended = true;
    ++endedCount;
    flushReady();
    if (endedCount == entries.size()) {
        if (progressOnTerminal)
            std::fputs("\r\033[K", err);
        emit done();
    }
}

void BatchConverter::flushReady() {
    if (progressOnTerminal)
        std::fputs("\r\033[K", err);
    for (; nextToPrint < entries.size() && entries[nextToPrint].ended; ++nextToPrint) {
        const Entry& entry = entries[nextToPrint];
        const QString prefix =
            QStringLiteral("brevio-convert: ") + entry.given + QStringLiteral(": ");
        if (!entry.warning.isEmpty())
            printLine(err, prefix + QStringLiteral("warning: ") + entry.warning);
        if (!entry.fontWarning.isEmpty())
            printLine(err, prefix + QStringLiteral("warning: ") + entry.fontWarning);
        if (entry.converted)
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
