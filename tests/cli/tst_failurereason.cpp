// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// How brevio-convert words what a job recorded about itself: every reason a
// job can end with, and the warnings of a converted file.

#include "cli/failurereason.h"
#include "convert/conversionoutcome.h"

#include <QMetaEnum>
#include <QSet>
#include <QTest>

using Reason = ConversionOutcome::Reason;
Q_DECLARE_METATYPE(Reason)

class TestFailureReason : public QObject {
    Q_OBJECT

private slots:
    void reason_data();
    void reason();
    void everyReasonWorded();
    void decidedWithoutJob_data();
    void decidedWithoutJob();
    void warnings_data();
    void warnings();
};

void TestFailureReason::reason_data() {
    QTest::addColumn<Reason>("why");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<bool>("olderKept");
    QTest::addColumn<QString>("expected");
    const QString notWritten = QStringLiteral("report not written");
    const QString leftInPlace =
        QStringLiteral("report not written (the old report was left in place)");
    QTest::newRow("converted") << Reason::Converted << QString() << false << QString();
    QTest::newRow("name") << Reason::NotJsonName << QString() << false
                          << "not a \".json\" file name";
    QTest::newRow("open") << Reason::CannotOpen << "No such file or directory" << false
                          << "cannot be opened: No such file or directory";
    QTest::newRow("empty") << Reason::EmptyFile << QString() << false << "empty file";
    QTest::newRow("memory") << Reason::OutOfMemory << QString() << false
                            << "not converted (out of memory)";
    QTest::newRow("file size limit") << Reason::FileSizeLimit << "File too large" << false
                                     << "report not written (file size limit)";
    QTest::newRow("file size limit, older report")
        << Reason::FileSizeLimit << "File too large" << true
        << "report not written (file size limit; the old report was left in place)";
    QTest::newRow("never ran") << Reason::NotRun << QString() << false
                               << "not converted (no thread could be started)";
    QTest::newRow("exception") << Reason::UnexpectedError << QString() << false
                               << "not converted (unexpected error)";
    QTest::newRow("exception with words") << Reason::UnexpectedError << "std::bad_cast" << false
                                          << "not converted (unexpected error: std::bad_cast)";
    QTest::newRow("report taken") << Reason::ReportTaken << "a.json" << false
                                  << "same report as a.json";
    QTest::newRow("no folder") << Reason::NoTemporaryFolder << "Permission denied" << false
                               << "report not written: Permission denied";
    QTest::newRow("read-only folder") << Reason::NoTemporaryFolder << "Read-only file system"
                                      << false << "report not written: Read-only file system";
    QTest::newRow("no folder, older kept")
        << Reason::NoTemporaryFolder << "Permission denied" << true
        << "report not written: Permission denied (the old report was left in place)";
    QTest::newRow("painter") << Reason::PainterFailed << QString() << false << notWritten;
    QTest::newRow("incomplete") << Reason::ReportIncomplete << QString() << false << notWritten;
    QTest::newRow("incomplete, older kept")
        << Reason::ReportIncomplete << QString() << true << leftInPlace;
    QTest::newRow("commit") << Reason::CommitFailed << "Is a directory" << false
                            << "report not written: Is a directory";
    QTest::newRow("labels") << Reason::LabelsUndrawable << QString() << false
                            << "report not written (no font can draw its text)";
}

void TestFailureReason::reason() {
    QFETCH(Reason, why);
    QFETCH(QString, detail);
    QFETCH(bool, olderKept);
    QFETCH(QString, expected);
    ConversionOutcome outcome;
    outcome.fail(why, detail);
    outcome.olderReportKept = olderKept;
    QCOMPARE(failureReason::forOutcome(outcome), expected);
    QCOMPARE(outcome.converted(), expected.isEmpty());
}

// Every code has its own words and its own key: a reason added later cannot
// fall through to a sentence that fits another, nor share a key.
void TestFailureReason::everyReasonWorded() {
    const QMetaEnum reasons = QMetaEnum::fromType<Reason>();
    QSet<QString> sentences;
    QSet<QString> codes;
    for (int i = 0; i < reasons.keyCount(); ++i) {
        ConversionOutcome outcome;
        outcome.fail(Reason(reasons.value(i)));
        const QString code = failureReason::code(outcome);
        QCOMPARE(code, QString::fromLatin1(reasons.key(i)));
        codes.insert(code);
        if (outcome.converted()) {
            QVERIFY(failureReason::forOutcome(outcome).isEmpty());
            continue;
        }
        const QString sentence = failureReason::forOutcome(outcome);
        QVERIFY2(!sentence.isEmpty(), reasons.key(i));
        sentences.insert(sentence);
    }
    QCOMPARE(codes.size(), reasons.keyCount());
    // The four reasons of a report not written without the system's words
    // say the same; every other reads differently.
    QCOMPARE(sentences.size(), reasons.keyCount() - 1 - 3);
}

void TestFailureReason::decidedWithoutJob_data() {
    QTest::addColumn<ConversionOutcome>("outcome");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("expected");
    QTest::newRow("working folder gone") << failureReason::workingFolderGone() << "CannotOpen"
                                         << "cannot be opened: the working folder no longer exists";
    QTest::newRow("report taken") << failureReason::reportTaken(QStringLiteral("x/a.json"))
                                  << "ReportTaken"
                                  << "same report as x/a.json";
    QTest::newRow("no thread") << failureReason::noThread() << "NotRun"
                               << "not converted (no thread could be started)";
}

void TestFailureReason::decidedWithoutJob() {
    QFETCH(ConversionOutcome, outcome);
    QFETCH(QString, code);
    QFETCH(QString, expected);
    QVERIFY(!outcome.converted());
    QCOMPARE(failureReason::code(outcome), code);
    QCOMPARE(failureReason::forOutcome(outcome), expected);
}

void TestFailureReason::warnings_data() {
    QTest::addColumn<bool>("invalid");
    QTest::addColumn<bool>("notObject");
    QTest::addColumn<bool>("noConfiguration");
    QTest::addColumn<QVector<uint>>("undrawable");
    QTest::addColumn<QStringList>("cutOff");
    QTest::addColumn<QStringList>("expected");
    const QString ellipsis(QChar(0x2026));
    QTest::newRow("none") << false << false << false << QVector<uint>() << QStringList()
                          << QStringList();
    QTest::newRow("invalid") << true << false << false << QVector<uint>() << QStringList()
                             << QStringList{QStringLiteral(
                                    "not valid JSON (illegal value at offset 7); the report shows "
                                    "only defaults")};
    QTest::newRow("array") << false << true << false << QVector<uint>() << QStringList()
                           << QStringList{QStringLiteral("the top level is not a JSON object; "
                                                         "the report shows only defaults")};
    QTest::newRow("no configuration")
        << false << false << true << QVector<uint>() << QStringList()
        << QStringList{
               QStringLiteral("no \"configuration\" object; the report shows only defaults")};
    QTest::newRow("one character")
        << false << false << false << QVector<uint>{0x10FFFD} << QStringList()
        << QStringList{QStringLiteral("1 character cannot be drawn: U+10FFFD")};
    QTest::newRow("both") << true << false << false << QVector<uint>{0x4E1C, 0x4EAC}
                          << QStringList()
                          << QStringList{QStringLiteral("not valid JSON (illegal value at offset "
                                                        "7); the report shows only defaults"),
                                         QStringLiteral("2 characters cannot be drawn: U+4E1C "
                                                        "U+4EAC")};
    QTest::newRow("one cut") << false << false << false << QVector<uint>()
                             << QStringList{QStringLiteral("Hersteller: Rosenberg/Comefri/Nic")}
                             << QStringList{QStringLiteral("1 text is cut off at the column edge: "
                                                           "\"Hersteller: Rosenberg/Comefri/Nic") +
                                            ellipsis + QLatin1Char('"')};
    QTest::newRow("five cut") << false << false << false << QVector<uint>()
                              << QStringList{QStringLiteral("A"), QStringLiteral("B"),
                                             QStringLiteral("C"), QStringLiteral("D"),
                                             QStringLiteral("E")}
                              << QStringList{QStringLiteral("5 texts are cut off at the column "
                                                            "edge: \"A%1\", \"B%1\", \"C%1\", ...")
                                                 .arg(ellipsis)};
}

void TestFailureReason::warnings() {
    QFETCH(bool, invalid);
    QFETCH(bool, notObject);
    QFETCH(bool, noConfiguration);
    QFETCH(QVector<uint>, undrawable);
    QFETCH(QStringList, cutOff);
    QFETCH(QStringList, expected);
    ConversionOutcome outcome;
    outcome.reason = Reason::Converted;
    outcome.jsonInvalid = invalid;
    outcome.jsonError = QStringLiteral("illegal value");
    outcome.jsonErrorOffset = 7;
    outcome.topLevelNotObject = notObject;
    outcome.noConfiguration = noConfiguration;
    outcome.undrawable = undrawable;
    outcome.cutOff = cutOff;
    QCOMPARE(failureReason::warnings(outcome), expected);
}

QTEST_MAIN(TestFailureReason)
#include "tst_failurereason.moc"
