// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts the bundled example with an installed brevio-convert, named by
// BREVIO_INSTALLED_CONVERT, and reads the report back. The install and
// package checks run it on what they installed.
#include "pdfreport.h"
#include "runprogram.h"
#include "testfiles.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString installedConvert() {
    return qEnvironmentVariable("BREVIO_INSTALLED_CONVERT");
}

// As a terminal without any display runs it, with none of the build's paths.
ProgramRun run(const QStringList& arguments) {
    QProcessEnvironment environment = headlessEnvironment();
    environment.remove(QStringLiteral("LD_LIBRARY_PATH"));
    return runProgram(installedConvert(), arguments, environment, 60000);
}

} // namespace

class TestInstalledConvert : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void version();
    void convertsTheExample();
};

void TestInstalledConvert::initTestCase() {
    QVERIFY2(!installedConvert().isEmpty(), "BREVIO_INSTALLED_CONVERT names no program");
    QVERIFY2(QFileInfo(installedConvert()).isExecutable(), qPrintable(installedConvert()));
}

void TestInstalledConvert::version() {
    const ProgramRun result = run({QStringLiteral("--version")});
    QVERIFY2(result.finished && !result.crashed, qPrintable(result.describe()));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.outText(), QStringLiteral("brevio-convert " BREVIO_VERSION "\n"));
}

void TestInstalledConvert::convertsTheExample() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString json = dir.filePath(QStringLiteral("anlage.json"));
    QVERIFY(QFile::copy(exampleFile(QStringLiteral("pressure-transmitter.json")), json));
    const QString pdf = dir.filePath(QStringLiteral("anlage.pdf"));

    const ProgramRun result = run({json});
    QVERIFY2(result.finished && !result.crashed, qPrintable(result.describe()));
    // The installed program measures the example's too-wide maker name in its
    // own bundled font, as the build does.
    QCOMPARE(result.errText(),
             QStringLiteral("brevio-convert: ") + json +
                 QStringLiteral(": warning: 1 text is cut off at the column edge: "
                                "\"Hersteller: Rosenberg/Comefri/Gebhardt Nic") +
                 QChar(0x2026) + QStringLiteral("\"\n"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.outText(), pdf + QLatin1Char('\n'));

    PdfReport report(pdf);
    QVERIFY(report.isValid());
    QVERIFY2(!report.line(0, QStringLiteral("Quandel Protokoll vom:")).isNull(),
             qPrintable(report.dump()));
    QVERIFY2(!report.line(0, QStringLiteral("2026-03-17T10:15:00")).isNull(),
             qPrintable(report.dump()));
    QVERIFY2(!report.line(0, json).isNull(), qPrintable(report.dump()));
    QVERIFY2(!report.line(0, QStringLiteral("Allgemeine Einstellungen:")).isNull(),
             qPrintable(report.dump()));
    QVERIFY2(!report.lineStartingWith(0, QStringLiteral("Name: Lüftung Halle 2 – Zuluft")).isNull(),
             qPrintable(report.dump()));
}

QTEST_MAIN(TestInstalledConvert)
#include "tst_installedconvert.moc"
