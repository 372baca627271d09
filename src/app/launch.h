// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_LAUNCH_H
#define BREVIO_LAUNCH_H

#include "convert/bootstrap.h"

#include <QString>
#include <QStringList>

// The window's command line: "brevio [FILE...]", plus --help, --help-all,
// --version and --new-window.
namespace launch {

// Returned instead of an exit status when the window is to be started.
constexpr int startWindow = -1;
constexpr int exitUsage = bootstrap::exitUsage;

constexpr int exitNoDisplay = 1;

// Answers --help, --help-all, --version and unknown options before any
// window system is contacted, so that they work on a terminal without a
// display; then refuses to start without a display the platform could use.
// Qt's own options (-platform, -style, ...) are left to QApplication.
// Returns the exit status, or startWindow.
int answerWithoutDisplay(int argc, char* argv[]);

// Says why there is no window and ends the process with exitNoDisplay when
// the platform plugin fails after all (a DISPLAY that names no server),
// instead of Qt's abort. Install right before the application object and
// remove right after it.
void guardDisplayConnection();
void endDisplayGuard();

// Qt's high-DPI scaling is opt-in in Qt 5: without it the window keeps its
// 96-dpi pixel sizes on a 192-dpi screen while its point-sized fonts double.
// Also picks Qt's own file dialogs where the platform's would not be
// German (Windows). Call before the application object exists.
void enableHighDpi();

// The shared start-up (name, version, file-name codec, report fonts), then
// what the desktop needs: the id of the menu entry (which lets a desktop
// match the window to its icon) and the window icon. The language comes
// later, from useLanguage(). Call before the arguments are read, so that
// file names come through byte for byte.
void describeApplication();

struct Request {
    int exitStatus = startWindow;
    // --new-window: open a window of its own even when one is running.
    bool newWindow = false;
    // --language: "de" or "en".
    QString language = QStringLiteral("de");
    // Absolute, in the order given.
    QStringList files;
    // Relative names given while the working folder no longer exists:
    // there is no place to look for them, and they are sent nowhere.
    QStringList withoutFolder;
};

// What the window says, one line each, of names given while the working
// folder no longer exists.
QString workingFolderGone(const QString& name);

// The language of the window's and the reports' texts ("de" or "en", as
// parse() accepts it). German brings Qt's own German too (qtbase_de.qm, so
// that the file dialogs, the line edits' context menus and the message
// boxes' buttons speak German whatever the system's locale is), where the
// system's Qt or the program has it; English leaves Qt's texts in Qt's own
// English. Returns false when the window's own texts in that language
// cannot be had. Call it once, before the window is made.
bool useLanguage(const QString& language);

// Reads the arguments as QApplication left them (its own options taken
// out); relative file names are joined to currentDir without resolving "."
// or "..", which only the system can do right across symbolic links (a
// drop hands the window absolute paths). --help and --version are answered
// and mistakes (an unknown option, a --language other than de or en) told
// here, with the exit status in the request.
Request parse(const QStringList& arguments, const QString& currentDir);

} // namespace launch

#endif
