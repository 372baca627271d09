// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/listwidgetcontainer.h"

#include "app/cbutton.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFont>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QSizePolicy>
#include <QUrl>

namespace {

const char rowStyleSheet[] =
    "QPushButton#btnDelete{border-image:url(:/img/btnClose.png);}"
    "QPushButton#btnDelete:pressed{border-image:url(:/img/btnCloseInv.png);}"
    "QPushButton#btnNewName{border-image:url(:/img/Edit.png);}"
    "QPushButton#btnNewName:pressed{border-image:url(:/img/Edit_blau.png);}"
    "QPushButton#btnKonvertier{border-image:url(:/img/IconSwitch.png);}"
    "QPushButton#btnKonvertier:pressed{border-image:url(:/img/IconSwitchInv.png);}"
    "QProgressBar#pBarKonvert{border: 1px solid gray; border-radius:12px; margin:2px; "
    "text-align:center;}"
    "QProgressBar#pBarKonvert::chunk {background-color: #E30613; border-radius:12px; margin: "
    "2px;}";

// The row's own resize is not the last word on the line edit's width: the
// picture buttons square themselves only after they have their height, and
// the layout then narrows the line edit without resizing the row. Text
// elided for the earlier width would be scrolled so that its ellipsis is
// out of sight, so the line edit's own resizes re-elide as well.
class ElideOnResize : public QObject {
public:
    // Owned by the line edit, so the row's own children stay as they are.
    ElideOnResize(QLineEdit* edit, ListWidgetContainer* row) : QObject(edit), row(row) {}

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Resize)
            row->setTextElided();
        return false;
    }

private:
    ListWidgetContainer* row;
};

// The report one click away: a double click on the path opens it, and the
// context menu offers it and its folder.
class ReportOnPath : public QObject {
public:
    ReportOnPath(QLineEdit* edit, ListWidgetContainer* row) : QObject(edit), row(row) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonDblClick)
            // Without a report the line edit selects a word, as it always did.
            return row->openReport();
        if (event->type() == QEvent::ContextMenu) {
            const QPointer<QMenu> menu = row->createPathMenu(static_cast<QWidget*>(watched));
            menu->exec(static_cast<QContextMenuEvent*>(event)->globalPos());
            delete menu;
            return true;
        }
        return false;
    }

private:
    ListWidgetContainer* row;
};

// A URL that keeps every byte of the name: QUrl::fromLocalFile() would write
// a name that is not UTF-8 with U+FFFD in it, which names another file.
QUrl urlOf(const QString& path) {
    const QByteArray bytes = QFile::encodeName(path);
    if (bytes == path.toUtf8())
        return QUrl::fromLocalFile(path);
    QUrl url;
    url.setScheme(QStringLiteral("file"));
    url.setPath(QString::fromLatin1(bytes.toPercentEncoding("/")), QUrl::TolerantMode);
    return url;
}

bool isReport(const QString& path) {
    return QFileInfo(path).isFile();
}

cButton* makeButton(QWidget* row, const char* name, const QString& description) {
    auto* button = new cButton(row);
    button->setObjectName(QLatin1String(name));
    // The buttons show only pictures: words for the mouse and screen readers.
    button->setToolTip(description);
    button->setAccessibleName(description);
    // Fixed horizontally: the button's own resize handling decides its width.
    button->setSizePolicy(QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding));
    return button;
}

} // namespace

ListWidgetContainer::ListWidgetContainer(QWidget* parent, QString path) : QWidget(parent) {
    auto* layout = new QHBoxLayout;
    layout->setSpacing(0);
    layout->setContentsMargins(5, 0, 0, 0);

    filePath = path;

    lineEdit = new QLineEdit(this);
    lineEdit->setReadOnly(true);
    lineEdit->setSizePolicy(QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    lineEdit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QFont font;
    font.setPointSize(16);
    lineEdit->setFont(font);
    lineEdit->setObjectName(QStringLiteral("LineEditPath"));
    lineEdit->installEventFilter(new ElideOnResize(lineEdit, this));
    lineEdit->installEventFilter(new ReportOnPath(lineEdit, this));
    // The line edit has no real width before the list lays the row out, so
    // the path is elided only once control is back in the event loop.
    QMetaObject::invokeMethod(this, "setTextElided", Qt::QueuedConnection);

    pBar = new QProgressBar(this);
    pBar->setSizePolicy(QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    pBar->setObjectName(QStringLiteral("pBarKonvert"));
    pBar->setRange(0, 100);
    pBar->setValue(0);

    cButton* btnDelete = makeButton(this, "btnDelete", tr("Entfernen"));
    connect(btnDelete, &QAbstractButton::clicked, this, &ListWidgetContainer::deleteMe);
    cButton* btnNewName = makeButton(this, "btnNewName", tr("Bericht umbenennen"));
    connect(btnNewName, &QAbstractButton::clicked, this, [this] { askForNewName(); });
    cButton* btnKonvertier = makeButton(this, "btnKonvertier", tr("Konvertieren"));
    connect(btnKonvertier, &QAbstractButton::clicked, this, &ListWidgetContainer::konvertMe);

    layout->addWidget(lineEdit, 3);
    layout->addWidget(pBar, 1);
    layout->addWidget(btnDelete);
    layout->addWidget(btnNewName);
    layout->addWidget(btnKonvertier);

    // One copy of the text for all rows: a long list holds thousands.
    static const QString sharedStyleSheet = QLatin1String(rowStyleSheet);
    setStyleSheet(sharedStyleSheet);
    setLayout(layout);
}

void ListWidgetContainer::setPbarRange(int min, int max) {
    if (pBar)
        pBar->setRange(min, max);
}

void ListWidgetContainer::setPbarValue(int value) {
    if (pBar)
        pBar->setValue(value);
}

void ListWidgetContainer::setTextElided() {
    if (!lineEdit)
        return;
    // Cut from the left: the file name at the end is what tells rows apart.
    const QFontMetrics metrics(lineEdit->font());
    const QString elided = metrics.elidedText(filePath, Qt::ElideLeft, lineEdit->width() - 2);
    lineEdit->setText(elided);
    lineEdit->setToolTip(elided == filePath ? QString() : filePath);
}

void ListWidgetContainer::resizeEvent(QResizeEvent*) {
    setTextElided();
}

void ListWidgetContainer::askForNewName() {
    // The dialog runs its own event loop; the row may be gone when it returns.
    const QPointer<ListWidgetContainer> self(this);
    QString result = QFileDialog::getSaveFileName(nullptr, tr("Speichern unter"), filePath,
                                                  QString(), nullptr, QFileDialog::Options());
    if (!self || result.isEmpty())
        return;
    if (!result.endsWith(QLatin1String(".pdf")))
        result.append(QLatin1String(".pdf"));
    filePath = result;
    emit newName(result);
    setTextElided();
}

QMenu* ListWidgetContainer::createPathMenu(QWidget* parent) {
    QMenu* menu = lineEdit->createStandardContextMenu();
    menu->setParent(parent, menu->windowFlags());
    menu->addSeparator();
    const bool exists = !reportToOpen().isEmpty();
    QAction* report = menu->addAction(tr("Bericht öffnen"));
    report->setEnabled(exists);
    connect(report, &QAction::triggered, this, [this] { openReport(); });
    QAction* folder = menu->addAction(tr("Ordner öffnen"));
    folder->setEnabled(exists);
    connect(folder, &QAction::triggered, this, [this] {
        const QString report = reportToOpen();
        if (!report.isEmpty())
            QDesktopServices::openUrl(urlOf(QFileInfo(report).absolutePath()));
    });
    return menu;
}

bool ListWidgetContainer::openReport() {
    const QString report = reportToOpen();
    if (report.isEmpty())
        return false;
    QDesktopServices::openUrl(urlOf(report));
    return true;
}

void ListWidgetContainer::setConversionResult(bool written, const QString& reportPath) {
    lastConversion = written ? Conversion::Written : Conversion::NotWritten;
    writtenReport = written ? reportPath : QString();
}

QString ListWidgetContainer::reportToOpen() const {
    switch (lastConversion) {
    case Conversion::None:
        return isReport(filePath) ? filePath : QString();
    case Conversion::Written:
        return isReport(writtenReport) ? writtenReport : QString();
    case Conversion::NotWritten:
        break;
    }
    return QString();
}
