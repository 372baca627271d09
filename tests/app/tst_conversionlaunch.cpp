// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "convert/convert.h"
#include "pdfreport.h"
#include "testfiles.h"
#include "windowtest.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QLoggingCategory>
#include <QPointer>
#include <QProgressBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>

namespace {

const QString exampleName = QString::fromUtf8("Name: L\xc3\xbc"
                                              "ftung Halle 2 \xe2\x80\x93 Zuluft");

cButton* convertAllButton(MainWindow& window) {
    return window.findChild<cButton*>(QStringLiteral("btnKonvert"));
}

QByteArray exampleBytes() {
    QFile file(exampleFile(QStringLiteral("pressure-transmitter.json")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The example configuration with another device name, to tell reports apart.
QByteArray exampleNamed(const QString& name) {
    QJsonObject document = QJsonDocument::fromJson(exampleBytes()).object();
    QJsonObject configuration = document.value(QStringLiteral("configuration")).toObject();
    configuration.insert(QStringLiteral("name"), name);
    document.insert(QStringLiteral("configuration"), configuration);
    return QJsonDocument(document).toJson();
}

QByteArray sha256(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

// Lets every queued progress value, outcome and deferred deletion arrive.
bool settle(const JobWatch& jobs, int timeoutMs = 120000) {
    QElapsedTimer clock;
    clock.start();
    while (jobs.alive() > 0 && clock.elapsed() < timeoutMs)
        QTest::qWait(20);
    QThreadPool::globalInstance()->waitForDone();
    QTest::qWait(20);
    return jobs.alive() == 0;
}

QString reportProblem(const QString& pdf, const QString& name) {
    if (!QFileInfo(pdf).isFile())
        return QStringLiteral("no report at ") + pdf;
    PdfReport report(pdf);
    if (!report.isValid())
        return QStringLiteral("unreadable report ") + pdf;
    if (report.pageCount() < 1)
        return QStringLiteral("empty report ") + pdf;
    if (report.line(0, QStringLiteral("Allgemeine Einstellungen:")).isNull())
        return QStringLiteral("no general settings in ") + pdf + QLatin1Char('\n') + report.dump();
    if (report.line(0, name).isNull())
        return QStringLiteral("no \"") + name + QStringLiteral("\" in ") + pdf + QLatin1Char('\n') +
               report.dump();
    return QString();
}

} // namespace

class TestConversionLaunch : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void convertAllOnEmptyList();
    void rowConvertButton();
    void barNotAtZeroIsNotConverted_data();
    void barNotAtZeroIsNotConverted();
    void finishedRowNotConvertedAgain();
    void renamedRowReadsRenamedConfiguration();
    void renamedRowWithoutConfiguration();
    void pdfFolderInPath();
    void convertAllSkipsRunningRow();
    void convertAllSkipsForeignItems();
    void failingInputs_data();
    void failingInputs();
    void unwritableReport();
    void failureIsLoggedOnlyWhenAsked_data();
    void failureIsLoggedOnlyWhenAsked();
    void rowRemovedWhileConverting();
    void rowsSharingAReportTakeTurns();
    void jobsGoWhenTheApplicationQuits();
    void endToEnd_data();
    void endToEnd();

private:
    QScopedPointer<QTemporaryDir> dir;
    QString path(const QString& name) const { return dir->filePath(name); }
    QString write(const QString& name, const QByteArray& bytes) {
        return writeFile(dir->path(), name, bytes);
    }
    void showWindow(MainWindow& window);
};

void TestConversionLaunch::initTestCase() {
    // Settings such as the file dialogs' history go to a test folder,
    // never into the user's own configuration.
    QStandardPaths::setTestModeEnabled(true);
}

void TestConversionLaunch::init() {
    dir.reset(new QTemporaryDir);
    QVERIFY(dir->isValid());
    QVERIFY(!exampleBytes().isEmpty());
}

void TestConversionLaunch::cleanup() {
    QThreadPool::globalInstance()->waitForDone();
    dir.reset();
}

void TestConversionLaunch::showWindow(MainWindow& window) {
    window.resize(900, 600);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
}

void TestConversionLaunch::convertAllOnEmptyList() {
    MainWindow window;
    showWindow(window);
    JobWatch jobs;
    ModalAnswerer unexpected;
    LogCapture log;
    QSignalSpy clicked(convertAllButton(window), &QAbstractButton::clicked);
    pointAndClick(convertAllButton(window));
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(jobs.collect(), 0);
    QTest::qWait(50);
    QCOMPARE(unexpected.count(), 0);
    QCOMPARE(log.messages(), QStringList());
    QCOMPARE(listOf(window)->count(), 0);
}

void TestConversionLaunch::rowConvertButton() {
    const QString json = write(QStringLiteral("anlage.json"), exampleBytes());
    const QByteArray before = sha256(json);
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    QSignalSpy values(row->pBar, &QProgressBar::valueChanged);
    JobWatch jobs;

    pointAndClick(rowButton(row, "btnKonvertier"));
    // Set up before the job reports anything.
    QCOMPARE(jobs.collect(), 1);
    QCOMPARE(row->pBar->minimum(), 0);
    QCOMPARE(row->pBar->maximum(), 17);
    QCOMPARE(row->pBar->value(), 0);

    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
    QList<int> seen;
    for (const QList<QVariant>& arguments : values)
        seen.append(arguments.first().toInt());
    QList<int> steps;
    for (int step = 1; step <= 17; ++step)
        steps.append(step);
    QCOMPARE(seen, steps);
    QCOMPARE(row->pBar->text(), QStringLiteral("100%"));

    const QString problem = reportProblem(path(QStringLiteral("anlage.pdf")), exampleName);
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QCOMPARE(sha256(json), before);
}

void TestConversionLaunch::barNotAtZeroIsNotConverted_data() {
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("jobsStarted");
    QTest::newRow("at 0, converted") << 0 << 1;
    QTest::newRow("at 1, skipped") << 1 << 0;
    QTest::newRow("at 9, skipped") << 9 << 0;
    QTest::newRow("at 17, skipped") << 17 << 0;
}

void TestConversionLaunch::barNotAtZeroIsNotConverted() {
    QFETCH(int, value);
    QFETCH(int, jobsStarted);

    const QString json = write(QStringLiteral("anlage.json"), exampleBytes());
    MainWindow window;
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    row->setPbarRange(0, 17);
    row->setPbarValue(value);

    JobWatch jobs;
    window.convertSingle(row);
    QCOMPARE(jobs.collect(), jobsStarted);
    QVERIFY(settle(jobs));
    QCOMPARE(QFileInfo::exists(path(QStringLiteral("anlage.pdf"))), jobsStarted == 1);
}

void TestConversionLaunch::finishedRowNotConvertedAgain() {
    const QString json = write(QStringLiteral("anlage.json"), exampleBytes());
    const QString pdf = path(QStringLiteral("anlage.pdf"));
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    JobWatch jobs;
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));

    // Gone, so a second conversion would show.
    QVERIFY(QFile::remove(pdf));
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 0);
    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), 0);
    QVERIFY(settle(jobs));
    QVERIFY(!QFileInfo::exists(pdf));
    QCOMPARE(row->pBar->value(), 17);
}

void TestConversionLaunch::renamedRowReadsRenamedConfiguration() {
    const QString json = write(QStringLiteral("anlage.json"), exampleBytes());
    write(QStringLiteral("bericht.json"), exampleNamed(QStringLiteral("Umbenannt")));
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    {
        ModalAnswerer answerer(typeSaveName(QStringLiteral("bericht")));
        pointAndClick(rowButton(row, "btnNewName"));
        QCOMPARE(answerer.count(), 1);
    }
    QCOMPARE(row->filePath, path(QStringLiteral("bericht.pdf")));

    JobWatch jobs;
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
    const QString problem =
        reportProblem(path(QStringLiteral("bericht.pdf")), QStringLiteral("Name: Umbenannt"));
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("anlage.pdf"))));
}

void TestConversionLaunch::renamedRowWithoutConfiguration() {
    const QString json = write(QStringLiteral("anlage.json"), exampleBytes());
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    {
        ModalAnswerer answerer(typeSaveName(QStringLiteral("fehlt")));
        pointAndClick(rowButton(row, "btnNewName"));
        QCOMPARE(answerer.count(), 1);
    }
    JobWatch jobs;
    ModalAnswerer unexpected;
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    QVERIFY(settle(jobs));
    QCOMPARE(row->pBar->value(), 0);
    QCOMPARE(row->pBar->maximum(), 17);
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("fehlt.pdf"))));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("anlage.pdf"))));
    QCOMPARE(unexpected.count(), 0);

    // Still at 0, so the row may be tried again.
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    QVERIFY(settle(jobs));
}

void TestConversionLaunch::pdfFolderInPath() {
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("alt.pdf")));
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("alt.json")));
    const QString listed =
        write(QStringLiteral("alt.pdf/a.json"), exampleNamed(QStringLiteral("Im pdf-Ordner")));
    write(QStringLiteral("alt.json/a.json"), exampleNamed(QStringLiteral("Im json-Ordner")));
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(listed);
    ListWidgetContainer* row = rowAt(window, 0);
    QCOMPARE(row->filePath, path(QStringLiteral("alt.pdf/a.pdf")));

    JobWatch jobs;
    window.convertAll();
    QCOMPARE(jobs.collect(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
    // Read from alt.json/a.json; its report goes back under alt.pdf.
    const QString problem = reportProblem(path(QStringLiteral("alt.pdf/a.pdf")),
                                          QStringLiteral("Name: Im json-Ordner"));
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("alt.json/a.pdf"))));
}

void TestConversionLaunch::convertAllSkipsRunningRow() {
    MainWindow window;
    showWindow(window);
    for (const char* name : {"a.json", "b.json", "c.json"})
        window.addListWidgetItem(write(QLatin1String(name), exampleBytes()));
    ListWidgetContainer* b = rowAt(window, 1);
    JobWatch jobs;
    pointAndClick(rowButton(b, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    // Running as far as the window can tell: a first step has arrived.
    QTRY_VERIFY_WITH_TIMEOUT(b->pBar->value() > 0, 60000);

    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), 2);
    for (int i = 0; i < 3; ++i)
        QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, i)->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
    QCOMPARE(jobs.created(), 3);
}

void TestConversionLaunch::convertAllSkipsForeignItems() {
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(write(QStringLiteral("a.json"), exampleBytes()));
    QListWidget* list = listOf(window);
    // Items that are not rows: one without a widget, one with a label.
    list->addItem(QStringLiteral("fremd"));
    auto* labelled = new QListWidgetItem(list);
    list->setItemWidget(labelled, new QLabel(QStringLiteral("fremd")));
    window.addListWidgetItem(write(QStringLiteral("b.json"), exampleBytes()));

    JobWatch jobs;
    LogCapture log;
    window.convertAll();
    QCOMPARE(jobs.collect(), 2);
    QCOMPARE(log.messages(),
             (QStringList{QStringLiteral("ObjectCast ListWidgetContainer fehlgeschlagen"),
                          QStringLiteral("ObjectCast ListWidgetContainer fehlgeschlagen")}));
    QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, 3)->pBar->value(), 17, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, 0)->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
}

void TestConversionLaunch::failingInputs_data() {
    QTest::addColumn<QString>("kind");
    QTest::newRow("vanished file") << "vanished";
    QTest::newRow("empty file") << "empty";
    QTest::newRow("folder named .json") << "folder";
    QTest::newRow("not JSON at all") << "text";
}

void TestConversionLaunch::failingInputs() {
    QFETCH(QString, kind);
    const QString json = path(QStringLiteral("a.json"));
    if (kind == QLatin1String("vanished") || kind == QLatin1String("empty"))
        write(QStringLiteral("a.json"),
              kind == QLatin1String("empty") ? QByteArray() : exampleBytes());
    else if (kind == QLatin1String("folder"))
        QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("a.json")));
    else
        write(QStringLiteral("a.json"), "keine Konfiguration");

    MainWindow window;
    showWindow(window);
    ModalAnswerer unexpected;
    QVERIFY(dragAndDrop(&window, {QUrl::fromLocalFile(json)}));
    QCOMPARE(listOf(window)->count(), 1);
    if (kind == QLatin1String("vanished"))
        QVERIFY(QFile::remove(json));

    ListWidgetContainer* row = rowAt(window, 0);
    JobWatch jobs;
    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), 1);
    QVERIFY(settle(jobs));
    QCOMPARE(unexpected.count(), 0);
    if (kind == QLatin1String("text")) {
        // Not an error: a report of defaults.
        QCOMPARE(row->pBar->value(), 17);
        QVERIFY(QFileInfo(path(QStringLiteral("a.pdf"))).isFile());
        QCOMPARE(QFile(json).size(), qint64(19));
    } else {
        QCOMPARE(row->pBar->value(), 0);
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("a.pdf"))));
    }
}

namespace {
QStringList jobLog;
void captureJobLog(QtMsgType, const QMessageLogContext& context, const QString& message) {
    if (qstrcmp(context.category, "brevio.job") == 0)
        jobLog.append(message);
}
} // namespace

void TestConversionLaunch::failureIsLoggedOnlyWhenAsked_data() {
    QTest::addColumn<QString>("rules");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");
    QTest::newRow("default, empty file") << QString() << QString() << QString();
    QTest::newRow("asked, empty file")
        << "brevio.job.debug=true" << QString() << "Not converted: \"%1\" EmptyFile";
    QTest::newRow("asked, converted") << "brevio.job.debug=true"
                                      << "{}" << QString();
}

// The window shows nothing when a job fails, and its default log stays as
// quiet as ever; asked for, the job log says why.
void TestConversionLaunch::failureIsLoggedOnlyWhenAsked() {
    QFETCH(QString, rules);
    QFETCH(QString, content);
    QFETCH(QString, expected);
    const QString json = write(QStringLiteral("a.json"), content.toUtf8());
    QLoggingCategory::setFilterRules(rules);
    jobLog.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureJobLog);
    MainWindow window;
    showWindow(window);
    ModalAnswerer unexpected;
    window.addListWidgetItem(json);
    JobWatch jobs;
    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), 1);
    QVERIFY(settle(jobs));
    qInstallMessageHandler(previous);
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(unexpected.count(), 0);
    QCOMPARE(jobLog, expected.isEmpty() ? QStringList() : QStringList{expected.arg(json)});
    QCOMPARE(rowAt(window, 0)->pBar->value(), content.isEmpty() ? 0 : 17);
}

void TestConversionLaunch::unwritableReport() {
    const QString json = write(QStringLiteral("a.json"), exampleBytes());
    const QByteArray before = sha256(json);
    // A folder where the report would go: no file can be opened there,
    // whoever runs the test.
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("a.pdf")));
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    ListWidgetContainer* row = rowAt(window, 0);
    JobWatch jobs;
    ModalAnswerer unexpected;
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    QVERIFY(settle(jobs));
    // The job counts through and finishes; the window shows nothing else.
    QCOMPARE(row->pBar->value(), 17);
    QVERIFY(QFileInfo(path(QStringLiteral("a.pdf"))).isDir());
    QCOMPARE(sha256(json), before);
    QCOMPARE(unexpected.count(), 0);
}

// Two rows whose reports are one file (the same folder reached through a
// link): both convert, one after the other, and the report is whole; no
// temporary file is left beside it.
void TestConversionLaunch::rowsSharingAReportTakeTurns() {
    QVERIFY(QDir(dir->path()).mkdir(QStringLiteral("w")));
    QVERIFY(QFile::link(path(QStringLiteral("w")), path(QStringLiteral("link-to-w"))));
    writeFile(path(QStringLiteral("w")), QStringLiteral("anlage.json"),
              exampleNamed(QStringLiteral("Geteilt")));
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(path(QStringLiteral("w/anlage.json")));
    window.addListWidgetItem(path(QStringLiteral("link-to-w/anlage.json")));
    QCOMPARE(listOf(window)->count(), 2);

    JobWatch jobs;
    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, 0)->pBar->value(), 17, 60000);
    QTRY_COMPARE_WITH_TIMEOUT(rowAt(window, 1)->pBar->value(), 17, 60000);
    QVERIFY(settle(jobs));
    const QString problem =
        reportProblem(path(QStringLiteral("w/anlage.pdf")), QStringLiteral("Name: Geteilt"));
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QCOMPARE(QDir(path(QStringLiteral("w")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("anlage.json"), QStringLiteral("anlage.pdf")}));
}

void TestConversionLaunch::rowRemovedWhileConverting() {
    const QString json = write(QStringLiteral("a.json"), exampleBytes());
    MainWindow window;
    showWindow(window);
    window.addListWidgetItem(json);
    QPointer<ListWidgetContainer> row = rowAt(window, 0);
    JobWatch jobs;
    pointAndClick(rowButton(row, "btnKonvertier"));
    QCOMPARE(jobs.collect(), 1);
    pointAndClick(rowButton(row, "btnDelete"));
    QCOMPARE(listOf(window)->count(), 0);
    QTRY_VERIFY(row.isNull());

    // The job goes on without its row and still writes the report.
    QVERIFY(settle(jobs));
    const QString problem = reportProblem(path(QStringLiteral("a.pdf")), exampleName);
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void TestConversionLaunch::jobsGoWhenTheApplicationQuits() {
    MainWindow window;
    window.addListWidgetItem(write(QStringLiteral("a.json"), exampleBytes()));
    JobWatch jobs;
    window.convertSingle(rowAt(window, 0));
    QCOMPARE(jobs.collect(), 1);
    // Nothing has run the event loop yet, so the job is still there.
    const QList<QObject*> live = jobs.liveJobs();
    QCOMPARE(live.size(), 1);
    auto* job = qobject_cast<convert*>(live.first());
    QVERIFY(job);
    QCOMPARE(job->parent(), nullptr);
    QCOMPARE(job->thread(), QThread::currentThread());
    // A connection that exists can be taken down exactly once.
    QVERIFY(QObject::disconnect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater));
    QVERIFY(!QObject::disconnect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater));
    QVERIFY(settle(jobs));
}

void TestConversionLaunch::endToEnd_data() {
    QTest::addColumn<int>("files");
    QTest::newRow("3 files") << 3;
    QTest::newRow("20 files at once") << 20;
}

void TestConversionLaunch::endToEnd() {
    QFETCH(int, files);

    QList<QUrl> urls;
    QStringList names;
    QList<QByteArray> hashes;
    for (int i = 1; i <= files; ++i) {
        const QString name = QStringLiteral("Anlage %1").arg(i, 2, 10, QLatin1Char('0'));
        names.append(name);
        const QString json = write(QStringLiteral("anlage-%1.json").arg(i, 2, 10, QLatin1Char('0')),
                                   exampleNamed(name));
        hashes.append(sha256(json));
        urls.append(QUrl::fromLocalFile(json));
    }

    MainWindow window;
    showWindow(window);
    ModalAnswerer unexpected;
    QVERIFY(dragAndDrop(&window, urls));
    QCOMPARE(listOf(window)->count(), files);

    JobWatch jobs;
    pointAndClick(convertAllButton(window));
    QCOMPARE(jobs.collect(), files);
    // All started at once: as many run side by side as the pool allows.
    QThreadPool* pool = QThreadPool::globalInstance();
    QCOMPARE(pool->activeThreadCount(), qMin(files, pool->maxThreadCount()));
    for (int i = 0; i < files; ++i) {
        ListWidgetContainer* row = rowAt(window, i);
        QTRY_COMPARE_WITH_TIMEOUT(row->pBar->value(), 17, 120000);
        QCOMPARE(row->pBar->maximum(), 17);
        QCOMPARE(row->pBar->text(), QStringLiteral("100%"));
    }
    QVERIFY(settle(jobs));
    QCOMPARE(jobs.alive(), 0);
    QCOMPARE(jobs.created(), files);
    QCOMPARE(unexpected.count(), 0);

    for (int i = 1; i <= files; ++i) {
        const QString stem = QStringLiteral("anlage-%1").arg(i, 2, 10, QLatin1Char('0'));
        const QString problem = reportProblem(path(stem + QStringLiteral(".pdf")),
                                              QStringLiteral("Name: ") + names[i - 1]);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        QCOMPARE(sha256(path(stem + QStringLiteral(".json"))), hashes[i - 1]);
    }
    // One report per configuration and nothing else.
    QCOMPARE(QDir(dir->path()).entryList({QStringLiteral("*.pdf")}, QDir::Files).size(), files);
}

QTEST_MAIN(TestConversionLaunch)
#include "tst_conversionlaunch.moc"
