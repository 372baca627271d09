// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "runprogram.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

namespace {

// The window's binary as a terminal, a cron job or an ssh session without
// a display would start it; the environment's display variables are set
// from the table, everything else is removed.
ProgramRun runBrevio(const QStringList& arguments, const QStringList& environmentSettings) {
    QProcessEnvironment environment = headlessEnvironment();
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    for (const QString& setting : environmentSettings)
        environment.insert(setting.section(QLatin1Char('='), 0, 0),
                           setting.section(QLatin1Char('='), 1));
    return runProgram(QStringLiteral(BREVIO_BINARY), arguments, environment, 30000);
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
    const ProgramRun run = runBrevio(arguments, environment);
    QVERIFY2(run.finished && !run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.outText(), QString());
    const QString err = run.errText();
    if (onlyOurLine)
        QCOMPARE(err, noDisplayLine);
    else
        QVERIFY2(err.endsWith(noDisplayLine), qPrintable(err));
    QVERIFY2(!err.contains(QLatin1String("Reinstalling")), qPrintable(err));
}

void TestWindowStart::helpAllWithoutDisplay_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("alone") << QStringList{"--help-all"};
    QTest::newRow("with a file") << QStringList{"a.json", "--help-all"};
    QTest::newRow("with a platform") << QStringList{"-platform", "xcb", "--help-all"};
}

void TestWindowStart::helpAllWithoutDisplay() {
    QFETCH(QStringList, arguments);
    const ProgramRun run = runBrevio(arguments, {});
    QVERIFY2(run.finished && !run.crashed, qPrintable(run.describe()));
    QCOMPARE(run.exitCode, 0);
    const QString out = run.outText();
    const QString err = run.errText();
    QVERIFY2(!err.contains(QLatin1String("brevio:")), qPrintable(err));
    QVERIFY2(!err.contains(QLatin1String("Reinstalling")), qPrintable(err));
    QVERIFY2(out.startsWith(QLatin1String("Usage: ")), qPrintable(out));
    QVERIFY(out.contains(QLatin1String("[FILE...]")));
    QVERIFY(out.contains(QLatin1String("--new-window")));
    // Qt's own options, which only a GUI application lists.
    QVERIFY2(out.contains(QLatin1String("-platform")), qPrintable(out));
    QVERIFY(out.contains(QLatin1String("-reverse")));
}

QTEST_GUILESS_MAIN(TestWindowStart)
#include "tst_windowstart.moc"
