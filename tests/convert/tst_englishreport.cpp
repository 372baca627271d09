// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The report in English: the same example drawn once in German (the
// default) and once after the English texts are installed; every label
// stands where its German one stands, and no German word of the program is
// left.

#include "convert/bootstrap.h"
#include "convert/conversionoutcome.h"
#include "jobrunner.h"
#include "pdfreport.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <memory>

namespace {

// The first line on any page that starts with prefix, and its page.
QPair<int, PdfTextLine> find(const PdfReport& report, const QString& prefix) {
    for (int page = 0; page < report.pageCount(); ++page) {
        const PdfTextLine line = report.lineStartingWith(page, prefix);
        if (!line.isNull())
            return {page, line};
    }
    return {-1, PdfTextLine()};
}

// Every word of the report, split at whatever is not a letter.
QStringList allWords(const PdfReport& report) {
    static const QRegularExpression notLetters(QStringLiteral("[^\\p{L}]+"));
    QStringList words;
    for (int page = 0; page < report.pageCount(); ++page)
        for (const QString& text : report.texts(page))
            words += text.split(notLetters, Qt::SkipEmptyParts);
    return words;
}

// English as the program installs it, except that one text, given by its
// German source, ends in a character no font has (a private-use character
// of plane 16).
class EnglishWithUndrawableText : public QTranslator {
public:
    explicit EnglishWithUndrawableText(const QByteArray& source) : marked(source) {}

    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override {
        const QString english = QTranslator::translate(context, sourceText, disambiguation, n);
        if (english.isEmpty() || marked != sourceText)
            return english;
        return english + QStringLiteral("\U0010FFFD");
    }

private:
    QByteArray marked;
};

} // namespace

using Reason = ConversionOutcome::Reason;
Q_DECLARE_METATYPE(Reason)

class TestEnglishReport : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void labelAtGermanPosition_data();
    void labelAtGermanPosition();
    void noGermanWordLeft_data();
    void noGermanWordLeft();
    void unknownMakerInEnglish();
    void labelsCheckedAsDrawn_data();
    void labelsCheckedAsDrawn();
    void unknownLanguageRefused();

private:
    QTemporaryDir dir;
    std::unique_ptr<PdfReport> german;
    std::unique_ptr<PdfReport> english;
};

void TestEnglishReport::initTestCase() {
    QVERIFY(dir.isValid());
    // Same name length in both folders, so the path line is as wide.
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("de")));
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("en")));
    const QString example = exampleFile(QStringLiteral("pressure-transmitter.json"));
    const QString germanJson = copyInto(example, dir.filePath(QStringLiteral("de")));
    const QString englishJson = copyInto(example, dir.filePath(QStringLiteral("en")));

    QVERIFY(runJob(germanJson).finished());
    QVERIFY(bootstrap::useLanguage(QStringLiteral("en")));
    QVERIFY(runJob(englishJson).finished());
    german.reset(new PdfReport(reportPathFor(germanJson)));
    english.reset(new PdfReport(reportPathFor(englishJson)));
    QVERIFY(german->isValid());
    QVERIFY(english->isValid());
    QCOMPARE(english->pageCount(), german->pageCount());
}

void TestEnglishReport::labelAtGermanPosition_data() {
    QTest::addColumn<QString>("germanLine");
    QTest::addColumn<QString>("englishLine");
    const char* const pairs[][2] = {
        {"Quandel Protokoll vom:", "Quandel report of:"},
        {"Allgemeine Einstellungen:", "General settings:"},
        {"Name: ", "Name: "},
        {"Ort: ", "Location: "},
        {"Spannungsuntergrenze [V]: ", "Lower voltage limit [V]: "},
        {"Versionsnummer: ", "Version number: "},
        {"Einheitensystem: Si", "Unit system: Si"},
        {"Höhe [m]: ", "Altitude [m]: "},
        {"Ausgang 1: PRESSURE", "Output 1: PRESSURE"},
        {"Einheit: Pa", "Unit: Pa"},
        {"Messbereich Untergrenze: ", "Measuring range lower limit: "},
        {"Messbereich Obergrenze: ", "Measuring range upper limit: "},
        {"Ausgang 2: VOLUMEFLOW", "Output 2: VOLUMEFLOW"},
        {"K-Faktor: ", "K factor: "},
        {"Hersteller: ", "Manufacturer: "},
        {"Ansprechzeit [s]: ", "Response time [s]: "},
        {"Display:", "Display:"},
        {"Status: Display vorhanden", "Status: Display present"},
        {"Helligkeit[%]: 80", "Brightness[%]: 80"},
        {"Rotation[°]: 180", "Rotation[°]: 180"},
        {"TLF aktiviert: Ja", "TLF enabled: Yes"},
        {"TLF:", "TLF:"},
        {"Messgröße: ", "Measured variable: "},
        {"Enabled: ", "Enabled: "},
        {"Farbe Bereich 1: Grün", "Colour range 1: Green"},
        {"Farbe Bereich 2: Gelb", "Colour range 2: Yellow"},
        {"Farbe Bereich 3: Rot", "Colour range 3: Red"},
        {"Relais 1: ", "Relay 1: "},
        {"Zustand 1: Geöffnet", "State 1: Open"},
        {"Zustand 2: Geschlossen", "State 2: Closed"},
        {"Modbus", "Modbus"},
        {"Offset: ", "Offset: "},
        {"Baudrate: ", "Baud rate: "},
        {"Adresse: ", "Address: "},
        {"Übertragungsart: ", "Transmission mode: "},
        {"Parität: ", "Parity: "},
        {"Service:", "Service:"},
        {"Letzter Service: ", "Last service: "},
        {"Nächster Service: 365 Tage", "Next service: 365 days"},
        {"Letzte Kalibrierung: ", "Last calibration: "},
        {"Nächste Kalibirierung: ", "Next calibration: "},
    };
    for (const auto& pair : pairs)
        QTest::newRow(pair[1]) << QString::fromUtf8(pair[0]) << QString::fromUtf8(pair[1]);
}

void TestEnglishReport::labelAtGermanPosition() {
    QFETCH(QString, germanLine);
    QFETCH(QString, englishLine);
    const QPair<int, PdfTextLine> foundDe = find(*german, germanLine);
    const QPair<int, PdfTextLine> foundEn = find(*english, englishLine);
    const PdfTextLine& de = foundDe.second;
    const PdfTextLine& en = foundEn.second;
    QVERIFY2(!de.isNull(), qPrintable(german->dump()));
    QVERIFY2(!en.isNull(), qPrintable(english->dump()));
    QCOMPARE(foundEn.first, foundDe.first);
    // The same box: the same left edge and the same line.
    QVERIFY2(qAbs(en.box.left() - de.box.left()) < 1.0 && qAbs(en.box.top() - de.box.top()) < 1.0,
             qPrintable(QStringLiteral("%1 at %2,%3; %4 at %5,%6")
                            .arg(en.text)
                            .arg(en.box.left())
                            .arg(en.box.top())
                            .arg(de.text)
                            .arg(de.box.left())
                            .arg(de.box.top())));
}

void TestEnglishReport::noGermanWordLeft_data() {
    QTest::addColumn<QString>("word");
    // Words of the program, none of which the example's own values hold.
    for (const char* word : {"Protokoll",
                             "Allgemeine",
                             "Einstellungen",
                             "Ort",
                             "Spannungsuntergrenze",
                             "Versionsnummer",
                             "Einheitensystem",
                             "Höhe",
                             "Ausgang",
                             "Einheit",
                             "Messbereich",
                             "Untergrenze",
                             "Obergrenze",
                             "Faktor",
                             "Hersteller",
                             "Ansprechzeit",
                             "vorhanden",
                             "Helligkeit",
                             "aktiviert",
                             "Ja",

                             "Messgröße",
                             "Farbe",
                             "Bereich",
                             "Grün",
                             "Gelb",
                             "Rot",
                             "Relais",
                             "Schwellwert",
                             "Zustand",
                             "Geöffnet",
                             "Geschlossen",
                             "Baudrate",
                             "Adresse",
                             "Übertragungsart",
                             "Parität",
                             "Letzter",
                             "Nächster",
                             "Tage",
                             "Letzte",
                             "Kalibrierung",
                             "Nächste",
                             "Kalibirierung"})
        QTest::newRow(word) << QString::fromUtf8(word);
}

void TestEnglishReport::noGermanWordLeft() {
    QFETCH(QString, word);
    // The German report has it, as a check of the word list itself.
    QVERIFY(allWords(*german).contains(word));
    QVERIFY2(!allWords(*english).contains(word), qPrintable(english->dump()));
}

void TestEnglishReport::unknownMakerInEnglish() {
    // A fan maker the device does not know, in the second channel.
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    const int at = text.lastIndexOf("\"producer\": 0");
    QVERIFY(at > 0);
    QByteArray changed = text;
    changed.replace(at, int(qstrlen("\"producer\": 0")), "\"producer\": 7");
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("maker")));
    const QString json =
        writeFile(dir.filePath(QStringLiteral("maker")), QStringLiteral("anlage.json"), changed);
    QVERIFY(runJob(json).finished());
    const PdfReport report(reportPathFor(json));
    const QPair<int, PdfTextLine> unknown =
        find(report, QStringLiteral("Manufacturer: Unknown: Id 7"));
    const QPair<int, PdfTextLine> known = find(*english, QStringLiteral("Manufacturer: "));
    QVERIFY2(!unknown.second.isNull(), qPrintable(report.dump()));
    QCOMPARE(unknown.first, known.first);
    QVERIFY(qAbs(unknown.second.box.top() - known.second.box.top()) < 1.0);
}

void TestEnglishReport::labelsCheckedAsDrawn_data() {
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<Reason>("reason");
    QTest::newRow("English as installed") << QByteArray() << Reason::Converted;
    // The labels every report draws, which tell whether its fonts can draw
    // anything at all: each is asked about as it is drawn, in English here.
    QTest::newRow("Quandel report of:")
        << QByteArray("Quandel Protokoll vom:\n") << Reason::LabelsUndrawable;
    QTest::newRow("General settings:")
        << QByteArray("Allgemeine Einstellungen:") << Reason::LabelsUndrawable;
    QTest::newRow("Name: ") << QByteArray("Name: ") << Reason::LabelsUndrawable;
    QTest::newRow("Altitude [m]: ") << QByteArray("H\xc3\xb6he [m]: ") << Reason::LabelsUndrawable;
    QTest::newRow("Modbus") << QByteArray("Modbus") << Reason::LabelsUndrawable;
}

void TestEnglishReport::labelsCheckedAsDrawn() {
    QFETCH(QByteArray, source);
    QFETCH(Reason, reason);
    // Installed last, so asked first; it leaves the application as it goes.
    EnglishWithUndrawableText translator(source);
    QVERIFY(translator.load(QStringLiteral(":/translations/brevio_en.qm")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTemporaryDir folder;
    const QString json =
        copyInto(exampleFile(QStringLiteral("pressure-transmitter.json")), folder.path());
    const JobOutcome outcome = runJob(json);
    QVERIFY(outcome.finished());
    QCOMPARE(outcome.recorded.reason, reason);
    // The report is written either way, and the file's own text is all
    // drawable: only the label makes the difference.
    QVERIFY(QFileInfo(reportPathFor(json)).isFile());
    QCOMPARE(outcome.recorded.undrawable, QVector<uint>());
}

void TestEnglishReport::unknownLanguageRefused() {
    QVERIFY(bootstrap::isLanguage(QStringLiteral("de")));
    QVERIFY(bootstrap::isLanguage(QStringLiteral("en")));
    for (const char* other : {"fr", "EN", "", "en_US", "deutsch"}) {
        QVERIFY(!bootstrap::isLanguage(QString::fromUtf8(other)));
        QVERIFY(!bootstrap::useLanguage(QString::fromUtf8(other)));
    }
}

QTEST_MAIN(TestEnglishReport)
#include "tst_englishreport.moc"
