// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/launch.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "runprogram.h"
#include "windowtest.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QListWidget>
#include <QStandardPaths>
#include <QTest>

namespace {

// The installed window as a terminal without any display would start it.
ProgramRun runWithoutDisplay(const QStringList& arguments) {
    return runProgram(QStringLiteral(BREVIO_BINARY), arguments, headlessEnvironment(), 30000);
}

} // namespace

class TestLaunch : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void parseKeepsOrder();
    void parseRefusesUnknownOptions();
    void parseKeepsNamesWithoutFolderApart();
    void parseAnswersVersion();
    void parseLanguage_data();
    void parseLanguage();
    void filesOpenInOrderOnceShown();
    void noFilesNoRows();
    void applicationIsDescribed();
    void helpAndVersionNeedNoDisplay();
    void mistakesNeedNoDisplay();
};

void TestLaunch::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
}

void TestLaunch::parseKeepsOrder() {
    const launch::Request request = launch::parse(
        {QStringLiteral("brevio"), QStringLiteral("b.json"), QStringLiteral("/data/a.json"),
         QStringLiteral("../c.JSON"), QStringLiteral("--"), QStringLiteral("-d.json")},
        QStringLiteral("/srv/anlage"));
    QCOMPARE(request.exitStatus, launch::startWindow);
    QCOMPARE(request.files,
             QStringList({QStringLiteral("/srv/anlage/b.json"), QStringLiteral("/data/a.json"),
                          QStringLiteral("/srv/anlage/../c.JSON"),
                          QStringLiteral("/srv/anlage/-d.json")}));
}

void TestLaunch::parseKeepsNamesWithoutFolderApart() {
    // Started from a working folder that was removed: a relative name has
    // no place to be looked up, so it is neither sent to a window (which
    // would refuse the empty path and be blamed for it) nor listed.
    const launch::Request request = launch::parse(
        {QStringLiteral("brevio"), QStringLiteral("a.json"), QStringLiteral("/data/b.json")},
        QString());
    QCOMPARE(request.exitStatus, launch::startWindow);
    QCOMPARE(request.files, QStringList{QStringLiteral("/data/b.json")});
    QCOMPARE(request.withoutFolder, QStringList{QStringLiteral("a.json")});
    QCOMPARE(
        launch::workingFolderGone(QStringLiteral("a.json")),
        QStringLiteral("brevio: a.json: cannot be opened: the working folder no longer exists"));
}

void TestLaunch::parseRefusesUnknownOptions() {
    const launch::Request request = launch::parse(
        {QStringLiteral("brevio"), QStringLiteral("--jobs"), QStringLiteral("a.json")},
        QStringLiteral("/srv"));
    QCOMPARE(request.exitStatus, launch::exitUsage);
    QVERIFY(request.files.isEmpty());
}

void TestLaunch::parseAnswersVersion() {
    const launch::Request request = launch::parse(
        {QStringLiteral("brevio"), QStringLiteral("--version"), QStringLiteral("a.json")},
        QStringLiteral("/srv"));
    QCOMPARE(request.exitStatus, 0);
    QVERIFY(request.files.isEmpty());
}

void TestLaunch::parseLanguage_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<QString>("language");
    QTest::newRow("German without the option")
        << QStringList{"a.json"} << int(launch::startWindow) << "de";
    QTest::newRow("German") << QStringList{"--language", "de", "a.json"} << int(launch::startWindow)
                            << "de";
    QTest::newRow("English") << QStringList{"--language=en", "a.json"} << int(launch::startWindow)
                             << "en";
    QTest::newRow("French") << QStringList{"--language", "fr", "a.json"} << int(launch::exitUsage)
                            << "fr";
    QTest::newRow("empty") << QStringList{"--language=", "a.json"} << int(launch::exitUsage) << "";
    QTest::newRow("German in capitals")
        << QStringList{"--language", "DE"} << int(launch::exitUsage) << "DE";
}

void TestLaunch::parseLanguage() {
    // The language is checked once, here; useLanguage() takes what passes.
    QFETCH(QStringList, arguments);
    QFETCH(int, exitStatus);
    QFETCH(QString, language);
    arguments.prepend(QStringLiteral("brevio"));
    const launch::Request request = launch::parse(arguments, QStringLiteral("/srv"));
    QCOMPARE(request.exitStatus, exitStatus);
    QCOMPARE(request.language, language);
    if (exitStatus == launch::startWindow)
        QCOMPARE(request.files, QStringList{QStringLiteral("/srv/a.json")});
    else
        QCOMPARE(request.files, QStringList());
}

void TestLaunch::filesOpenInOrderOnceShown() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const launch::Request request = launch::parse(
        {QStringLiteral("brevio"), QStringLiteral("b.json"), QStringLiteral("/data/a.json"),
         QStringLiteral("b.json"), QStringLiteral("c.JSON"), QStringLiteral("c.json")},
        QStringLiteral("/srv/anlage"));
    QCOMPARE(request.exitStatus, launch::startWindow);

    bool windowShownUnderBox = false;
    ModalAnswerer answerer([&](QWidget* box) {
        windowShownUnderBox = window.isVisible();
        clickMessageBoxOk(box);
    });
    window.openWhenShown(request.files);
    // Nothing is taken before the event loop runs.
    QCOMPARE(rowPaths(window), QStringList());

    const QStringList expected{QStringLiteral("/srv/anlage/b.pdf"), QStringLiteral("/data/a.pdf"),
                               QStringLiteral("/srv/anlage/c.pdf")};
    QTRY_COMPARE(rowPaths(window), expected);
    QCOMPARE(answerer.count(), 1);
    const ModalAnswerer::Seen& box = answerer.dialogs.first();
    QCOMPARE(box.className, QStringLiteral("QMessageBox"));
    QCOMPARE(box.title, QStringLiteral("Fehler"));
    QCOMPARE(box.text,
             QStringLiteral("Die Datei /srv/anlage/b.pdf befindest sich schon in der Liste"));
    QVERIFY(windowShownUnderBox);
}

void TestLaunch::noFilesNoRows() {
    MainWindow window;
    window.show();
    ModalAnswerer unexpected;
    const launch::Request request =
        launch::parse({QStringLiteral("brevio")}, QStringLiteral("/srv"));
    QCOMPARE(request.exitStatus, launch::startWindow);
    window.openWhenShown(request.files);
    QTest::qWait(50);
    QCOMPARE(rowPaths(window), QStringList());
    QCOMPARE(unexpected.count(), 0);
}

void TestLaunch::applicationIsDescribed() {
    launch::describeApplication();
    QCOMPARE(QGuiApplication::desktopFileName(), QStringLiteral("org.brevio.Brevio"));
    QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral(BREVIO_VERSION));
    const QIcon icon = QApplication::windowIcon();
    QVERIFY(!icon.isNull());
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
        QVERIFY2(icon.availableSizes().contains(QSize(size, size)),
                 qPrintable(QString::number(size)));
    // The window inherits it.
    MainWindow window;
    QCOMPARE(window.windowIcon().cacheKey(), icon.cacheKey());
}

void TestLaunch::helpAndVersionNeedNoDisplay() {
    // Without a display the window itself cannot start: the environment
    // really is display-less.
    const ProgramRun window = runWithoutDisplay({});
    QVERIFY2(window.started, qPrintable(window.describe()));
    QVERIFY2(window.status() != 0, qPrintable(window.describe()));

    for (const QString& option : {QStringLiteral("--help"), QStringLiteral("-h")}) {
        const ProgramRun help = runWithoutDisplay({option, QStringLiteral("a.json")});
        QVERIFY2(help.finished && !help.crashed, qPrintable(help.describe()));
        QCOMPARE(help.exitCode, 0);
        QVERIFY2(help.outText().startsWith(QStringLiteral("Usage: ")), qPrintable(help.outText()));
        QVERIFY(help.outText().contains(QStringLiteral("[FILE...]")));
        QVERIFY(help.outText().contains(QStringLiteral("--version")));
    }
    // Qt's own options are left for the window, whose toolkit is never
    // started here.
    const QList<QStringList> versionRequests{
        {QStringLiteral("--version")},
        {QStringLiteral("-v")},
        {QStringLiteral("-style"), QStringLiteral("fusion"), QStringLiteral("--version")}};
    for (const QStringList& arguments : versionRequests) {
        const ProgramRun version = runWithoutDisplay(arguments);
        QVERIFY2(version.finished && !version.crashed, qPrintable(version.describe()));
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.outText(), QStringLiteral("brevio " BREVIO_VERSION "\n"));
    }
}

void TestLaunch::mistakesNeedNoDisplay() {
    const ProgramRun run = runWithoutDisplay({QStringLiteral("--bogus"), QStringLiteral("a.json")});
    QVERIFY2(run.finished && !run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errText().startsWith(QStringLiteral("brevio: Unknown option 'bogus'.")),
             qPrintable(run.errText()));
    QCOMPARE(run.outText(), QString());

    const ProgramRun mixed = runWithoutDisplay(
        {QStringLiteral("-platform"), QStringLiteral("xcb"), QStringLiteral("--bogus")});
    QVERIFY2(mixed.finished && !mixed.crashed, qPrintable(mixed.describe()));
    QCOMPARE(mixed.exitCode, 2);
    QVERIFY2(mixed.errText().contains(QStringLiteral("bogus")), qPrintable(mixed.errText()));
}

QTEST_MAIN(TestLaunch)
#include "tst_launch.moc"
