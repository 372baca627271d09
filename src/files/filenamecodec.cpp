// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/filenamecodec.h"

#include "files/localenamecodec.h"

#include <langinfo.h>

namespace {

constexpr ushort escapeBase = 0xDC00;

// Length of the valid UTF-8 sequence starting at in[0], or 0 if the bytes
// there do not start one (overlong forms, surrogates and values beyond
// U+10FFFF are not valid).
int validSequenceLength(const uchar* in, int remaining, uint* codePoint) {
    const uchar lead = in[0];
    int length;
    uint value;
    uint minimum;
    if (lead < 0x80) {
        *codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (remaining < length)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((in[i] & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (in[i] & 0x3F);
    }
    if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    *codePoint = value;
    return length;
}

void appendUtf8(QByteArray& out, uint codePoint) {
    if (codePoint < 0x80) {
        out.append(char(codePoint));
    } else if (codePoint < 0x800) {
        out.append(char(0xC0 | (codePoint >> 6)));
        out.append(char(0x80 | (codePoint & 0x3F)));
    } else if (codePoint < 0x10000) {
        out.append(char(0xE0 | (codePoint >> 12)));
        out.append(char(0x80 | ((codePoint >> 6) & 0x3F)));
        out.append(char(0x80 | (codePoint & 0x3F)));
    } else {
        out.append(char(0xF0 | (codePoint >> 18)));
        out.append(char(0x80 | ((codePoint >> 12) & 0x3F)));
        out.append(char(0x80 | ((codePoint >> 6) & 0x3F)));
        out.append(char(0x80 | (codePoint & 0x3F)));
    }
}

} // namespace

QByteArray FileNameCodec::name() const {
    return QByteArrayLiteral("UTF-8 (byte-preserving)");
}

int FileNameCodec::mibEnum() const {
    // Not an IANA character set: a number from the private range.
    return 3000 + 0xDC;
}

void FileNameCodec::useForLocale() {
    // The C library's word, not Qt's: Qt 5.15 built with ICU names UTF-8
    // whatever the locale. In the C locale (ASCII) names are taken as UTF-8,
    // as nearly every system's names are; any other set is the locale's own,
    // kept byte for byte the same way.
    const QByteArray codeset(nl_langinfo(CODESET));
    // QTextCodec keeps every codec it constructs until the process ends.
    if (codeset == "UTF-8" || codeset == "ANSI_X3.4-1968" || codeset == "US-ASCII" ||
        !LocaleNameCodec::supports(codeset)) {
        static FileNameCodec* const codec = new FileNameCodec;
        QTextCodec::setCodecForLocale(codec);
        return;
    }
    static LocaleNameCodec* const codec = new LocaleNameCodec(codeset);
    QTextCodec::setCodecForLocale(codec);
}

QString FileNameCodec::convertToUnicode(const char* in, int length, ConverterState*) const {
    QString out;
    out.reserve(length);
    const auto* bytes = reinterpret_cast<const uchar*>(in);
    for (int i = 0; i < length;) {
        uint codePoint = 0;
        const int sequence = validSequenceLength(bytes + i, length - i, &codePoint);
        if (sequence == 0) {
            out.append(QChar(ushort(escapeBase + bytes[i])));
            ++i;
            continue;
        }
        if (QChar::requiresSurrogates(codePoint)) {
            out.append(QChar(QChar::highSurrogate(codePoint)));
            out.append(QChar(QChar::lowSurrogate(codePoint)));
        } else {
            out.append(QChar(ushort(codePoint)));
        }
        i += sequence;
    }
    return out;
}

QByteArray FileNameCodec::convertFromUnicode(const QChar* in, int length, ConverterState*) const {
    QByteArray out;
    out.reserve(length);
    for (int i = 0; i < length; ++i) {
        const ushort unit = in[i].unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < length && in[i + 1].isLowSurrogate()) {
            appendUtf8(out, QChar::surrogateToUcs4(unit, in[i + 1].unicode()));
            ++i;
        } else if (unit >= escapeBase + 0x80 && unit <= escapeBase + 0xFF) {
            // An escaped byte goes back out as itself.
            out.append(char(unit - escapeBase));
        } else if (QChar::isSurrogate(unit)) {
            out.append('?');
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}
