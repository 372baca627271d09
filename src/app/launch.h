#ifndef BREVIO_LAUNCH_H
#define BREVIO_LAUNCH_H

#include "convert/bootstrap.h"

#include <QString>
#include <QStringList>

class MainWindow;

// The window's command line: "brevio [FILE...]", plus --help and --version.
namespace launch {

// Returned instead of an exit status when the window is to be started.
constexpr int startWindow = -1;
constexpr int exitUsage = bootstrap::exitUsage;

// Answers --help, --version and unknown options before any window system
// is contacted, so that they work on a terminal without a display. Qt's
// own options (-platform, -style, ...) are left to QApplication. Returns
// the exit status, or startWindow.
int answerWithoutDisplay(int argc, char* argv[]);

// The shared start-up (name, version, file-name codec, report fonts), then
// what the desktop needs: the id of the menu entry (which lets a desktop
// match the window to its icon) and the window icon. Call before the
// arguments are read, so that file names come through byte for byte.
void describeApplication();

struct Request {
    int exitStatus = startWindow;
    // Absolute, in the order given.
    QStringList files;
};

// Reads the arguments as QApplication left them (its own options taken
// out); relative file names are joined to currentDir without resolving "."
// or "..", which only the system can do right across symbolic links (a
// drop hands the window absolute paths).
Request parse(const QStringList& arguments, const QString& currentDir);

// Adds the files one after another through the same path a drop takes,
// once the event loop runs, so that the window is on screen and a refusal
// ("Fehler") appears over it.
void openWhenShown(MainWindow& window, const QStringList& files);

} // namespace launch

#endif
