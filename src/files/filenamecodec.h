// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_FILENAMECODEC_H
#define BREVIO_FILENAMECODEC_H

#include <QTextCodec>

// UTF-8 that keeps every byte. Qt turns file names, command-line arguments
// and console output into text with the locale's codec, and plain UTF-8
// replaces each byte of a name that is not UTF-8 (an old Latin-1 "Gebäude"
// folder) with U+FFFD: such a file can then not be opened, and a sibling
// whose name really holds U+FFFD would be opened instead. Here each byte of
// an invalid sequence becomes the lone surrogate U+DC80 + (byte - 0x80) and
// is written back as that byte, so names round-trip exactly; valid UTF-8 is
// decoded as usual.
class FileNameCodec : public QTextCodec {
public:
    QByteArray name() const override;
    int mibEnum() const override;

    // Installs the codec as the locale's codec when the locale's character
    // set is UTF-8 or ASCII (C and POSIX); any other set gets a
    // LocaleNameCodec that keeps bytes the same way. Call once, early in
    // main(), after the application object has set the locale.
    static void useForLocale();

protected:
    QString convertToUnicode(const char* in, int length, ConverterState* state) const override;
    QByteArray convertFromUnicode(const QChar* in, int length,
                                  ConverterState* state) const override;
};

#endif
