// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/desktopplatform.h"
#include "app/launch.h"
#include "app/mainwindow.h"
#include "app/onewindow.h"
#include "files/filepaths.h"
#include "files/temporaryfolders.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
    const int answered = launch::answerWithoutDisplay(argc, argv);
    if (answered != launch::startWindow)
        return answered;

    desktopPlatform::prepareProcess();
    // A logout (SIGHUP, SIGTERM) or Ctrl-C in the starting terminal ends
    // the window by the signal as before, but the running jobs' temporary
    // report folders go with it.
    temporaryFolders::removeOnInterrupt();
    launch::enableHighDpi();
    launch::guardDisplayConnection();
    QApplication app(argc, argv);
    launch::endDisplayGuard();
    launch::describeApplication();
    // Relative names follow the same rule as brevio-convert's: looked up in
    // the working folder even when it is too deep to be named, never in "/".
    const launch::Request request =
        launch::parse(QApplication::arguments(), filePaths::workingFolder());
    if (request.exitStatus != launch::startWindow)
        return request.exitStatus;

    // A relative name in a working folder that is gone names no file: the
    // start says so and sends nothing, to no window.
    if (!request.withoutFolder.isEmpty()) {
        for (const QString& name : request.withoutFolder)
            std::fprintf(stderr, "%s\n", qPrintable(launch::workingFolderGone(name)));
        return 1;
    }
    if (!launch::useLanguage(request.language)) {
        std::fprintf(stderr, "brevio: the window's texts in \"%s\" cannot be loaded\n",
                     qPrintable(request.language));
        return 1;
    }
    // A window of this user on this display, in this language, takes the
    // files into its list.
    OneWindow oneWindow(oneWindow::endpointFor(request.language));
    if (!request.newWindow) {
        const OneWindow::HandOver handed = oneWindow.handOver(request.files);
        if (handed == OneWindow::HandOver::Taken)
            return 0;
        // Only files the window certainly did not take are said to be
        // not taken; a window that may still take them is not blamed.
        if (handed != OneWindow::HandOver::NoWindow) {
            std::fprintf(stderr, "%s\n",
                         qPrintable(oneWindow::notHandedOver(handed, oneWindow.filesTaken(),
                                                             request.files.size())));
            return 1;
        }
    }

    MainWindow window;
    oneWindow.serve(window);
    window.show();
    window.openWhenShown(request.files);
    return app.exec();
}
