#include "mainwindow.h"

#include "cbutton.h"
#include "convert.h"
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
#include <QThreadPool>
#include <QUrl>
#include <QtConcurrent>

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
    path.replace(QLatin1String(".json"), QLatin1String(".pdf"));

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
            qDebug() << "ObjectCast ListWidgetContainer fehlgeschlagen";
            continue;
        }
        convertSingle(row);
    }
}

void MainWindow::convertSingle(ListWidgetContainer* row) {
    // A bar that has moved marks a row as converted or converting.
    if (!row || row->pBar->value() != 0)
        return;

    auto* job = new convert(nullptr);
    connect(job, &convert::finished, job, &QObject::deleteLater);
    connect(job, &convert::aborted, job, &QObject::deleteLater);
    connect(qApp, &QCoreApplication::aboutToQuit, job, &QObject::deleteLater);

    row->setPbarRange(0, progressSteps);
    // Emitted on the pool thread, so the row gets the values queued; the
    // connection ends with the row if it is removed mid-conversion.
    connect(job, &convert::newPbarValue, row, &ListWidgetContainer::setPbarValue);

    QString path = row->filePath;
    path.replace(QLatin1String(".pdf"), QLatin1String(".json"));
    // Nobody waits for the job: the bar is its only trace in the window.
    QtConcurrent::run(QThreadPool::globalInstance(), job, &convert::readJsonFile, path, path);
}

void MainWindow::resizeEvent(QResizeEvent*) {
    for (int i = 0; i < ui->listWidget->count(); ++i)
        ui->listWidget->item(i)->setData(Qt::SizeHintRole, rowSizeHint(ui->listWidget));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    qDebug() << "DragEnterEvent";
    // Names are checked when the files arrive, not here.
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    qDebug() << "Dropevent";
    const QList<QUrl> urls = event->mimeData()->urls();
    for (const QUrl& url : urls) {
        // Not a local file: the empty path is refused by its missing ending.
        const QString path = url.toLocalFile();
        qDebug() << "Dropped file:" << path;
        addListWidgetItem(path);
    }
}
