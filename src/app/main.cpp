#include "app/launch.h"
#include "app/mainwindow.h"

#include <QApplication>
#include <QDir>

int main(int argc, char* argv[]) {
    const int answered = launch::answerWithoutDisplay(argc, argv);
    if (answered != launch::startWindow)
        return answered;

    QApplication app(argc, argv);
    launch::describeApplication();
    const launch::Request request = launch::parse(QApplication::arguments(), QDir::currentPath());
    if (request.exitStatus != launch::startWindow)
        return request.exitStatus;

    MainWindow window;
    window.show();
    launch::openWhenShown(window, request.files);
    return app.exec();
}
