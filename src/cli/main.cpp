// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/batchconverter.h"
#include "cli/commandline.h"
#include "cli/terminal.h"
#include "convert/bootstrap.h"
#include "files/temporaryfolders.h"

#include <QGuiApplication>
#include <QThreadPool>
#include <QTimer>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int exitConverted = 0;
constexpr int exitNotConverted = 1;

// The toolkit's own debug output and warnings (runtime directory, font
// fallbacks) are not this tool's messages; stderr carries only ours.
void quietToolkit(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "brevio-convert: %s\n", qPrintable(message));
}

const QString& programName() {
    static const QString name = QStringLiteral("brevio-convert");
    return name;
}

void setUpSignals() {
    // Ctrl-C, a closed terminal or console, or kill remove the running
    // jobs' temporary folders and end the process as they would have.
    temporaryFolders::removeOnInterrupt();
}

// Flushes standard output and standard error and tells a failure: a report
// list that did not reach its reader is not a success. The streams stay
// open for whatever the toolkit still says on its way out.
int finishOutput(int status, int listError) {
    errno = 0;
    if (listError == 0 && (std::fflush(stdout) != 0 || std::ferror(stdout) != 0))
        listError = errno != 0 ? errno : EIO;
    if (listError != 0) {
        std::fprintf(stderr, "brevio-convert: cannot write the report list: %s\n",
                     std::strerror(listError));
        status = exitNotConverted;
    }
    if (std::fflush(stderr) != 0 || std::ferror(stderr) != 0)
        status = exitNotConverted;
    return status;
}

int run(int argc, char* argv[]);

} // namespace

int main(int argc, char* argv[]) {
    terminal::prepareProcess();
    setUpSignals();
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        // Outside every job: nothing is half-written, the jobs' folders are
        // gone with them, and the list printed so far stays true.
        temporaryFolders::removeAllNow();
        std::fputs("brevio-convert: out of memory\n", stderr);
        std::fflush(stdout);
        std::fflush(stderr);
        std::_Exit(exitNotConverted);
    }
}

namespace {

// Converts the request's files and tells how it went.
int convertAll(QGuiApplication& app, const commandLine::Request& request) {
    if (request.jobs > 0)
        QThreadPool::globalInstance()->setMaxThreadCount(request.jobs);
    BatchConverter batch(request.files, request.options, stdout, stderr);
    QObject::connect(&batch, &BatchConverter::done, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    // Jobs start from inside the event loop that receives their signals.
    QTimer::singleShot(0, &batch, &BatchConverter::start);
    app.exec();
    int status = batch.allConverted() ? exitConverted : exitNotConverted;
    if (batch.errorOutputError() != 0)
        status = exitNotConverted;
    status = finishOutput(status, batch.outputError());
    // The pool waits at exit for the jobs it could not start, forever.
    if (batch.threadsLost())
        std::_Exit(status);
    return status;
}

// brevio-convert never shows anything: whatever platform the environment
// names (a display that is not there, a plugin that is not installed), it
// draws without one, and a platform theme has nothing to do.
void prepareToolkit() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    if (qEnvironmentVariableIsEmpty("BREVIO_DEBUG"))
        qInstallMessageHandler(quietToolkit);
}

int run(int argc, char* argv[]) {
    prepareToolkit();
    // The toolkit gets the program name alone: its own options (-platform,
    // -display, -style) are not this tool's, and a file may have such a
    // name.
    static int toolkitArgc = 1;
    QGuiApplication app(toolkitArgc, argv);
    // Before the arguments are read: file names that are not UTF-8 must
    // come through byte for byte.
    bootstrap::initApplication(programName());
    const commandLine::Request request = commandLine::parse(terminal::arguments(argc, argv));
    using Action = commandLine::Request::Action;
    switch (request.action) {
    case Action::ShowHelp:
        std::fputs(qPrintable(request.helpText), stdout);
        return finishOutput(exitConverted, 0);
    case Action::ShowVersion:
        bootstrap::printVersion(programName());
        return finishOutput(exitConverted, 0);
    case Action::UsageError:
        return finishOutput(bootstrap::usageError(programName(), request.error, request.helpText),
                            0);
    case Action::Convert:
        break;
    }
    if (!bootstrap::useLanguage(request.language)) {
        std::fprintf(stderr, "brevio-convert: the texts for --language %s cannot be loaded\n",
                     qPrintable(request.language));
        return finishOutput(exitNotConverted, 0);
    }
    return convertAll(app, request);
}

} // namespace
