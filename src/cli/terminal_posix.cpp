// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/terminal.h"

#include <QTextCodec>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace terminal {

namespace {

// Python's backslashreplace: \u2026, \U0001f600.
QByteArray escapeFor(uint codePoint) {
    return codePoint > 0xFFFF
               ? QByteArrayLiteral("\\U") + QByteArray::number(codePoint, 16).rightJustified(8, '0')
               : QByteArrayLiteral("\\u") +
                     QByteArray::number(codePoint, 16).rightJustified(4, '0');
}

// Text in the locale's encoding for a person to read. The locale's codec
// gives a file name back byte for byte; a character its set has no bytes
// for (an ellipsis or a Chinese value in an ISO 8859-1 locale) is written
// as an escape rather than as a "?" that hides what it was.
QByteArray localeBytes(const QString& text) {
    QTextCodec* const codec = QTextCodec::codecForLocale();
    // No byte-order mark: Qt's UTF-8 codec writes one for a fresh state.
    QTextCodec::ConverterState whole(QTextCodec::IgnoreHeader);
    const QByteArray bytes = codec->fromUnicode(text.constData(), text.size(), &whole);
    if (whole.invalidChars == 0)
        return bytes;
    QByteArray escaped;
    for (int i = 0; i < text.size();) {
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const int units = pair ? 2 : 1;
        QTextCodec::ConverterState one(QTextCodec::IgnoreHeader);
        const QByteArray encoded = codec->fromUnicode(text.constData() + i, units, &one);
        if (one.invalidChars == 0)
            escaped += encoded;
        else
            escaped +=
                escapeFor(pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode());
        i += units;
    }
    return escaped;
}

} // namespace

void prepareProcess() {
    // A standard stream that was closed by whoever started us would be the
    // number the next open() returns: the report list would go into a
    // configuration or a report. A descriptor that fails every write stands
    // in for it, so that the loss is noticed and told.
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
        if (::fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
            const int placeholder = ::open("/dev/null", O_RDONLY);
            if (placeholder >= 0 && placeholder != fd) {
                ::dup2(placeholder, fd);
                ::close(placeholder);
            }
        }
    // A reader that goes away (| head -1) is a failed write, told and
    // counted like any other; a report past the file size limit is a
    // failed write as well, and the next file is converted.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

QStringList arguments(int argc, char* argv[]) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

bool isTerminal(std::FILE* stream) {
    return ::isatty(fileno(stream)) == 1;
}

int writeText(std::FILE* stream, const QString& text) {
    return writeBytes(stream, localeBytes(text));
}

} // namespace terminal
