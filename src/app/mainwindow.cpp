// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"

#include "app/cbutton.h"
#include "app/windowlog.h"
#include "convert/convert.h"
#include "convert/runonpool.h"
#include "files/filepaths.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QDebug>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QKeySequence>
#include <QListWidgetItem>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QProgressBar>
#include <QSize>
#include <QUrl>

namespace {

// convertSingle() can be invoked by name and through queued connections,
// which need the argument type known to the meta-type system by name.
[[maybe_unused]] const int listWidgetContainerType =
    qRegisterMetaType<ListWidgetContainer*>("ListWidgetContainer*");

// Every progress report of a job is one of these steps; the last one means
// the report is written.
constexpr int progressSteps = 17;

// QUrl::toLocalFile() reads percent escapes as UTF-8 and turns each byte of
// another encoding into U+FFFD: a file manager's file:///Geb%E4ude/a.json
// for a Latin-1 folder would name a different file. The escapes are taken
// back to bytes and decoded as the system's names are, byte for byte.
QString localPathOf(const QUrl& url) {
    if (!url.isLocalFile())
        return QString();
    QString path =
        QFile::decodeName(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
    // A host names a network share, as toLocalFile() writes it.
    if (!url.host().isEmpty())
        path.prepend(QStringLiteral("//") + url.host());
    return path;
}

// Names for the picture buttons, which show no text: the tooltip for the
// mouse, the accessible name for screen readers.
void describeButton(QAbstractButton* button, const QString& name) {
    button->setToolTip(name);
    button->setAccessibleName(name);
}

// A long listing goes in parts with the event loop between them. Making
// one part's rows takes about this long, or as long as laying out the list
// once when that takes longer; input waits no longer than one part.
constexpr qint64 partNs = 40 * 1000 * 1000;
// Rows of the first part, before any cost is known, and at most of any.
constexpr int firstPartRows = 50;
constexpr int maxPartRows = 5000;

// Rows are a fixed height and leave room for the list's frame and
// scroll bar gap.
QSize rowSizeHint(const QListWidget* list) {
    return QSize(list->width() - 10, 60);
}

} // namespace

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    ui = new Ui_MainWindow;
    ui->setupUi(this);
    setWindowTitle(tr("Brevio [Beta]"));
    setAcceptDrops(true);

    // The rest of a long listing goes on from the event loop.
    nextPart.setSingleShot(true);
    nextPart.setInterval(0);
    connect(&nextPart, &QTimer::timeout, this, &MainWindow::listWaitingFiles);

    const auto openFiles = [this] {
        // No filter on purpose: whatever is chosen goes through the same
        // check as a drop.
        const QStringList files = QFileDialog::getOpenFileNames(
            nullptr, QString(), QString(), QString(), nullptr, QFileDialog::Options());
        addListWidgetItems(files);
    };
    connect(ui->btnBrows, &QAbstractButton::clicked, this, openFiles);
    connect(ui->btnKonvert, &QAbstractButton::clicked, this, &MainWindow::convertAll);

    // The proportions of the logo artwork, 1000 x 241.
    ui->btnLogo->aspectFactor = 1000.0 / 241.0;

    // The keyboard reaches what the two header buttons do; the actions act
    // wherever the focus is in the window.
    ui->action_ffnen->setShortcut(QKeySequence::Open);
    ui->actionAlle_konvertieren->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::Key_Return), QKeySequence(Qt::CTRL | Qt::Key_Enter)});
    connect(ui->action_ffnen, &QAction::triggered, this, openFiles);
    connect(ui->actionAlle_konvertieren, &QAction::triggered, this, &MainWindow::convertAll);
    addAction(ui->action_ffnen);
    addAction(ui->actionAlle_konvertieren);

    describeButton(ui->btnLogo, tr("Brevio"));
    describeButton(ui->btnBrows, tr("Dateien öffnen"));
    describeButton(ui->btnKonvert, tr("Alle konvertieren"));
    // The logo does nothing, so the keyboard passes it by.
    ui->btnLogo->setFocusPolicy(Qt::NoFocus);
}

MainWindow::~MainWindow() {
    delete ui;
}

void MainWindow::addListWidgetItem(QString path) {
    addListWidgetItems(QStringList{path});
}

void MainWindow::addListWidgetItems(const QStringList& paths) {
    waitingFiles.append(paths);
    // Inside a part (from a "Fehler" box's event loop) the files only join
    // the end of the queue; otherwise a first part is listed at once, which
    // for a few files is all of them.
    if (!listing)
        listWaitingFiles();
}

void MainWindow::openWhenShown(const QStringList& paths) {
    if (paths.isEmpty())
        return;
    QTimer::singleShot(0, this, [this, paths] { addListWidgetItems(paths); });
}

void MainWindow::listWaitingFiles() {
    // Re-entered from a "Fehler" box's event loop: the part that opened the
    // box goes on once it is answered.
    if (listing)
        return;
    listing = true;

    int wanted = partRows();
    while (nextWaiting < waitingFiles.size() && wanted > 0) {
        // A repeated file's box stands over exactly the rows before it.
        QStringList reports;
        QString repeated;
        while (nextWaiting < waitingFiles.size() && reports.size() < wanted) {
            const QString& path = waitingFiles.at(nextWaiting++);
            if (!path.endsWith(QLatin1String(".json")))
                continue;
            const QString report = filePaths::reportFor(path);
            if (fileList.contains(report)) {
                repeated = report;
                break;
            }
            fileList.insert(report);
            reports.append(report);
        }
        appendRows(reports);
        wanted -= reports.size();
        if (!repeated.isEmpty())
            refuseDuplicate(repeated);
    }

    if (nextWaiting < waitingFiles.size()) {
        nextPart.start();
    } else {
        waitingFiles.clear();
        nextWaiting = 0;
    }
    listing = false;
}

int MainWindow::partRows() const {
    if (rowNs <= 0)
        return firstPartRows;
    // Each part lays out the whole list, which takes longer the longer the
    // list is; parts whose rows take at least as long to make as that
    // layout keep the whole listing linear in the number of rows, at most
    // twice the cost of making the rows alone.
    const qint64 budget = qMax(partNs, layoutNs);
    return int(qBound<qint64>(1, budget / rowNs, maxPartRows));
}

void MainWindow::appendRows(const QStringList& reports) {
    if (reports.isEmpty())
        return;
    QListWidget* list = ui->listWidget;
    QElapsedTimer clock;
    clock.start();

    // Each insertion into a shown list lays out the whole list and places
    // every row widget anew, so the part's items go in at once.
    const int first = list->count();
    list->model()->insertRows(first, reports.size());
    qint64 layout = clock.nsecsElapsed();

    const QSize sizeHint = rowSizeHint(list);
    for (int i = 0; i < reports.size(); ++i) {
        QListWidgetItem* item = list->item(first + i);
        item->setData(Qt::SizeHintRole, sizeHint);
        // Made where the list puts it anyway, so that it is not moved and
        // styled a second time.
        auto* row = new ListWidgetContainer(list->viewport(), reports.at(i));

        connect(row, &ListWidgetContainer::deleteMe, row, [this, row, item] {
            // A renamed row is no longer found under its new name, so its
            // old name stays blocked for later additions.
            fileList.remove(row->filePath);
            // The list view disposes of the row widget along with its item.
            delete item;
        });
        connect(row, &ListWidgetContainer::konvertMe, this, [this, row] { convertSingle(row); });

        // Only the first one lays the list out; the others wait for the
        // layout below.
        list->setItemWidget(item, row);
    }
    const qint64 rows = clock.nsecsElapsed() - layout;

    const qint64 before = clock.nsecsElapsed();
    list->doItemsLayout();
    layout += clock.nsecsElapsed() - before;

    rowNs = qMax<qint64>(1, rows / reports.size());
    layoutNs = layout;
}

void MainWindow::refuseDuplicate(const QString& report) {
    QMessageBox::information(nullptr, tr("Fehler"),
                             tr("Die Datei ") + report + tr(" befindest sich schon in der Liste"),
                             QMessageBox::Ok, QMessageBox::NoButton);
}

void MainWindow::convertAll() {
    // count() is read on every pass: nothing here removes rows, but the
    // loop must not run past the end if that ever changes.
    for (int i = 0; i < ui->listWidget->count(); ++i) {
        QListWidgetItem* item = ui->listWidget->item(i);
        auto* row = qobject_cast<ListWidgetContainer*>(ui->listWidget->itemWidget(item));
        if (!row) {
            qCDebug(brevioWindow) << "ObjectCast ListWidgetContainer fehlgeschlagen";
            continue;
        }
        convertSingle(row);
    }
}

void MainWindow::convertSingle(ListWidgetContainer* row) {
    // A bar that has moved marks a row as converted or converting.
    if (!row || row->pBar->value() != 0)
        return;

    row->setPbarRange(0, progressSteps);
    // A renamed row reads the configuration of its new name.
    const QString configuration = filePaths::configurationFor(row->filePath);
    JobHandlers handlers;
    // Emitted on the pool thread, so the row gets the values queued; the
    // connection ends with the row if it is removed mid-conversion.
    handlers.progressReceiver = row;
    handlers.progress = [row](int value) { row->setPbarValue(value); };
    // The window shows nothing when a file is not converted; the job log
    // says why, for whoever turns it on.
    handlers.outcomeReceiver = this;
    const QPointer<ListWidgetContainer> target(row);
    handlers.ended = [configuration, target](JobSignal, const ConversionOutcome& outcome) {
        if (!outcome.converted())
            qCDebug(brevioJob) << "Not converted:" << configuration << outcome;
        // The row offers the report the job wrote, and none after a job
        // that wrote none: an older one at that name is not this run's.
        if (target)
            target->setConversionResult(outcome.converted(), outcome.reportPath);
    };
    // Nobody waits for the job: the bar is its only trace in the window.
    runOnPool(new convert(nullptr), configuration, handlers);
}

void MainWindow::resizeEvent(QResizeEvent*) {
    for (int i = 0; i < ui->listWidget->count(); ++i)
        ui->listWidget->item(i)->setData(Qt::SizeHintRole, rowSizeHint(ui->listWidget));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    qCDebug(brevioWindow) << "DragEnterEvent";
    // Names are checked when the files arrive, not here.
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    qCDebug(brevioWindow) << "Dropevent";
    const QList<QUrl> urls = event->mimeData()->urls();
    QStringList paths;
    for (const QUrl& url : urls) {
        // Not a local file: the empty path is refused by its missing ending.
        const QString path = localPathOf(url);
        qCDebug(brevioWindow) << "Dropped file:" << path;
        paths.append(path);
    }
    addListWidgetItems(paths);
}
