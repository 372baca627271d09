// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/terminal.h"

#include <cerrno>

namespace terminal {

int writeBytes(std::FILE* stream, const QByteArray& bytes) {
    errno = 0;
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream) != size_t(bytes.size()) ||
        std::fflush(stream) != 0)
        return errno != 0 ? errno : EIO;
    return 0;
}

} // namespace terminal
