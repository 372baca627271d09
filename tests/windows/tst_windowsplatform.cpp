// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// What Windows does its own way, checked on brevio-convert.exe under Wine:
// a report held open by a viewer, a second conversion over an existing
// report, names beyond the ANSI code page, drive, backslash and long
// paths, one report reached by two spellings, device names, and output
// that is UTF-8 wherever it does not go to a console.

#include "winerun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString converter() {
    return windowsProgram(QStringLiteral("src/cli/brevio-convert.exe"));
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList temporaryFolders(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral(".brevio-*")},
                                  QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

QString example(const QString& name) {
    return QStringLiteral(BREVIO_SOURCE_DIR "/examples/") + name;
}

} // namespace

class TestWindowsPlatform : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void reportHeldOpen();
    void secondConversionReplacesReport();
    void namesBeyondTheCodePage_data();
    void namesBeyondTheCodePage();
    void pathSpellings_data();
    void pathSpellings();
    void pathBeyond260Characters();
    void oneReportTwoSpellings();
    void deviceNamesRefused_data();
    void deviceNamesRefused();
    void redirectedOutputIsUtf8();
    void staleFoldersOfGoneProcesses();
};

void TestWindowsPlatform::initTestCase() {
    QVERIFY2(QFile::exists(converter()), "run tools/build-windows.sh first");
    const ProgramRun version =
        runUnderWine(converter(), {QStringLiteral("--version")}, QDir::tempPath(), 300000);
    QVERIFY2(version.status() == 0, version.err.constData());
}

void TestWindowsPlatform::reportHeldOpen() {
    // A viewer shows last week's report and keeps it open without sharing:
    // the new one cannot take its place, and says so in the system's words.
    QTemporaryDir folder;
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")),
                        folder.filePath(QStringLiteral("p.json"))));
    QVERIFY(runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path()).status() == 0);
    const QString report = folder.filePath(QStringLiteral("p.pdf"));
    const QByteArray older = contentOf(report);
    QVERIFY(older.startsWith("%PDF-"));

    StartedProgram holder(QStringLiteral(BREVIO_WINE),
                          {QStringLiteral(BREVIO_HOLDFILE), QStringLiteral("p.pdf")},
                          wineEnvironment(), folder.path());
    QVERIFY(holder.waitForStarted());
    QByteArray said;
    while (!said.contains('\n')) {
        const QByteArray more = holder.readOutput(60000);
        if (more.isEmpty())
            break;
        said += more;
    }
    QCOMPARE(said.trimmed(), QByteArray("held"));

    const ProgramRun held = runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path());
    holder.closeInput();
    QVERIFY(holder.finish(60000).finished);

    QCOMPARE(held.status(), 1);
    QVERIFY2(held.err.contains("brevio-convert: p.json: report not written: "),
             held.err.constData());
    QVERIFY2(held.err.contains("(the old report was left in place)"), held.err.constData());
    QVERIFY(held.out.isEmpty());
    QCOMPARE(contentOf(report), older);
    QCOMPARE(temporaryFolders(folder.path()), QStringList());

    // Once the viewer lets go, the next conversion replaces it.
    QCOMPARE(runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path()).status(), 0);
    QCOMPARE(temporaryFolders(folder.path()), QStringList());
}

void TestWindowsPlatform::secondConversionReplacesReport() {
    // rename() will not replace a file on Windows; every second conversion
    // of a file would fail without the system's own replacing move.
    QTemporaryDir folder;
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")),
                        folder.filePath(QStringLiteral("p.json"))));
    QCOMPARE(runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path()).status(), 0);
    QFile report(folder.filePath(QStringLiteral("p.pdf")));
    QVERIFY(report.open(QIODevice::ReadWrite | QIODevice::Truncate));
    report.write("older report");
    report.close();
    const ProgramRun second = runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path());
    QCOMPARE(second.status(), 0);
    QVERIFY(contentOf(report.fileName()).startsWith("%PDF-"));
    QCOMPARE(temporaryFolders(folder.path()), QStringList());
}

void TestWindowsPlatform::namesBeyondTheCodePage_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("German and Greek") << QStringLiteral("Bürogebäude Ω.json");
    QTest::newRow("Chinese") << QStringLiteral("東京 plant.json");
    QTest::newRow("beyond the BMP") << QStringLiteral("plant 🏭.json");
}

void TestWindowsPlatform::namesBeyondTheCodePage() {
    // argv holds only what the ANSI code page can carry ("Ω" became "O").
    QFETCH(QString, name);
    QTemporaryDir folder;
    QVERIFY(
        QFile::copy(example(QStringLiteral("pressure-transmitter.json")), folder.filePath(name)));
    const ProgramRun run = runUnderWine(converter(), {name}, folder.path());
    QVERIFY2(run.status() == 0, run.err.constData());
    const QString report =
        folder.filePath(QString(name).replace(QLatin1String(".json"), QLatin1String(".pdf")));
    QVERIFY(QFile::exists(report));
    QCOMPARE(QString::fromUtf8(run.out), windowsPathOf(report) + QLatin1Char('\n'));
}

void TestWindowsPlatform::pathSpellings_data() {
    QTest::addColumn<QString>("spelling");
    QTest::newRow("drive and backslashes") << QStringLiteral("DRIVE");
    QTest::newRow("drive and slashes") << QStringLiteral("SLASHES");
    QTest::newRow("relative with backslash") << QStringLiteral("RELATIVE");
    QTest::newRow("root of the current drive") << QStringLiteral("ROOT");
    QTest::newRow("long form") << QStringLiteral("LONG");
}

void TestWindowsPlatform::pathSpellings() {
    QFETCH(QString, spelling);
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("sub")));
    const QString file = folder.filePath(QStringLiteral("sub/p.json"));
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")), file));
    QString argument;
    if (spelling == QLatin1String("DRIVE"))
        argument = windowsPathOf(file);
    else if (spelling == QLatin1String("SLASHES"))
        argument = QStringLiteral("Z:") + file;
    else if (spelling == QLatin1String("RELATIVE"))
        argument = QStringLiteral("sub\\p.json");
    else if (spelling == QLatin1String("ROOT"))
        argument = windowsPathOf(file).mid(2);
    else
        argument = QStringLiteral("\\\\?\\") + windowsPathOf(file);
    const ProgramRun run = runUnderWine(converter(), {argument}, folder.path());
    QVERIFY2(run.status() == 0, run.err.constData());
    QVERIFY(QFile::exists(folder.filePath(QStringLiteral("sub/p.pdf"))));
    QCOMPARE(temporaryFolders(folder.filePath(QStringLiteral("sub"))), QStringList());
}

void TestWindowsPlatform::pathBeyond260Characters() {
    QTemporaryDir folder;
    QString deep = folder.path();
    while (deep.size() < 400)
        deep += QStringLiteral("/a-folder-with-a-long-name-for-the-path-limit");
    QVERIFY(QDir().mkpath(deep));
    const QString file = deep + QStringLiteral("/p.json");
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")), file));
    QVERIFY(windowsPathOf(file).size() > 260);
    const ProgramRun run = runUnderWine(converter(), {windowsPathOf(file)}, folder.path());
    QVERIFY2(run.status() == 0, run.err.constData());
    QVERIFY(QFile::exists(deep + QStringLiteral("/p.pdf")));
    QCOMPARE(temporaryFolders(deep), QStringList());
}

void TestWindowsPlatform::oneReportTwoSpellings() {
    // A folder's identity is its volume serial number and file index: two
    // spellings of one file make one report, and the second is told so.
    QTemporaryDir folder;
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")),
                        folder.filePath(QStringLiteral("p.json"))));
    const QString other = windowsPathOf(folder.filePath(QStringLiteral("p.json")));
    const ProgramRun run = runUnderWine(
        converter(), {QStringLiteral("--json"), QStringLiteral("p.json"), other}, folder.path());
    QVERIFY2(run.status() == 0, run.err.constData());
    const QList<QByteArray> records = run.out.trimmed().split('\n');
    QCOMPARE(records.size(), 2);
    QVERIFY2(records[1].contains("same report as p.json"), records[1].constData());
}

void TestWindowsPlatform::deviceNamesRefused_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("report");
    QTest::newRow("CON") << QStringLiteral("CON.json") << QStringLiteral("CON.pdf");
    QTest::newRow("com1 in lower case")
        << QStringLiteral("com1.json") << QStringLiteral("com1.pdf");
    QTest::newRow("NUL with more dots")
        << QStringLiteral("NUL.plant.json") << QStringLiteral("NUL.plant.pdf");
}

void TestWindowsPlatform::deviceNamesRefused() {
    // A report named for a device would go to the console or nowhere: it
    // is refused with the reason, and nothing is written anywhere else.
    QFETCH(QString, name);
    QFETCH(QString, report);
    QTemporaryDir folder;
    QVERIFY(
        QFile::copy(example(QStringLiteral("pressure-transmitter.json")), folder.filePath(name)));
    const ProgramRun run = runUnderWine(converter(), {name}, folder.path());
    QCOMPARE(run.status(), 1);
    QVERIFY2(
        run.err.contains(QStringLiteral("report not written: \"%1\" is a device name on Windows")
                             .arg(report)
                             .toUtf8()),
        run.err.constData());
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{name});
}

void TestWindowsPlatform::redirectedOutputIsUtf8() {
    // Not a console: the list, the messages and --json are UTF-8 bytes,
    // "…" included (the ANSI code page would write 0x85).
    QTemporaryDir folder;
    QVERIFY(QFile::copy(example(QStringLiteral("multi-page-plant.json")),
                        folder.filePath(QStringLiteral("Ω.json"))));
    const ProgramRun text = runUnderWine(converter(), {QStringLiteral("Ω.json")}, folder.path());
    QCOMPARE(text.status(), 0);
    QVERIFY2(text.err.contains("Nic\xe2\x80\xa6\""), text.err.constData());
    QVERIFY(!text.err.contains('\x85'));
    QVERIFY(text.out.endsWith("\\\xce\xa9.pdf\n"));
    QVERIFY(!text.out.contains('\r'));
    const ProgramRun json = runUnderWine(
        converter(), {QStringLiteral("--json"), QStringLiteral("Ω.json")}, folder.path());
    QCOMPARE(json.status(), 0);
    QVERIFY2(json.out.startsWith("{\"file\": \"\xce\xa9.json\""), json.out.constData());
    QVERIFY(json.err.isEmpty());
}

void TestWindowsPlatform::staleFoldersOfGoneProcesses() {
    // A folder left by a process that is gone (its record names a process
    // id that runs no more, and nothing holds the record's lock) goes with
    // the next conversion in that folder; one that holds anything but a
    // report and the record stays, whoever made it.
    QTemporaryDir folder;
    QVERIFY(QFile::copy(example(QStringLiteral("pressure-transmitter.json")),
                        folder.filePath(QStringLiteral("p.json"))));
    const auto leave = [&](const QString& name, const QStringList& files) {
        QVERIFY(QDir(folder.path()).mkdir(name));
        QFile owner(folder.filePath(name + QStringLiteral("/.owner")));
        QVERIFY(owner.open(QIODevice::WriteOnly));
        owner.write("brevio 4000000 132000000000000000\n");
        owner.close();
        for (const QString& file : files) {
            QFile left(folder.filePath(name + QLatin1Char('/') + file));
            QVERIFY(left.open(QIODevice::WriteOnly));
            left.write("%PDF-1.4 cut short");
        }
    };
    leave(QStringLiteral(".brevio-Gone01"), {QStringLiteral("p.pdf")});
    leave(QStringLiteral(".brevio-Kept01"), {QStringLiteral("p.pdf"), QStringLiteral("notes.txt")});
    const ProgramRun run = runUnderWine(converter(), {QStringLiteral("p.json")}, folder.path());
    QVERIFY2(run.status() == 0, run.err.constData());
    QCOMPARE(temporaryFolders(folder.path()), QStringList{QStringLiteral(".brevio-Kept01")});
}

QTEST_GUILESS_MAIN(TestWindowsPlatform)
#include "tst_windowsplatform.moc"
