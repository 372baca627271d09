// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/bootstrap.h"

#include "convert/reportfonts.h"
#include "files/nameencoding.h"

#include <QCoreApplication>
#include <QTranslator>

#include <cstdio>

namespace bootstrap {

void initApplication(const QString& programName) {
    QCoreApplication::setApplicationName(programName);
    QCoreApplication::setApplicationVersion(QStringLiteral(BREVIO_VERSION));
    registerReportFonts();
    nameEncoding::keepNamesExact();
}

void printVersion(const QString& programName) {
    std::printf("%s %s\n", qPrintable(programName), BREVIO_VERSION);
}

int usageError(const QString& programName, const QString& message, const QString& helpText) {
    std::fprintf(stderr, "%s: %s\n\n%s", qPrintable(programName), qPrintable(message),
                 qPrintable(helpText));
    return exitUsage;
}

QCommandLineOption languageOption() {
    return QCommandLineOption(QStringLiteral("language"),
                              QStringLiteral("Draw reports (and the window) in <LANGUAGE>: de "
                                             "(the default) or en."),
                              QStringLiteral("LANGUAGE"), QStringLiteral("de"));
}

bool isLanguage(const QString& language) {
    return language == QLatin1String("de") || language == QLatin1String("en");
}

QString languageError(const QString& language) {
    return QStringLiteral("--language needs de or en, not \"%1\"").arg(language);
}

bool useLanguage(const QString& language) {
    // The program's own strings are German, so German needs no file; the
    // system's locale never chooses, so a report reads the same on every
    // machine.
    if (language == QLatin1String("de"))
        return true;
    if (language != QLatin1String("en"))
        return false;
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(QStringLiteral(":/translations/brevio_en.qm"))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace bootstrap
