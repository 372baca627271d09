// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/terminal.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace terminal {

namespace {

HANDLE consoleOf(std::FILE* stream) {
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    return handle != INVALID_HANDLE_VALUE && GetConsoleMode(handle, &mode) ? handle : nullptr;
}

} // namespace

void prepareProcess() {
    // The report list and the JSON lines are the same bytes as on Linux;
    // the C runtime would otherwise write "\r\n" for every "\n".
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    // Reports are drawn headless, and Qt's headless platform reads fonts
    // only from QT_QPA_FONTDIR: Windows' own font folder gives a report the
    // same fallback fonts (Chinese, Japanese, symbols) the window has.
    if (qEnvironmentVariableIsEmpty("QT_QPA_FONTDIR")) {
        wchar_t windows[MAX_PATH] = {};
        const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
        if (length > 0 && length < MAX_PATH)
            qputenv("QT_QPA_FONTDIR",
                    (QString::fromWCharArray(windows, int(length)) + QStringLiteral("\\Fonts"))
                        .toUtf8());
    }
    // The "3/10" progress line is redrawn with the same escape sequences
    // as on a POSIX terminal, which a console reads once asked to.
    if (const HANDLE console = consoleOf(stderr)) {
        DWORD mode = 0;
        if (GetConsoleMode(console, &mode))
            SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

QStringList arguments(int, char*[]) {
    QStringList arguments;
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr)
        return arguments;
    for (int index = 0; index < count; ++index)
        arguments.append(QString::fromWCharArray(wide[index]));
    LocalFree(wide);
    return arguments;
}

bool isTerminal(std::FILE* stream) {
    return consoleOf(stream) != nullptr;
}

int writeText(std::FILE* stream, const QString& text) {
    const HANDLE console = consoleOf(stream);
    if (console == nullptr)
        return writeBytes(stream, text.toUtf8());
    // Whatever the console's code page, its own wide API shows every
    // character: "…" stays "…" instead of the code page's byte for it.
    std::fflush(stream);
    const std::wstring wide = text.toStdWString();
    DWORD written = 0;
    if (!WriteConsoleW(console, wide.data(), DWORD(wide.size()), &written, nullptr))
        return EIO;
    return 0;
}

} // namespace terminal
