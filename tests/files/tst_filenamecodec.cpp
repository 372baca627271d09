// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// File names that are not UTF-8 must come back byte for byte through the
// codec that Brevio's programs install for the locale.

#include "files/filenamecodec.h"

#include <QFile>
#include <QTest>

class TestFileNameCodec : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void roundTrip_data();
    void roundTrip();
    void validUtf8IsDecodedAsUsual_data();
    void validUtf8IsDecodedAsUsual();
    void escapedBytesAreLoneSurrogates();
};

void TestFileNameCodec::initTestCase() {
    FileNameCodec::useForLocale();
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8 (byte-preserving)"));
}

void TestFileNameCodec::roundTrip_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ascii") << QByteArray("/data/anlage.json");
    QTest::newRow("utf-8 umlaut") << QByteArray("/data/Geb\xc3\xa4ude.json");
    QTest::newRow("latin-1 umlaut") << QByteArray("/data/Geb\xe4ude.json");
    QTest::newRow("replacement character") << QByteArray("/data/Geb\xef\xbf\xbdude.json");
    QTest::newRow("four-byte sequence") << QByteArray("/data/\xf0\x9f\x8f\xad.json");
    QTest::newRow("cut-off sequence at the end") << QByteArray("/data/a\xe2\x82");
    QTest::newRow("cut-off sequence in the middle") << QByteArray("/data/a\xe2\x82/b.json");
    QTest::newRow("overlong slash") << QByteArray("/data/\xc0\xaf.json");
    QTest::newRow("encoded surrogate") << QByteArray("/data/\xed\xb2\x80.json");
    QTest::newRow("beyond U+10FFFF") << QByteArray("/data/\xf4\x90\x80\x80.json");
    QTest::newRow("continuation bytes alone") << QByteArray("\x80\xbf\xfe\xff");
    QTest::newRow("every high byte") << [] {
        QByteArray all;
        for (int b = 0x80; b <= 0xff; ++b)
            all.append(char(b));
        return all;
    }();
}

void TestFileNameCodec::roundTrip() {
    QFETCH(QByteArray, bytes);
    const QString name = QFile::decodeName(bytes);
    QCOMPARE(QFile::encodeName(name), bytes);
    QCOMPARE(name.toLocal8Bit(), bytes);
}

void TestFileNameCodec::validUtf8IsDecodedAsUsual_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("ascii") << QByteArray("plant.json");
    QTest::newRow("umlauts") << QByteArray("L\xc3\xbc\x66tung \xc3\x96l.json");
    QTest::newRow("cjk") << QByteArray("\xe4\xb8\x9c\xe4\xba\xac.json");
    QTest::newRow("emoji") << QByteArray("\xf0\x9f\x8f\xad.json");
    QTest::newRow("replacement character") << QByteArray("\xef\xbf\xbd");
}

void TestFileNameCodec::validUtf8IsDecodedAsUsual() {
    QFETCH(QByteArray, bytes);
    QCOMPARE(QFile::decodeName(bytes), QString::fromUtf8(bytes));
    QCOMPARE(QFile::encodeName(QString::fromUtf8(bytes)), bytes);
}

// Each byte that is not part of valid UTF-8 gets a code unit of its own
// that no valid text holds, so two different names never decode alike.
void TestFileNameCodec::escapedBytesAreLoneSurrogates() {
    const QString latin1 = QFile::decodeName("Geb\xe4ude");
    QCOMPARE(latin1.size(), 7);
    QCOMPARE(latin1.at(3).unicode(), ushort(0xDCE4));
    QVERIFY(latin1 != QFile::decodeName("Geb\xef\xbf\xbdude"));
    const QChar escaped[] = {QChar(ushort(0xDCE2)), QChar(ushort(0xDC82))};
    QCOMPARE(QFile::decodeName("\xe2\x82"), QString(escaped, 2));
}

QTEST_GUILESS_MAIN(TestFileNameCodec)
#include "tst_filenamecodec.moc"
