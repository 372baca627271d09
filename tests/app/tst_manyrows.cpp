// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Thousands of files at once, from the command line, a drop or another
// start: the window keeps answering input while it lists them, and the rows
// and the "Fehler" boxes come in the order of the files, as for a few.
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "app/onewindow.h"
#include "windowtest.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

namespace {

// Enough rows that listing them takes far longer than one turn of the event
// loop should (several seconds when they are added in one go).
constexpr int manyRows = 2000;
// Generous: the same batch listed in one go took about 20 s on the
// project's 2-core machine.
constexpr int listingTimeoutMs = 300000;

QString configuration(int i) {
    return QStringLiteral("/srv/anlagen/halle-3/messstelle-%1.json")
        .arg(i, 5, 10, QLatin1Char('0'));
}

QString reportPath(int i) {
    return QStringLiteral("/srv/anlagen/halle-3/messstelle-%1.pdf").arg(i, 5, 10, QLatin1Char('0'));
}

QStringList configurations(int count) {
    QStringList files;
    for (int i = 0; i < count; ++i)
        files.append(configuration(i));
    return files;
}

QStringList reportPaths(int count) {
    QStringList files;
    for (int i = 0; i < count; ++i)
        files.append(reportPath(i));
    return files;
}

// Input that arrives while a batch is being listed: as soon as the first
// row appears, a key press is posted to the list, as the window system
// would deliver one; the probe notes how many rows were listed when the
// list got it. Listed all in one go, the key press waits until the last row.
class InputProbe : public QObject {
public:
    explicit InputProbe(QListWidget* list) : list(list) {
        list->installEventFilter(this);
        connect(list->model(), &QAbstractItemModel::rowsInserted, this, [this] {
            if (posted)
                return;
            posted = true;
            QCoreApplication::postEvent(
                this->list, new QKeyEvent(QEvent::KeyPress, Qt::Key_F13, Qt::NoModifier));
        });
    }

    bool posted = false;
    int rowsWhenAnswered = -1;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_F13) {
            rowsWhenAnswered = list->count();
            return true;
        }
        return false;
    }

private:
    QListWidget* list;
};

// The batch of rows files was listed completely and in order, and the key
// posted when its first row appeared was answered while rows were still
// missing.
void verifyAnsweredWhileListing(MainWindow& window, const InputProbe& probe, int rows) {
    QTRY_COMPARE_WITH_TIMEOUT(listOf(window)->count(), rows, listingTimeoutMs);
    QVERIFY(probe.posted);
    QTRY_VERIFY(probe.rowsWhenAnswered >= 0);
    QVERIFY2(probe.rowsWhenAnswered > 0 && probe.rowsWhenAnswered < rows,
             qPrintable(QStringLiteral("input answered with %1 of %2 rows listed")
                            .arg(probe.rowsWhenAnswered)
                            .arg(rows)));
    QCOMPARE(rowPaths(window), reportPaths(rows));
}

} // namespace

class TestManyRows : public QObject {
    Q_OBJECT

private slots:
    void commandLineAnswersInputWhileListing();
    void dropAnswersInputWhileListing();
    void handOverAnswersInputWhileListing();
    void orderAndBoxesAsForFewFiles();
    void laterBatchFollowsEarlierOne();
    void smallDropListedAtOnce();
};

void TestManyRows::commandLineAnswersInputWhileListing() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ModalAnswerer unexpected;
    InputProbe probe(listOf(window));

    window.openWhenShown(configurations(manyRows));
    verifyAnsweredWhileListing(window, probe, manyRows);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(unexpected.count(), 0);
}

void TestManyRows::dropAnswersInputWhileListing() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ModalAnswerer unexpected;
    InputProbe probe(listOf(window));

    QList<QUrl> urls;
    for (const QString& file : configurations(manyRows))
        urls.append(QUrl::fromLocalFile(file));
    QVERIFY(dragAndDrop(&window, urls));
    verifyAnsweredWhileListing(window, probe, manyRows);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(unexpected.count(), 0);
}

void TestManyRows::handOverAnswersInputWhileListing() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    OneWindow server(dir.filePath(QStringLiteral("socket")));
    QVERIFY(server.serve(window));
    ModalAnswerer unexpected;
    InputProbe probe(listOf(window));

    // The most that one message of a later start may bring.
    constexpr int rows = oneWindow::maxFiles;
    server.receive(configurations(rows));
    verifyAnsweredWhileListing(window, probe, rows);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(unexpected.count(), 0);
}

void TestManyRows::orderAndBoxesAsForFewFiles() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QListWidget* list = listOf(window);

    // Repeats far apart, a name that is not taken, and a repeat of a repeat.
    QStringList files = configurations(manyRows);
    files.insert(1500, configuration(3));
    files.insert(900, QStringLiteral("/srv/anlagen/halle-3/LAGER.JSON"));
    files.insert(600, configuration(599));
    files.append(configuration(3));

    // Each box stands over exactly the rows before its file; the rest wait.
    QList<int> rowsUnderBox;
    const auto answer = [&](QWidget* box) {
        rowsUnderBox.append(list->count());
        clickMessageBoxOk(box);
    };
    ModalAnswerer answerer({answer, answer, answer});
    window.openWhenShown(files);
    QTRY_COMPARE_WITH_TIMEOUT(answerer.count(), 3, listingTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(list->count(), manyRows, listingTimeoutMs);
    // Nothing more comes.
    QTest::qWait(200);
    QCOMPARE(answerer.count(), 3);

    QCOMPARE(rowPaths(window), reportPaths(manyRows));
    QCOMPARE(rowsUnderBox, (QList<int>{600, 1500, manyRows}));
    const QStringList expectedTexts{duplicateText(reportPath(599)), duplicateText(reportPath(3)),
                                    duplicateText(reportPath(3))};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(answerer.dialogs.at(i).title, QStringLiteral("Fehler"));
        QCOMPARE(answerer.dialogs.at(i).text, expectedTexts.at(i));
    }
}

void TestManyRows::laterBatchFollowsEarlierOne() {
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QListWidget* list = listOf(window);
    ModalAnswerer answerer(clickMessageBoxOk);

    // A drop while the command line's files are still being listed: its
    // files come after them, and its repeat of the first file is refused.
    const QString later = QStringLiteral("/srv/anlagen/halle-4/neu.json");
    bool dropped = false;
    int rowsAtDrop = -1;
    connect(list->model(), &QAbstractItemModel::rowsInserted, this, [&] {
        if (dropped)
            return;
        dropped = true;
        QTimer::singleShot(0, &window, [&] {
            rowsAtDrop = list->count();
            dragAndDrop(&window,
                        {QUrl::fromLocalFile(later), QUrl::fromLocalFile(configuration(0))});
        });
    });
    window.openWhenShown(configurations(manyRows));
    QTRY_COMPARE_WITH_TIMEOUT(list->count(), manyRows + 1, listingTimeoutMs);
    QTRY_COMPARE(answerer.count(), 1);
    QVERIFY2(
        rowsAtDrop > 0 && rowsAtDrop < manyRows,
        qPrintable(
            QStringLiteral("dropped with %1 of %2 rows listed").arg(rowsAtDrop).arg(manyRows)));

    QStringList expected = reportPaths(manyRows);
    expected.append(QStringLiteral("/srv/anlagen/halle-4/neu.pdf"));
    QCOMPARE(rowPaths(window), expected);
    QCOMPARE(answerer.dialogs.first().text, duplicateText(reportPath(0)));
}

void TestManyRows::smallDropListedAtOnce() {
    // A handful of files is listed before the drop returns, as it always was.
    MainWindow window;
    ModalAnswerer unexpected;
    QVERIFY(dragAndDrop(
        &window, {QUrl::fromLocalFile(configuration(1)), QUrl::fromLocalFile(configuration(2))}));
    QCOMPARE(rowPaths(window), (QStringList{reportPath(1), reportPath(2)}));
    QCOMPARE(unexpected.count(), 0);
}

QTEST_MAIN(TestManyRows)
#include "tst_manyrows.moc"
