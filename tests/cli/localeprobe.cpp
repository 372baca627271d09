// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints the locale's codec as the toolkit names it and the character set
// the C library names, once the application object has set the locale.

#include <QCoreApplication>
#include <QTextCodec>

#include <cstdio>
#include <langinfo.h>

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    std::printf("toolkit %s, C library %s\n", QTextCodec::codecForLocale()->name().constData(),
                nl_langinfo(CODESET));
    return 0;
}
