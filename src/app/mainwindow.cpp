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
#include <QFileDialog>
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

    connect(ui->btnBrows, &QAbstractButton::clicked, this, [this] {
        // No filter on purpose: whatever is chosen goes through the same
        // check as a drop.
        const QStringList files = QFileDialog::getOpenFileNames(
            nullptr, QString(), QString(), QString(), nullptr, QFileDialog::Options());
        for (const QString& file : files)
            addListWidgetItem(file);
    });
    connect(ui->btnKonvert, &QAbstractButton::clicked, this, &MainWindow::convertAll);

    // The proportions of the logo artwork, 1000 x 241.
    ui->btnLogo->aspectFactor = 1000.0 / 241.0;
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
            QMessageBox::information(nullptr, QStringLiteral("Fehler"),
                                     QStringLiteral("Die Datei ") + path +
                                         QStringLiteral(" befindest sich schon in der Liste"),
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
        const QString path = url.toLocalFile();
        qCDebug(brevioWindow) << "Dropped file:" << path;
        addListWidgetItem(path);
    }
}
