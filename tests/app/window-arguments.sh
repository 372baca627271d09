#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Starts the real brevio binary on a virtual X server with files on its
# command line, as a file manager does through the menu entry
# ("Exec=brevio %F"): two files, one of them twice, and one whose name ends
# in ".JSON". The repeated file must raise the "Fehler" box over the shown
# window; after it is answered, convert-all must write exactly the reports
# of the two files taken.
#
#   window-arguments.sh BREVIO EXAMPLE.json
#
# Needs Xvfb (xvfb) and xdotool. Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-arguments.sh BREVIO EXAMPLE.json}
example=${2:?usage: window-arguments.sh BREVIO EXAMPLE.json}

source "$(dirname "${BASH_SOURCE[0]}")/virtual-display.sh"
require_tools Xvfb xdotool
brevio=$(realpath "$brevio")

data="$work/Anlagen"
mkdir -p "$data"
for name in zuluft.json abluft.json KUEHLRAUM.JSON; do
    cp "$example" "$data/$name"
done

start_virtual_display

# Relative names, as typed in a terminal in the folder of the files.
(
    cd "$data"
    QT_QPA_PLATFORM=xcb exec "$brevio" zuluft.json abluft.json zuluft.json KUEHLRAUM.JSON
) >"$work/brevio.log" 2>&1 &
brevio_pid=$!

alive() { kill -0 "$brevio_pid" 2>/dev/null || fail "brevio ended: $(cat "$work/brevio.log")"; }

window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Brevio \[Beta\]$' | head -n1) ||
    fail "no window titled 'Brevio [Beta]'"
box=$(timeout 20 xdotool search --sync --onlyvisible --name '^Fehler$' | head -n1) ||
    fail "the repeated file raised no 'Fehler' box"
xdotool search --onlyvisible --name '^Brevio \[Beta\]$' | grep -qx "$window" ||
    fail "the window was not shown under the 'Fehler' box"
alive
xdotool windowfocus --sync "$box" 2>/dev/null || true
sleep 0.3
xdotool key Return
for _ in $(seq 50); do
    xdotool search --onlyvisible --name '^Fehler$' >/dev/null 2>&1 || break
    sleep 0.1
done
xdotool search --onlyvisible --name '^Fehler$' >/dev/null 2>&1 && fail "the 'Fehler' box stayed open"
alive
sleep 0.5

# Convert-all: the right one of the two header buttons (see window-smoke.sh).
eval "$(xdotool getwindowgeometry --shell "$window")"
header=$(((HEIGHT - 2 * 11 - 6) / 10))
[ "$header" -ge 60 ] || header=60
xdotool mousemove --window "$window" $((WIDTH - 11 - header / 2)) $((11 + header / 2))
sleep 0.3
xdotool mousemove --window "$window" $((WIDTH - 11 - header / 2 + 1)) $((11 + header / 2))
sleep 0.2
xdotool click 1

for name in zuluft abluft; do
    report="$data/$name.pdf"
    wait_for_report "$report"
done
alive
sleep 1
reports=$(find "$data" -maxdepth 1 -iname '*.pdf' -printf '%f ' | tr ' ' '\n' | LC_ALL=C sort | xargs)
[ "$reports" = "abluft.pdf zuluft.pdf" ] || fail "reports written: $reports"
echo "window-arguments: two files taken, one refused with 'Fehler', one not taken"
