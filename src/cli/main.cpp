// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/batchconverter.h"
#include "cli/terminal.h"
#include "convert/bootstrap.h"
#include "files/filepaths.h"
#include "files/temporaryfolders.h"

#include <QCommandLineParser>
#include <QFileInfo>
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

int usageError(const QCommandLineParser& parser, const QString& message) {
    return bootstrap::usageError(programName(), message, parser.helpText());
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

int run(int argc, char* argv[]) {
    // brevio-convert never shows anything: whatever platform the
    // environment names (a display that is not there, a plugin that is not
    // installed), it draws without one, and a platform theme has nothing to
    // do.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME");
    if (qEnvironmentVariableIsEmpty("BREVIO_DEBUG"))
        qInstallMessageHandler(quietToolkit);
    // The toolkit gets the program name alone: its own options (-platform,
    // -display, -style) are not this tool's, and a file may have such a
    // name.
    static int toolkitArgc = 1;
    QGuiApplication app(toolkitArgc, argv);
    // Before the arguments are read: file names that are not UTF-8 must
    // come through byte for byte.
    bootstrap::initApplication(programName());
    const QStringList arguments = terminal::arguments(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Converts transmitter configuration files (.json) into PDF reports.\n"
        "Each report is written next to its file, with \".json\" replaced by \".pdf\",\n"
        "or into the folder given with --output-dir."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption jobsOption(
        {QStringLiteral("j"), QStringLiteral("jobs")},
        QStringLiteral("Convert at most <N> files at the same time."), QStringLiteral("N"));
    parser.addOption(jobsOption);
    const QCommandLineOption outputOption(
        {QStringLiteral("o"), QStringLiteral("output-dir")},
        QStringLiteral("Write the reports into the folder <DIR>, each named after its file."),
        QStringLiteral("DIR"));
    parser.addOption(outputOption);
    const QCommandLineOption jsonOption(
        QStringLiteral("json"),
        QStringLiteral("Print one JSON object per file on standard output: file, report, "
                       "converted, reason, warnings."));
    parser.addOption(jsonOption);
    const QCommandLineOption languageOption = bootstrap::languageOption();
    parser.addOption(languageOption);
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Configuration files to convert."),
                                 QStringLiteral("FILE..."));

    if (!parser.parse(arguments))
        return finishOutput(usageError(parser, parser.errorText()), 0);
    // --help-all would add the toolkit's own options, which this tool does
    // not take: the same help.
    if (parser.isSet(helpOption) || parser.isSet(QStringLiteral("help-all"))) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return finishOutput(exitConverted, 0);
    }
    if (parser.isSet(versionOption)) {
        bootstrap::printVersion(programName());
        return finishOutput(exitConverted, 0);
    }
    if (parser.isSet(jobsOption)) {
        bool ok = false;
        const int jobs = parser.value(jobsOption).toInt(&ok);
        if (!ok || jobs < 1)
            return finishOutput(
                usageError(parser, QStringLiteral("--jobs needs a whole number of at least 1, "
                                                  "not \"%1\"")
                                       .arg(parser.value(jobsOption))),
                0);
        QThreadPool::globalInstance()->setMaxThreadCount(jobs);
    }
    const QString language = parser.value(languageOption);
    if (!bootstrap::useLanguage(language))
        return finishOutput(
            usageError(parser,
                       QStringLiteral("--language needs de or en, not \"%1\"").arg(language)),
            0);
    BatchConverter::Options options;
    options.json = parser.isSet(jsonOption);
    if (parser.isSet(outputOption)) {
        const QString given = parser.value(outputOption);
        options.outputFolder = given.isEmpty() ? QString() : filePaths::absolute(given);
        if (options.outputFolder.isEmpty() || !QFileInfo(options.outputFolder).isDir())
            return finishOutput(
                usageError(parser, QStringLiteral("--output-dir needs an existing folder, "
                                                  "not \"%1\"")
                                       .arg(given)),
                0);
    }
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty())
        return finishOutput(usageError(parser, QStringLiteral("no files given")), 0);

    BatchConverter batch(files, options, stdout, stderr);
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

} // namespace
