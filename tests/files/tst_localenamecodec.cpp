// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The locale's own character set, byte-keeping: names decode as the locale
// reads them and go back byte for byte, bytes the set has no character for
// included; characters it cannot encode are counted.

#include "files/localenamecodec.h"

#include <QTest>

class TestLocaleNameCodec : public QObject {
    Q_OBJECT

private slots:
    void decodesAsTheLocaleReads_data();
    void decodesAsTheLocaleReads();
    void everyByteComesBack_data();
    void everyByteComesBack();
    void unencodableCharactersAreCounted_data();
    void unencodableCharactersAreCounted();
    void knowsTheSets();
};

void TestLocaleNameCodec::decodesAsTheLocaleReads_data() {
    QTest::addColumn<QByteArray>("codeset");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("Latin-1") << QByteArray("ISO-8859-1") << QByteArray("caf\xe9")
                             << QStringLiteral("café");
    // UTF-8 bytes read in Latin-1 are two characters each, as an ISO 8859-1
    // terminal shows them.
    QTest::newRow("UTF-8 bytes in Latin-1")
        << QByteArray("ISO-8859-1") << QByteArray("caf\xc3\xa9") << QStringLiteral("cafÃ©");
    QTest::newRow("Latin-9 euro") << QByteArray("ISO-8859-15") << QByteArray("\xa4")
                                  << QStringLiteral("€");
    QTest::newRow("KOI8-R") << QByteArray("KOI8-R") << QByteArray("\xf0\xd2\xc9\xd7\xc5\xd4")
                            << QStringLiteral("Привет");
    QTest::newRow("EUC-JP") << QByteArray("EUC-JP") << QByteArray("\xc5\xec\xb5\xfe")
                            << QStringLiteral("東京");
    // A byte no character of the set starts: kept as an escape, and the
    // rest read as usual.
    QTest::newRow("EUC-JP, stray byte")
        << QByteArray("EUC-JP") << QByteArray("a\xff\xc5\xec")
        << QStringLiteral("a") + QChar(0xDCFF) + QStringLiteral("東");
    QTest::newRow("EUC-JP, cut sequence") << QByteArray("EUC-JP") << QByteArray("\xc5\xec\xb5")
                                          << QStringLiteral("東") + QChar(0xDCB5);
    QTest::newRow("ASCII") << QByteArray("ISO-8859-1") << QByteArray("plain.json")
                           << QStringLiteral("plain.json");
}

void TestLocaleNameCodec::decodesAsTheLocaleReads() {
    QFETCH(QByteArray, codeset);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const LocaleNameCodec codec(codeset);
    QCOMPARE(codec.toUnicode(bytes), text);
    QCOMPARE(codec.fromUnicode(text), bytes);
}

void TestLocaleNameCodec::everyByteComesBack_data() {
    QTest::addColumn<QByteArray>("codeset");
    QTest::newRow("ISO-8859-1") << QByteArray("ISO-8859-1");
    QTest::newRow("ISO-8859-7") << QByteArray("ISO-8859-7");
    QTest::newRow("KOI8-R") << QByteArray("KOI8-R");
    QTest::newRow("EUC-JP") << QByteArray("EUC-JP");
    QTest::newRow("GB18030") << QByteArray("GB18030");
}

// Every byte value alone and in pairs: whatever a name holds, the name
// given back is the same file.
void TestLocaleNameCodec::everyByteComesBack() {
    QFETCH(QByteArray, codeset);
    const LocaleNameCodec codec(codeset);
    QByteArray all;
    for (int byte = 1; byte < 256; ++byte)
        all.append(char(byte));
    QCOMPARE(codec.fromUnicode(codec.toUnicode(all)), all);
    for (int first = 0x80; first < 256; first += 7)
        for (int second = 1; second < 256; second += 3) {
            QByteArray pair;
            pair.append(char(first)).append(char(second)).append('x');
            QCOMPARE(codec.fromUnicode(codec.toUnicode(pair)), pair);
        }
}

void TestLocaleNameCodec::unencodableCharactersAreCounted_data() {
    QTest::addColumn<QByteArray>("codeset");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("invalid");
    QTest::newRow("all there") << QByteArray("ISO-8859-1") << QStringLiteral("Grün")
                               << QByteArray("Gr\xfcn") << 0;
    QTest::newRow("ellipsis") << QByteArray("ISO-8859-1") << QStringLiteral("a…b")
                              << QByteArray("a?b") << 1;
    QTest::newRow("outside the BMP, one character")
        << QByteArray("ISO-8859-1") << QStringLiteral("x\U0001F600y") << QByteArray("x?y") << 1;
    QTest::newRow("escaped byte beside")
        << QByteArray("ISO-8859-1") << QChar(0xDCE9) + QStringLiteral("東") << QByteArray("\xe9?")
        << 1;
    QTest::newRow("Latin in Japanese")
        << QByteArray("EUC-JP") << QStringLiteral("東ü") << QByteArray("\xc5\xec\x8f\xab\xe4") << 0;
}

void TestLocaleNameCodec::unencodableCharactersAreCounted() {
    QFETCH(QByteArray, codeset);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QFETCH(int, invalid);
    const LocaleNameCodec codec(codeset);
    QTextCodec::ConverterState state;
    QCOMPARE(codec.fromUnicode(text.constData(), text.size(), &state), bytes);
    QCOMPARE(state.invalidChars, invalid);
    QCOMPARE(codec.canEncode(text), invalid == 0);
}

void TestLocaleNameCodec::knowsTheSets() {
    QVERIFY(LocaleNameCodec::supports("ISO-8859-1"));
    QVERIFY(LocaleNameCodec::supports("EUC-JP"));
    QVERIFY(!LocaleNameCodec::supports("NO-SUCH-SET"));
    // A set iconv does not know still keeps every byte, as escapes.
    const LocaleNameCodec unknown("NO-SUCH-SET");
    const QByteArray bytes("a\xe9");
    QCOMPARE(unknown.toUnicode(bytes), QStringLiteral("a") + QChar(0xDCE9));
    QCOMPARE(unknown.fromUnicode(unknown.toUnicode(bytes)), bytes);
}

QTEST_GUILESS_MAIN(TestLocaleNameCodec)
#include "tst_localenamecodec.moc"
