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
#include <QFile>
#include <QFileDialog>
#include <QKeySequence>
#include <QListWidgetItem>
#include <QMessageBox>
#include <QMimeData>
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

    const auto openFiles = [this] {
        // No filter on purpose: whatever is chosen goes through the same
        // check as a drop.
        const QStringList files = QFileDialog::getOpenFileNames(
            nullptr, QString(), QString(), QString(), nullptr, QFileDialog::Options());
        for (const QString& file : files)
            addListWidgetItem(file);
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
    if (!path.endsWith(QLatin1String(".json")))
        return;
    path = filePaths::reportFor(path);

    for (const QString& listed : fileList) {
        if (listed == path) {
            QMessageBox::information(nullptr, tr("Fehler"),
                                     tr("Die Datei ") + path +
                                         tr(" befindest sich schon in der Liste"),
                                     QMessageBox::Ok, QMessageBox::NoButton);
            return;
        }
    }
    fileList.append(path);

    auto* item = new QListWidgetItem(ui->listWidget);
    item->setData(Qt::SizeHintRole, rowSizeHint(ui->listWidget));
    auto* row = new ListWidgetContainer(this, path);

    connect(row, &ListWidgetContainer::deleteMe, row, [this, row, item] {
        // A renamed row is no longer found under its new name, so its old
        // name stays blocked for later additions.
        const int index = fileList.indexOf(row->filePath);
        if (index >= 0)
            fileList.removeAt(index);
        // The list view disposes of the row widget along with its item.
        delete item;
    });
    connect(row, &ListWidgetContainer::konvertMe, this, [this, row] { convertSingle(row); });

    ui->listWidget->setItemWidget(item, row);
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
    handlers.ended = [configuration](bool, const ConversionOutcome& outcome) {
        if (!outcome.converted())
            qCDebug(brevioJob) << "Not converted:" << configuration << outcome;
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
    for (const QUrl& url : urls) {
        // Not a local file: the empty path is refused by its missing ending.
        const QString path = localPathOf(url);
        qCDebug(brevioWindow) << "Dropped file:" << path;
        addListWidgetItem(path);
    }
}
