// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// How brevio-convert prints a name: unchanged unless it holds a control
// character, and then quoted exactly as GNU ls --quoting-style=shell-escape
// quotes it, so that a line break cannot split the report list and the
// name can be pasted back into a shell.

#include "cli/namequoting.h"
#include "runprogram.h"

#include <QTest>

class TestNameQuoting : public QObject {
    Q_OBJECT

private slots:
    void quoted_data();
    void quoted();
    void readBackByTheShell_data();
    void readBackByTheShell();
};

void TestNameQuoting::quoted_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << "/data/anlage.pdf"
                           << "/data/anlage.pdf";
    QTest::newRow("blank and quote stay plain") << "/data/it's a.pdf"
                                                << "/data/it's a.pdf";
    QTest::newRow("not UTF-8 stays plain") << QString::fromUtf16(u"/data/Geb\xdce4ude.pdf")
                                           << QString::fromUtf16(u"/data/Geb\xdce4ude.pdf");
    QTest::newRow("umlaut stays plain")
        << QString::fromUtf8("/data/Gebäude.pdf") << QString::fromUtf8("/data/Gebäude.pdf");
    // Each expectation below is what GNU ls printed for a file of that name.
    QTest::newRow("line break") << "dir/ok.pdf\nx.json"
                                << "'dir/ok.pdf'$'\\n''x.json'";
    QTest::newRow("line break first") << "\nb"
                                      << "''$'\\n''b'";
    QTest::newRow("line break last") << "a\n"
                                     << "'a'$'\\n'";
    QTest::newRow("two line breaks") << "a\n\nb"
                                     << "'a'$'\\n\\n''b'";
    QTest::newRow("quote after a line break") << "a\n'b"
                                              << "'a'$'\\n'\\''b'";
    QTest::newRow("quote and tab") << "it's\tx"
                                   << "'it'\\''s'$'\\t''x'";
    QTest::newRow("octal control") << "a\001b"
                                   << "'a'$'\\001''b'";
    QTest::newRow("escape") << "e\033["
                            << "'e'$'\\033''['";
    QTest::newRow("delete") << "x\177"
                            << "'x'$'\\177'";
    QTest::newRow("C1 control") << QString::fromUtf8("\xc2\x85"
                                                     "c")
                                << "''$'\\302\\205''c'";
}

void TestNameQuoting::quoted() {
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(nameQuoting::quoted(name), expected);
    QCOMPARE(nameQuoting::needsQuoting(name), expected != name);
}

void TestNameQuoting::readBackByTheShell_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("line break") << "dir/ok.pdf\nx.json";
    QTest::newRow("quotes and controls") << "'a'\n\t'b\001'\r";
}

// bash reads the quoted form back as the name itself.
void TestNameQuoting::readBackByTheShell() {
    QFETCH(QString, name);
    const ProgramRun shell =
        runProgram(QStringLiteral("bash"),
                   {QStringLiteral("-c"), QStringLiteral("printf %s ") + nameQuoting::quoted(name)},
                   QProcessEnvironment::systemEnvironment(), 30000);
    QVERIFY2(shell.finished, qPrintable(shell.describe()));
    QCOMPARE(QString::fromUtf8(shell.out), name);
}

QTEST_MAIN(TestNameQuoting)
#include "tst_namequoting.moc"
