// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_MAINWINDOW_H
#define BREVIO_MAINWINDOW_H

#include "app/listwidgetcontainer.h"

#include <QMainWindow>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>

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

    // Takes one configuration file into the list, after any files still
    // waiting to be listed; anything not ending in ".json" and anything
    // already listed is refused.
    void addListWidgetItem(QString path);
    // Takes the files into the list in the order given, each as
    // addListWidgetItem() would. Many files are taken a part at a time from
    // the event loop, so that the window answers input meanwhile; files
    // given while earlier ones still wait are taken after them.
    void addListWidgetItems(const QStringList& paths);
    // Takes the files as addListWidgetItems() does once the event loop
    // runs, so that the window is on screen first and a refusal ("Fehler")
    // appears over it: files from the command line and from a later start.
    void openWhenShown(const QStringList& paths);

public slots:
    void convertAll();
    void convertSingle(ListWidgetContainer* row);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Lists the next part of the waiting files.
    void listWaitingFiles();
    int partRows() const;
    // Appends one row per report path, laid out once for all of them.
    void appendRows(const QStringList& reports);
    void refuseDuplicate(const QString& report);

    Ui_MainWindow* ui;
    // The report paths of the rows as they were added, for refusing
    // duplicates; a set, since every file given is looked up in it. A row
    // renamed later keeps its old entry here.
    QSet<QString> fileList;

    // Files given but not yet listed: waitingFiles from nextWaiting on.
    QStringList waitingFiles;
    int nextWaiting = 0;
    // A part is being listed; a "Fehler" box it opened may be running its
    // own event loop.
    bool listing = false;
    QTimer nextPart;
    // What the parts cost so far, to size the next one.
    qint64 rowNs = 0;
    qint64 layoutNs = 0;
};

#endif
