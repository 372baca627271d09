#include "app/launch.h"

#include "app/mainwindow.h"
#include "convert/bootstrap.h"
#include "files/filepaths.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QSet>
#include <QTimer>

#include <cstdio>

namespace launch {

namespace {

constexpr int exitOk = 0;

// Options that QGuiApplication and QApplication take out of the arguments
// themselves; the pass before the application exists must let them by.
const QSet<QString>& toolkitOptionNames() {
    static const QSet<QString> names{
        QStringLiteral("platform"),        QStringLiteral("platformpluginpath"),
        QStringLiteral("platformtheme"),   QStringLiteral("plugin"),
        QStringLiteral("qwindowgeometry"), QStringLiteral("qwindowicon"),
        QStringLiteral("qwindowtitle"),    QStringLiteral("reverse"),
        QStringLiteral("session"),         QStringLiteral("style"),
        QStringLiteral("stylesheet"),      QStringLiteral("widgetcount"),
        QStringLiteral("display"),         QStringLiteral("geometry"),
        QStringLiteral("title"),           QStringLiteral("name"),
        QStringLiteral("visual"),          QStringLiteral("sync"),
        QStringLiteral("nograb"),          QStringLiteral("dograb"),
    };
    return names;
}

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption help;
    QCommandLineOption version;

    Parser() : help(parser.addHelpOption()), version(parser.addVersionOption()) {
        // Qt's own options have one dash and whole words; so must ours.
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        parser.setApplicationDescription(QStringLiteral(
            "Opens the Brevio window. Each FILE is added to its list as if it had been\n"
            "dropped on the window; only names ending in \".json\" are taken."));
        parser.addPositionalArgument(QStringLiteral("FILE"),
                                     QStringLiteral("Configuration files to list."),
                                     QStringLiteral("[FILE...]"));
    }
};

// helpText() names the program from QCoreApplication::arguments(), so it
// needs an application object; a window-less one does.
QString helpText(const Parser& parser) {
    return parser.parser.helpText();
}

const QString& programName() {
    static const QString name = QStringLiteral("brevio");
    return name;
}

int usageError(const Parser& parser, const QString& message) {
    return bootstrap::usageError(programName(), message, helpText(parser));
}

// Decides --help, --version and mistakes; startWindow when none applies.
int answer(Parser& parser, bool parsed) {
    if (!parsed)
        return usageError(parser, parser.parser.errorText());
    // Qt's options are listed by the GUI application only; QCommandLineParser
    // prints them and ends the program.
    if (parser.parser.isSet(QStringLiteral("help-all")))
        parser.parser.process(QCoreApplication::arguments());
    if (parser.parser.isSet(parser.help)) {
        std::fputs(qPrintable(helpText(parser)), stdout);
        return exitOk;
    }
    if (parser.parser.isSet(parser.version)) {
        bootstrap::printVersion(programName());
        return exitOk;
    }
    return startWindow;
}

} // namespace

int answerWithoutDisplay(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    Parser parser;
    bool parsed = parser.parser.parse(arguments);
    if (!parsed) {
        // QApplication takes its own options out; whether they are right is
        // its business. The parser goes on past unknown options, so --help
        // and --version after them are still seen.
        const QStringList unknown = parser.parser.unknownOptionNames();
        parsed = !unknown.isEmpty();
        for (const QString& name : unknown)
            parsed = parsed && toolkitOptionNames().contains(name);
    }
    if (parsed && (parser.parser.isSet(QStringLiteral("help-all")) ||
                   (!parser.parser.isSet(parser.help) && !parser.parser.isSet(parser.version))))
        return startWindow;
    // Only for the program name in the help text; no platform plugin is
    // loaded by a core application.
    QCoreApplication core(argc, argv);
    return answer(parser, parsed);
}

void describeApplication() {
    bootstrap::initApplication(programName());
    QGuiApplication::setDesktopFileName(QStringLiteral(BREVIO_APP_ID));
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/hicolor/%1x%1/apps/" BREVIO_APP_ID ".png").arg(size),
                     QSize(size, size));
    QApplication::setWindowIcon(icon);
}

Request parse(const QStringList& arguments, const QString& currentDir) {
    Parser parser;
    Request request;
    request.exitStatus = answer(parser, parser.parser.parse(arguments));
    if (request.exitStatus != startWindow)
        return request;
    for (const QString& given : parser.parser.positionalArguments())
        request.files.append(filePaths::absolute(given, currentDir));
    return request;
}

void openWhenShown(MainWindow& window, const QStringList& files) {
    if (files.isEmpty())
        return;
    QTimer::singleShot(0, &window, [&window, files] {
        for (const QString& file : files)
            window.addListWidgetItem(file);
    });
}

} // namespace launch
