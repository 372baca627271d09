#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The window started under a file size limit (ulimit -f 16, 16 KiB) far
# below any report, then convert-all: the job fails like any write to a full
# disk, the hidden folder its report was drawn in goes, no report appears,
# and the window stays with its list. The system's default for SIGXFSZ
# would end the whole window instead (status 153).
#
#   window-file-limit.sh BREVIO EXAMPLE.json
#
# Needs Xvfb (xvfb) and xdotool. Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-file-limit.sh BREVIO EXAMPLE.json}
example=${2:?usage: window-file-limit.sh BREVIO EXAMPLE.json}

source "$(dirname "${BASH_SOURCE[0]}")/virtual-display.sh"
require_tools Xvfb xdotool
brevio=$(realpath "$brevio")

data="$work/Anlagen"
mkdir -p "$data"
cp "$example" "$data/a.json"
# The limit must be what stops the report: the same file converts without it.
[ "$(stat -c %s "$example")" -lt 16384 ] || fail "the example itself exceeds the limit"

start_virtual_display
# The job log says when the job has ended and why, since the row shows
# nothing for a failure.
(
    cd "$data"
    ulimit -f 16
    QT_LOGGING_RULES='brevio.job.debug=true' QT_QPA_PLATFORM=xcb exec "$brevio" --new-window a.json
) >"$work/brevio.log" 2>&1 &
brevio_pid=$!

alive() {
    kill -0 "$brevio_pid" 2>/dev/null && return 0
    local status=0
    wait "$brevio_pid" || status=$?
    brevio_pid=
    fail "brevio ended with status $status: $(cat "$work/brevio.log")"
}

window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Brevio \[Beta\]$' | head -n1) ||
    fail "no window titled 'Brevio [Beta]'"
xdotool windowactivate --sync "$window" 2>/dev/null || xdotool windowfocus --sync "$window"
sleep 0.5
alive
xdotool key --window "$window" ctrl+Return

for _ in $(seq 600); do
    grep -q 'Not converted:' "$work/brevio.log" && break
    alive
    sleep 0.1
done
alive
grep -q 'Not converted:.*FileSizeLimit' "$work/brevio.log" ||
    fail "the job did not end at the file size limit: $(cat "$work/brevio.log")"

# A moment for anything late, then the window must still be there.
sleep 0.5
alive
xdotool search --onlyvisible --name '^Brevio \[Beta\]$' | grep -qx "$window" ||
    fail "the window is no longer shown"
left=$(cd "$data" && ls -A | grep -vx 'a.json' || true)
[ -z "$left" ] || fail "left beside the configuration: $left"

# And it still ends as a window does.
kill -TERM "$brevio_pid"
status=0
wait "$brevio_pid" || status=$?
brevio_pid=
[ "$status" -eq 143 ] || fail "brevio ended with status $status, not by SIGTERM (143)"
grep "Not converted" "$work/brevio.log"
echo "window-file-limit: the job failed at the limit, nothing was left, the window stayed"
