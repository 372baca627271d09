/* SPDX-FileCopyrightText: 2026 The Brevio developers */
/* SPDX-License-Identifier: GPL-3.0-or-later */
/* Holds a file open the way a PDF viewer often does on Windows: read
 * access, no sharing at all, so nobody may replace, delete or write it.
 * Prints "held" once the file is open and keeps it until its standard
 * input ends (or 120 s pass).
 *   holdfile.exe PATH */
#include <stdio.h>
#include <windows.h>

int wmain(int argc, wchar_t* argv[]) {
    if (argc != 2)
        return 2;
    HANDLE file = CreateFileW(argv[1], GENERIC_READ, 0, NULL, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, NULL);
    if (file == INVALID_HANDLE_VALUE) {
        printf("error %lu\n", GetLastError());
        return 1;
    }
    printf("held\n");
    fflush(stdout);
    char buffer[64];
    DWORD got = 0;
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD start = GetTickCount();
    while (ReadFile(input, buffer, sizeof buffer, &got, NULL) && got > 0 &&
           GetTickCount() - start < 120000)
        ;
    CloseHandle(file);
    return 0;
}
