// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_MAINWINDOW_H
#define BREVIO_MAINWINDOW_H

#include "app/listwidgetcontainer.h"

#include <QList>
#include <QMainWindow>
#include <QString>

class QDragEnterEvent;
class QDropEvent;
class QResizeEvent;
class Ui_MainWindow;

// The application window: a header strip with the logo and the open-files
// and convert-all buttons over the list of configuration files, one
// ListWidgetContainer per file.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    // Takes one configuration file into the list; anything not ending in
    // ".json" and anything already listed is refused.
    void addListWidgetItem(QString path);

public slots:
    void convertAll();
    void convertSingle(ListWidgetContainer* row);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    Ui_MainWindow* ui;
    // The report paths of the rows as they were added, for refusing
    // duplicates. A row renamed later keeps its old entry here.
    QList<QString> fileList;
};

#endif
