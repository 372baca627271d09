// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"
#include "app/listwidgetcontainer.h"
#include "windowtest.h"

#include <QDir>
#include <QFileDialog>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMetaMethod>
#include <QProgressBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

const char expectedStyleSheet[] =
    "QPushButton#btnDelete{border-image:url(:/img/btnClose.png);}QPushButton#btnDelete:pressed{"
    "border-image:url(:/img/btnCloseInv.png);}QPushButton#btnNewName{border-image:url(:/img/"
    "Edit.png);}QPushButton#btnNewName:pressed{border-image:url(:/img/Edit_blau.png);}"
    "QPushButton#btnKonvertier{border-image:url(:/img/IconSwitch.png);}QPushButton#"
    "btnKonvertier:pressed{border-image:url(:/img/IconSwitchInv.png);}QProgressBar#pBarKonvert{"
    "border: 1px solid gray; border-radius:12px; margin:2px; text-align:center;}QProgressBar#"
    "pBarKonvert::chunk {background-color: #E30613; border-radius:12px; margin: 2px;}";

} // namespace

class TestListWidgetContainer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void childrenInOrder();
    void layout();
    void sizePolicies();
    void lineEditAndBar();
    void styleSheetVerbatim();
    void metaObject();
    void textElidedOnlyOnceLaidOut();
    void elision_data();
    void elision();
    void wideningReElides();
    void squareButtons();
    void progress();
    void slotsWithoutWidgets();
    void buttonsAskTheWindow_data();
    void buttonsAskTheWindow();
    void rename_data();
    void rename();
    void renameCancelled();

private:
    // A row inside a plain host, shown at the given width and 60 high.
    ListWidgetContainer* showRow(const QString& path, int width = 700);
    QScopedPointer<QWidget> host;
};

void TestListWidgetContainer::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
}

void TestListWidgetContainer::init() {
    host.reset(new QWidget);
}

void TestListWidgetContainer::cleanup() {
    host.reset();
}

ListWidgetContainer* TestListWidgetContainer::showRow(const QString& path, int width) {
    host->resize(width + 20, 100);
    auto* row = new ListWidgetContainer(host.data(), path);
    row->setGeometry(0, 0, width, 60);
    host->show();
    if (!QTest::qWaitForWindowExposed(host.data()))
        return nullptr;
    // The buttons square themselves once shown, and the layout settles
    // after that.
    QTest::qWait(20);
    return row;
}

void TestListWidgetContainer::childrenInOrder() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/anlage.pdf"));
    QCOMPARE(row.filePath, QStringLiteral("/data/anlage.pdf"));

    const QObjectList children = row.children();
    QCOMPARE(children.size(), 6);
    // Created in this order; the layout is set on the row last.
    QCOMPARE(children[0]->objectName(), QStringLiteral("LineEditPath"));
    QVERIFY(qobject_cast<QLineEdit*>(children[0]));
    QCOMPARE(children[1]->objectName(), QStringLiteral("pBarKonvert"));
    QVERIFY(qobject_cast<QProgressBar*>(children[1]));
    QCOMPARE(children[2]->objectName(), QStringLiteral("btnDelete"));
    QVERIFY(qobject_cast<cButton*>(children[2]));
    QCOMPARE(children[3]->objectName(), QStringLiteral("btnNewName"));
    QVERIFY(qobject_cast<cButton*>(children[3]));
    QCOMPARE(children[4]->objectName(), QStringLiteral("btnKonvertier"));
    QVERIFY(qobject_cast<cButton*>(children[4]));
    QVERIFY(qobject_cast<QHBoxLayout*>(children[5]));

    QCOMPARE(row.lineEdit, children[0]);
    QCOMPARE(row.pBar, children[1]);
    for (int i = 2; i < 5; ++i)
        QCOMPARE(static_cast<cButton*>(children[i])->aspectFactor, 1.0);
}

void TestListWidgetContainer::layout() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/anlage.pdf"));
    auto* box = qobject_cast<QHBoxLayout*>(row.layout());
    QVERIFY(box);
    QCOMPARE(box->spacing(), 0);
    QCOMPARE(box->contentsMargins(), QMargins(5, 0, 0, 0));
    QCOMPARE(box->count(), 5);
    const char* names[] = {"LineEditPath", "pBarKonvert", "btnDelete", "btnNewName",
                           "btnKonvertier"};
    const int stretches[] = {3, 1, 0, 0, 0};
    for (int i = 0; i < 5; ++i) {
        QVERIFY(box->itemAt(i)->widget());
        QCOMPARE(box->itemAt(i)->widget()->objectName(), QLatin1String(names[i]));
        QCOMPARE(box->stretch(i), stretches[i]);
        QCOMPARE(box->itemAt(i)->alignment(), Qt::Alignment());
    }
}

void TestListWidgetContainer::sizePolicies() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/anlage.pdf"));
    const QSizePolicy expanding(QSizePolicy::Expanding, QSizePolicy::Expanding);
    const QSizePolicy fixedWidth(QSizePolicy::Fixed, QSizePolicy::Expanding);
    QCOMPARE(row.lineEdit->sizePolicy(), expanding);
    QCOMPARE(row.pBar->sizePolicy(), expanding);
    for (const char* name : {"btnDelete", "btnNewName", "btnKonvertier"}) {
        const QSizePolicy policy = rowButton(&row, name)->sizePolicy();
        QCOMPARE(policy, fixedWidth);
        QCOMPARE(policy.horizontalStretch(), 0);
        QCOMPARE(policy.verticalStretch(), 0);
        QVERIFY(!policy.hasHeightForWidth());
    }
}

void TestListWidgetContainer::lineEditAndBar() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/anlage.pdf"));
    QVERIFY(row.lineEdit->isReadOnly());
    QCOMPARE(row.lineEdit->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(row.lineEdit->font().pointSize(), 16);
    QFont expected;
    expected.setPointSize(16);
    QCOMPARE(row.lineEdit->font().family(), expected.family());
    QCOMPARE(row.pBar->minimum(), 0);
    QCOMPARE(row.pBar->maximum(), 100);
    QCOMPARE(row.pBar->value(), 0);
}

void TestListWidgetContainer::styleSheetVerbatim() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/anlage.pdf"));
    QCOMPARE(row.styleSheet(), QLatin1String(expectedStyleSheet));
}

void TestListWidgetContainer::metaObject() {
    const QMetaObject& mo = ListWidgetContainer::staticMetaObject;
    QCOMPARE(mo.superClass(), &QWidget::staticMetaObject);
    const int offset = mo.methodOffset();
    QCOMPARE(mo.methodCount() - offset, 6);

    struct Expected {
        const char* signature;
        QMetaMethod::MethodType type;
        QList<QByteArray> names;
    };
    const Expected expected[] = {
        {"deleteMe()", QMetaMethod::Signal, {}},
        {"newName(QString)", QMetaMethod::Signal, {"s"}},
        {"konvertMe()", QMetaMethod::Signal, {}},
        {"setPbarRange(int,int)", QMetaMethod::Slot, {"min", "max"}},
        {"setPbarValue(int)", QMetaMethod::Slot, {"value"}},
        {"setTextElided()", QMetaMethod::Slot, {}},
    };
    for (int i = 0; i < 6; ++i) {
        const QMetaMethod method = mo.method(offset + i);
        QCOMPARE(method.methodSignature(), QByteArray(expected[i].signature));
        QCOMPARE(method.methodType(), expected[i].type);
        QCOMPARE(method.access(), QMetaMethod::Public);
        QCOMPARE(method.parameterNames(), expected[i].names);
    }
    QCOMPARE(mo.propertyCount() - mo.propertyOffset(), 0);
}

void TestListWidgetContainer::textElidedOnlyOnceLaidOut() {
    auto* row = new ListWidgetContainer(host.data(), QStringLiteral("/data/anlage.pdf"));
    // The call is queued: nothing is shown before the event loop runs.
    QCOMPARE(row->lineEdit->text(), QString());
    row->setGeometry(0, 0, 700, 60);
    host->resize(720, 100);
    host->show();
    QVERIFY(QTest::qWaitForWindowExposed(host.data()));
    QTRY_COMPARE(row->lineEdit->text(), QStringLiteral("/data/anlage.pdf"));
}

void TestListWidgetContainer::elision_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("cut");

    QTest::newRow("short path shown whole") << QStringLiteral("/data/a.pdf") << false;
    QTest::newRow("long path cut on the left")
        << QStringLiteral("/srv/anlagen/gebaeude-b/dachzentrale/lueftung/halle-2/zuluft/"
                          "messumformer/konfigurationen/2026/maerz/druck-messumformer-17.pdf")
        << true;
}

void TestListWidgetContainer::elision() {
    QFETCH(QString, path);
    QFETCH(bool, cut);

    ListWidgetContainer* row = showRow(path);
    QVERIFY(row);
    const QString shown = row->lineEdit->text();
    const QString expected = QFontMetrics(row->lineEdit->font())
                                 .elidedText(path, Qt::ElideLeft, row->lineEdit->width() - 2);
    QCOMPARE(shown, expected);
    if (cut) {
        QVERIFY2(shown.startsWith(QChar(0x2026)), qPrintable(shown));
        QVERIFY(shown.size() < path.size());
        QVERIFY(path.endsWith(shown.mid(1)));
        QVERIFY(shown.endsWith(QStringLiteral("druck-messumformer-17.pdf")));
        QCOMPARE(row->lineEdit->toolTip(), path);
    } else {
        QCOMPARE(shown, path);
        QCOMPARE(row->lineEdit->toolTip(), QString());
    }
}

void TestListWidgetContainer::wideningReElides() {
    const QString path = QStringLiteral("/srv/anlagen/gebaeude-b/dachzentrale/lueftung/halle-2/"
                                        "zuluft/messumformer/druck.pdf");
    ListWidgetContainer* row = showRow(path, 400);
    QVERIFY(row);
    QVERIFY(row->lineEdit->text().startsWith(QChar(0x2026)));
    QCOMPARE(row->lineEdit->toolTip(), path);

    host->resize(2420, 100);
    row->resize(2400, 60);
    QCOMPARE(row->lineEdit->text(), path);
    QCOMPARE(row->lineEdit->toolTip(), QString());

    row->resize(400, 60);
    QVERIFY(row->lineEdit->text().startsWith(QChar(0x2026)));
    QCOMPARE(row->lineEdit->toolTip(), path);
}

void TestListWidgetContainer::squareButtons() {
    ListWidgetContainer* row = showRow(QStringLiteral("/data/a.pdf"));
    QVERIFY(row);
    for (const char* name : {"btnDelete", "btnNewName", "btnKonvertier"}) {
        cButton* b = rowButton(row, name);
        QCOMPARE(b->height(), 60);
        QCOMPARE(b->width(), 60);
    }
    // Path and bar share the rest 3 : 1.
    const int rest = 700 - 5 - 3 * 60;
    QVERIFY(qAbs(row->lineEdit->width() - rest * 3 / 4) <= 2);
    QVERIFY(qAbs(row->pBar->width() - rest / 4) <= 2);
}

void TestListWidgetContainer::progress() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/a.pdf"));
    QCOMPARE(row.pBar->text(), QStringLiteral("0%"));
    row.setPbarRange(0, 17);
    QCOMPARE(row.pBar->maximum(), 17);
    QCOMPARE(row.pBar->value(), 0);
    row.setPbarValue(5);
    QCOMPARE(row.pBar->value(), 5);
    QCOMPARE(row.pBar->text(), QStringLiteral("29%"));
    row.setPbarValue(17);
    QCOMPARE(row.pBar->text(), QStringLiteral("100%"));
}

void TestListWidgetContainer::slotsWithoutWidgets() {
    ListWidgetContainer row(nullptr, QStringLiteral("/data/a.pdf"));
    // The state the slots guard against exists only inside the
    // constructor; recreate it to see that they hold still.
    QProgressBar* bar = row.pBar;
    QLineEdit* edit = row.lineEdit;
    row.pBar = nullptr;
    row.lineEdit = nullptr;
    row.setPbarRange(0, 17);
    row.setPbarValue(3);
    row.setTextElided();
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 0);
    QCOMPARE(edit->text(), QString());
    row.pBar = bar;
    row.lineEdit = edit;
}

void TestListWidgetContainer::buttonsAskTheWindow_data() {
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<int>("deletes");
    QTest::addColumn<int>("converts");

    QTest::newRow("remove button") << QStringLiteral("btnDelete") << 1 << 0;
    QTest::newRow("convert button") << QStringLiteral("btnKonvertier") << 0 << 1;
}

void TestListWidgetContainer::buttonsAskTheWindow() {
    QFETCH(QString, buttonName);
    QFETCH(int, deletes);
    QFETCH(int, converts);

    ListWidgetContainer* row = showRow(QStringLiteral("/data/a.pdf"));
    QVERIFY(row);
    QSignalSpy deleteMe(row, &ListWidgetContainer::deleteMe);
    QSignalSpy konvertMe(row, &ListWidgetContainer::konvertMe);
    QSignalSpy newName(row, &ListWidgetContainer::newName);
    pointAndClick(rowButton(row, buttonName.toLatin1().constData()));
    QCOMPARE(deleteMe.count(), deletes);
    QCOMPARE(konvertMe.count(), converts);
    QCOMPARE(newName.count(), 0);
    // The row itself changes nothing.
    QCOMPARE(row->filePath, QStringLiteral("/data/a.pdf"));
    QCOMPARE(row->pBar->value(), 0);
}

void TestListWidgetContainer::rename_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("result");

    QTest::newRow("bericht gets .pdf")
        << QStringLiteral("bericht") << QStringLiteral("bericht.pdf");
    QTest::newRow("bericht.PDF gets .pdf as well")
        << QStringLiteral("bericht.PDF") << QStringLiteral("bericht.PDF.pdf");
    QTest::newRow("bericht.pdf kept")
        << QStringLiteral("bericht.pdf") << QStringLiteral("bericht.pdf");
    QTest::newRow("anlage.json gets .pdf")
        << QStringLiteral("anlage.json") << QStringLiteral("anlage.json.pdf");
}

void TestListWidgetContainer::rename() {
    QFETCH(QString, typed);
    QFETCH(QString, result);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString original = dir.filePath(QStringLiteral("anlage.pdf"));
    ListWidgetContainer* row = showRow(original);
    QVERIFY(row);
    QSignalSpy newName(row, &ListWidgetContainer::newName);

    ModalAnswerer answerer(typeSaveName(typed));
    pointAndClick(rowButton(row, "btnNewName"));

    QCOMPARE(answerer.count(), 1);
    const ModalAnswerer::Seen& dialog = answerer.dialogs.first();
    QCOMPARE(dialog.className, QStringLiteral("QFileDialog"));
    QCOMPARE(dialog.title, QStringLiteral("Speichern unter"));
    QCOMPARE(dialog.acceptMode, int(QFileDialog::AcceptSave));
    QVERIFY(!dialog.hasParent);
    // Opened on the row's current report.
    QCOMPARE(QDir(dialog.directory).canonicalPath(), QDir(dir.path()).canonicalPath());
    QCOMPARE(dialog.fileName, QStringLiteral("anlage.pdf"));

    const QString expected = QDir(dir.path()).filePath(result);
    QCOMPARE(QDir::cleanPath(row->filePath), QDir::cleanPath(expected));
    QCOMPARE(newName.count(), 1);
    QCOMPARE(newName.first().first().toString(), row->filePath);
    // The new name is shown at once, elided like any other.
    const QString shown = QFontMetrics(row->lineEdit->font())
                              .elidedText(row->filePath, Qt::ElideLeft, row->lineEdit->width() - 2);
    QCOMPARE(row->lineEdit->text(), shown);
    QVERIFY(shown.endsWith(result));
    QCOMPARE(row->lineEdit->toolTip(), shown == row->filePath ? QString() : row->filePath);
    // Nothing is written by choosing a name.
    QVERIFY(!QFile::exists(expected));
}

void TestListWidgetContainer::renameCancelled() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString original = dir.filePath(QStringLiteral("anlage.pdf"));
    ListWidgetContainer* row = showRow(original);
    QVERIFY(row);
    const QString shown = row->lineEdit->text();
    QSignalSpy newName(row, &ListWidgetContainer::newName);

    ModalAnswerer answerer(rejectDialog);
    pointAndClick(rowButton(row, "btnNewName"));

    QCOMPARE(answerer.count(), 1);
    QCOMPARE(row->filePath, original);
    QCOMPARE(row->lineEdit->text(), shown);
    QCOMPARE(newName.count(), 0);
}

QTEST_MAIN(TestListWidgetContainer)
#include "tst_listwidgetcontainer.moc"
