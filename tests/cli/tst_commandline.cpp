// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevio-convert's arguments read into a request: every option, and every
// mistake with the message the user sees, without starting a process.

#include "cli/commandline.h"
#include "convert/bootstrap.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Action = commandLine::Request::Action;
Q_DECLARE_METATYPE(Action)

class TestCommandLine : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void request_data();
    void request();
    void usageError_data();
    void usageError();
    void answers_data();
    void answers();
    void helpNamesEveryOption();

private:
    QTemporaryDir folder;
    QString reports;
    QString plainFile;
};

void TestCommandLine::initTestCase() {
    QVERIFY(folder.isValid());
    reports = folder.filePath(QStringLiteral("reports"));
    QVERIFY(QDir().mkdir(reports));
    plainFile = folder.filePath(QStringLiteral("plain"));
    QFile file(plainFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    // Relative output folders are taken from the working folder.
    QVERIFY(QDir::setCurrent(folder.path()));
}

void TestCommandLine::request_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("outputFolder");
    QTest::addColumn<int>("jobs");
    QTest::addColumn<bool>("json");
    QTest::addColumn<QString>("language");
    const QStringList ab{QStringLiteral("a.json"), QStringLiteral("b.json")};
    QTest::newRow("files only") << ab << ab << QString() << 0 << false << "de";
    QTest::newRow("-j") << (QStringList{"-j", "3"} + ab) << ab << QString() << 3 << false << "de";
    QTest::newRow("--jobs=") << (QStringList{"--jobs=12"} + ab) << ab << QString() << 12 << false
                             << "de";
    QTest::newRow("-j after the files")
        << (ab + QStringList{"-j", "1"}) << ab << QString() << 1 << false << "de";
    QTest::newRow("-o absolute") << (QStringList{"-o", reports} + ab) << ab << reports << 0 << false
                                 << "de";
    QTest::newRow("--output-dir relative")
        << (QStringList{"--output-dir", "reports"} + ab) << ab << reports << 0 << false << "de";
    QTest::newRow("--output-dir=./reports/")
        << (QStringList{"--output-dir=./reports/"} + ab) << ab << reports << 0 << false << "de";
    QTest::newRow("--json") << (QStringList{"--json"} + ab) << ab << QString() << 0 << true << "de";
    QTest::newRow("--language en")
        << (QStringList{"--language", "en"} + ab) << ab << QString() << 0 << false << "en";
    QTest::newRow("--language=de")
        << (QStringList{"--language=de"} + ab) << ab << QString() << 0 << false << "de";
    QTest::newRow("all together")
        << (QStringList{"--json", "-o", "reports", "-j", "2", "--language", "en"} + ab) << ab
        << reports << 2 << true << "en";
    // After "--" every argument is a file, however it looks.
    QTest::newRow("--") << QStringList{"--", "-j.json", "--json"}
                        << QStringList{"-j.json", "--json"} << QString() << 0 << false << "de";
    QTest::newRow("the same file twice")
        << QStringList{"a.json", "a.json"} << QStringList{"a.json", "a.json"} << QString() << 0
        << false << "de";
}

void TestCommandLine::request() {
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, files);
    QFETCH(QString, outputFolder);
    QFETCH(int, jobs);
    QFETCH(bool, json);
    QFETCH(QString, language);

    const commandLine::Request request =
        commandLine::parse(QStringList{QStringLiteral("brevio-convert")} + arguments);
    QVERIFY2(request.action == Action::Convert, qPrintable(request.error));
    QCOMPARE(request.files, files);
    QCOMPARE(QDir::cleanPath(request.options.outputFolder), outputFolder);
    QCOMPARE(request.options.outputFolder.isEmpty(), outputFolder.isEmpty());
    QCOMPARE(request.jobs, jobs);
    QCOMPARE(request.options.json, json);
    QCOMPARE(request.language, language);
    QVERIFY(request.error.isEmpty());
}

void TestCommandLine::usageError_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("no arguments") << QStringList() << "no files given";
    QTest::newRow("options without files") << QStringList{"--json", "-j", "2"} << "no files given";
    QTest::newRow("unknown option")
        << QStringList{"--bogus", "a.json"} << "Unknown option 'bogus'.";
    // "-platform" reads as -p -l -a -t -f and -o with the value "rm".
    QTest::newRow("toolkit option")
        << QStringList{"-platform", "xcb", "a.json"} << "Unknown options: p, l, a, t, f.";
    QTest::newRow("-j without value") << QStringList{"a.json", "-j"} << "Missing value after '-j'.";
    QTest::newRow("-j 0") << QStringList{"-j", "0", "a.json"}
                          << "--jobs needs a whole number of at least 1, not \"0\"";
    QTest::newRow("-j -1") << QStringList{"-j", "-1", "a.json"}
                           << "--jobs needs a whole number of at least 1, not \"-1\"";
    QTest::newRow("-j two") << QStringList{"--jobs=two", "a.json"}
                            << "--jobs needs a whole number of at least 1, not \"two\"";
    QTest::newRow("-j 1.5") << QStringList{"-j", "1.5", "a.json"}
                            << "--jobs needs a whole number of at least 1, not \"1.5\"";
    QTest::newRow("-j empty") << QStringList{"--jobs=", "a.json"}
                              << "--jobs needs a whole number of at least 1, not \"\"";
    QTest::newRow("--language fr")
        << QStringList{"--language", "fr", "a.json"} << "--language needs de or en, not \"fr\"";
    QTest::newRow("--language DE")
        << QStringList{"--language=DE", "a.json"} << "--language needs de or en, not \"DE\"";
    QTest::newRow("--language empty")
        << QStringList{"--language=", "a.json"} << "--language needs de or en, not \"\"";
    QTest::newRow("-o missing") << QStringList{"-o", "missing", "a.json"}
                                << "--output-dir needs an existing folder, not \"missing\"";
    QTest::newRow("-o empty") << QStringList{"--output-dir=", "a.json"}
                              << "--output-dir needs an existing folder, not \"\"";
    QTest::newRow("-o a file") << QStringList{"-o", "plain", "a.json"}
                               << "--output-dir needs an existing folder, not \"plain\"";
    // The first mistake in the order of the help is the one told.
    QTest::newRow("jobs before language") << QStringList{"--language", "fr", "-j", "0", "a.json"}
                                          << "--jobs needs a whole number of at least 1, not \"0\"";
    QTest::newRow("language before folder")
        << QStringList{"-o", "missing", "--language", "fr", "a.json"}
        << "--language needs de or en, not \"fr\"";
    QTest::newRow("folder before files")
        << QStringList{"-o", "missing"} << "--output-dir needs an existing folder, not \"missing\"";
}

void TestCommandLine::usageError() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);

    const commandLine::Request request =
        commandLine::parse(QStringList{QStringLiteral("brevio-convert")} + arguments);
    QCOMPARE(request.action, Action::UsageError);
    QCOMPARE(request.error, error);
    // The help follows the message, so that the user sees what is taken.
    QVERIFY(request.helpText.contains(QStringLiteral("--output-dir <DIR>")));
    QVERIFY(request.files.isEmpty());
}

void TestCommandLine::answers_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<Action>("action");
    QTest::newRow("-h") << QStringList{"-h"} << Action::ShowHelp;
    QTest::newRow("--help") << QStringList{"--help", "a.json"} << Action::ShowHelp;
    QTest::newRow("--help-all") << QStringList{"--help-all"} << Action::ShowHelp;
    // Help is asked for: a wrong value beside it does not matter.
    QTest::newRow("--help with a wrong value")
        << QStringList{"-j", "0", "--help"} << Action::ShowHelp;
    QTest::newRow("-v") << QStringList{"-v"} << Action::ShowVersion;
    QTest::newRow("--version") << QStringList{"--version", "a.json"} << Action::ShowVersion;
    QTest::newRow("help before version") << QStringList{"--version", "--help"} << Action::ShowHelp;
    // A mistake in the arguments themselves comes first.
    QTest::newRow("--help with an unknown option")
        << QStringList{"--help", "--bogus"} << Action::UsageError;
}

void TestCommandLine::answers() {
    QFETCH(QStringList, arguments);
    QFETCH(Action, action);

    const commandLine::Request request =
        commandLine::parse(QStringList{QStringLiteral("brevio-convert")} + arguments);
    QCOMPARE(request.action, action);
    QVERIFY(request.files.isEmpty());
    if (action == Action::ShowHelp)
        QVERIFY(request.helpText.startsWith(QStringLiteral("Usage: ")));
}

void TestCommandLine::helpNamesEveryOption() {
    const QString help =
        commandLine::parse(QStringList{QStringLiteral("brevio-convert"), QStringLiteral("--help")})
            .helpText;
    for (const char* option : {"-j, --jobs <N>", "-o, --output-dir <DIR>", "--json",
                               "--language <LANGUAGE>", "-h, --help", "-v, --version", "FILE..."})
        QVERIFY2(help.contains(QLatin1String(option)), option);
    // --json names every key of its records.
    QVERIFY(help.contains(QStringLiteral("file, report, converted, code, reason, warnings")));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
