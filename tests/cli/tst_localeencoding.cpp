// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// brevio-convert in a locale that is not UTF-8 (French, ISO 8859-1): the
// system's messages are text in --json, and standard error is in the
// locale's encoding throughout, names byte for byte and characters the
// locale cannot encode as escapes.

#include "files/nameencoding.h"
#include "runprogram.h"
#include "testfiles.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

const char latinLocale[] = "fr_FR.ISO-8859-1";

QProcessEnvironment latinEnvironment() {
    QProcessEnvironment environment = headlessEnvironment();
    for (const char* name : {"LANG", "LC_ALL", "LC_MESSAGES", "LC_CTYPE", "LANGUAGE"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("LC_ALL"), QString::fromLatin1(latinLocale));
    return environment;
}

// A file's name from its bytes, through the byte-keeping codec.
QString nameFromBytes(const QByteArray& bytes) {
    return QFile::decodeName(bytes);
}

QByteArray configurationNamed(const QString& name) {
    return QJsonDocument(QJsonObject{{QStringLiteral("configuration"),
                                      QJsonObject{{QStringLiteral("name"), name}}}})
        .toJson();
}

// brevio-convert as the user nobody in the Latin-1 locale, from folder,
// converting a.json there into the folder closed/, which nobody may write
// to: the system refuses with "Permission non accordée".
ProgramRun intoClosedFolder(const QString& folder, const QStringList& options) {
    const QString file = writeFile(folder, QStringLiteral("a.json"), "{\"configuration\": {}}");
    const QString closed = folder + QStringLiteral("/closed");
    if (!QDir().mkdir(closed) ||
        !QFile::setPermissions(closed, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                           QFile::ExeOther) ||
        !QFile::setPermissions(file, QFile::permissions(file) | QFile::ReadOther))
        return ProgramRun();
    openForEveryone(folder);
    const QStringList command =
        unprivileged(converterProgram(),
                     options + QStringList{QStringLiteral("-o"), closed, QStringLiteral("a.json")});
    return runProgram(command.first(), command.mid(1), latinEnvironment(), 120000, folder);
}

} // namespace

class TestLocaleEncoding : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void toolkitTakesEveryLocaleForUtf8();
    void jsonReasonIsText();
    void textReasonInTheLocale();
    void namesKeepTheirBytes();
    void unencodableTextIsEscaped();

private:
    QString converter = converterProgram();
};

void TestLocaleEncoding::initTestCase() {
    // The programs' own codec (this test runs in a UTF-8 locale), so that
    // names that are not UTF-8 reach the files and arguments byte for byte.
    nameEncoding::keepNamesExact();
    // tools/install-packages.sh test makes the locale.
    const ProgramRun locales = runProgram(QStringLiteral("locale"), {QStringLiteral("-a")});
    QVERIFY2(locales.out.split('\n').contains("fr_FR.iso88591"),
             "the fr_FR.ISO-8859-1 locale is missing: run tools/install-packages.sh test");
}

// Why brevio looks at the C library's character set itself: Qt 5.15,
// built with ICU, names UTF-8 as the locale's codec in every locale.
void TestLocaleEncoding::toolkitTakesEveryLocaleForUtf8() {
    const ProgramRun run = runProgram(QStringLiteral(BREVIO_LOCALE_PROBE), {}, latinEnvironment());
    QCOMPARE(run.status(), 0);
    QCOMPARE(run.out, QByteArray("toolkit UTF-8, C library ISO-8859-1\n"));
}

// "Permission non accordée" through a folder nobody may write to: the
// reason is the French text, not "\udce9" escapes of its Latin-1 bytes.
void TestLocaleEncoding::jsonReasonIsText() {
    QTemporaryDir dir;
    const ProgramRun run = intoClosedFolder(dir.path(), {QStringLiteral("--json")});
    QCOMPARE(run.status(), 1);
    QVERIFY2(!run.out.contains("\\udc"), run.out.constData());
    const QJsonObject record = QJsonDocument::fromJson(run.out).object();
    QCOMPARE(record.value(QStringLiteral("reason")).toString(),
             QStringLiteral("report not written: Permission non accordée"));
}

void TestLocaleEncoding::textReasonInTheLocale() {
    QTemporaryDir dir;
    const ProgramRun run = intoClosedFolder(dir.path(), {});
    QCOMPARE(run.status(), 1);
    QCOMPARE(run.err, QByteArray("brevio-convert: a.json: report not written: Permission non "
                                 "accord\xe9"
                                 "e\n"));
}

// A Latin-1 name and a UTF-8 name side by side: each is printed as the
// bytes it has, the report of the first is written under its own bytes,
// and in --json each is the text the locale reads.
void TestLocaleEncoding::namesKeepTheirBytes() {
    QTemporaryDir dir;
    const QByteArray latin("caf\xe9");
    const QByteArray utf8("caf\xc3\xa9");
    writeFile(dir.path(), nameFromBytes(latin + ".json"), "{\"configuration\": {}}");
    writeFile(dir.path(), nameFromBytes(utf8 + ".json"), QByteArray());
    const QStringList names{nameFromBytes(latin + ".json"), nameFromBytes(utf8 + ".json")};
    const ProgramRun text = runProgram(converter, names, latinEnvironment(), 120000, dir.path());
    QCOMPARE(text.status(), 1);
    QCOMPARE(text.out, QFile::encodeName(dir.path()) + '/' + latin + ".pdf\n");
    QCOMPARE(text.err, "brevio-convert: " + utf8 + ".json: empty file\n");
    QVERIFY(QFileInfo::exists(dir.filePath(nameFromBytes(latin + ".pdf"))));

    const ProgramRun json = runProgram(converter, QStringList{QStringLiteral("--json")} + names,
                                       latinEnvironment(), 120000, dir.path());
    QCOMPARE(json.status(), 1);
    const QList<QByteArray> lines = json.out.split('\n');
    QCOMPARE(lines.size(), 3);
    QCOMPARE(QJsonDocument::fromJson(lines[0]).object().value(QStringLiteral("file")).toString(),
             QStringLiteral("café.json"));
    QCOMPARE(QJsonDocument::fromJson(lines[1]).object().value(QStringLiteral("file")).toString(),
             QStringLiteral("cafÃ©.json"));
}

// A value cut off at its column, with a letter Latin-1 has, an ellipsis and
// Chinese it has not: one line, all of it in Latin-1.
void TestLocaleEncoding::unencodableTextIsEscaped() {
    QTemporaryDir dir;
    writeFile(
        dir.path(), QStringLiteral("a.json"),
        configurationNamed(QStringLiteral("Grünwald … 東京 ") + QString(200, QLatin1Char('x'))));
    const ProgramRun run =
        runProgram(converter, {QStringLiteral("a.json")}, latinEnvironment(), 120000, dir.path());
    QCOMPARE(run.status(), 0);
    const QList<QByteArray> lines = run.err.split('\n');
    QVERIFY2(lines.size() >= 2, run.err.constData());
    const QByteArray warning = lines.first();
    QVERIFY2(warning.startsWith("brevio-convert: a.json: warning: "), warning.constData());
    QVERIFY2(warning.contains("\"Name: Gr\xfcnwald \\u2026 \\u6771\\u4eac xxx"),
             warning.constData());
    // The cut is marked with an escaped ellipsis too.
    QVERIFY2(warning.contains("xx\\u2026\""), warning.constData());
    // Nothing in UTF-8: no byte of a multi-byte sequence's lead.
    for (const char byte : run.err)
        QVERIFY2(uchar(byte) < 0xC2 || uchar(byte) == 0xFC, run.err.constData());
}

QTEST_MAIN(TestLocaleEncoding)
#include "tst_localeencoding.moc"
