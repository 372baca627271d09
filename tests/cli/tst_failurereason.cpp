// How brevio-convert words what a job recorded about itself: every reason a
// job can end with, and the warnings of a converted file.

#include "cli/failurereason.h"
#include "convert/conversionoutcome.h"

#include <QTest>

using Reason = ConversionOutcome::Reason;
Q_DECLARE_METATYPE(Reason)

class TestFailureReason : public QObject {
    Q_OBJECT

private slots:
    void reason_data();
    void reason();
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
    QTest::newRow("never ran") << Reason::NotRun << QString() << false << "not converted";
    QTest::newRow("no folder") << Reason::NoTemporaryFolder << "Permission denied" << false
                               << notWritten;
    QTest::newRow("no folder, older kept")
        << Reason::NoTemporaryFolder << "Permission denied" << true << leftInPlace;
    QTest::newRow("painter") << Reason::PainterFailed << QString() << false << notWritten;
    QTest::newRow("incomplete") << Reason::ReportIncomplete << QString() << false << notWritten;
    QTest::newRow("incomplete, older kept")
        << Reason::ReportIncomplete << QString() << true << leftInPlace;
    QTest::newRow("commit") << Reason::CommitFailed << "Is a directory" << false << notWritten;
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

void TestFailureReason::warnings_data() {
    QTest::addColumn<bool>("invalid");
    QTest::addColumn<bool>("notObject");
    QTest::addColumn<QVector<uint>>("undrawable");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("none") << false << false << QVector<uint>() << QStringList();
    QTest::newRow("invalid") << true << false << QVector<uint>()
                             << QStringList{QStringLiteral(
                                    "not valid JSON (illegal value at offset 7); the report has "
                                    "empty values")};
    QTest::newRow("array") << false << true << QVector<uint>()
                           << QStringList{QStringLiteral("the top level is not a JSON object; "
                                                         "the report has empty values")};
    QTest::newRow("one character")
        << false << false << QVector<uint>{0x10FFFD}
        << QStringList{QStringLiteral("1 character cannot be drawn: U+10FFFD")};
    QTest::newRow("both") << true << false << QVector<uint>{0x4E1C, 0x4EAC}
                          << QStringList{QStringLiteral("not valid JSON (illegal value at offset "
                                                        "7); the report has empty values"),
                                         QStringLiteral("2 characters cannot be drawn: U+4E1C "
                                                        "U+4EAC")};
}

void TestFailureReason::warnings() {
    QFETCH(bool, invalid);
    QFETCH(bool, notObject);
    QFETCH(QVector<uint>, undrawable);
    QFETCH(QStringList, expected);
    ConversionOutcome outcome;
    outcome.reason = Reason::Converted;
    outcome.jsonInvalid = invalid;
    outcome.jsonError = QStringLiteral("illegal value");
    outcome.jsonErrorOffset = 7;
    outcome.topLevelNotObject = notObject;
    outcome.undrawable = undrawable;
    QCOMPARE(failureReason::warnings(outcome), expected);
}

QTEST_MAIN(TestFailureReason)
#include "tst_failurereason.moc"
