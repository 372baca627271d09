#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer
# (BREVIO_SANITIZE=ON) in build-asan and runs every test there except the
# packaging ones (labels quick and deep, not packaging: those check
# installed copies, not this build). Any sanitizer report,
# leaks included, fails the test that caused it; leaks inside Qt and the
# system libraries are suppressed in tests/sanitizers/lsan.supp, each with
# its reason.
#   tools/sanitize.sh [CTEST-ARGUMENTS...]   e.g. -R tst_convertjob
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install-packages.sh test

build=build-asan
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBREVIO_BUILD_TESTS=ON \
    -DBREVIO_SANITIZE=ON >/dev/null
nice -n 10 cmake --build "$build" -- -j2

# abort_on_error and halt_on_error turn every report into a failed test.
# fast_unwind_on_malloc=0: Qt is built without frame pointers, so only the
# slow unwinder gets through its frames to the ones the suppressions name;
# ten frames reach them and cost a third of the default thirty. Child processes (brevio-convert run by the tests) inherit
# all of this, so a report there fails the test that ran it.
export ASAN_OPTIONS="abort_on_error=1:halt_on_error=1:detect_leaks=1:fast_unwind_on_malloc=0:malloc_context_size=10:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1"
export UBSAN_OPTIONS="halt_on_error=1:abort_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM=offscreen
# tst_badinputcorpus converts its 100 MB input once here (with the job), not
# also with brevio-convert: each conversion of it takes minutes under the
# sanitizers. The deep loop's normal build converts it both ways.
export BREVIO_BIG_INPUT_ONCE=1

cd "$build"
ctest --output-on-failure --parallel 2 --timeout 1800 -LE packaging "$@"
