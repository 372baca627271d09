// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "ui_mainwindow.h"
#include "windowtest.h"

#include <QAction>
#include <QFontMetrics>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaMethod>
#include <QProgressBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <type_traits>

// The form structure only points at widgets that the window's parent tree
// owns; deleting it must not touch them.
static_assert(std::is_trivially_destructible<Ui_MainWindow>::value, "Ui_MainWindow owns nothing");
static_assert(!std::is_polymorphic<Ui_MainWindow>::value, "Ui_MainWindow is a plain structure");

namespace {

const char windowStyleSheet[] =
    "QPushButton#btnLogo{border-image:url(:/img/veltrixLogoMain.png);}\n"
    "\n"
    "QPushButton#btnBrows{border-image:url(:/img/Folder_icon.png);}\n"
    "QPushButton#btnBrows:pressed{border-image:url(:/img/Folder_icon_blau.png);}\n"
    "\n"
    "QPushButton#btnKonvert{border-image:url(:/img/IconSwitch.png);}\n"
    "QPushButton#btnKonvert:pressed{border-image:url(:/img/IconSwitchInv.png);}";

template <typename T> T* child(QWidget* window, const char* name) {
    return window->findChild<T*>(QLatin1String(name));
}

QList<ListWidgetContainer*> rows(QListWidget* list) {
    QList<ListWidgetContainer*> result;
    for (int i = 0; i < list->count(); ++i)
        result.append(qobject_cast<ListWidgetContainer*>(list->itemWidget(list->item(i))));
    return result;
}

bool near(const QColor& a, const QColor& b, int tolerance = 16) {
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance &&
           qAbs(a.blue() - b.blue()) <= tolerance;
}

QColor centreColour(QWidget* widget) {
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

QString longPath(const QString& name) {
    return QStringLiteral("/srv/anlagen/gebaeude-b/dachzentrale/lueftung/halle-2/zuluft/"
                          "messumformer/konfigurationen/2026/") +
           name;
}

} // namespace

class TestMainWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void resources_data();
    void resources();
    void setupUiObjectName_data();
    void setupUiObjectName();
    void setupUiWidgets();
    void setupUiLayouts();
    void setupUiTexts();
    void title();
    void acceptsDrops();
    void metaObject();
    void convertSingleByNameQueued();
    void logoKeepsItsShape();
    void headerShare_data();
    void headerShare();
    void resizeOnEmptyList();
    void rowSizeHints_data();
    void rowSizeHints();
    void newRowSizeHint();
    void wideningReElidesEveryRow();
    void pressedImages_data();
    void pressedImages();
    void logoDoesNothing();

private:
    void showWindow(MainWindow& window, QSize size = QSize(709, 580));
};

void TestMainWindow::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
}

void TestMainWindow::showWindow(MainWindow& window, QSize size) {
    window.resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTest::qWait(20);
}

void TestMainWindow::resources_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    QTest::newRow("logo") << ":/img/veltrixLogoMain.png" << QSize(1000, 241);
    for (const char* name : {"Folder_icon", "Folder_icon_blau", "IconSwitch", "IconSwitchInv",
                             "btnClose", "btnCloseInv", "Edit", "Edit_blau"})
        QTest::newRow(name) << QStringLiteral(":/img/%1.png").arg(QLatin1String(name))
                            << QSize(142, 142);
}

void TestMainWindow::resources() {
    QFETCH(QString, path);
    QFETCH(QSize, size);
    const QImage image(path);
    QVERIFY2(!image.isNull(), qPrintable(path));
    QCOMPARE(image.size(), size);
}

void TestMainWindow::setupUiObjectName_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("unnamed window") << QString() << QStringLiteral("MainWindow");
    QTest::newRow("named window keeps its name")
        << QStringLiteral("shell") << QStringLiteral("shell");
}

void TestMainWindow::setupUiObjectName() {
    QFETCH(QString, before);
    QFETCH(QString, after);
    QMainWindow window;
    window.setObjectName(before);
    Ui_MainWindow ui;
    ui.setupUi(&window);
    QCOMPARE(window.objectName(), after);
}

void TestMainWindow::setupUiWidgets() {
    QMainWindow window;
    Ui_MainWindow ui;
    ui.setupUi(&window);

    QCOMPARE(window.size(), QSize(709, 580));
    QCOMPARE(window.styleSheet(), QLatin1String(windowStyleSheet));

    QCOMPARE(ui.action_ffnen->objectName(), QStringLiteral("action_ffnen"));
    QCOMPARE(ui.action_ffnen->parent(), &window);
    QCOMPARE(ui.actionAlle_konvertieren->objectName(), QStringLiteral("actionAlle_konvertieren"));
    QCOMPARE(ui.actionAlle_konvertieren->parent(), &window);
    // Named but put nowhere.
    QVERIFY(ui.action_ffnen->associatedWidgets().isEmpty());
    QVERIFY(ui.actionAlle_konvertieren->associatedWidgets().isEmpty());
    QVERIFY(window.actions().isEmpty());
    // Created first, before any widget of the form.
    const QObjectList children = window.children();
    QVERIFY(children.indexOf(ui.action_ffnen) < children.indexOf(ui.actionAlle_konvertieren));
    QVERIFY(children.indexOf(ui.actionAlle_konvertieren) < children.indexOf(ui.centralWidget));

    QCOMPARE(window.centralWidget(), ui.centralWidget);
    QCOMPARE(ui.centralWidget->objectName(), QStringLiteral("centralWidget"));
    QCOMPARE(ui.centralWidget->styleSheet(),
             QStringLiteral("QLabel#lblLogo{border-image:url(:/img/veltrixLogoMain.png);}"));

    QCOMPARE(ui.widget->objectName(), QStringLiteral("widget"));
    QCOMPARE(ui.widget->parentWidget(), ui.centralWidget);
    QCOMPARE(ui.widget->minimumSize(), QSize(0, 60));
    QCOMPARE(ui.listWidget->objectName(), QStringLiteral("listWidget"));
    QCOMPARE(ui.listWidget->parentWidget(), ui.centralWidget);
    QCOMPARE(ui.listWidget->count(), 0);

    const QSizePolicy buttonPolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    cButton* buttons[] = {ui.btnLogo, ui.btnBrows, ui.btnKonvert};
    const char* names[] = {"btnLogo", "btnBrows", "btnKonvert"};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(buttons[i]->objectName(), QLatin1String(names[i]));
        QCOMPARE(buttons[i]->parentWidget(), ui.widget);
        QCOMPARE(buttons[i]->sizePolicy(), buttonPolicy);
        QCOMPARE(buttons[i]->sizePolicy().horizontalStretch(), 0);
        QCOMPARE(buttons[i]->sizePolicy().verticalStretch(), 0);
        // Kept from the button's own policy, which has none.
        QVERIFY(!buttons[i]->sizePolicy().hasHeightForWidth());
        // A plain form leaves the logo's factor alone; the window sets it.
        QCOMPARE(buttons[i]->aspectFactor, 1.0);
    }
}

void TestMainWindow::setupUiLayouts() {
    QMainWindow window;
    Ui_MainWindow ui;
    ui.setupUi(&window);

    QCOMPARE(ui.verticalLayout->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(ui.centralWidget->layout(), ui.verticalLayout);
    QCOMPARE(ui.verticalLayout->spacing(), 6);
    QCOMPARE(ui.verticalLayout->contentsMargins(), QMargins(11, 11, 11, 11));
    QCOMPARE(ui.verticalLayout->count(), 2);
    QCOMPARE(ui.verticalLayout->itemAt(0)->widget(), ui.widget);
    QCOMPARE(ui.verticalLayout->itemAt(1)->widget(), ui.listWidget);
    QCOMPARE(ui.verticalLayout->stretch(0), 1);
    QCOMPARE(ui.verticalLayout->stretch(1), 9);

    QCOMPARE(ui.horizontalLayout->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(ui.widget->layout(), ui.horizontalLayout);
    QCOMPARE(ui.horizontalLayout->spacing(), 6);
    QCOMPARE(ui.horizontalLayout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(ui.horizontalLayout->count(), 4);
    QCOMPARE(ui.horizontalLayout->itemAt(0)->widget(), ui.btnLogo);
    QCOMPARE(ui.horizontalLayout->itemAt(1)->spacerItem(), ui.horizontalSpacer);
    QCOMPARE(ui.horizontalLayout->itemAt(2)->widget(), ui.btnBrows);
    QCOMPARE(ui.horizontalLayout->itemAt(3)->widget(), ui.btnKonvert);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(ui.horizontalLayout->stretch(i), 0);
        QCOMPARE(ui.horizontalLayout->itemAt(i)->alignment(), Qt::Alignment());
    }

    QCOMPARE(ui.horizontalSpacer->sizeHint(), QSize(598, 20));
    QCOMPARE(ui.horizontalSpacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(ui.horizontalSpacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
}

void TestMainWindow::setupUiTexts() {
    QMainWindow window;
    Ui_MainWindow ui;
    ui.setupUi(&window);
    QCOMPARE(window.windowTitle(), QStringLiteral("MainWindow"));
    QCOMPARE(ui.action_ffnen->text(), QString::fromUtf8("\xc3\x96"
                                                        "ffnen"));
    QCOMPARE(ui.actionAlle_konvertieren->text(), QStringLiteral("Alle konvertieren"));
    QCOMPARE(ui.btnLogo->text(), QString());
    QCOMPARE(ui.btnBrows->text(), QString());
    QCOMPARE(ui.btnKonvert->text(), QString());
}

void TestMainWindow::title() {
    MainWindow window;
    QCOMPARE(window.windowTitle(), QStringLiteral("Brevio [Beta]"));
    QCOMPARE(window.objectName(), QStringLiteral("MainWindow"));
    QVERIFY(window.windowFlags() == (Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                     Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint |
                                     Qt::WindowFullscreenButtonHint) ||
            window.windowType() == Qt::Window);
    QVERIFY(!window.parentWidget());
}

void TestMainWindow::acceptsDrops() {
    MainWindow window;
    QVERIFY(window.acceptDrops());
}

void TestMainWindow::metaObject() {
    const QMetaObject& mo = MainWindow::staticMetaObject;
    QCOMPARE(mo.superClass(), &QMainWindow::staticMetaObject);
    const int offset = mo.methodOffset();
    QCOMPARE(mo.methodCount() - offset, 2);

    const QMetaMethod all = mo.method(offset + 0);
    QCOMPARE(all.methodSignature(), QByteArray("convertAll()"));
    QCOMPARE(all.methodType(), QMetaMethod::Slot);
    QCOMPARE(all.access(), QMetaMethod::Public);
    QCOMPARE(all.parameterCount(), 0);

    const QMetaMethod single = mo.method(offset + 1);
    QCOMPARE(single.methodSignature(), QByteArray("convertSingle(ListWidgetContainer*)"));
    QCOMPARE(single.methodType(), QMetaMethod::Slot);
    QCOMPARE(single.access(), QMetaMethod::Public);
    QCOMPARE(single.parameterNames(), QList<QByteArray>{"row"});

    QCOMPARE(mo.propertyCount() - mo.propertyOffset(), 0);
    QVERIFY(QMetaType::type("ListWidgetContainer*") != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("ListWidgetContainer*"), qMetaTypeId<ListWidgetContainer*>());
}

void TestMainWindow::convertSingleByNameQueued() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    MainWindow window;
    auto* list = child<QListWidget>(&window, "listWidget");
    // No such configuration file: the job ends at once, the row stays at 0.
    window.addListWidgetItem(dir.filePath(QStringLiteral("fehlt.json")));
    ListWidgetContainer* row = rows(list).value(0);
    QVERIFY(row);

    JobWatch jobs;
    QVERIFY(QMetaObject::invokeMethod(&window, "convertSingle", Qt::QueuedConnection,
                                      Q_ARG(ListWidgetContainer*, row)));
    QCOMPARE(row->pBar->maximum(), 100); // not yet: the call is queued
    QTRY_COMPARE(row->pBar->maximum(), 17);
    jobs.collect();
    QTRY_COMPARE(jobs.alive(), 0);
    QCOMPARE(row->pBar->value(), 0);
}

void TestMainWindow::logoKeepsItsShape() {
    MainWindow window;
    showWindow(window);
    auto* logo = child<cButton>(&window, "btnLogo");
    QCOMPARE(logo->aspectFactor, 4.149377593360996);
    QCOMPARE(logo->aspectFactor, 1000.0 / 241.0);
    QVERIFY(logo->height() >= 60);
    QCOMPARE(logo->width(), int(logo->height() * (1000.0 / 241.0)));
    for (const char* name : {"btnBrows", "btnKonvert"}) {
        auto* button = child<cButton>(&window, name);
        QCOMPARE(button->aspectFactor, 1.0);
        QCOMPARE(button->width(), button->height());
        QCOMPARE(button->height(), logo->height());
    }
}

void TestMainWindow::headerShare_data() {
    QTest::addColumn<int>("windowHeight");
    QTest::newRow("default 580 high") << 580;
    QTest::newRow("1000 high") << 1000;
    QTest::newRow("300 high, header held at 60") << 300;
}

void TestMainWindow::headerShare() {
    QFETCH(int, windowHeight);
    MainWindow window;
    showWindow(window, QSize(1200, windowHeight));
    QTest::qWait(20);
    auto* header = child<QWidget>(&window, "widget");
    auto* list = child<QListWidget>(&window, "listWidget");

    const int available = window.centralWidget()->height() - 2 * 11 - 6;
    QCOMPARE(header->height() + list->height(), available);
    const int share = available / 10;
    if (share >= 60) {
        // One tenth, give or take the rounding of the layout.
        QVERIFY2(
            qAbs(header->height() - share) <= 1,
            qPrintable(QStringLiteral("header %1 of %2").arg(header->height()).arg(available)));
    } else {
        QCOMPARE(header->height(), 60);
    }
    QVERIFY(header->height() >= 60);
}

void TestMainWindow::resizeOnEmptyList() {
    MainWindow window;
    showWindow(window);
    window.resize(900, 700);
    QTest::qWait(20);
    auto* list = child<QListWidget>(&window, "listWidget");
    QCOMPARE(list->count(), 0);
    QVERIFY(list->width() > 709);
}

void TestMainWindow::rowSizeHints_data() {
    QTest::addColumn<QSize>("windowSize");
    QTest::newRow("widened to 1100") << QSize(1100, 580);
    QTest::newRow("narrowed to 560") << QSize(560, 580);
    QTest::newRow("taller only") << QSize(709, 900);
}

void TestMainWindow::rowSizeHints() {
    QFETCH(QSize, windowSize);
    MainWindow window;
    showWindow(window);
    for (const char* name : {"/data/a.json", "/data/b.json", "/data/c.json"})
        window.addListWidgetItem(QLatin1String(name));
    auto* list = child<QListWidget>(&window, "listWidget");
    QCOMPARE(list->count(), 3);

    window.resize(windowSize);
    QTest::qWait(20);
    for (int i = 0; i < list->count(); ++i)
        QCOMPARE(list->item(i)->sizeHint(), QSize(list->width() - 10, 60));
    // The rows follow their items' height.
    QTRY_COMPARE(rows(list).value(2)->height(), 60);
}

void TestMainWindow::newRowSizeHint() {
    MainWindow window;
    auto* list = child<QListWidget>(&window, "listWidget");
    // Not shown yet: the hint uses whatever width the list has right now.
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QCOMPARE(list->item(0)->sizeHint(), QSize(list->width() - 10, 60));
    showWindow(window);
    window.addListWidgetItem(QStringLiteral("/data/b.json"));
    QCOMPARE(list->item(1)->sizeHint(), QSize(list->width() - 10, 60));
}

void TestMainWindow::wideningReElidesEveryRow() {
    MainWindow window;
    showWindow(window, QSize(709, 580));
    const QStringList names = {QStringLiteral("druck-1.json"), QStringLiteral("druck-2.json"),
                               QStringLiteral("druck-3.json")};
    for (const QString& name : names)
        window.addListWidgetItem(longPath(name));
    auto* list = child<QListWidget>(&window, "listWidget");
    QTest::qWait(50);

    auto check = [&](bool expectCut) {
        const QList<ListWidgetContainer*> all = rows(list);
        for (int i = 0; i < all.size(); ++i) {
            ListWidgetContainer* row = all[i];
            const QString expected =
                QFontMetrics(row->lineEdit->font())
                    .elidedText(row->filePath, Qt::ElideLeft, row->lineEdit->width() - 2);
            if (row->lineEdit->text() != expected)
                return false;
            if (expectCut != (expected != row->filePath))
                return false;
            if (row->lineEdit->toolTip() != (expectCut ? row->filePath : QString()))
                return false;
            if (!expected.endsWith(QStringLiteral("druck-%1.pdf").arg(i + 1)))
                return false;
        }
        return true;
    };
    QTRY_VERIFY(check(true));
    window.resize(2600, 580);
    QTRY_VERIFY(check(false));
    window.resize(709, 580);
    QTRY_VERIFY(check(true));
}

void TestMainWindow::pressedImages_data() {
    QTest::addColumn<QString>("buttonName");
    QTest::addColumn<bool>("inRow");
    QTest::addColumn<QColor>("normal");
    QTest::addColumn<QColor>("pressed");
    // The centres of the artwork: Folder_icon / _blau, IconSwitch / Inv,
    // btnClose / Inv, Edit / _blau.
    QTest::newRow("btnBrows") << QStringLiteral("btnBrows") << false << QColor(84, 110, 122)
                              << QColor(61, 138, 208);
    QTest::newRow("btnKonvert") << QStringLiteral("btnKonvert") << false << QColor(255, 255, 255)
                                << QColor(31, 95, 139);
    QTest::newRow("row btnDelete")
        << QStringLiteral("btnDelete") << true << QColor(31, 95, 139) << QColor(255, 255, 255);
    QTest::newRow("row btnNewName")
        << QStringLiteral("btnNewName") << true << QColor(55, 71, 79) << QColor(31, 111, 178);
    QTest::newRow("row btnKonvertier")
        << QStringLiteral("btnKonvertier") << true << QColor(255, 255, 255) << QColor(31, 95, 139);
}

void TestMainWindow::pressedImages() {
    QFETCH(QString, buttonName);
    QFETCH(bool, inRow);
    QFETCH(QColor, normal);
    QFETCH(QColor, pressed);

    MainWindow window;
    showWindow(window);
    if (inRow)
        window.addListWidgetItem(QStringLiteral("/data/a.json"));
    QTest::qWait(50);
    auto* button = window.findChild<cButton*>(buttonName);
    QVERIFY(button);
    QVERIFY(button->isVisible());

    ModalAnswerer unexpected; // a click here would open a dialog
    const QColor before = centreColour(button);
    QVERIFY2(near(before, normal), qPrintable(before.name()));

    const QPoint centre = button->rect().center();
    QMouseEvent move(QEvent::MouseMove, centre, button->mapToGlobal(centre), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(button, &move);
    QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, centre);
    QVERIFY(button->isDown());
    const QColor held = centreColour(button);
    QVERIFY2(near(held, pressed), qPrintable(held.name()));

    // Let go 20 pixels away: the button pops up and nothing is triggered.
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, centre + QPoint(0, 20));
    QVERIFY(!button->isDown());
    const QColor after = centreColour(button);
    QVERIFY2(near(after, normal), qPrintable(after.name()));
    QCOMPARE(unexpected.count(), 0);
    auto* list = child<QListWidget>(&window, "listWidget");
    QCOMPARE(list->count(), inRow ? 1 : 0);
}

void TestMainWindow::logoDoesNothing() {
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(QStringLiteral("/data/a.json"));
    auto* list = child<QListWidget>(&window, "listWidget");
    ListWidgetContainer* row = rows(list).value(0);
    QVERIFY(row);
    ModalAnswerer unexpected;
    JobWatch jobs;
    auto* logo = child<cButton>(&window, "btnLogo");
    QSignalSpy clicked(logo, &QAbstractButton::clicked);
    pointAndClick(logo);
    QCOMPARE(clicked.count(), 1); // it is clicked, and nobody listens
    QTest::qWait(50);
    QCOMPARE(unexpected.count(), 0);
    QCOMPARE(jobs.collect(), 0);
    QCOMPARE(list->count(), 1);
    QCOMPARE(row->pBar->maximum(), 100);
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
