// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_LISTWIDGETCONTAINER_H
#define BREVIO_LISTWIDGETCONTAINER_H

#include <QString>
#include <QWidget>

class QLineEdit;
class QMenu;
class QProgressBar;
class QResizeEvent;

// One row of the file list: the report path, the conversion's progress and
// the remove / rename / convert buttons. The row never touches the list or
// starts a conversion itself; it asks the window through its signals.
class ListWidgetContainer : public QWidget {
    Q_OBJECT

public:
    ListWidgetContainer(QWidget* parent, QString path);

    // The report path, ending in ".pdf". The configuration file that a
    // conversion reads is derived from it, so a rename changes the input too.
    QString filePath;
    // The bar doubles as the row's "already converted" mark: the window
    // converts a row only while its value is 0.
    QProgressBar* pBar = nullptr;
    QLineEdit* lineEdit = nullptr;

    // The path field's context menu: the line edit's own entries, then
    // "Bericht öffnen" and "Ordner öffnen", enabled while there is a report
    // to open (reportToOpen()). The caller owns it.
    QMenu* createPathMenu(QWidget* parent);
    // Hands the report to the desktop's viewer; false if there is none.
    bool openReport();

    // What the last conversion of this row came to: written, and the path
    // the job wrote (which a renamed row does not always show), or not.
    void setConversionResult(bool written, const QString& reportPath);
    // The report the row offers: before any conversion whatever lies at
    // filePath; after one, the report it wrote, or none at all when it
    // wrote none (an older file at that name is not this run's report).
    // Empty when there is none.
    QString reportToOpen() const;

signals:
    void deleteMe();
    void newName(QString s);
    void konvertMe();

public slots:
    void setPbarRange(int min, int max);
    void setPbarValue(int value);
    void setTextElided();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void askForNewName();

    enum class Conversion { None, Written, NotWritten };
    Conversion lastConversion = Conversion::None;
    QString writtenReport;
};

#endif
