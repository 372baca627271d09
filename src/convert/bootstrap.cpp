// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/bootstrap.h"

#include "convert/reportfonts.h"
#include "files/filenamecodec.h"

#include <QCoreApplication>

#include <cstdio>

namespace bootstrap {

void initApplication(const QString& programName) {
    QCoreApplication::setApplicationName(programName);
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVIO_VERSION));
    registerReportFonts();
    FileNameCodec::useForLocale();
}

void printVersion(const QString& programName) {
    std::printf("%s %s\n", qPrintable(programName), BREVIO_VERSION);
}

int usageError(const QString& programName, const QString& message, const QString& helpText) {
    std::fprintf(stderr, "%s: %s\n\n%s", qPrintable(programName), qPrintable(message),
                 qPrintable(helpText));
    return exitUsage;
}

} // namespace bootstrap
