#!/usr/bin/env bash
# Installs what is missing, builds incrementally and runs every test.
set -euo pipefail
cd "$(dirname "$0")"

tools/install-packages.sh test
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBREVIO_BUILD_TESTS=ON >/dev/null
cmake --build build
(cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel 2)

# The same suite once more with AddressSanitizer and UndefinedBehaviorSanitizer,
# then a bounded fuzzing run of a whole conversion job (clang's libFuzzer).
tools/sanitize.sh
tools/fuzz.sh 60
