#include "filenamecodec.h"
#include "mainwindow.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    // Files whose names are not UTF-8 are opened and written by their bytes.
    FileNameCodec::useForLocale();
    MainWindow window;
    window.show();
    return app.exec();
}
