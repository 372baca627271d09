// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevio-convert.exe under Wine makes the reports the Linux build makes:
// for every example, every fixture of the report tests and the whole
// bad-input corpus, the same exit status and messages, and the same
// report: pages, every text at the same place (within a point) and the
// same fonts. Only the line that names the configuration's own path
// differs ("Z:\..." against "/..."). Reports are read back on Linux with
// the shared poppler reader.

#include "pdfreport.h"
#include "winerun.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

// One point at the report's 1200 dpi.
constexpr double pointInPixels = PdfReport::dpi / 72.0;

QStringList configurationsIn(const QString& folder) {
    QStringList files;
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.json")}, QDir::Files))
        files << folder + QLatin1Char('/') + name;
    return files;
}

// Subset fonts carry a random-looking "ABCDEF+" tag of their own.
QStringList fontFamilies(const PdfReport& report) {
    QStringList names;
    for (QString name : report.fontNames())
        names << name.remove(QRegularExpression(QStringLiteral("^[A-Z]{6}\\+")));
    names.sort();
    return names;
}

// A C0 control character in the file, raw or as a "\\u00XX" escape.
bool holdsControlCharacters(const QString& configuration) {
    QFile file(configuration);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray content = file.readAll();
    for (const char byte : content)
        if (uchar(byte) < 0x20 && byte != '\n' && byte != '\r' && byte != '\t')
            return true;
    return QRegularExpression(QStringLiteral("\\\\u00[01][0-9a-fA-F]"))
        .match(QString::fromLatin1(content))
        .hasMatch();
}

QString describe(const PdfTextLine& line) {
    return QStringLiteral("\"%1\" at %2,%3")
        .arg(line.text)
        .arg(line.box.left(), 0, 'f', 0)
        .arg(line.box.top(), 0, 'f', 0);
}

} // namespace

class TestWindowsReports : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void sameReport_data();
    void sameReport();
    void archiveChecksHold();
};

void TestWindowsReports::initTestCase() {
    QVERIFY2(QFile::exists(windowsProgram(QStringLiteral("src/cli/brevio-convert.exe"))),
             "build-windows has no brevio-convert.exe: run tools/build-windows.sh");
    // The first run makes the Wine prefix, which takes a while.
    const ProgramRun version =
        runUnderWine(windowsProgram(QStringLiteral("src/cli/brevio-convert.exe")),
                     {QStringLiteral("--version")}, QDir::tempPath(), 300000);
    QVERIFY2(version.finished, "brevio-convert.exe --version did not end");
    QCOMPARE(version.status(), 0);
    QCOMPARE(version.out, QByteArray("brevio-convert " BREVIO_VERSION "\n"));
    // A Windows installation has fonts for Chinese in its font folder, as
    // Debian has WenQuanYi; a new Wine prefix has none, so it gets Debian's.
    const QString fonts = QStringLiteral(BREVIO_WINE_PREFIX "/drive_c/windows/Fonts");
    const QString chinese = QStringLiteral("/usr/share/fonts/truetype/wqy/wqy-microhei.ttc");
    QVERIFY(QDir().mkpath(fonts));
    QFile::remove(fonts + QStringLiteral("/wqy-microhei.ttc"));
    QVERIFY(QFile::copy(chinese, fonts + QStringLiteral("/wqy-microhei.ttc")));
}

void TestWindowsReports::sameReport_data() {
    QTest::addColumn<QString>("configuration");
    QStringList files =
        configurationsIn(QStringLiteral(BREVIO_SOURCE_DIR "/examples")) +
        configurationsIn(QStringLiteral(BREVIO_SOURCE_DIR "/tests/convert/data")) +
        configurationsIn(QStringLiteral(BREVIO_SOURCE_DIR "/tests/reliability/data/badinput"));
    QVERIFY(files.size() > 50);
    for (const QString& file : files)
        QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
}

void TestWindowsReports::sameReport() {
    QFETCH(QString, configuration);
    const QString name = QFileInfo(configuration).fileName();
    QTemporaryDir linuxFolder, windowsFolder;
    QVERIFY(QFile::copy(configuration, linuxFolder.filePath(name)));
    QVERIFY(QFile::copy(configuration, windowsFolder.filePath(name)));

    const ProgramRun linux = runNative(linuxConverter(), {name}, linuxFolder.path());
    const ProgramRun windows = runUnderWine(
        windowsProgram(QStringLiteral("src/cli/brevio-convert.exe")), {name}, windowsFolder.path());
    QVERIFY(linux.finished);
    QVERIFY2(windows.finished, "brevio-convert.exe did not end");
    QCOMPARE(windows.status(), linux.status());
    // Warnings and reasons name the file as given: the same words.
    QCOMPARE(QString::fromUtf8(windows.err), QString::fromUtf8(linux.err));

    const QString linuxReport =
        linuxFolder.filePath(QString(name).replace(QLatin1String(".json"), QLatin1String(".pdf")));
    const QString windowsReport = windowsFolder.filePath(
        QString(name).replace(QLatin1String(".json"), QLatin1String(".pdf")));
    QCOMPARE(QFile::exists(windowsReport), QFile::exists(linuxReport));
    if (linux.status() == 0)
        QCOMPARE(QString::fromUtf8(windows.out).trimmed(), windowsPathOf(windowsReport));
    if (!QFile::exists(linuxReport))
        return;

    const PdfReport expected(linuxReport);
    const PdfReport actual(windowsReport);
    QVERIFY(expected.isValid());
    QVERIFY(actual.isValid());
    QCOMPARE(actual.pageCount(), expected.pageCount());
    // A control character in a value is drawn as the missing-glyph box of
    // the first font that maps it: Linux's own font, and on Windows a
    // system font (most map U+0000), so that font is embedded for the box
    // too. Every other report has exactly Linux's fonts.
    const QStringList linuxFonts = fontFamilies(expected);
    const QStringList windowsFonts = fontFamilies(actual);
    if (holdsControlCharacters(configuration)) {
        for (const QString& font : linuxFonts)
            QVERIFY2(windowsFonts.contains(font), qPrintable(font));
    } else {
        QCOMPARE(windowsFonts, linuxFonts);
    }
    const QString linuxSource = linuxFolder.filePath(name);
    const QString windowsSource = windowsPathOf(windowsFolder.filePath(name));
    for (int page = 0; page < expected.pageCount(); ++page) {
        QVector<PdfTextLine> want = expected.lines(page);
        QVector<PdfTextLine> got = actual.lines(page);
        // The configuration's own path, wrapped under the title, is the one
        // text that differs: every piece of it goes.
        const auto dropPath = [page](QVector<PdfTextLine>& lines, const QString& path) {
            if (page != 0)
                return;
            lines.erase(std::remove_if(lines.begin(), lines.end(),
                                       [&](const PdfTextLine& line) {
                                           return line.text.size() > 2 && path.contains(line.text);
                                       }),
                        lines.end());
        };
        dropPath(want, linuxSource);
        dropPath(got, windowsSource);
        if (holdsControlCharacters(configuration)) {
            // The box from another font splits a line into two where poppler
            // reads it back: the same letters in the same order, and every
            // line both have at the same place.
            const auto letters = [](const QVector<PdfTextLine>& lines) {
                QString all;
                for (const PdfTextLine& line : lines)
                    all += QString(line.text).remove(QRegularExpression(QStringLiteral("\\s")));
                return all;
            };
            QCOMPARE(letters(got), letters(want));
            for (const PdfTextLine& w : want)
                for (const PdfTextLine& g : got)
                    if (g.text == w.text)
                        QVERIFY2(
                            qAbs(g.box.left() - w.box.left()) <= pointInPixels &&
                                qAbs(g.box.top() - w.box.top()) <= pointInPixels,
                            qPrintable(describe(g) + QStringLiteral(", Linux has ") + describe(w)));
            continue;
        }
        QVERIFY2(got.size() == want.size(),
                 qPrintable(QStringLiteral("page %1: %2 lines, Linux has %3\n%4")
                                .arg(page + 1)
                                .arg(got.size())
                                .arg(want.size())
                                .arg(actual.dump())));
        for (int index = 0; index < want.size(); ++index) {
            const PdfTextLine& w = want[index];
            const PdfTextLine& g = got[index];
            QVERIFY2(g.text == w.text && qAbs(g.box.left() - w.box.left()) <= pointInPixels &&
                         qAbs(g.box.top() - w.box.top()) <= pointInPixels,
                     qPrintable(QStringLiteral("page %1: %2, Linux has %3")
                                    .arg(page + 1)
                                    .arg(describe(g), describe(w))));
        }
    }
}

void TestWindowsReports::archiveChecksHold() {
    // The PDF/A-1b checks of the Linux reports, on reports made by the
    // Windows program (the script runs it through Wine).
    const ProgramRun check = runProgram(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral(BREVIO_SOURCE_DIR "/tests/convert/check-archive.py"),
         QStringLiteral(BREVIO_WINE_CONVERT_SCRIPT),
         QStringLiteral(BREVIO_SOURCE_DIR "/examples/pressure-transmitter.json"),
         QStringLiteral(BREVIO_SOURCE_DIR "/examples/multi-page-plant.json"),
         QStringLiteral(BREVIO_SOURCE_DIR "/tests/reliability/data/badinput/unicode-mix.json"),
         QStringLiteral(BREVIO_SOURCE_DIR
                        "/tests/reliability/data/badinput/every-member-string.json"),
         QStringLiteral(BREVIO_SOURCE_DIR
                        "/tests/reliability/data/badinput/configuration-missing.json"),
         QStringLiteral(BREVIO_SOURCE_DIR "/tests/convert/data/ligature-words.json")},
        wineEnvironment(), 600000);
    QVERIFY(check.finished);
    const QByteArray output = check.out + check.err;
    QVERIFY2(check.status() == 0, output.constData());
    QVERIFY2(check.out.contains("6 reports checked, 0 failures"), output.constData());
}

// A GUI application: linked with the report reader, the suite starts as the
// programs start, and their report fonts need one.
QTEST_MAIN(TestWindowsReports)
#include "tst_windowsreports.moc"
