#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Cross-builds brevio.exe and brevio-convert.exe for Windows x86-64 into
# build-windows/ (release, warnings as errors as on Linux), building the
# static Qt first when the cache has none (tools/build-qt-windows.sh, about
# 20 minutes on two cores). Prints nothing but what goes wrong; the
# programs are build-windows/src/app/brevio.exe and
# build-windows/src/cli/brevio-convert.exe; brevio-windowcheck.exe beside
# them is a check the Wine suites run, never shipped.
set -euo pipefail
cd "$(dirname "$0")/.."

qt_prefix=$(tools/build-qt-windows.sh)
linguist=$(dirname "$(find /usr/lib -path '*cmake/Qt5LinguistTools/Qt5LinguistToolsConfig.cmake' | head -n1)")
cmake -S . -B build-windows -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-toolchain.cmake \
    -DCMAKE_PREFIX_PATH="$qt_prefix" \
    -DQt5LinguistTools_DIR="$linguist" \
    -DCMAKE_BUILD_TYPE=Release -DBREVIO_WERROR=ON -DBREVIO_WINDOWS_CHECKS=ON >/dev/null
cmake --build build-windows >&2
x86_64-w64-mingw32-strip build-windows/src/app/brevio.exe build-windows/src/cli/brevio-convert.exe
