# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Cross-builds brevio.exe and brevio-convert.exe for Windows x86-64 with
# Debian's mingw-w64 (posix threads, so std::thread and std::mutex work)
# against the static Qt of tools/build-qt-windows.sh, whose prefix is given
# as CMAKE_PREFIX_PATH. tools/build-windows.sh passes both.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(brevio_cross x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${brevio_cross}-gcc-posix)
set(CMAKE_CXX_COMPILER ${brevio_cross}-g++-posix)
set(CMAKE_RC_COMPILER ${brevio_cross}-windres)
# Libraries, headers and Qt's CMake packages from the mingw-w64 sysroot and
# the cross Qt only; programs (moc, rcc, lrelease) from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${brevio_cross} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Wine runs the programs a test needs to run at build time, if any.
set(CMAKE_CROSSCOMPILING_EMULATOR wine64)
