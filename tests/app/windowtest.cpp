// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "windowtest.h"

#include "app/cbutton.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"
#include "convert/convert.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QMutex>
#include <QMutexLocker>
#include <QPointer>
#include <QTest>

#include <mutex>
#include <thread>
#include <unordered_set>

// ---------------------------------------------------------------- LogCapture

namespace {

QMutex logMutex;
QStringList* logLines = nullptr;
QtMessageHandler previousHandler = nullptr;

void captureMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
    // The headless platform says this of every top-level window whose size
    // limits change (message boxes, dialogs); it is not the program's.
    if (text == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    QMutexLocker lock(&logMutex);
    if (logLines)
        logLines->append(text);
}

} // namespace

LogCapture::LogCapture() {
    QMutexLocker lock(&logMutex);
    logLines = new QStringList;
    previousHandler = qInstallMessageHandler(captureMessage);
}

LogCapture::~LogCapture() {
    qInstallMessageHandler(previousHandler);
    QMutexLocker lock(&logMutex);
    delete logLines;
    logLines = nullptr;
}

QStringList LogCapture::messages() const {
    QMutexLocker lock(&logMutex);
    return logLines ? *logLines : QStringList();
}

// ------------------------------------------------------------- ModalAnswerer

ModalAnswerer::ModalAnswerer(Handler handler)
    : ModalAnswerer(handler ? QList<Handler>{handler} : QList<Handler>()) {}

ModalAnswerer::ModalAnswerer(QList<Handler> h) : handlers(std::move(h)) {
    timer.setInterval(20);
    QObject::connect(&timer, &QTimer::timeout, [this] { poll(); });
    timer.start();
}

ModalAnswerer::~ModalAnswerer() = default;

void ModalAnswerer::poll() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible())
        return;
    // Seen once: the handler closes it, but the close may take a turn of
    // the dialog's loop.
    if (dialog->property("brevioAnswered").toBool())
        return;
    dialog->setProperty("brevioAnswered", true);

    Seen seen;
    seen.className = QString::fromLatin1(dialog->metaObject()->className());
    seen.title = dialog->windowTitle();
    seen.hasParent = dialog->parentWidget() != nullptr;
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
        seen.text = box->text();
        for (QAbstractButton* button : box->buttons())
            seen.buttons.append(button->text());
        seen.standardButtons = int(box->standardButtons());
    }
    if (auto* files = qobject_cast<QFileDialog*>(dialog)) {
        seen.directory = files->directory().absolutePath();
        if (auto* edit = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
            seen.fileName = edit->text();
        seen.acceptMode = files->acceptMode();
        seen.fileMode = files->fileMode();
        seen.nameFilters = files->nameFilters();
    }
    dialogs.append(seen);

    const Handler handler =
        dialogs.size() <= handlers.size() ? handlers.at(dialogs.size() - 1) : Handler(rejectDialog);
    // Not from inside this timer's slot: a timer does not fire again while
    // its slot runs, so a dialog opened by the handler would never be seen.
    const QPointer<QWidget> target(dialog);
    QTimer::singleShot(0, [handler, target] {
        if (target)
            handler(target);
    });
}

void clickMessageBoxOk(QWidget* dialog) {
    auto* box = qobject_cast<QMessageBox*>(dialog);
    if (box && box->button(QMessageBox::Ok))
        box->button(QMessageBox::Ok)->click();
    else
        rejectDialog(dialog);
}

ModalAnswerer::Handler chooseFiles(const QString& directory, const QStringList& names) {
    return [directory, names](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        auto* edit = files ? files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
        if (!edit) {
            rejectDialog(dialog);
            return;
        }
        files->setDirectory(directory);
        QString text;
        if (names.size() == 1) {
            text = names.first();
        } else {
            QStringList quoted;
            for (const QString& name : names)
                quoted.append(QLatin1Char('"') + name + QLatin1Char('"'));
            text = quoted.join(QLatin1Char(' '));
        }
        edit->setText(text);
        static_cast<QDialog*>(files)->accept(); // public in QDialog, virtual
        // The dialog refuses names that do not exist; never leave it open.
        if (files->isVisible())
            files->reject();
    };
}

ModalAnswerer::Handler typeSaveName(const QString& text) {
    return [text](QWidget* dialog) {
        auto* files = qobject_cast<QFileDialog*>(dialog);
        auto* edit = files ? files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
        if (!edit) {
            rejectDialog(dialog);
            return;
        }
        edit->setText(text);
        static_cast<QDialog*>(files)->accept(); // public in QDialog, virtual
        if (files->isVisible())
            files->reject();
    };
}

ModalAnswerer::Handler clickMessageBoxButton(int standardButton) {
    return [standardButton](QWidget* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        QAbstractButton* button =
            box ? box->button(QMessageBox::StandardButton(standardButton)) : nullptr;
        if (button)
            button->click();
        else
            rejectDialog(dialog);
    };
}

void rejectDialog(QWidget* dialog) {
    if (auto* d = qobject_cast<QDialog*>(dialog))
        d->reject();
    else
        dialog->close();
}

// ------------------------------------------------------------ mouse and drop

void pointAndClick(QAbstractButton* button) {
    const QPoint centre = button->rect().center();
    QMouseEvent move(QEvent::MouseMove, centre, button->mapToGlobal(centre), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(button, &move);
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, centre);
}

bool dragAndDrop(QWidget* target, const QList<QUrl>& urls) {
    QMimeData mime;
    mime.setUrls(urls);
    const QPoint at = target->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(QPointF(at), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    return true;
}

// ------------------------------------------------------------------ JobWatch

// QtCore's hook table (qhooks_p.h): entry 3 is called from every QObject
// constructor, entry 4 from every destructor.
extern quintptr Q_CORE_EXPORT qtHookData[];

namespace {

constexpr int addObjectHook = 3;
constexpr int removeObjectHook = 4;
using ObjectHook = void (*)(QObject*);

std::mutex watchMutex;
std::thread::id guiThread;
std::unordered_set<QObject*> freshObjects;
std::unordered_set<QObject*> watchedJobs;
int jobsCreated = 0;
quintptr previousAdd = 0;
quintptr previousRemove = 0;

void objectAdded(QObject* object) {
    // Jobs are made on the GUI thread; objects of the pool threads (files,
    // the threads' own bookkeeping) are of no interest and are never looked
    // at while they might be half destroyed.
    if (std::this_thread::get_id() == guiThread) {
        std::lock_guard<std::mutex> lock(watchMutex);
        freshObjects.insert(object);
    }
    if (previousAdd)
        reinterpret_cast<ObjectHook>(previousAdd)(object);
}

void objectRemoved(QObject* object) {
    {
        std::lock_guard<std::mutex> lock(watchMutex);
        freshObjects.erase(object);
        watchedJobs.erase(object);
    }
    if (previousRemove)
        reinterpret_cast<ObjectHook>(previousRemove)(object);
}

} // namespace

JobWatch::JobWatch() {
    std::lock_guard<std::mutex> lock(watchMutex);
    guiThread = std::this_thread::get_id();
    freshObjects.clear();
    watchedJobs.clear();
    jobsCreated = 0;
    previousAdd = qtHookData[addObjectHook];
    previousRemove = qtHookData[removeObjectHook];
    qtHookData[addObjectHook] = reinterpret_cast<quintptr>(&objectAdded);
    qtHookData[removeObjectHook] = reinterpret_cast<quintptr>(&objectRemoved);
}

JobWatch::~JobWatch() {
    qtHookData[addObjectHook] = previousAdd;
    qtHookData[removeObjectHook] = previousRemove;
    std::lock_guard<std::mutex> lock(watchMutex);
    freshObjects.clear();
    watchedJobs.clear();
}

int JobWatch::collect() {
    std::lock_guard<std::mutex> lock(watchMutex);
    int found = 0;
    for (QObject* object : freshObjects) {
        if (qobject_cast<convert*>(object)) {
            watchedJobs.insert(object);
            ++found;
        }
    }
    freshObjects.clear();
    jobsCreated += found;
    return found;
}

int JobWatch::created() const {
    std::lock_guard<std::mutex> lock(watchMutex);
    return jobsCreated;
}

QList<QObject*> JobWatch::liveJobs() const {
    std::lock_guard<std::mutex> lock(watchMutex);
    return QList<QObject*>(watchedJobs.begin(), watchedJobs.end());
}

int JobWatch::alive() const {
    std::lock_guard<std::mutex> lock(watchMutex);
    return static_cast<int>(watchedJobs.size());
}

QListWidget* listOf(MainWindow& window) {
    return window.findChild<QListWidget*>(QStringLiteral("listWidget"));
}

ListWidgetContainer* rowAt(MainWindow& window, int index) {
    QListWidget* list = listOf(window);
    return list ? qobject_cast<ListWidgetContainer*>(list->itemWidget(list->item(index))) : nullptr;
}

QStringList rowPaths(MainWindow& window) {
    QListWidget* list = listOf(window);
    if (!list)
        return {QStringLiteral("<no list>")};
    QStringList paths;
    for (int i = 0; i < list->count(); ++i) {
        ListWidgetContainer* row = rowAt(window, i);
        paths.append(row ? row->filePath : QStringLiteral("<no row>"));
    }
    return paths;
}

cButton* rowButton(ListWidgetContainer* row, const char* objectName) {
    return row ? row->findChild<cButton*>(QLatin1String(objectName)) : nullptr;
}

QString duplicateText(const QString& reportPath) {
    return QStringLiteral("Die Datei ") + reportPath +
           QStringLiteral(" befindest sich schon in der Liste");
}

QStringList actionTexts(const QMenu* menu) {
    QStringList texts;
    for (const QAction* action : menu->actions())
        if (!action->isSeparator())
            texts.append(action->text().remove(QLatin1Char('&')).section(QLatin1Char('\t'), 0, 0));
    return texts;
}

// ------------------------------------------------------------ Button names

const QVector<ButtonName>& buttonNames() {
    static const QVector<ButtonName> names{
        {"logo", false, "btnLogo", "Brevio", "Brevio"},
        {"open", false, "btnBrows", "Dateien öffnen", "Open files"},
        {"convert all", false, "btnKonvert", "Alle konvertieren", "Convert all"},
        {"remove", true, "btnDelete", "Entfernen", "Remove"},
        {"rename", true, "btnNewName", "Bericht umbenennen", "Rename report"},
        {"convert", true, "btnKonvertier", "Konvertieren", "Convert"},
    };
    return names;
}

void addButtonNameRows(const QString& language) {
    QTest::addColumn<bool>("inRow");
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("name");
    const bool english = language == QLatin1String("en");
    for (const ButtonName& button : buttonNames())
        QTest::newRow(button.tag) << button.inRow << QString::fromLatin1(button.objectName)
                                  << QString::fromUtf8(english ? button.english : button.german);
}
