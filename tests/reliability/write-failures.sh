#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The system's words for a report that could not be written, from a real
# full file system (a small tmpfs mounted here, so it needs root, as CI
# has) and from an output folder removed or moved while the report is
# drawn; a moved folder keeps no temporary folder either.
#   write-failures.sh BREVIO_CONVERT CONFIGURATION
set -euo pipefail
convert=$1
configuration=$2
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
[ "$(id -u)" -eq 0 ] || fail "mounting a small file system needs root"
work=$(mktemp -d)
full=$work/full
cleanup() {
    local status=$?
    mountpoint -q "$full" && umount "$full"
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT
export QT_QPA_PLATFORM=offscreen
cp "$configuration" "$work/plant.json"

# A file system with room for a few kilobytes: the report does not fit.
mkdir "$full"
mount -t tmpfs -o size=16k,mode=0755 tmpfs "$full"
status=0
"$convert" -o "$full" "$work/plant.json" >"$work/out" 2>"$work/err" || status=$?
[ "$status" -eq 1 ] || fail "full disk: status $status"
grep -q "plant.json: report not written: No space left on device$" "$work/err" ||
    fail "full disk: $(cat "$work/err")"
status=0
"$convert" --json -o "$full" "$work/plant.json" >"$work/out" 2>"$work/err" || status=$?
[ "$status" -eq 1 ] || fail "full disk, --json: status $status"
grep -Eq '"converted": false, "code": "(ReportIncomplete|CommitFailed)", "reason": "report not written: No space left on device"' "$work/out" ||
    fail "full disk, --json: $(cat "$work/out")"
[ -z "$(ls -A "$full")" ] || fail "left on the full disk: $(ls -A "$full")"

# A report that takes a few seconds to draw.
python3 - "$work/plant.json" "$work/big.json" <<'PYTHON'
import json, sys
document = json.load(open(sys.argv[1], encoding="utf-8"))
configuration = document["configuration"]
configuration["relais"] = configuration["relais"] * 20000
json.dump(document, open(sys.argv[2], "w", encoding="utf-8"))
PYTHON

# Starts brevio-convert -o FOLDER big.json in the background and waits for
# its temporary folder to appear there.
start_drawing() {
    mkdir -p "$1"
    "$convert" -o "$1" "$work/big.json" >"$work/out" 2>"$work/err" &
    pid=$!
    for _ in $(seq 600); do
        ls -A "$1" | grep -q '^\.brevio-' && return 0
        kill -0 "$pid" 2>/dev/null || fail "brevio-convert ended before drawing: $(cat "$work/err")"
        sleep 0.05
    done
    fail "no temporary folder in $1"
}

for what in removed moved; do
    start_drawing "$work/reports"
    if [ "$what" = removed ]; then
        rm -rf "$work/reports"
    else
        mv "$work/reports" "$work/reports-moved"
    fi
    status=0
    wait "$pid" || status=$?
    [ "$status" -eq 1 ] || fail "folder $what: status $status: $(cat "$work/err")"
    grep -q "big.json: report not written: No such file or directory$" "$work/err" ||
        fail "folder $what: $(cat "$work/err")"
    if [ "$what" = moved ]; then
        left=$(ls -A "$work/reports-moved")
        [ -z "$left" ] || fail "left in the moved folder: $left"
        rm -rf "$work/reports-moved"
    fi
done
echo "full disk, removed and moved folders: the system's words, nothing left behind"
