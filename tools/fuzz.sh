#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Fuzzes a whole conversion job, then the reading side alone, with libFuzzer
# for a bounded time each.
#   tools/fuzz.sh [SECONDS]    default 60
# Installs what is missing (clang, its fuzzer runtime, the build packages),
# configures build-fuzz with clang, builds fuzz_convert and runs it on a copy
# of the seed corpus. Exits non-zero when the fuzzer finds a crash, a hang, a
# leak or a sanitizer report; the input that did it is kept in
# build-fuzz/artifacts/. New corpus entries stay in build-fuzz/corpus, so the
# repository's seed corpus only changes by hand.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
case "$seconds" in
'' | *[!0-9]*)
    echo "usage: $0 [SECONDS]" >&2
    exit 2
    ;;
esac

tools/install-packages.sh fuzz

build=build-fuzz
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DBREVIO_FUZZ=ON -DBREVIO_BUILD_TESTS=OFF >/dev/null
nice -n 10 cmake --build "$build" --target fuzz_convert fuzz_read -- -j2

mkdir -p "$build/corpus" "$build/artifacts"
export QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 LC_ALL=C.UTF-8 TZ=UTC
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0"
fuzzer="$build/tests/fuzz/fuzz_convert"

# Fuzzing proper, without leak checks: telling a leak of ours from Qt's
# needs full stacks, and Qt is built without frame pointers, so only the
# slow unwinder gives them, at a third of the speed.
# -timeout: a single input taking this long counts as a hang.
# -max_len: room to mutate the largest example as a whole.
set +e
ASAN_OPTIONS="abort_on_error=1:detect_leaks=0" nice -n 5 "$fuzzer" \
    -max_total_time="$seconds" -timeout=20 -max_len=10000 -rss_limit_mb=4096 \
    -detect_leaks=0 -dict=tests/fuzz/json.dict -artifact_prefix="$build/artifacts/" \
    -print_final_stats=1 "$build/corpus" tests/fuzz/corpus 2>&1 |
    tee "$build/fuzz.log" | grep --line-buffered -v -E '[[:space:]](NEW|REDUCE)[[:space:]]'
status=${PIPESTATUS[0]}
set -e
if [ "$status" -ne 0 ]; then
    echo "fuzz.sh: the fuzzer stopped with status $status; see $build/fuzz.log and $build/artifacts/" >&2
    exit 1
fi

# Every input the fuzzer kept, once more with leak checks and full stacks.
set +e
ASAN_OPTIONS="abort_on_error=1:detect_leaks=1:fast_unwind_on_malloc=0" nice -n 5 "$fuzzer" \
    -runs=0 -timeout=60 -max_len=10000 -detect_leaks=1 -artifact_prefix="$build/artifacts/" \
    "$build/corpus" tests/fuzz/corpus >"$build/fuzz-leaks.log" 2>&1
status=$?
set -e
if [ "$status" -ne 0 ]; then
    tail -n 60 "$build/fuzz-leaks.log" >&2
    echo "fuzz.sh: replaying the corpus with leak checks failed (status $status);" \
        "see $build/fuzz-leaks.log and $build/artifacts/" >&2
    exit 1
fi
# The reading side alone (no printing) for as long again: many times the
# executions of a whole job, deeper into the parser and the readers.
mkdir -p "$build/corpus-read"
set +e
ASAN_OPTIONS="abort_on_error=1:detect_leaks=0" nice -n 5 "$build/tests/fuzz/fuzz_read" \
    -max_total_time="$seconds" -timeout=20 -max_len=10000 -rss_limit_mb=4096 \
    -detect_leaks=0 -dict=tests/fuzz/json.dict -artifact_prefix="$build/artifacts/" \
    -print_final_stats=1 "$build/corpus-read" tests/fuzz/corpus 2>&1 |
    tee "$build/fuzz-read.log" | grep --line-buffered -v -E '[[:space:]](NEW|REDUCE)[[:space:]]'
status=${PIPESTATUS[0]}
set -e
if [ "$status" -ne 0 ]; then
    echo "fuzz.sh: fuzz_read stopped with status $status; see $build/fuzz-read.log and $build/artifacts/" >&2
    exit 1
fi
echo "fuzz.sh: no crash, hang or leak in $seconds s of fuzzing" \
    "($(find "$build/corpus" -type f | wc -l) inputs kept)"
