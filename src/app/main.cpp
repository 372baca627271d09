#include "app/launch.h"
#include "app/mainwindow.h"
#include "app/onewindow.h"

#include <QApplication>
#include <QDir>

#include <cstdio>

int main(int argc, char* argv[]) {
    const int answered = launch::answerWithoutDisplay(argc, argv);
    if (answered != launch::startWindow)
        return answered;

    launch::enableHighDpi();
    launch::guardDisplayConnection();
    QApplication app(argc, argv);
    launch::endDisplayGuard();
    launch::describeApplication();
    const launch::Request request = launch::parse(QApplication::arguments(), QDir::currentPath());
    if (request.exitStatus != launch::startWindow)
        return request.exitStatus;

    // A window of this user on this display takes the files into its list.
    OneWindow oneWindow;
    if (!request.newWindow) {
        const OneWindow::HandOver handed = oneWindow.handOver(request.files);
        if (handed == OneWindow::HandOver::Taken)
            return 0;
        if (handed == OneWindow::HandOver::Failed) {
            std::fputs("brevio: the open window did not take the files; "
                       "brevio --new-window opens another\n",
                       stderr);
            return 1;
        }
    }

    MainWindow window;
    oneWindow.serve(window);
    window.show();
    launch::openWhenShown(window, request.files);
    return app.exec();
}
