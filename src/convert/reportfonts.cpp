// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/reportfonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QResource>

QString reportFontFamily() {
    return QStringLiteral("Brevio Sans");
}

bool registerReportFonts() {
    // Registering from memory needs no font configuration at all: a machine
    // whose fontconfig finds no fonts still gets a readable report.
    bool registered = true;
    for (const char* face : {":/fonts/BrevioSans.ttf", ":/fonts/BrevioSans-Bold.ttf"}) {
        const QResource resource(QString::fromLatin1(face));
        // The faces are stored uncompressed (rsc.qrc), so FreeType reads
        // them where the program's image has them: copying 1.6 MB first
        // would cost every process a few hundred page faults.
        const QByteArray data =
            resource.compressionAlgorithm() == QResource::NoCompression
                ? QByteArray::fromRawData(reinterpret_cast<const char*>(resource.data()),
                                          int(resource.size()))
                : resource.uncompressedData();
        registered = QFontDatabase::addApplicationFontFromData(data) >= 0 && registered;
    }
    if (!registered)
        return false;
    // Only the family changes: the window keeps the size and style the
    // platform chose, and the bundled faces are the ones Debian's default
    // sans-serif already draws with.
    QFont font = QGuiApplication::font();
    font.setFamily(reportFontFamily());
    // Hinting decides whether glyph advances are rounded to whole pixels,
    // and so where every line of the report ends. Debian's font
    // configuration asks for slight hinting, which keeps the unrounded
    // advances; a machine without that setting (or without any font
    // configuration) would get full hinting and lines a pixel wider.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    QGuiApplication::setFont(font);
    return true;
}
