// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"
#include "app/launch.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "windowtest.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

QString withoutMnemonic(QString text) {
    return text.remove(QLatin1Char('&'));
}

QAction* actionNamed(const QMenu* menu, const QString& text) {
    for (QAction* action : menu->actions())
        if (withoutMnemonic(action->text()).section(QLatin1Char('\t'), 0, 0) == text)
            return action;
    return nullptr;
}

bool copyExample(const QString& to) {
    QDir().mkpath(QFileInfo(to).absolutePath());
    return QFile::copy(QStringLiteral(BREVIO_SOURCE_DIR "/examples/pressure-transmitter.json"), to);
}

// Stands in for the desktop: records what the window asks it to open.
class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> opened;
public slots:
    void open(const QUrl& url) { opened.append(url); }
};

} // namespace

class TestWindowDesk : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void qtSpeaksGerman();
    void fileDialogSpeaksGerman();
    void buttonsHaveNames_data();
    void buttonsHaveNames();
    void logoIsLeftOutOfTheTabOrder();
    void ctrlOOpensFiles();
    void ctrlReturnConvertsAll_data();
    void ctrlReturnConvertsAll();
    void doubleClickOpensReport_data();
    void doubleClickOpensReport();
    void pathMenu_data();
    void pathMenu();
    void contextMenuShowsThePathMenu();
    void reportUrlKeepsBytes();
    void renamedRowOpensTheReportWritten();
    void failedConversionOffersNoOlderReport();
    void dropFromLatin1Folder();

private:
    QTemporaryDir* dir = nullptr;
    UrlRecorder recorder;
};

void TestWindowDesk::initTestCase() {
    QStandardPaths::setTestModeEnabled(true);
    // What main() does: names, the byte-keeping file-name codec, Qt's German.
    launch::describeApplication();
    QVERIFY(launch::useLanguage(QStringLiteral("de")));
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &recorder, "open");
}

void TestWindowDesk::cleanupTestCase() {
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

void TestWindowDesk::init() {
    dir = new QTemporaryDir;
    QVERIFY(dir->isValid());
    recorder.opened.clear();
}

void TestWindowDesk::cleanup() {
    delete dir;
    dir = nullptr;
}

void TestWindowDesk::qtSpeaksGerman() {
    // The locale of the test run is C.UTF-8: German only by our choice.
    QCOMPARE(QLocale::system().name(), QStringLiteral("C"));

    QLineEdit edit;
    edit.setText(QStringLiteral("/data/a.pdf"));
    edit.selectAll();
    QMenu* menu = edit.createStandardContextMenu();
    const QStringList entries = actionTexts(menu);
    delete menu;
    QVERIFY2(entries.contains(QStringLiteral("Kopieren")), qPrintable(entries.join('|')));
    QVERIFY2(entries.contains(QStringLiteral("Alles auswählen")), qPrintable(entries.join('|')));
    QVERIFY(!entries.contains(QStringLiteral("Copy")));

    QMessageBox box;
    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(box.button(QMessageBox::Cancel)->text(), QStringLiteral("Abbrechen"));
}

void TestWindowDesk::fileDialogSpeaksGerman() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QStringList buttons;
    QStringList labels;
    ModalAnswerer answerer([&](QWidget* dialog) {
        for (auto* box : dialog->findChildren<QDialogButtonBox*>())
            for (QAbstractButton* button : box->buttons())
                buttons.append(withoutMnemonic(button->text()));
        for (auto* label : dialog->findChildren<QLabel*>())
            labels.append(withoutMnemonic(label->text()));
        rejectDialog(dialog);
    });
    pointAndClick(window.findChild<cButton*>(QStringLiteral("btnBrows")));
    QCOMPARE(answerer.count(), 1);
    QCOMPARE(answerer.dialogs.first().className, QStringLiteral("QFileDialog"));
    QVERIFY2(buttons.contains(QStringLiteral("Öffnen")), qPrintable(buttons.join('|')));
    QVERIFY2(buttons.contains(QStringLiteral("Abbrechen")), qPrintable(buttons.join('|')));
    QVERIFY2(labels.contains(QStringLiteral("Suchen in:")), qPrintable(labels.join('|')));
    QVERIFY2(labels.contains(QStringLiteral("Dateien des Typs:")), qPrintable(labels.join('|')));
}

void TestWindowDesk::buttonsHaveNames_data() {
    addButtonNameRows(QStringLiteral("de"));
}

void TestWindowDesk::buttonsHaveNames() {
    QFETCH(bool, inRow);
    QFETCH(QString, objectName);
    QFETCH(QString, name);
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QObject* parent = inRow ? static_cast<QObject*>(rowAt(window, 0)) : &window;
    auto* button = parent->findChild<cButton*>(objectName);
    QVERIFY(button);
    QCOMPARE(button->toolTip(), name);
    // What a screen reader is told: a button and its name.
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(button);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), name);
    // The pictures stay the only thing shown.
    QCOMPARE(button->text(), QString());
}

void TestWindowDesk::logoIsLeftOutOfTheTabOrder() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    auto* logo = window.findChild<cButton*>(QStringLiteral("btnLogo"));
    QCOMPARE(logo->focusPolicy(), Qt::NoFocus);
    auto* open = window.findChild<cButton*>(QStringLiteral("btnBrows"));
    open->setFocus(Qt::TabFocusReason);
    QSet<QWidget*> reached;
    for (int i = 0; i < 20; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    QVERIFY(!reached.contains(logo));
    // The other header buttons are still reached.
    QVERIFY(reached.contains(open));
    QVERIFY(reached.contains(window.findChild<cButton*>(QStringLiteral("btnKonvert"))));
}

void TestWindowDesk::ctrlOOpensFiles() {
    for (const char* name : {"a.json", "b.json"})
        QVERIFY(copyExample(QDir(dir->path()).filePath(QLatin1String(name))));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    QAction* open = window.findChild<QAction*>(QStringLiteral("action_ffnen"));
    QVERIFY(window.actions().contains(open));
    QCOMPARE(open->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_O));

    ModalAnswerer answerer(chooseFiles(dir->path(), {"a.json", "b.json"}));
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QTRY_COMPARE(answerer.count(), 1);
    // The folder button's own dialog: no parent, no filter, several files.
    const ModalAnswerer::Seen& dialog = answerer.dialogs.first();
    QCOMPARE(dialog.className, QStringLiteral("QFileDialog"));
    QCOMPARE(dialog.fileMode, int(QFileDialog::ExistingFiles));
    QVERIFY(!dialog.hasParent);
    QTRY_COMPARE(rowPaths(window), QStringList({QDir(dir->path()).filePath("a.pdf"),
                                                QDir(dir->path()).filePath("b.pdf")}));
}

void TestWindowDesk::ctrlReturnConvertsAll_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter on the keypad") << int(Qt::Key_Enter);
}

void TestWindowDesk::ctrlReturnConvertsAll() {
    QFETCH(int, key);
    const QString a = QDir(dir->path()).filePath(QStringLiteral("a.json"));
    const QString b = QDir(dir->path()).filePath(QStringLiteral("b.json"));
    QVERIFY(copyExample(a));
    QVERIFY(copyExample(b));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.addListWidgetItem(a);
    window.addListWidgetItem(b);
    QAction* all = window.findChild<QAction*>(QStringLiteral("actionAlle_konvertieren"));
    QVERIFY(window.actions().contains(all));
    QCOMPARE(all->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Return));

    QTest::keyClick(&window, Qt::Key(key), Qt::ControlModifier);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(rowAt(window, i)->pBar->maximum(), 17);
        QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, i)->pBar->value(), 17, 30000);
    }
    QTRY_VERIFY(QFileInfo(QDir(dir->path()).filePath("a.pdf")).size() > 0);
    QTRY_VERIFY(QFileInfo(QDir(dir->path()).filePath("b.pdf")).size() > 0);
}

void TestWindowDesk::doubleClickOpensReport_data() {
    QTest::addColumn<bool>("reportExists");
    QTest::newRow("report written") << true;
    QTest::newRow("no report yet") << false;
}

void TestWindowDesk::doubleClickOpensReport() {
    QFETCH(bool, reportExists);
    const QString report = QDir(dir->path()).filePath(QStringLiteral("anlage.pdf"));
    if (reportExists) {
        QFile file(report);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QDir(dir->path()).filePath(QStringLiteral("anlage.json")));
    auto* edit = rowAt(window, 0)->findChild<QLineEdit*>(QStringLiteral("LineEditPath"));
    QVERIFY(edit);
    QTest::mouseDClick(edit, Qt::LeftButton, Qt::NoModifier, edit->rect().center());
    if (reportExists)
        QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(report)});
    else
        QCOMPARE(recorder.opened, QList<QUrl>());
    // The row is as it was.
    QCOMPARE(rowPaths(window), QStringList{report});
}

void TestWindowDesk::pathMenu_data() {
    QTest::addColumn<bool>("reportExists");
    QTest::addColumn<QString>("entry");
    QTest::newRow("report") << true << "Bericht öffnen";
    QTest::newRow("folder") << true << "Ordner öffnen";
    QTest::newRow("no report: report") << false << "Bericht öffnen";
    QTest::newRow("no report: folder") << false << "Ordner öffnen";
}

void TestWindowDesk::pathMenu() {
    QFETCH(bool, reportExists);
    QFETCH(QString, entry);
    const QString folder = QDir(dir->path()).filePath(QStringLiteral("Werk Nord"));
    QVERIFY(QDir().mkpath(folder));
    const QString report = folder + QStringLiteral("/anlage.pdf");
    if (reportExists) {
        QFile file(report);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(folder + QStringLiteral("/anlage.json"));
    ListWidgetContainer* row = rowAt(window, 0);
    std::unique_ptr<QMenu> menu(row->createPathMenu(row));

    // The line edit's own entries first, in German, then the two of the row.
    const QStringList texts = actionTexts(menu.get());
    QVERIFY2(texts.contains(QStringLiteral("Kopieren")), qPrintable(texts.join('|')));
    QVERIFY2(texts.contains(QStringLiteral("Alles auswählen")), qPrintable(texts.join('|')));
    QCOMPARE(texts.mid(texts.size() - 2),
             QStringList({QStringLiteral("Bericht öffnen"), QStringLiteral("Ordner öffnen")}));
    QAction* action = actionNamed(menu.get(), entry);
    QVERIFY(action);
    QCOMPARE(action->isEnabled(), reportExists);
    action->trigger();
    if (!reportExists)
        QCOMPARE(recorder.opened, QList<QUrl>());
    else if (entry == QStringLiteral("Bericht öffnen"))
        QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(report)});
    else
        QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(folder)});
}

void TestWindowDesk::contextMenuShowsThePathMenu() {
    const QString report = QDir(dir->path()).filePath(QStringLiteral("anlage.pdf"));
    QFile file(report);
    QVERIFY(file.open(QIODevice::WriteOnly));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QDir(dir->path()).filePath(QStringLiteral("anlage.json")));
    auto* edit = rowAt(window, 0)->findChild<QLineEdit*>(QStringLiteral("LineEditPath"));

    QStringList shown;
    QTimer::singleShot(200, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        shown = actionTexts(menu);
        // Chosen from the menu as a user would.
        QAction* open = actionNamed(menu, QStringLiteral("Bericht öffnen"));
        menu->setActiveAction(open);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, edit->rect().center(),
                            edit->mapToGlobal(edit->rect().center()));
    QApplication::sendEvent(edit, &event);
    QVERIFY2(shown.contains(QStringLiteral("Kopieren")), qPrintable(shown.join('|')));
    QVERIFY(shown.contains(QStringLiteral("Bericht öffnen")));
    QVERIFY(shown.contains(QStringLiteral("Ordner öffnen")));
    QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(report)});
}

void TestWindowDesk::reportUrlKeepsBytes() {
    // A report in a Latin-1 folder: the desktop gets that folder's bytes,
    // not U+FFFD.
    const QByteArray folder = QFile::encodeName(dir->path()) + "/Geb\xe4ude";
    QVERIFY(QDir().mkpath(QFile::decodeName(folder)));
    QFile file(QFile::decodeName(folder + "/a.pdf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    MainWindow window;
    window.show();
    window.addListWidgetItem(QFile::decodeName(folder + "/a.json"));
    QVERIFY(rowAt(window, 0)->openReport());
    QCOMPARE(recorder.opened.size(), 1);
    const QByteArray encoded = recorder.opened.first().toEncoded();
    QVERIFY2(encoded.endsWith("/Geb%E4ude/a.pdf"), encoded.constData());
    QCOMPARE(QByteArray::fromPercentEncoding(
                 recorder.opened.first().path(QUrl::FullyEncoded).toLatin1()),
             folder + "/a.pdf");
}

void TestWindowDesk::renamedRowOpensTheReportWritten() {
    // Renamed to x.json.pdf, the row reads x.json.json, and the job writes
    // x.pdf.pdf by the report rule: that is the report the row opens.
    const QString base = QDir(dir->path()).filePath(QStringLiteral("x"));
    QVERIFY(copyExample(base + QStringLiteral(".json.json")));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(base + QStringLiteral(".json"));
    ListWidgetContainer* row = rowAt(window, 0);
    row->filePath = base + QStringLiteral(".json.pdf");
    pointAndClick(row->findChild<cButton*>(QStringLiteral("btnKonvertier")));
    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 30000);
    QTRY_COMPARE(row->reportToOpen(), base + QStringLiteral(".pdf.pdf"));
    QVERIFY(row->openReport());
    QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(base + QStringLiteral(".pdf.pdf"))});
}

void TestWindowDesk::failedConversionOffersNoOlderReport() {
    // Last week's report lies beside this week's file, which cannot be
    // converted (it is empty): after the attempt the row does not hand over
    // last week's report as if it were new.
    const QString configuration = QDir(dir->path()).filePath(QStringLiteral("a.json"));
    const QString report = QDir(dir->path()).filePath(QStringLiteral("a.pdf"));
    QFile older(report);
    QVERIFY(older.open(QIODevice::WriteOnly));
    older.write("%PDF-1.4 last week\n%%EOF\n");
    older.close();
    QFile empty(configuration);
    QVERIFY(empty.open(QIODevice::WriteOnly));
    empty.close();

    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(configuration);
    ListWidgetContainer* row = rowAt(window, 0);
    const auto reportEntryEnabled = [row] {
        std::unique_ptr<QMenu> menu(row->createPathMenu(row));
        return actionNamed(menu.get(), QStringLiteral("Bericht öffnen"))->isEnabled();
    };
    // Before any conversion, what lies at that path may be opened.
    QVERIFY(reportEntryEnabled());

    window.convertSingle(row);
    QTRY_VERIFY_WITH_TIMEOUT(!reportEntryEnabled(), 30000);
    QVERIFY(!row->openReport());
    QCOMPARE(recorder.opened, QList<QUrl>());
    QCOMPARE(row->pBar->value(), 0);

    // Once a conversion writes it, the report opens again.
    QVERIFY(QFile::remove(configuration));
    QVERIFY(copyExample(configuration));
    window.convertSingle(row);
    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 30000);
    QTRY_VERIFY(reportEntryEnabled());
    QVERIFY(row->openReport());
    QCOMPARE(recorder.opened, QList<QUrl>{QUrl::fromLocalFile(report)});
}

void TestWindowDesk::dropFromLatin1Folder() {
    // The folder "Gebäude" in Latin-1, and a sibling whose name holds what
    // QUrl::toLocalFile() would make of it (U+FFFD).
    const QByteArray base = QFile::encodeName(dir->path());
    const QByteArray latin1 = base + "/Geb\xe4ude";
    const QByteArray replaced = base + "/Geb\xef\xbf\xbdude";
    QVERIFY(copyExample(QFile::decodeName(latin1 + "/a.json")));
    QVERIFY(copyExample(QFile::decodeName(replaced + "/a.json")));

    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    // What a file manager sends for that folder.
    const QUrl url =
        QUrl::fromEncoded("file://" + base.toPercentEncoding("/") + "/Geb%E4ude/a.json");
    QVERIFY(dragAndDrop(&window, {url}));
    QCOMPARE(rowPaths(window).size(), 1);
    QCOMPARE(QFile::encodeName(rowAt(window, 0)->filePath), latin1 + "/a.pdf");

    pointAndClick(rowAt(window, 0)->findChild<cButton*>(QStringLiteral("btnKonvertier")));
    QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, 0)->pBar->value(), 17, 30000);
    // The dropped file itself was converted, not its sibling.
    QTRY_VERIFY(QFileInfo(QFile::decodeName(latin1 + "/a.pdf")).size() > 0);
    QVERIFY(!QFileInfo::exists(QFile::decodeName(replaced + "/a.pdf")));
}

QTEST_MAIN(TestWindowDesk)
#include "tst_windowdesk.moc"
