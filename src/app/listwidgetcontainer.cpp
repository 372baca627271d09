#include "app/listwidgetcontainer.h"

#include "app/cbutton.h"

#include <QEvent>
#include <QFileDialog>
#include <QFont>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QSizePolicy>

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

cButton* makeButton(QWidget* row, const char* name) {
    auto* button = new cButton(row);
    button->setObjectName(QLatin1String(name));
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
    // The line edit has no real width before the list lays the row out, so
    // the path is elided only once control is back in the event loop.
    QMetaObject::invokeMethod(this, "setTextElided", Qt::QueuedConnection);

    pBar = new QProgressBar(this);
    pBar->setSizePolicy(QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
    pBar->setObjectName(QStringLiteral("pBarKonvert"));
    pBar->setRange(0, 100);
    pBar->setValue(0);

    cButton* btnDelete = makeButton(this, "btnDelete");
    connect(btnDelete, &QAbstractButton::clicked, this, &ListWidgetContainer::deleteMe);
    cButton* btnNewName = makeButton(this, "btnNewName");
    connect(btnNewName, &QAbstractButton::clicked, this, [this] { askForNewName(); });
    cButton* btnKonvertier = makeButton(this, "btnKonvertier");
    connect(btnKonvertier, &QAbstractButton::clicked, this, &ListWidgetContainer::konvertMe);

    layout->addWidget(lineEdit, 3);
    layout->addWidget(pBar, 1);
    layout->addWidget(btnDelete);
    layout->addWidget(btnNewName);
    layout->addWidget(btnKonvertier);

    setStyleSheet(QLatin1String(rowStyleSheet));
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
