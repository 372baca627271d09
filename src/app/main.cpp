#include "mainwindow.h"
#include "reportfonts.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    registerReportFonts();
    MainWindow window;
    window.show();
    return app.exec();
}
