// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_WINDOWTEST_H
#define BREVIO_TESTS_WINDOWTEST_H

#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QVector>

#include <functional>

class cButton;
class ListWidgetContainer;
class MainWindow;
class QAbstractButton;
class QListWidget;
class QMenu;
class QWidget;
class QFileDialog;
class QMessageBox;

// The window's file list, its row widgets and their report paths, in
// order ("<no row>" where an item has no row widget).
QListWidget* listOf(MainWindow& window);
ListWidgetContainer* rowAt(MainWindow& window, int index);
QStringList rowPaths(MainWindow& window);
// One of a row's buttons, by its object name.
cButton* rowButton(ListWidgetContainer* row, const char* objectName);

// What the German box says when a file's report is already listed.
QString duplicateText(const QString& reportPath);

// A menu's entries as the user reads them: no separators, no mnemonic
// ampersands, no shortcuts.
QStringList actionTexts(const QMenu* menu);

// The window's buttons show only pictures; each carries its name as its
// tooltip, which is also what a screen reader says. One row per button,
// with its name in both languages.
struct ButtonName {
    const char* tag;
    // In a file's row rather than in the window's header.
    bool inRow;
    const char* objectName;
    const char* german;
    const char* english;
};
const QVector<ButtonName>& buttonNames();
// Fills the current test's data table from buttonNames(): the columns
// inRow, objectName and name, the name in language ("de" or "en").
void addButtonNameRows(const QString& language);

// Collects everything logged through qDebug and friends while it lives,
// then hands the handler back to the test framework.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    QStringList messages() const;
};

// Answers the next application-modal dialog from inside its event loop.
// A dialog that nobody expected is answered too (closed), so a test never
// hangs; the test then sees it in seen() / count().
class ModalAnswerer {
public:
    using Handler = std::function<void(QWidget*)>;
    // The n-th dialog is answered by the n-th handler, or rejected when
    // there are fewer handlers. A handler must close its dialog; it runs
    // outside the answerer's timer, so it may itself open another dialog
    // (an overwrite question, say) and wait for it to be answered.
    explicit ModalAnswerer(Handler handler = Handler());
    explicit ModalAnswerer(QList<Handler> handlers);
    ~ModalAnswerer();

    int count() const { return dialogs.size(); }
    bool seen() const { return !dialogs.isEmpty(); }

    // What was seen of each dialog before it was answered.
    struct Seen {
        QString className;
        QString title;
        QString text;
        QString directory;
        QString fileName;
        int acceptMode = -1;
        int fileMode = -1;
        QStringList buttons;
        int standardButtons = 0;
        QStringList nameFilters;
        bool hasParent = false;
    };
    QList<Seen> dialogs;

private:
    void poll();
    QTimer timer;
    QList<Handler> handlers;
};

// Handlers for ModalAnswerer.
void clickMessageBoxOk(QWidget* dialog);
ModalAnswerer::Handler clickMessageBoxButton(int standardButton);
// Types text into the file dialog's name field and accepts it; several
// names are given in the dialog's own quoted form.
ModalAnswerer::Handler chooseFiles(const QString& directory, const QStringList& names);
ModalAnswerer::Handler typeSaveName(const QString& text);
void rejectDialog(QWidget* dialog);

// Moves the pointer onto the button (so the button knows where the press
// starts), then presses and releases the left button there.
void pointAndClick(QAbstractButton* button);

// Delivers a drag carrying urls to the widget: enter, then drop if the
// enter was accepted. Returns whether the enter was accepted.
bool dragAndDrop(QWidget* target, const QList<QUrl>& urls);

// Watches, through QtCore's object hooks, the conversion jobs that the
// window creates and deletes; the job class itself stays untouched.
class JobWatch {
public:
    JobWatch();
    ~JobWatch();
    // Identifies the jobs among the objects created on the GUI thread since
    // the last call; call it right after the code that starts jobs.
    int collect();
    int created() const;
    int alive() const;
    // The jobs collected so far that still exist.
    QList<QObject*> liveJobs() const;
};

#endif
