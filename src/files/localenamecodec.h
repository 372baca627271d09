// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_LOCALENAMECODEC_H
#define BREVIO_LOCALENAMECODEC_H

#include <QByteArray>
#include <QTextCodec>

// The locale's own character set (ISO 8859-1, KOI8-R, EUC-JP, ...) that
// keeps every byte, for the locales that are not UTF-8. Names, arguments
// and the system's messages are decoded as the user's locale reads them,
// and text written to a terminal is in that encoding too. A byte that is
// not valid in the character set becomes the lone surrogate U+DC80 +
// (byte - 0x80) and is written back as that byte, as FileNameCodec does for
// UTF-8. A character the set cannot encode is written as "?" and counted
// as invalid in the converter state. The C library's iconv does the
// conversions.
class LocaleNameCodec : public QTextCodec {
public:
    // codeset as nl_langinfo(CODESET) names it.
    explicit LocaleNameCodec(const QByteArray& codeset);

    QByteArray name() const override;
    int mibEnum() const override;

    // Whether iconv converts between codeset and UTF-16 at all.
    static bool supports(const QByteArray& codeset);

protected:
    QString convertToUnicode(const char* in, int length, ConverterState* state) const override;
    QByteArray convertFromUnicode(const QChar* in, int length,
                                  ConverterState* state) const override;

private:
    // What iconv makes of the bytes, bytes it cannot read escaped.
    QString decode(const char* in, int length) const;

    QByteArray codeset;
};

#endif
