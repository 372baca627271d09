// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The window started with --language en: its own texts in English, and Qt's
// dialogs and menus in Qt's own English instead of the German translation.

#include "app/cbutton.h"
#include "app/launch.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "windowtest.h"

#include <QAccessible>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestWindowEnglish : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void buttonsHaveEnglishNames_data();
    void buttonsHaveEnglishNames();
    void pathMenuInEnglish();
    void duplicateBoxInEnglish();
    void qtSpeaksItsOwnEnglish();
};

void TestWindowEnglish::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    // What main() does for "brevio --language en".
    launch::describeApplication();
    QVERIFY(launch::useLanguage(QStringLiteral("en")));
}

void TestWindowEnglish::buttonsHaveEnglishNames_data() {
    addButtonNameRows(QStringLiteral("en"));
}

void TestWindowEnglish::buttonsHaveEnglishNames() {
    QFETCH(bool, inRow);
    QFETCH(QString, objectName);
    QFETCH(QString, name);
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.windowTitle(), QStringLiteral("Brevio [Beta]"));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QObject* parent = inRow ? static_cast<QObject*>(rowAt(window, 0)) : &window;
    QVERIFY(parent);
    auto* button = parent->findChild<cButton*>(objectName);
    QVERIFY(button);
    QCOMPARE(button->toolTip(), name);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(button);
    QVERIFY(accessible);
    QCOMPARE(accessible->text(QAccessible::Name), name);
}

void TestWindowEnglish::pathMenuInEnglish() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    ListWidgetContainer* row = rowAt(window, 0);
    QVERIFY(row);
    std::unique_ptr<QMenu> menu(row->createPathMenu(row));
    const QStringList entries = actionTexts(menu.get());
    QVERIFY2(entries.contains(QStringLiteral("Copy")), qPrintable(entries.join('|')));
    QVERIFY2(entries.mid(entries.size() - 2) ==
                 QStringList({QStringLiteral("Open report"), QStringLiteral("Open folder")}),
             qPrintable(entries.join('|')));
    QVERIFY(!entries.contains(QStringLiteral("Kopieren")));
}

void TestWindowEnglish::duplicateBoxInEnglish() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    ModalAnswerer answerer(&clickMessageBoxOk);
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QCOMPARE(answerer.count(), 1);
    QCOMPARE(answerer.dialogs.first().title, QStringLiteral("Error"));
    QCOMPARE(answerer.dialogs.first().text,
             QStringLiteral("The file /data/a.pdf is already in the list"));
}

void TestWindowEnglish::qtSpeaksItsOwnEnglish() {
    QLineEdit edit;
    edit.setText(QStringLiteral("/data/a.pdf"));
    edit.selectAll();
    std::unique_ptr<QMenu> menu(edit.createStandardContextMenu());
    const QStringList entries = actionTexts(menu.get());
    QVERIFY2(entries.contains(QStringLiteral("Select All")), qPrintable(entries.join('|')));
    QMessageBox box;
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(box.button(QMessageBox::Cancel)->text(), QStringLiteral("Cancel"));
}

QTEST_MAIN(TestWindowEnglish)
#include "tst_windowenglish.moc"
