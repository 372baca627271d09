#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# ./run.sh without a display converts the bundled example through
# tools/run-example.sh: its report lands in the build folder and nothing in
# the source tree is written or changed.
#
#   run-example.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source=${1:?usage: run-example.sh SOURCE_FOLDER BUILD_FOLDER}
build=${2:?usage: run-example.sh SOURCE_FOLDER BUILD_FOLDER}
source=$(realpath "$source")
build=$(realpath "$build")

fail() {
    echo "run-example: $*" >&2
    exit 1
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Whatever is written under the source tree from now on is newer than this.
touch "$work/start"
sleep 1
status_before=""
if git -C "$source" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    status_before=$(git -C "$source" status --porcelain --untracked-files=all)
fi

"$source/tools/run-example.sh" "$build" >"$work/out" 2>"$work/err" ||
    fail "the example was not converted: $(cat "$work/err")"
expected="$build/example/pressure-transmitter.pdf"
[ "$(cat "$work/out")" = "$expected" ] ||
    fail "printed \"$(cat "$work/out")\", not the report's path $expected"
[ "$(head -c 5 "$expected")" = "%PDF-" ] || fail "$expected is not a PDF"

# Build folders (build, build-run, build-asan) and git's own files aside.
written=$(find "$source" \( -path "$source/.git" -o -path "$source/build*" -o -path "$build" \) \
    -prune -o -newer "$work/start" -print)
[ -z "$written" ] || fail "written in the source tree: $written"
if git -C "$source" rev-parse --is-inside-work-tree >/dev/null 2>&1; then
    [ "$(git -C "$source" status --porcelain --untracked-files=all)" = "$status_before" ] ||
        fail "git status of the source tree changed"
fi
echo "run-example: passed"
