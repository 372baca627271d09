// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// libFuzzer target: arbitrary bytes go through a whole conversion job, the
// way a user's file does: written to a .json file, read, parsed, every
// section read and the report printed to a PDF file.
//
// Beyond crashes and sanitizer reports, every run checks what a job promises
// whatever the input: exactly one of finished() and aborted(); an empty file
// aborts without progress; anything else finishes after the progress values
// 1 to 17 with a complete PDF; and the input file is left as it was.

#include "convert/convert.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QList>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

QTemporaryDir* workDir = nullptr;

// The toolkit warns about missing runtime directories and font fallbacks on
// every run; that would drown the fuzzer's own output.
void quietToolkit(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtFatalMsg)
        std::fprintf(stderr, "fatal: %s\n", qPrintable(message));
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_convert: broken promise: %s\n", what);
    std::abort();
}

QByteArray readWhole(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("BREVIO_DEBUG"))
        qInstallMessageHandler(quietToolkit);
    // Painting text needs a GUI application (fonts); it lives for the whole
    // process, as the window's does. Only the program name is passed on:
    // the fuzzer's own options are not the toolkit's.
    // It is never destroyed, so the leak check at exit does not count the
    // screens the offscreen platform plugin orphans when it shuts down.
    static int qtArgc = 1;
    static char* qtArgv[] = {(*argv)[0], nullptr};
    (void)argc;
    static QGuiApplication* app = new QGuiApplication(qtArgc, qtArgv);
    (void)app;
    workDir = new QTemporaryDir(QDir::tempPath() + QStringLiteral("/brevio-fuzz-XXXXXX"));
    if (!workDir->isValid())
        fail("no temporary folder");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), int(size));
    const QString jsonPath = workDir->filePath(QStringLiteral("input.json"));
    const QString pdfPath = workDir->filePath(QStringLiteral("input.pdf"));
    QFile::remove(pdfPath);
    {
        QFile file(jsonPath);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(input) != input.size())
            fail("cannot write the input file");
    }

    QList<int> progress;
    int finishedCount = 0;
    int abortedCount = 0;
    {
        // Created and run on this thread, so the signals arrive directly.
        convert job;
        QObject::connect(&job, &convert::newPbarValue, [&](int value) { progress.append(value); });
        QObject::connect(&job, &convert::finished, [&] { ++finishedCount; });
        QObject::connect(&job, &convert::aborted, [&] { ++abortedCount; });
        job.readJsonFile(jsonPath, jsonPath);
    }

    if (finishedCount + abortedCount != 1)
        fail("the job must end with exactly one of finished() and aborted()");
    if (input.isEmpty()) {
        if (abortedCount != 1 || !progress.isEmpty())
            fail("an empty file must abort without progress");
        if (QFile::exists(pdfPath))
            fail("an aborted job must not write a report");
    } else {
        if (finishedCount != 1)
            fail("a non-empty file must give a report");
        if (progress.size() != 17)
            fail("a finished job reports 17 progress values");
        for (int i = 0; i < progress.size(); ++i)
            if (progress[i] != i + 1)
                fail("progress values must run from 1 to 17 in order");
        const QByteArray report = readWhole(pdfPath);
        if (!report.startsWith("%PDF-") || !report.right(1024).contains("%%EOF"))
            fail("the report is not a complete PDF");
    }
    if (readWhole(jsonPath) != input)
        fail("the input file was changed");
    return 0;
}
