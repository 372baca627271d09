#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what is missing, builds incrementally and runs the tests.
#   ./test.sh          the quick loop: every test labelled "quick" (the
#                      window's included), a few minutes at most
#   ./test.sh --deep   what CI runs: warnings as errors, the Windows programs,
#                      setup program and zip cross-built (Qt for Windows
#                      built once into ~/.cache/brevio), every test (the slow
#                      "deep" ones, the "packaging" ones and the "windows"
#                      ones under Wine too), then the whole Linux suite but
#                      packaging under AddressSanitizer and
#                      UndefinedBehaviorSanitizer, then 60 s of fuzzing
set -euo pipefail
cd "$(dirname "$0")"

deep=no
case "${1:-}" in
'') ;;
--deep) deep=yes ;;
*)
    echo "usage: $0 [--deep]" >&2
    exit 2
    ;;
esac

tools/install-packages.sh test
configure=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DBREVIO_BUILD_TESTS=ON)
# The quick loop leaves BREVIO_WERROR and the Windows build as the build
# folder has them, so it does not rebuild everything after a deep run.
if [ "$deep" = yes ]; then
    configure+=(-DBREVIO_WERROR=ON)
    # brevio.exe, brevio-convert.exe, the setup program and the zip in
    # build-windows/, which the "windows" suites run under Wine.
    tools/install-packages.sh windows
    ./package-windows.sh >/dev/null
    configure+=(-DBREVIO_WINDOWS_BUILD_DIR="$PWD/build-windows")
fi
cmake -S . -B build -G Ninja "${configure[@]}" >/dev/null
cmake --build build

cd build
if [ "$deep" = no ]; then
    QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel 2 -L quick
    exit 0
fi
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel 2
cd ..

# The same suite once more with AddressSanitizer and UndefinedBehaviorSanitizer,
# then a bounded fuzzing run of a whole conversion job (clang's libFuzzer).
tools/sanitize.sh
tools/fuzz.sh 60
