// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"

#include <QApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

Q_DECLARE_METATYPE(QList<bool>)

namespace {

// Counts the paint events a widget receives.
class PaintCounter : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

void sendMove(QWidget* widget, QPoint local, Qt::MouseButtons held = Qt::NoButton) {
    QMouseEvent move(QEvent::MouseMove, local, widget->mapToGlobal(local), Qt::NoButton, held,
                     Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

struct Report {
    int type;
    QPoint position;
};

QList<Report> reports(const QSignalSpy& spy) {
    QList<Report> result;
    for (const QList<QVariant>& arguments : spy)
        result.append({arguments.at(0).toInt(), arguments.at(1).toPoint()});
    return result;
}

} // namespace

class TestCButton : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void initialValues();
    void metaObjectMethods();
    void stateProperty();
    void aspect_data();
    void aspect();
    void clickFiltering_data();
    void clickFiltering();
    void pressBeforeAnyMove();
    void movesWhilePressed();
    void rightButtonPress();
    void changeState_data();
    void changeState();
    void changeStateRepolishes();

private:
    // A shown 200 x 200 button, big enough that every release in the tests
    // lands on it and the base class would count it as a click.
    cButton* makeBigButton();
    QScopedPointer<QWidget> host;
};

void TestCButton::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
    // The signal's first parameter is recorded as "QMouseEvent::Type"; the
    // spies need that name known to the meta-type system.
    qRegisterMetaType<QMouseEvent::Type>("QMouseEvent::Type");
}

cButton* TestCButton::makeBigButton() {
    host.reset(new QWidget);
    host->resize(400, 400);
    host->move(300, 200);
    auto* button = new cButton(host.data());
    // Square: the width follows the 200 pixel height.
    button->setGeometry(50, 50, 200, 200);
    host->show();
    if (!QTest::qWaitForWindowExposed(host.data()))
        return nullptr;
    return button;
}

void TestCButton::initialValues() {
    cButton button(nullptr);
    QCOMPARE(button.aspectFactor, 1.0);
    QCOMPARE(button.heightFollowsWidth, false);
    QCOMPARE(button.property("state").toBool(), false);
    QVERIFY(button.hasMouseTracking());
    QVERIFY(qobject_cast<QPushButton*>(&button));
    QCOMPARE(QByteArray(button.metaObject()->className()), QByteArray("cButton"));
    QCOMPARE(button.metaObject()->superClass(), &QPushButton::staticMetaObject);
}

void TestCButton::metaObjectMethods() {
    const QMetaObject& mo = cButton::staticMetaObject;
    const int offset = mo.methodOffset();
    QCOMPARE(mo.methodCount() - offset, 3);

    const QMetaMethod mouse = mo.method(offset + 0);
    QCOMPARE(mouse.methodSignature(), QByteArray("signalMouseEvent(QMouseEvent::Type,QPoint)"));
    QCOMPARE(mouse.methodType(), QMetaMethod::Signal);
    QCOMPARE(mouse.access(), QMetaMethod::Public);
    QCOMPARE(mouse.parameterNames(), (QList<QByteArray>{"t", "p"}));
    QCOMPARE(mouse.parameterTypes(), (QList<QByteArray>{"QMouseEvent::Type", "QPoint"}));

    const QMetaMethod on = mo.method(offset + 1);
    QCOMPARE(on.methodSignature(), QByteArray("stateOn()"));
    QCOMPARE(on.methodType(), QMetaMethod::Signal);
    QCOMPARE(on.access(), QMetaMethod::Public);
    QCOMPARE(on.parameterCount(), 0);

    const QMetaMethod change = mo.method(offset + 2);
    QCOMPARE(change.methodSignature(), QByteArray("changeState(bool)"));
    QCOMPARE(change.methodType(), QMetaMethod::Slot);
    QCOMPARE(change.access(), QMetaMethod::Public);
    QCOMPARE(change.parameterNames(), QList<QByteArray>{"b"});
}

void TestCButton::stateProperty() {
    const QMetaObject& mo = cButton::staticMetaObject;
    QCOMPARE(mo.propertyCount() - mo.propertyOffset(), 1);
    const QMetaProperty state = mo.property(mo.propertyOffset());
    QCOMPARE(QByteArray(state.name()), QByteArray("state"));
    QCOMPARE(state.type(), QVariant::Bool);
    QVERIFY(state.isReadable());
    QVERIFY(state.isWritable());
    QVERIFY(state.isDesignable());
    QVERIFY(state.isScriptable());
    QVERIFY(state.isStored());
    QVERIFY(!state.hasNotifySignal());
    QVERIFY(!state.isResettable());
    QVERIFY(!state.isConstant());
    QVERIFY(!state.isFinal());
    QVERIFY(!state.isUser());

    // Writing goes through changeState: switching on announces itself.
    cButton button(nullptr);
    QSignalSpy on(&button, &cButton::stateOn);
    QVERIFY(button.setProperty("state", true));
    QCOMPARE(on.count(), 1);
    QCOMPARE(button.property("state").toBool(), true);
    QVERIFY(button.setProperty("state", false));
    QCOMPARE(on.count(), 1);
    QCOMPARE(button.property("state").toBool(), false);
}

void TestCButton::aspect_data() {
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("heightFollowsWidth");
    QTest::addColumn<QSize>("given");
    QTest::addColumn<int>("pinned");

    QTest::newRow("square row button 37 high") << 1.0 << false << QSize(120, 37) << 37;
    QTest::newRow("logo 41 high, 170.12 truncated")
        << 1000.0 / 241.0 << false << QSize(40, 41) << 170;
    QTest::newRow("logo 60 high, 248.96 truncated")
        << 1000.0 / 241.0 << false << QSize(40, 60) << 248;
    QTest::newRow("height follows width 101 at 0.5") << 0.5 << true << QSize(101, 300) << 50;
}

void TestCButton::aspect() {
    QFETCH(double, factor);
    QFETCH(bool, heightFollowsWidth);
    QFETCH(QSize, given);
    QFETCH(int, pinned);

    // Inside a plain parent, so that the limits are the button's own and not
    // a top-level window's.
    QWidget parent;
    parent.resize(600, 600);
    auto* button = new cButton(&parent);
    button->aspectFactor = factor;
    button->heightFollowsWidth = heightFollowsWidth;
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    button->resize(given);
    if (heightFollowsWidth) {
        QCOMPARE(button->minimumHeight(), pinned);
        QCOMPARE(button->maximumHeight(), pinned);
        QCOMPARE(button->height(), pinned);
        QCOMPARE(button->width(), given.width());
    } else {
        QCOMPARE(button->minimumWidth(), pinned);
        QCOMPARE(button->maximumWidth(), pinned);
        QCOMPARE(button->width(), pinned);
        QCOMPARE(button->height(), given.height());
    }
}

void TestCButton::clickFiltering_data() {
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<bool>("clicks");

    QTest::newRow("released where pressed") << QPoint(0, 0) << true;
    QTest::newRow("19 right and 19 down") << QPoint(19, 19) << true;
    QTest::newRow("19 left and 19 up") << QPoint(-19, -19) << true;
    QTest::newRow("20 right") << QPoint(20, 0) << false;
    QTest::newRow("20 left") << QPoint(-20, 0) << false;
    QTest::newRow("20 down") << QPoint(0, 20) << false;
    QTest::newRow("20 up") << QPoint(0, -20) << false;
    QTest::newRow("19 right and 20 down") << QPoint(19, 20) << false;
}

void TestCButton::clickFiltering() {
    QFETCH(QPoint, offset);
    QFETCH(bool, clicks);

    cButton* button = makeBigButton();
    QVERIFY(button);
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    QSignalSpy released(button, &QAbstractButton::released);
    QSignalSpy pressedSpy(button, &QAbstractButton::pressed);
    QSignalSpy mouse(button, &cButton::signalMouseEvent);

    const QPoint start(100, 100);
    sendMove(button, start);
    QCOMPARE(mouse.count(), 0); // moves without a press are only recorded
    QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, start);
    QVERIFY(button->isDown());
    QCOMPARE(pressedSpy.count(), 1);
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, start + offset);

    QCOMPARE(clicked.count(), clicks ? 1 : 0);
    QCOMPARE(released.count(), clicks ? 1 : 0);
    // Swallowed or not, the button pops back up.
    QVERIFY(!button->isDown());

    const QList<Report> seen = reports(mouse);
    QCOMPARE(seen.size(), 2);
    QCOMPARE(seen[0].type, int(QEvent::MouseButtonPress));
    QCOMPARE(seen[0].position, button->mapToGlobal(start));
    QCOMPARE(seen[1].type, int(QEvent::MouseButtonRelease));
    QCOMPARE(seen[1].position, button->mapToGlobal(start + offset));
}

void TestCButton::pressBeforeAnyMove() {
    cButton* button = makeBigButton();
    QVERIFY(button);
    const QPoint centre(100, 100);
    // The release must be far from the screen's corner for this to mean
    // anything.
    QVERIFY(button->mapToGlobal(centre).x() > 20);
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    QSignalSpy mouse(button, &cButton::signalMouseEvent);

    QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, centre);
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, centre);

    const QList<Report> seen = reports(mouse);
    QCOMPARE(seen.size(), 2);
    QCOMPARE(seen[0].type, int(QEvent::MouseButtonPress));
    QCOMPARE(seen[0].position, QPoint(-1, -1));
    QCOMPARE(seen[1].position, button->mapToGlobal(centre));
    QCOMPARE(clicked.count(), 0);
}

void TestCButton::movesWhilePressed() {
    cButton* button = makeBigButton();
    QVERIFY(button);
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    QSignalSpy mouse(button, &cButton::signalMouseEvent);

    const QPoint start(60, 60);
    sendMove(button, start);
    QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, start);
    sendMove(button, QPoint(150, 170), Qt::LeftButton);
    // Back near the start: the pressed moves did not shift the reference.
    QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, start + QPoint(5, 5));

    const QList<Report> seen = reports(mouse);
    QCOMPARE(seen.size(), 3);
    QCOMPARE(seen[1].type, int(QEvent::MouseMove));
    QCOMPARE(seen[1].position, button->mapToGlobal(QPoint(150, 170)));
    QCOMPARE(clicked.count(), 1);

    // Idle again: moves are recorded, not reported.
    sendMove(button, QPoint(10, 10));
    QCOMPARE(mouse.count(), 3);
}

void TestCButton::rightButtonPress() {
    cButton* button = makeBigButton();
    QVERIFY(button);
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    QSignalSpy mouse(button, &cButton::signalMouseEvent);

    const QPoint start(100, 100);
    sendMove(button, start);
    QTest::mousePress(button, Qt::RightButton, Qt::NoModifier, start);
    QCOMPARE(mouse.count(), 0); // no press report for the right button
    QVERIFY(!button->isDown());

    sendMove(button, QPoint(130, 100), Qt::RightButton);
    QTest::mouseRelease(button, Qt::RightButton, Qt::NoModifier, QPoint(130, 100));

    const QList<Report> seen = reports(mouse);
    QCOMPARE(seen.size(), 2);
    QCOMPARE(seen[0].type, int(QEvent::MouseMove));
    QCOMPARE(seen[0].position, button->mapToGlobal(QPoint(130, 100)));
    QCOMPARE(seen[1].type, int(QEvent::MouseButtonRelease));
    QCOMPARE(seen[1].position, button->mapToGlobal(QPoint(130, 100)));
    QCOMPARE(clicked.count(), 0);

    // The press cycle ended with the release.
    sendMove(button, QPoint(20, 20));
    QCOMPARE(mouse.count(), 2);
}

void TestCButton::changeState_data() {
    QTest::addColumn<QList<bool>>("calls");
    QTest::addColumn<int>("stateOnCount");

    QTest::newRow("on") << QList<bool>{true} << 1;
    QTest::newRow("on twice") << QList<bool>{true, true} << 1;
    QTest::newRow("off while off") << QList<bool>{false} << 0;
    QTest::newRow("on, off") << QList<bool>{true, false} << 1;
    QTest::newRow("on, off, on") << QList<bool>{true, false, true} << 2;
}

void TestCButton::changeState() {
    QFETCH(QList<bool>, calls);
    QFETCH(int, stateOnCount);

    QWidget parent;
    parent.resize(100, 100);
    auto* button = new cButton(&parent);
    button->setGeometry(10, 10, 50, 50);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QTest::qWait(20);
    PaintCounter counter;
    button->installEventFilter(&counter);
    QSignalSpy on(button, &cButton::stateOn);

    for (bool b : calls) {
        const int before = counter.paints;
        button->changeState(b);
        // Painted at once, not merely scheduled.
        QCOMPARE(counter.paints, before + 1);
        QCOMPARE(button->property("state").toBool(), b);
    }
    QCOMPARE(on.count(), stateOnCount);
}

void TestCButton::changeStateRepolishes() {
    QWidget parent;
    auto* button = new cButton(&parent);
    button->setStyleSheet(QStringLiteral("cButton[state=\"true\"]{color: rgb(1, 2, 3);}"
                                         "cButton[state=\"false\"]{color: rgb(4, 5, 6);}"));
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(4, 5, 6));
    button->changeState(true);
    QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(1, 2, 3));
    // Without the re-polish the rule for "true" would stay in force.
    button->changeState(false);
    QCOMPARE(button->palette().color(QPalette::ButtonText), QColor(4, 5, 6));
}

QTEST_MAIN(TestCButton)
#include "tst_cbutton.moc"
