#include "filenamecodec.h"
#include "launch.h"
#include "mainwindow.h"
#include "reportfonts.h"

#include <QApplication>
#include <QDir>

int main(int argc, char* argv[]) {
    const int answered = launch::answerWithoutDisplay(argc, argv);
    if (answered != launch::startWindow)
        return answered;

    QApplication app(argc, argv);
    registerReportFonts();
    // Before the arguments are read: files whose names are not UTF-8 are
    // opened and written by their bytes.
    FileNameCodec::useForLocale();
    launch::describeApplication();
    const launch::Request request = launch::parse(QApplication::arguments(), QDir::currentPath());
    if (request.exitStatus != launch::startWindow)
        return request.exitStatus;

    MainWindow window;
    window.show();
    launch::openWhenShown(window, request.files);
    return app.exec();
}
