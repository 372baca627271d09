// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run {
    int exitCode = -1;
    bool crashed = false;
    QString out;
    QString err;
};

// The window's binary as a terminal, a cron job or an ssh session without
// a display would start it; the environment's display variables are set
// from the table, everything else is removed.
Run runBrevio(const QStringList& arguments, const QStringList& environmentSettings) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"})
        environment.remove(QString::fromLatin1(name));
    for (const QString& setting : environmentSettings)
        environment.insert(setting.section(QLatin1Char('='), 0, 0),
                           setting.section(QLatin1Char('='), 1));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(BREVIO_BINARY), arguments);
    Run run;
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished();
        run.crashed = true;
    }
    run.crashed = run.crashed || process.exitStatus() == QProcess::CrashExit;
    run.exitCode = process.exitCode();
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

const QString noDisplayLine =
    QStringLiteral("brevio: no display; brevio-convert converts files without one\n");

} // namespace

class TestWindowStart : public QObject {
    Q_OBJECT

private slots:
    void noDisplay_data();
    void noDisplay();
    void helpAllWithoutDisplay_data();
    void helpAllWithoutDisplay();
};

void TestWindowStart::noDisplay_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("environment");
    // Whether Qt itself would have found out: then its own warnings may come
    // first, but never its abort.
    QTest::addColumn<bool>("onlyOurLine");

    QTest::newRow("no DISPLAY") << QStringList() << QStringList() << true;
    QTest::newRow("no DISPLAY, files") << QStringList{"a.json", "b.json"} << QStringList() << true;
    QTest::newRow("empty DISPLAY") << QStringList() << QStringList{"DISPLAY="} << true;
    QTest::newRow("--new-window") << QStringList{"--new-window"} << QStringList() << true;
    QTest::newRow("inherited xcb") << QStringList() << QStringList{"QT_QPA_PLATFORM=xcb"} << true;
    QTest::newRow("inherited wayland, no compositor")
        << QStringList() << QStringList{"QT_QPA_PLATFORM=wayland", "XDG_RUNTIME_DIR=/nonexistent"}
        << true;
    QTest::newRow("-platform xcb") << QStringList{"-platform", "xcb"} << QStringList() << true;
    // A DISPLAY that names no server: only connecting finds that out.
    QTest::newRow("DISPLAY without a server")
        << QStringList() << QStringList{"DISPLAY=:4242"} << false;
}

void TestWindowStart::noDisplay() {
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, environment);
    QFETCH(bool, onlyOurLine);
    const Run run = runBrevio(arguments, environment);
    QVERIFY2(!run.crashed, qPrintable(run.err));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out, QString());
    if (onlyOurLine)
        QCOMPARE(run.err, noDisplayLine);
    else
        QVERIFY2(run.err.endsWith(noDisplayLine), qPrintable(run.err));
    QVERIFY2(!run.err.contains(QLatin1String("Reinstalling")), qPrintable(run.err));
}

void TestWindowStart::helpAllWithoutDisplay_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("alone") << QStringList{"--help-all"};
    QTest::newRow("with a file") << QStringList{"a.json", "--help-all"};
    QTest::newRow("with a platform") << QStringList{"-platform", "xcb", "--help-all"};
}

void TestWindowStart::helpAllWithoutDisplay() {
    QFETCH(QStringList, arguments);
    const Run run = runBrevio(arguments, {});
    QVERIFY2(!run.crashed, qPrintable(run.err));
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(!run.err.contains(QLatin1String("brevio:")), qPrintable(run.err));
    QVERIFY2(!run.err.contains(QLatin1String("Reinstalling")), qPrintable(run.err));
    QVERIFY2(run.out.startsWith(QLatin1String("Usage: ")), qPrintable(run.out));
    QVERIFY(run.out.contains(QLatin1String("[FILE...]")));
    QVERIFY(run.out.contains(QLatin1String("--new-window")));
    // Qt's own options, which only a GUI application lists.
    QVERIFY2(run.out.contains(QLatin1String("-platform")), qPrintable(run.out));
    QVERIFY(run.out.contains(QLatin1String("-reverse")));
}

QTEST_GUILESS_MAIN(TestWindowStart)
#include "tst_windowstart.moc"
