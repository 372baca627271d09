// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/launch.h"

#include "app/desktopplatform.h"

#include "convert/bootstrap.h"
#include "files/filepaths.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QSet>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <vector>

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
    QCommandLineOption language = bootstrap::languageOption();
    QCommandLineOption newWindow{
        QStringLiteral("new-window"),
        QStringLiteral("Open another window even when one is open; "
                       "otherwise the files join the open window's list.")};

    Parser() : help(parser.addHelpOption()), version(parser.addVersionOption()) {
        parser.addOption(newWindow);
        parser.addOption(language);
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

const char noDisplayMessage[] = "brevio: no display; brevio-convert converts files without one\n";

int noDisplay() {
    std::fputs(noDisplayMessage, stderr);
    return exitNoDisplay;
}

// Qt's own options are listed only by a GUI application, which needs a
// platform plugin; the offscreen one needs no display, and the list is the
// same whichever plugin is loaded.
int answerHelpAll(int argc, char* argv[]) {
    std::vector<char*> arguments(argv, argv + argc);
    char platformOption[] = "-platform";
    char offscreen[] = "offscreen";
    arguments.push_back(platformOption);
    arguments.push_back(offscreen);
    arguments.push_back(nullptr);
    int count = argc + 2;
    QGuiApplication application(count, arguments.data());
    Parser parser;
    // Prints the help with Qt's options and ends the process with 0.
    parser.parser.process(QCoreApplication::arguments());
    return exitOk;
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

// Whether the window system the platform plugin would load can be reached
// at all: no DISPLAY for X11, no Wayland socket. Qt itself would abort.
bool displayNamed(int argc, char* argv[]) {
    // The plugin QGuiApplication would load: the last -platform wins over
    // QT_QPA_PLATFORM, which wins over the build's default (xcb on Linux,
    // windows on Windows, which needs no display server to be named).
    QString platforms = QString::fromLocal8Bit(qgetenv("QT_QPA_PLATFORM"));
    bool displayOption = false;
    for (int i = 1; i + 1 < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "-platform" || argument == "--platform")
            platforms = QString::fromLocal8Bit(argv[i + 1]);
        else if (argument == "-display" || argument == "--display")
            displayOption = argv[i + 1][0] != '\0';
    }
    if (platforms.isEmpty())
        platforms = desktopPlatform::defaultName();
    // "wayland;xcb" tries each in turn; "xcb:option" carries options.
    for (const QString& entry : platforms.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString name = entry.section(QLatin1Char(':'), 0, 0);
        if (name == QLatin1String("xcb")) {
            if (displayOption || !qEnvironmentVariableIsEmpty("DISPLAY"))
                return true;
        } else if (name.startsWith(QLatin1String("wayland"))) {
            if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
                return true;
            const QString runtime = QString::fromLocal8Bit(qgetenv("XDG_RUNTIME_DIR"));
            if (!runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/wayland-0")))
                return true;
        } else {
            // offscreen, minimal, vnc, eglfs, ...: no display server to
            // look for; whether they start is for Qt to find out, and the
            // guard catches a failure.
            return true;
        }
    }
    return false;
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
    if (parsed && parser.parser.isSet(QStringLiteral("help-all")))
        return answerHelpAll(argc, argv);
    if (parsed && !parser.parser.isSet(parser.help) && !parser.parser.isSet(parser.version)) {
        if (displayNamed(argc, argv))
            return startWindow;
        return noDisplay();
    }
    // Only for the program name in the help text; no platform plugin is
    // loaded by a core application.
    QCoreApplication core(argc, argv);
    return answer(parser, parsed);
}

namespace {

QtMessageHandler handlerBeforeGuard = nullptr;

void displayGuard(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg) {
        // Qt's advice to reinstall does not help here; the platform plugin
        // ends the process with abort() once this returns.
        std::fflush(stdout);
        std::fputs(noDisplayMessage, stderr);
        std::fflush(stderr);
        std::_Exit(exitNoDisplay);
    }
    if (handlerBeforeGuard)
        handlerBeforeGuard(type, context, message);
    else
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

} // namespace

void guardDisplayConnection() {
    handlerBeforeGuard = qInstallMessageHandler(displayGuard);
}

void endDisplayGuard() {
    qInstallMessageHandler(handlerBeforeGuard);
    handlerBeforeGuard = nullptr;
}

void enableHighDpi() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    // Pixmaps and border images drawn for the device pixels, not blown up.
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, desktopPlatform::toolkitDialogs());
}

namespace {

// Qt's own German translation (qtbase_de.qm). Returns whether it was found.
bool loadToolkitTranslation() {
    auto* translator = new QTranslator(QCoreApplication::instance());
    // The system's Qt has it among its translations; a program that brings
    // its own Qt (Windows) carries it in its resources.
    if (!translator->load(QLocale(QLocale::German, QLocale::Germany), QStringLiteral("qtbase"),
                          QStringLiteral("_"),
                          QLibraryInfo::location(QLibraryInfo::TranslationsPath)) &&
        !translator->load(QStringLiteral(":/translations/qtbase_de.qm"))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace

bool useLanguage(const QString& language) {
    if (!bootstrap::useLanguage(language))
        return false;
    // Without Qt's German (a system without Qt's translations) the window
    // still speaks German; only Qt's own dialog texts stay in English.
    if (language == QLatin1String("de"))
        loadToolkitTranslation();
    return true;
}

void describeApplication() {
    bootstrap::initApplication(programName());
    const QString style = desktopPlatform::styleName();
    if (!style.isEmpty())
        QApplication::setStyle(style);
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
    request.language = parser.parser.value(parser.language);
    if (!bootstrap::isLanguage(request.language)) {
        request.exitStatus = usageError(parser, bootstrap::languageError(request.language));
        return request;
    }
    request.newWindow = parser.parser.isSet(parser.newWindow);
    for (const QString& given : parser.parser.positionalArguments()) {
        const QString file = filePaths::absolute(given, currentDir);
        if (file.isEmpty())
            request.withoutFolder.append(given);
        else
            request.files.append(file);
    }
    return request;
}

QString workingFolderGone(const QString& name) {
    return QStringLiteral("brevio: %1: cannot be opened: the working folder no longer exists")
        .arg(name);
}

} // namespace launch
