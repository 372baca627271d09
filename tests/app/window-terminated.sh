#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# A logout ends the window with SIGTERM while a report is being drawn: the
# window must end by that signal, and the hidden folder the report was
# being drawn in must go with it; nothing is left beside the configuration.
#
#   window-terminated.sh BREVIO
#
# Needs Xvfb (xvfb) and xdotool. Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-terminated.sh BREVIO}

source "$(dirname "${BASH_SOURCE[0]}")/virtual-display.sh"
require_tools Xvfb xdotool
brevio=$(realpath "$brevio")

data="$work/Anlagen"
mkdir -p "$data"
# 40,000 relays: several seconds of drawing, long enough to be caught at it.
relay='{"lowThreshold":120,"highThreshold":380,"states":[0,1,0],"measure":{"measure":"PRESSURE","unit":9,"rangeLow":0,"rangeHigh":500,"value":0,"channel":1,"register":30001}}'
{
    printf '{"configuration":{"name":"Halle","relais":['
    for i in $(seq 40000); do
        [ "$i" -gt 1 ] && printf ','
        printf '%s' "$relay"
    done
    printf ']}}'
} >"$data/gross.json"

start_virtual_display
(cd "$data" && QT_QPA_PLATFORM=xcb exec "$brevio" --new-window gross.json) >"$work/brevio.log" 2>&1 &
brevio_pid=$!

window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Brevio \[Beta\]$' | head -n1) ||
    fail "no window titled 'Brevio [Beta]'"
xdotool windowactivate --sync "$window" 2>/dev/null || xdotool windowfocus --sync "$window"
xdotool key --window "$window" ctrl+Return

# The report is drawn in a hidden folder beside the configuration.
for _ in $(seq 300); do
    compgen -G "$data/.brevio-*" >/dev/null && break
    kill -0 "$brevio_pid" 2>/dev/null || fail "brevio ended: $(cat "$work/brevio.log")"
    sleep 0.05
done
compgen -G "$data/.brevio-*" >/dev/null || fail "no conversion was seen running"
[ -e "$data/gross.pdf" ] && fail "the report was finished before the signal; make the file bigger"

kill -TERM "$brevio_pid"
status=0
wait "$brevio_pid" || status=$?
brevio_pid=
[ "$status" -eq 143 ] || fail "brevio ended with status $status, not by SIGTERM (143)"
left=$(cd "$data" && ls -A | grep -vx 'gross.json' || true)
[ -z "$left" ] || fail "left beside the configuration: $left"
echo "window-terminated: passed"
