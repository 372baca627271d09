// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Built for Windows beside brevio.exe and run under Wine: starts the
// window the way brevio.exe does, lists the file given, and checks from
// inside what a screenshot cannot tell for certain: the row's path field
// takes the free width as on Linux (three parts of four beside the
// progress bar), and the folder button opens Qt's own file dialog, in
// German. Prints one line per check and ends with status 0 when all hold.
//   brevio-windowcheck.exe CONFIGURATION

#include "app/launch.h"
#include "app/listwidgetcontainer.h"
#include "app/mainwindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace {

int failures = 0;

void report(bool holds, const QString& what) {
    std::printf("%s: %s\n", holds ? "ok" : "FAIL", what.toUtf8().constData());
    std::fflush(stdout);
    failures += holds ? 0 : 1;
}

void checkRow(MainWindow& window) {
    auto* list = window.findChild<QListWidget*>(QStringLiteral("listWidget"));
    auto* row = list && list->count() == 1
                    ? qobject_cast<ListWidgetContainer*>(list->itemWidget(list->item(0)))
                    : nullptr;
    report(row != nullptr, QStringLiteral("one row listed"));
    if (!row)
        return;
    const int path = row->lineEdit->width();
    const int bar = row->pBar->width();
    report(path >= 2 * bar,
           QStringLiteral("path field %1 px, progress bar %2 px").arg(path).arg(bar));
}

void checkDialog(MainWindow& window) {
    // The dialog runs its own event loop: it is looked at from a timer.
    QTimer::singleShot(1500, &window, [] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        report(dialog != nullptr, QStringLiteral("Qt's own file dialog is shown"));
        if (!dialog)
            return;
        QStringList texts;
        for (QAbstractButton* button : dialog->findChildren<QPushButton*>())
            if (button->isVisible())
                texts << button->text().remove(QLatin1Char('&'));
        report(texts.contains(QStringLiteral("Öffnen")) &&
                   texts.contains(QStringLiteral("Abbrechen")),
               QStringLiteral("its buttons: %1").arg(texts.join(QStringLiteral(", "))));
        dialog->reject();
    });
    for (QAction* action : window.actions())
        if (action->shortcut() == QKeySequence(QKeySequence::Open)) {
            action->trigger();
            return;
        }
    report(false, QStringLiteral("no Ctrl+O action"));
}

} // namespace

int main(int argc, char* argv[]) {
    launch::enableHighDpi();
    QApplication app(argc, argv);
    launch::describeApplication();
    launch::useLanguage(QStringLiteral("de"));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: brevio-windowcheck.exe CONFIGURATION\n", stderr);
        return 2;
    }
    MainWindow window;
    window.show();
    window.addListWidgetItem(arguments.at(1));
    QTimer::singleShot(2000, &window, [&] {
        checkRow(window);
        checkDialog(window);
        app.exit(failures == 0 ? 0 : 1);
    });
    return app.exec();
}
