// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/localenamecodec.h"

#include <QString>

#include <cerrno>
#include <iconv.h>

namespace {

constexpr ushort escapeBase = 0xDC00;

bool isEscape(ushort unit) {
    return unit >= escapeBase + 0x80 && unit <= escapeBase + 0xFF;
}

// ASCII stands for itself; any other byte becomes its escape.
QChar escapeOf(uchar byte) {
    return byte < 0x80 ? QChar(ushort(byte)) : QChar(ushort(escapeBase + byte));
}

// One conversion descriptor for one call: a descriptor keeps shift state
// and must not be shared between threads, and jobs open files on several.
class Converter {
public:
    Converter(const char* to, const char* from) : handle(iconv_open(to, from)) {}
    ~Converter() {
        if (isOpen())
            iconv_close(handle);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return handle != reinterpret_cast<iconv_t>(-1); }

    // Converts as much of in as it can into out; returns false at a
    // sequence it cannot convert (in then points at it), true when all of
    // in is converted.
    bool convert(const char*& in, size_t& inLeft, QByteArray& out) {
        while (inLeft > 0) {
            char buffer[256];
            char* next = buffer;
            size_t room = sizeof buffer;
            char* input = const_cast<char*>(in);
            const size_t result = iconv(handle, &input, &inLeft, &next, &room);
            in = input;
            out.append(buffer, int(next - buffer));
            if (result != size_t(-1))
                continue;
            if (errno == E2BIG)
                continue;
            // EILSEQ, or EINVAL for a sequence cut off at the end.
            return false;
        }
        // Back to the initial shift state, for stateful sets.
        char buffer[64];
        char* next = buffer;
        size_t room = sizeof buffer;
        iconv(handle, nullptr, nullptr, &next, &room);
        out.append(buffer, int(next - buffer));
        return true;
    }

    void reset() { iconv(handle, nullptr, nullptr, nullptr, nullptr); }

private:
    iconv_t handle;
};

} // namespace

LocaleNameCodec::LocaleNameCodec(const QByteArray& codeset) : codeset(codeset) {}

QByteArray LocaleNameCodec::name() const {
    return codeset + QByteArrayLiteral(" (byte-preserving)");
}

int LocaleNameCodec::mibEnum() const {
    // Not an IANA character set: a number from the private range, next to
    // FileNameCodec's.
    return 3000 + 0xDD;
}

bool LocaleNameCodec::supports(const QByteArray& codeset) {
    return Converter("UTF-16LE", codeset.constData()).isOpen() &&
           Converter(codeset.constData(), "UTF-16LE").isOpen();
}

QString LocaleNameCodec::convertToUnicode(const char* in, int length, ConverterState*) const {
    const QString fast = decode(in, length);
    // Some sets decode sequences to characters that encode differently
    // (GB18030 in glibc): a name read so would open another file. Then
    // each character is taken only where it gives its own bytes back.
    if (convertFromUnicode(fast.constData(), fast.size(), nullptr) ==
        QByteArray::fromRawData(in, length))
        return fast;
    QString out;
    for (int i = 0; i < length;) {
        int taken = 0;
        for (int size = 1; size <= 4 && i + size <= length && taken == 0; ++size) {
            const QString one = decode(in + i, size);
            const bool single = one.size() == 1 || (one.size() == 2 && one[0].isHighSurrogate());
            if (single && !isEscape(one[0].unicode()) &&
                convertFromUnicode(one.constData(), one.size(), nullptr) ==
                    QByteArray::fromRawData(in + i, size)) {
                out += one;
                taken = size;
            }
        }
        if (taken == 0) {
            out += escapeOf(uchar(in[i]));
            taken = 1;
        }
        i += taken;
    }
    return out;
}

QString LocaleNameCodec::decode(const char* in, int length) const {
    Converter converter("UTF-16LE", codeset.constData());
    QString out;
    if (!converter.isOpen()) {
        // Without iconv every byte above ASCII is kept as an escape.
        for (int i = 0; i < length; ++i)
            out.append(escapeOf(uchar(in[i])));
        return out;
    }
    QByteArray units;
    units.reserve(length * 2);
    const char* next = in;
    size_t left = size_t(length);
    while (!converter.convert(next, left, units)) {
        // A byte the set has no character for, kept as an escape.
        const ushort escape = escapeOf(uchar(*next)).unicode();
        units.append(char(escape & 0xFF));
        units.append(char(escape >> 8));
        ++next;
        --left;
        converter.reset();
    }
    out.resize(units.size() / 2);
    for (int i = 0; i < out.size(); ++i)
        out[i] = QChar(ushort(uchar(units[2 * i]) | (uchar(units[2 * i + 1]) << 8)));
    return out;
}

QByteArray LocaleNameCodec::convertFromUnicode(const QChar* in, int length,
                                               ConverterState* state) const {
    Converter converter(codeset.constData(), "UTF-16LE");
    QByteArray out;
    out.reserve(length);
    const char replacement =
        state && (state->flags & QTextCodec::ConvertInvalidToNull) ? '\0' : '?';
    int i = 0;
    while (i < length) {
        const ushort unit = in[i].unicode();
        if (isEscape(unit)) {
            // An escaped byte goes back out as itself.
            out.append(char(unit - escapeBase));
            ++i;
            continue;
        }
        // The run up to the next escaped byte, converted in one go.
        int end = i;
        while (end < length && !isEscape(in[end].unicode()))
            ++end;
        if (!converter.isOpen()) {
            // Without iconv only ASCII is known for certain.
            for (; i < end; ++i) {
                const bool ascii = in[i].unicode() < 0x80;
                out.append(ascii ? char(in[i].unicode()) : replacement);
                if (!ascii && state)
                    ++state->invalidChars;
            }
            continue;
        }
        const QByteArray units(reinterpret_cast<const char*>(in + i), (end - i) * 2);
        const char* next = units.constData();
        size_t left = size_t(units.size());
        while (!converter.convert(next, left, out)) {
            if (left == 0)
                break;
            // A character the set cannot encode: a surrogate pair counts
            // as one.
            const int at = int((next - units.constData()) / 2);
            const bool pair =
                in[i + at].isHighSurrogate() && i + at + 1 < end && in[i + at + 1].isLowSurrogate();
            const size_t skip = pair ? 4 : 2;
            out.append(replacement);
            if (state)
                ++state->invalidChars;
            next += skip;
            left -= skip;
            converter.reset();
        }
        i = end;
    }
    return out;
}
