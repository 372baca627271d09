// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/terminal.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace terminal {

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
    // The locale's codec gives a file name back byte for byte.
    return writeBytes(stream, text.toLocal8Bit());
}

} // namespace terminal
