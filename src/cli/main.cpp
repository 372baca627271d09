#include "cli/batchconverter.h"
#include "convert/bootstrap.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QThreadPool>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

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

} // namespace

int main(int argc, char* argv[]) {
    // A headless tool: draw without any display unless told otherwise.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("BREVIO_DEBUG"))
        qInstallMessageHandler(quietToolkit);
    QGuiApplication app(argc, argv);
    // Before the arguments are read: file names that are not UTF-8 must
    // come through byte for byte.
    bootstrap::initApplication(programName());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Converts transmitter configuration files (.json) into PDF reports.\n"
        "Each report is written next to its file, with \".json\" replaced by \".pdf\"."));
    const QCommandLineOption helpOption = parser.addHelpOption();
    const QCommandLineOption versionOption = parser.addVersionOption();
    const QCommandLineOption jobsOption(
        {QStringLiteral("j"), QStringLiteral("jobs")},
        QStringLiteral("Convert at most <N> files at the same time."), QStringLiteral("N"));
    parser.addOption(jobsOption);
    parser.addPositionalArgument(QStringLiteral("FILE"),
                                 QStringLiteral("Configuration files to convert."),
                                 QStringLiteral("FILE..."));

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser, parser.errorText());
    if (parser.isSet(helpOption)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return exitConverted;
    }
    if (parser.isSet(versionOption)) {
        bootstrap::printVersion(programName());
        return exitConverted;
    }
    if (parser.isSet(jobsOption)) {
        bool ok = false;
        const int jobs = parser.value(jobsOption).toInt(&ok);
        if (!ok || jobs < 1)
            return usageError(parser, QStringLiteral("--jobs needs a whole number of at least 1, "
                                                     "not \"%1\"")
                                          .arg(parser.value(jobsOption)));
        QThreadPool::globalInstance()->setMaxThreadCount(jobs);
    }
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty())
        return usageError(parser, QStringLiteral("no files given"));

    BatchConverter batch(files, stdout, stderr);
    QObject::connect(&batch, &BatchConverter::done, &app, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    // Jobs start from inside the event loop that receives their signals.
    QTimer::singleShot(0, &batch, &BatchConverter::start);
    app.exec();
    const int status = batch.allConverted() ? exitConverted : exitNotConverted;
    if (batch.threadsLost()) {
        // The pool waits at exit for the jobs it could not start, forever.
        std::fflush(stdout);
        std::fflush(stderr);
        std::_Exit(status);
    }
    return status;
}
