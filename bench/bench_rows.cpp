// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures how long the window takes to list many files given on its
// command line, the longest time input waits meanwhile, one resize of the
// window with all the rows, and the memory, and prints the figures:
//   bench_rows [ROWS...]          (500 1000 2000 5000 when none are given)
// Each count is listed in a process of its own, so that its peak memory is
// its own; the window is drawn once at the end, so the time includes the
// list's last layout.
#include "app/launch.h"
#include "app/mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <QProcess>
#include <QTimer>

#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

long peakResidentKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

QByteArray loadAverage() {
    QFile file(QStringLiteral("/proc/loadavg"));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArrayLiteral("unknown");
    return file.readAll().trimmed();
}

// Lists the rows in this process and prints one line of figures.
int listRows(int argc, char* argv[], int rows) {
    QApplication app(argc, argv);
    launch::describeApplication();
    MainWindow window;
    window.resize(900, 700);
    window.show();
    QApplication::processEvents();
    auto* list = window.findChild<QListWidget*>(QStringLiteral("listWidget"));
    if (!list)
        return 1;

    // Names as a file manager hands them over: one folder, the files need
    // not exist to be listed.
    QStringList files;
    for (int i = 0; i < rows; ++i)
        files.append(QStringLiteral("/srv/anlagen/halle-3/messstelle-%1.json")
                         .arg(i, 5, 10, QLatin1Char('0')));

    const long residentBefore = peakResidentKb();
    const double cpuBefore = cpuSeconds();
    QElapsedTimer wall;
    wall.start();

    // A clock that ticks every 20 ms while the window is responsive: the
    // longest gap between ticks is the longest time input went unanswered.
    constexpr int tickMs = 20;
    QElapsedTimer sinceTick;
    sinceTick.start();
    qint64 longestGapMs = 0;
    QTimer tick;
    tick.setInterval(tickMs);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        longestGapMs = qMax(longestGapMs, sinceTick.restart());
        if (list->count() == rows)
            app.quit();
    });
    tick.start();
    window.openWhenShown(files);
    app.exec();
    tick.stop();
    // Laid out and drawn once with every row, as the screen would show it.
    window.grab();
    const double wallSeconds = wall.nsecsElapsed() / 1e9;
    const double cpu = cpuSeconds() - cpuBefore;

    // Every row follows the list's width when the window is resized.
    QElapsedTimer resize;
    resize.start();
    window.resize(1000, 700);
    QApplication::processEvents();
    window.grab();
    const double resizeMs = resize.nsecsElapsed() / 1e6;
    const long peak = peakResidentKb();

    std::printf("%6d rows: %6.2f s wall, %6.2f s CPU, input unanswered for at most %5lld ms, "
                "one resize %6.1f ms, peak %6.1f MB resident (%4.1f MB before listing, "
                "%4.1f kB a row)\n",
                rows, wallSeconds, cpu, static_cast<long long>(longestGapMs), resizeMs,
                peak / 1024.0, residentBefore / 1024.0, double(peak - residentBefore) / rows);
    return list->count() == rows ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[]) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 3 && std::strcmp(argv[1], "--rows") == 0)
        return listRows(argc, argv, std::atoi(argv[2]));

    QList<int> counts;
    for (int i = 1; i < argc; ++i)
        counts.append(std::atoi(argv[i]));
    if (counts.isEmpty())
        counts = {500, 1000, 2000, 5000};

    std::printf("load average at start: %s\n", loadAverage().constData());
    std::fflush(stdout);
    int status = 0;
    for (const int rows : counts) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QString::fromLocal8Bit(argv[0]),
                    {QStringLiteral("--rows"), QString::number(rows)});
        if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit ||
            child.exitCode() != 0) {
            std::printf("%6d rows: failed\n", rows);
            status = 1;
        }
    }
    std::printf("load average at end:   %s\n", loadAverage().constData());
    return status;
}
