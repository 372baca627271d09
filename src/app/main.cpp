#include "app/launch.h"
#include "app/mainwindow.h"
#include "files/filepaths.h"
#include "files/temporaryfolders.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    const int answered = launch::answerWithoutDisplay(argc, argv);
    if (answered != launch::startWindow)
        return answered;

    // A logout (SIGHUP, SIGTERM) or Ctrl-C in the starting terminal ends
    // the window by the signal as before, but the running jobs' temporary
    // report folders go with it.
    temporaryFolders::removeOnInterrupt();
    QApplication app(argc, argv);
    launch::describeApplication();
    // Relative names follow the same rule as brevio-convert's: looked up in
    // the working folder even when it is too deep to be named, never in "/".
    const launch::Request request =
        launch::parse(QApplication::arguments(), filePaths::workingFolder());
    if (request.exitStatus != launch::startWindow)
        return request.exitStatus;

    MainWindow window;
    window.show();
    launch::openWhenShown(window, request.files);
    return app.exec();
}
