// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures conversion cost and prints the figures:
//   bench_convert [runs]
#include "convert/bootstrap.h"
#include "convert/convert.h"
#include "convert/runonpool.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtConcurrent>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

namespace {

double median(QVector<double> values) {
    std::sort(values.begin(), values.end());
    const int n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

long peakResidentKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Wall-clock figures are only comparable when the machine was quiet; the
// load average before and after tells whether it was.
QByteArray loadAverage() {
    QFile file(QStringLiteral("/proc/loadavg"));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArrayLiteral("unknown");
    return file.readAll().trimmed();
}

long currentResidentKb() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

QString writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
    return path;
}

// Converts on the calling thread, as one pool task would.
double convertOnceMs(const QString& path) {
    QElapsedTimer timer;
    timer.start();
    convert job;
    job.readJsonFile(path, path);
    return timer.nsecsElapsed() / 1e6;
}

double medianConversionMs(const QString& path, int runs) {
    convertOnceMs(path); // warm-up: fonts, logo, resources
    QVector<double> times;
    for (int i = 0; i < runs; ++i)
        times.append(convertOnceMs(path));
    return median(times);
}

// A configuration whose output channels fill about the given number of pages.
QByteArray manyPages(const QByteArray& typical, int pages) {
    QJsonObject document = QJsonDocument::fromJson(typical).object();
    QJsonObject configuration = document.value(QLatin1String("configuration")).toObject();
    const QJsonArray outputs = configuration.value(QLatin1String("outputs")).toArray();
    QJsonArray many;
    // Seven channel blocks fit on a page.
    for (int i = 0; i < pages * 7; ++i)
        many.append(outputs.at(i % outputs.size()));
    configuration.insert(QLatin1String("outputs"), many);
    document.insert(QLatin1String("configuration"), configuration);
    return QJsonDocument(document).toJson();
}

double throughput(const QStringList& files, int threads) {
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
    QEventLoop loop;
    int ended = 0;
    QElapsedTimer timer;
    timer.start();
    for (const QString& path : files) {
        JobHandlers handlers;
        handlers.outcomeReceiver = &loop;
        handlers.ended = [&](JobSignal, const ConversionOutcome&) {
            if (++ended == files.size())
                loop.quit();
        };
        runOnPool(new convert, path, handlers);
    }
    loop.exec();
    return files.size() / (timer.nsecsElapsed() / 1e9);
}

double processMs(const QString& path, int runs) {
    QVector<double> times;
    for (int i = 0; i < runs + 1; ++i) {
        QElapsedTimer timer;
        timer.start();
        QProcess::execute(QStringLiteral(BREVIO_CONVERT_BINARY), {path});
        if (i > 0)
            times.append(timer.nsecsElapsed() / 1e6);
    }
    return median(times);
}

} // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    // Started as brevio-convert starts, so that the jobs measured here draw
    // in the same font from the same file names as the process measured
    // beside them.
    bootstrap::initApplication(QStringLiteral("brevio-convert"));
    std::printf("load average at start:        %s\n", loadAverage().constData());
    const int runs = argc > 1 ? qMax(1, atoi(argv[1])) : 30;

    QTemporaryDir dir;
    const QByteArray typical =
        readFile(QStringLiteral(BREVIO_SOURCE_DIR "/examples/pressure-transmitter.json"));
    const QString typicalPath = writeFile(dir.filePath(QStringLiteral("typical.json")), typical);
    const QString longPath =
        writeFile(dir.filePath(QStringLiteral("hundred-pages.json")), manyPages(typical, 100));

    std::printf("typical report, in process:   %8.2f ms median of %d\n",
                medianConversionMs(typicalPath, runs), runs);
    std::printf("typical report size:          %8lld bytes\n",
                QFileInfo(dir.filePath(QStringLiteral("typical.pdf"))).size());
    const double longMs = medianConversionMs(longPath, qMax(3, runs / 10));
    std::printf("100-page report, in process:  %8.2f ms (%.2f ms a page)\n", longMs, longMs / 100);
    std::printf("100-page report size:         %8lld bytes\n",
                QFileInfo(dir.filePath(QStringLiteral("hundred-pages.pdf"))).size());
    std::printf("brevio-convert, one file:     %8.2f ms median of %d whole processes\n",
                processMs(typicalPath, qMax(5, runs / 3)), qMax(5, runs / 3));

    QStringList files;
    for (int i = 0; i < 200; ++i)
        files.append(writeFile(dir.filePath(QStringLiteral("batch-%1.json").arg(i)), typical));
    std::printf("200 files, 1 thread:          %8.1f reports/s\n", throughput(files, 1));
    std::printf("200 files, 2 threads:         %8.1f reports/s\n", throughput(files, 2));

    QThreadPool::globalInstance()->setMaxThreadCount(2);
    for (int round = 1; round <= 5; ++round) {
        throughput(files, 2);
        std::printf("after %4d reports:           %8ld kB resident (peak %ld kB)\n", 200 * round,
                    currentResidentKb(), peakResidentKb());
    }
    std::printf("load average at end:          %s\n", loadAverage().constData());
    return 0;
}
