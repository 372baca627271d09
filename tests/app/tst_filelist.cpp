// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "windowtest.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A file with some bytes in it, so that a test can tell it was not touched.
QString makeFile(const QString& dir, const QString& name) {
    const QString path = QDir(dir).filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write("{}");
    return path;
}

} // namespace

class TestFileList : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void addPath_data();
    void addPath();
    void duplicateBox();
    void dragEnter_data();
    void dragEnter();
    void drop_data();
    void drop();
    void dropLogsOnlyTheDrop();
    void droppedTwice();
    void openFilesDialog_data();
    void openFilesDialog();
    void removeRow_data();
    void removeRow();
    void removeAndAddAgain();
    void removeRenamedThenAddAgain();
    void renamedNameIsNotBlocked();
    void nothingWritten();

private:
    QScopedPointer<QTemporaryDir> dir;
    QString path(const QString& name) const { return dir->filePath(name); }
};

void TestFileList::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
}

void TestFileList::init() {
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
}

void TestFileList::cleanup() {
    dir.reset();
}

void TestFileList::addPath_data() {
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("row");

    QTest::newRow("a.json becomes a.pdf") << "/data/a.json"
                                          << "/data/a.pdf";
    QTest::newRow("A.JSON ignored") << "/data/A.JSON" << QString();
    QTest::newRow("a.Json ignored") << "/data/a.Json" << QString();
    QTest::newRow("notes.txt ignored") << "/data/notes.txt" << QString();
    QTest::newRow("x.pdf ignored") << "/data/x.pdf" << QString();
    QTest::newRow("empty path ignored") << QString() << QString();
    QTest::newRow("json in the middle only ignored") << "/data/a.json.bak" << QString();
    QTest::newRow("folder part changed too") << "/data/alt.json/a.json"
                                             << "/data/alt.pdf/a.pdf";
    QTest::newRow("double ending both changed") << "/data/a.json.json"
                                                << "/data/a.pdf.pdf";
}

void TestFileList::addPath() {
    QFETCH(QString, given);
    QFETCH(QString, row);

    MainWindow window;
    ModalAnswerer unexpected;
    LogCapture log;
    window.addListWidgetItem(given);
    QCOMPARE(rowPaths(window), row.isEmpty() ? QStringList() : QStringList{row});
    if (!row.isEmpty()) {
        QListWidgetItem* item = listOf(window)->item(0);
        QCOMPARE(item->type(), int(QListWidgetItem::Type));
        QCOMPARE(rowAt(window, 0)->parentWidget(), listOf(window)->viewport());
    }
    QCOMPARE(log.messages(), QStringList());
    QCOMPARE(unexpected.count(), 0);
}

void TestFileList::duplicateBox() {
    MainWindow window;
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    ModalAnswerer answerer(clickMessageBoxOk);
    LogCapture log;
    window.addListWidgetItem(QStringLiteral("/data/a.json"));

    QCOMPARE(answerer.count(), 1);
    const ModalAnswerer::Seen& box = answerer.dialogs.first();
    QCOMPARE(box.className, QStringLiteral("QMessageBox"));
    QCOMPARE(box.title, QStringLiteral("Fehler"));
    QCOMPARE(box.text, duplicateText(QStringLiteral("/data/a.pdf")));
    QCOMPARE(box.standardButtons, int(QMessageBox::Ok));
    QCOMPARE(box.buttons.size(), 1);
    QVERIFY(!box.hasParent);
    QCOMPARE(rowPaths(window), QStringList{QStringLiteral("/data/a.pdf")});
    QCOMPARE(log.messages(), QStringList());

    // The list is unchanged, so the next duplicate is refused the same way.
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QCOMPARE(answerer.count(), 2);
    QCOMPARE(rowPaths(window).size(), 1);
}

void TestFileList::dragEnter_data() {
    QTest::addColumn<bool>("withUrls");
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("local json") << true << QList<QUrl>{QUrl::fromLocalFile("/data/a.json")} << true;
    QTest::newRow("local txt, names are checked later")
        << true << QList<QUrl>{QUrl::fromLocalFile("/data/notes.txt")} << true;
    QTest::newRow("web address") << true << QList<QUrl>{QUrl("https://example.org/a.json")} << true;
    QTest::newRow("plain text, no urls") << false << QList<QUrl>() << false;
}

void TestFileList::dragEnter() {
    QFETCH(bool, withUrls);
    QFETCH(QList<QUrl>, urls);
    QFETCH(bool, accepted);

    MainWindow window;
    QMimeData mime;
    if (withUrls)
        mime.setUrls(urls);
    else
        mime.setText(QStringLiteral("/data/a.json"));
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    LogCapture log;
    QApplication::sendEvent(&window, &enter);
    QCOMPARE(enter.isAccepted(), accepted);
    if (accepted)
        QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QCOMPARE(log.messages(), QStringList{QStringLiteral("DragEnterEvent")});
    QCOMPARE(listOf(window)->count(), 0);
}

void TestFileList::drop_data() {
    QTest::addColumn<QStringList>("dropped"); // names in the temporary folder, or full urls
    QTest::addColumn<QStringList>("rows");    // names in the temporary folder
    QTest::addColumn<int>("boxes");

    QTest::newRow("one configuration") << QStringList{"a.json"} << QStringList{"a.pdf"} << 0;
    QTest::newRow("upper-case ending refused") << QStringList{"A.JSON"} << QStringList() << 0;
    QTest::newRow("x.json and x.pdf from one folder")
        << QStringList{"x.json", "x.pdf"} << QStringList{"x.pdf"} << 0;
    QTest::newRow("folder named .json taken like a file")
        << QStringList{"ordner.json/"} << QStringList{"ordner.pdf"} << 0;
    QTest::newRow("vanished file still listed")
        << QStringList{"weg.json"} << QStringList{"weg.pdf"} << 0;
    QTest::newRow("web address refused")
        << QStringList{"https://example.org/a.json"} << QStringList() << 0;
    QTest::newRow("ftp address among files")
        << QStringList{"a.json", "ftp://example.org/b.json", "c.json"}
        << QStringList{"a.pdf", "c.pdf"} << 0;
    QTest::newRow("several with one duplicate among them")
        << QStringList{"a.json", "b.json", "a.json", "c.json"}
        << QStringList{"a.pdf", "b.pdf", "c.pdf"} << 1;
    QTest::newRow("three times the same")
        << QStringList{"a.json", "a.json", "a.json"} << QStringList{"a.pdf"} << 2;
}

void TestFileList::drop() {
    QFETCH(QStringList, dropped);
    QFETCH(QStringList, rows);
    QFETCH(int, boxes);

    QList<QUrl> urls;
    for (const QString& name : dropped) {
        if (name.contains(QLatin1String("://"))) {
            urls.append(QUrl(name));
        } else if (name.endsWith(QLatin1Char('/'))) {
            QVERIFY(QDir(dir->path()).mkdir(name.chopped(1)));
            urls.append(QUrl::fromLocalFile(path(name.chopped(1))));
        } else {
            if (name != QLatin1String("weg.json"))
                makeFile(dir->path(), name);
            urls.append(QUrl::fromLocalFile(path(name)));
        }
    }
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ModalAnswerer answerer(clickMessageBoxOk);
    QVERIFY(dragAndDrop(&window, urls));

    QStringList expected;
    for (const QString& name : rows)
        expected.append(path(name));
    QCOMPARE(rowPaths(window), expected);
    QCOMPARE(answerer.count(), boxes);
    for (const ModalAnswerer::Seen& box : answerer.dialogs) {
        QCOMPARE(box.title, QStringLiteral("Fehler"));
        QCOMPARE(box.text, duplicateText(path(QStringLiteral("a.pdf"))));
    }
}

void TestFileList::dropLogsOnlyTheDrop() {
    const QString upper = makeFile(dir->path(), QStringLiteral("A.JSON"));
    MainWindow window;
    ModalAnswerer unexpected;
    LogCapture log;
    QVERIFY(dragAndDrop(&window, {QUrl::fromLocalFile(upper), QUrl("https://example.org/b.json")}));
    QCOMPARE(log.messages(),
             (QStringList{QStringLiteral("DragEnterEvent"), QStringLiteral("Dropevent"),
                          QStringLiteral("Dropped file: \"%1\"").arg(upper),
                          QStringLiteral("Dropped file: \"\"")}));
    QCOMPARE(listOf(window)->count(), 0);
    QCOMPARE(unexpected.count(), 0);
}

void TestFileList::droppedTwice() {
    const QString a = makeFile(dir->path(), QStringLiteral("a.json"));
    MainWindow window;
    ModalAnswerer answerer(clickMessageBoxOk);
    QVERIFY(dragAndDrop(&window, {QUrl::fromLocalFile(a)}));
    QCOMPARE(answerer.count(), 0);
    QVERIFY(dragAndDrop(&window, {QUrl::fromLocalFile(a)}));
    QCOMPARE(answerer.count(), 1);
    QCOMPARE(answerer.dialogs.first().title, QStringLiteral("Fehler"));
    QCOMPARE(answerer.dialogs.first().text, duplicateText(path(QStringLiteral("a.pdf"))));
    QVERIFY(answerer.dialogs.first().text.endsWith(
        QStringLiteral("a.pdf befindest sich schon in der Liste")));
    QCOMPARE(rowPaths(window), QStringList{path(QStringLiteral("a.pdf"))});
}

void TestFileList::openFilesDialog_data() {
    QTest::addColumn<QStringList>("chosen");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("two configurations")
        << QStringList{"a.json", "b.json"} << QStringList{"a.pdf", "b.pdf"};
    QTest::newRow("one configuration") << QStringList{"b.json"} << QStringList{"b.pdf"};
    QTest::newRow("text file dropped silently")
        << QStringList{"notes.txt", "a.json"} << QStringList{"a.pdf"};
    QTest::newRow("cancelled") << QStringList() << QStringList();
}

void TestFileList::openFilesDialog() {
    QFETCH(QStringList, chosen);
    QFETCH(QStringList, rows);

    for (const char* name : {"a.json", "b.json", "notes.txt"})
        makeFile(dir->path(), QLatin1String(name));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    ModalAnswerer answerer(chosen.isEmpty() ? ModalAnswerer::Handler(rejectDialog)
                                            : chooseFiles(dir->path(), chosen));
    pointAndClick(window.findChild<cButton*>(QStringLiteral("btnBrows")));

    QCOMPARE(answerer.count(), 1);
    const ModalAnswerer::Seen& dialog = answerer.dialogs.first();
    QCOMPARE(dialog.className, QStringLiteral("QFileDialog"));
    QCOMPARE(dialog.acceptMode, int(QFileDialog::AcceptOpen));
    QCOMPARE(dialog.fileMode, int(QFileDialog::ExistingFiles));
    QVERIFY(!dialog.hasParent);
    // Every file can be chosen: no filter narrows the dialog to .json.
    for (const QString& filter : dialog.nameFilters)
        QVERIFY2(!filter.contains(QLatin1String("json")), qPrintable(filter));

    QStringList expected;
    for (const QString& name : rows)
        expected.append(path(name));
    QCOMPARE(rowPaths(window), expected);
}

void TestFileList::removeRow_data() {
    QTest::addColumn<int>("removed");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("first") << 0 << QStringList{"/data/b.pdf", "/data/c.pdf"};
    QTest::newRow("middle") << 1 << QStringList{"/data/a.pdf", "/data/c.pdf"};
    QTest::newRow("last") << 2 << QStringList{"/data/a.pdf", "/data/b.pdf"};
}

void TestFileList::removeRow() {
    QFETCH(int, removed);
    QFETCH(QStringList, left);

    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    for (const char* name : {"/data/a.json", "/data/b.json", "/data/c.json"})
        window.addListWidgetItem(QLatin1String(name));
    QTest::qWait(20);
    QPointer<ListWidgetContainer> row = rowAt(window, removed);
    ModalAnswerer unexpected; // nothing asks before removing
    pointAndClick(rowButton(row, "btnDelete"));
    QCOMPARE(rowPaths(window), left);
    // The view disposes of the row widget itself.
    QTRY_VERIFY(row.isNull());
    QCOMPARE(unexpected.count(), 0);
}

void TestFileList::removeAndAddAgain() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QTest::qWait(20);
    pointAndClick(rowButton(rowAt(window, 0), "btnDelete"));
    QCOMPARE(listOf(window)->count(), 0);

    ModalAnswerer answerer(clickMessageBoxOk);
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QCOMPARE(answerer.count(), 0);
    QCOMPARE(rowPaths(window), QStringList{QStringLiteral("/data/a.pdf")});
}

void TestFileList::removeRenamedThenAddAgain() {
    const QString a = makeFile(dir->path(), QStringLiteral("a.json"));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(a);
    QTest::qWait(20);
    ListWidgetContainer* row = rowAt(window, 0);
    {
        ModalAnswerer answerer(typeSaveName(QStringLiteral("bericht")));
        pointAndClick(rowButton(row, "btnNewName"));
        QCOMPARE(answerer.count(), 1);
    }
    QCOMPARE(row->filePath, path(QStringLiteral("bericht.pdf")));
    pointAndClick(rowButton(row, "btnDelete"));
    QCOMPARE(listOf(window)->count(), 0);

    // The old name was never released.
    ModalAnswerer answerer(clickMessageBoxOk);
    window.addListWidgetItem(a);
    QCOMPARE(answerer.count(), 1);
    QCOMPARE(answerer.dialogs.first().title, QStringLiteral("Fehler"));
    QCOMPARE(answerer.dialogs.first().text, duplicateText(path(QStringLiteral("a.pdf"))));
    QCOMPARE(listOf(window)->count(), 0);
}

void TestFileList::renamedNameIsNotBlocked() {
    const QString a = makeFile(dir->path(), QStringLiteral("a.json"));
    const QString b = makeFile(dir->path(), QStringLiteral("b.json"));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.addListWidgetItem(a);
    QTest::qWait(20);
    {
        ModalAnswerer answerer(typeSaveName(QStringLiteral("b")));
        pointAndClick(rowButton(rowAt(window, 0), "btnNewName"));
        QCOMPARE(answerer.count(), 1);
    }
    // The list still knows the row as a.pdf: b.json is welcome, a.json not.
    ModalAnswerer answerer(clickMessageBoxOk);
    window.addListWidgetItem(b);
    QCOMPARE(answerer.count(), 0);
    QCOMPARE(rowPaths(window),
             (QStringList{path(QStringLiteral("b.pdf")), path(QStringLiteral("b.pdf"))}));
    window.addListWidgetItem(a);
    QCOMPARE(answerer.count(), 1);
}

void TestFileList::nothingWritten() {
    const QString a = makeFile(dir->path(), QStringLiteral("a.json"));
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(dragAndDrop(&window, {QUrl::fromLocalFile(a)}));
    QTest::qWait(20);
    {
        // Choosing the configuration file itself: the dialog asks whether
        // to replace it, which is allowed, and the row still gets a name of
        // its own.
        ModalAnswerer answerer(QList<ModalAnswerer::Handler>{
            typeSaveName(QStringLiteral("a.json")), clickMessageBoxButton(QMessageBox::Yes)});
        pointAndClick(rowButton(rowAt(window, 0), "btnNewName"));
        QCOMPARE(answerer.count(), 2);
        QCOMPARE(answerer.dialogs.at(1).className, QStringLiteral("QMessageBox"));
    }
    QCOMPARE(rowAt(window, 0)->filePath, path(QStringLiteral("a.json.pdf")));
    pointAndClick(rowButton(rowAt(window, 0), "btnDelete"));
    QTest::qWait(20);
    // Listing, renaming and removing create and change no file.
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files), QStringList{QStringLiteral("a.json")});
    QFile file(a);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("{}"));
}

QTEST_MAIN(TestFileList)
#include "tst_filelist.moc"
