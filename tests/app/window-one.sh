#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The one-window rule with real processes on virtual X servers: a second
# "brevio FILE..." hands its files to the running window and ends; the
# duplicate's "Fehler" box appears there; --new-window opens another window;
# another display gets a window of its own; a killed window's socket is
# taken over; a start beside a stopped window says the files were not
# taken, and they are not. On the way, a double click on a converted row's
# path hands the report to the desktop (a stand-in xdg-open that records
# its argument).
#
#   window-one.sh BREVIO EXAMPLE.json
#
# Needs Xvfb (xvfb) and xdotool. Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-one.sh BREVIO EXAMPLE.json}
example=${2:?usage: window-one.sh BREVIO EXAMPLE.json}

fail() {
    echo "window-one: $*" >&2
    # What each brevio said, for a failure that only a loaded machine shows.
    for log in "${work:-/nonexistent}"/*.log; do
        [ -s "$log" ] && echo "--- $(basename "$log"):" >&2 && cat "$log" >&2
    done
    exit 1
}

for tool in Xvfb xdotool; do
    command -v "$tool" >/dev/null || fail "$tool not found"
done
[ -x "$brevio" ] || fail "no brevio binary at $brevio"
brevio=$(realpath "$brevio")
example=$(realpath "$example")

work=$(mktemp -d)
pids=()
cleanup() {
    local status=$?
    for pid in "${pids[@]}"; do
        kill -9 "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT

data="$work/Anlagen"
mkdir -p "$data" "$work/bin"
for name in a b c d e; do
    cp "$example" "$data/$name.json"
done
# The sockets go to a private runtime folder of this run, not the user's.
mkdir -m 0700 "$work/runtime"
export XDG_RUNTIME_DIR="$work/runtime"
# The desktop's opener, as QDesktopServices runs it.
cat >"$work/bin/xdg-open" <<STANDIN
#!/bin/sh
printf '%s\n' "\$@" >>"$work/opened"
STANDIN
chmod +x "$work/bin/xdg-open"
export PATH="$work/bin:$PATH"
unset XDG_CURRENT_DESKTOP DESKTOP_SESSION GNOME_DESKTOP_SESSION_ID KDE_FULL_SESSION
export QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME=generic

# Starts a server and sets display_NAME. Not run in a command substitution:
# the server's process id must reach the cleanup. -noreset keeps the server
# accepting connections when its last client (a killed window) goes away;
# a resetting server refuses the next start for a moment.
start_display() {
    local name=$1
    Xvfb -displayfd 3 -noreset -screen 0 1024x700x24 -nolisten tcp \
        3>"$work/display-$name" >"$work/xvfb-$name.log" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        [ -s "$work/display-$name" ] && break
        sleep 0.1
    done
    [ -s "$work/display-$name" ] || fail "Xvfb $name did not start: $(cat "$work/xvfb-$name.log")"
    printf -v "display_$name" ':%s' "$(head -n1 "$work/display-$name")"
}

# Starts brevio in the background on a display; prints its process id.
start_brevio() {
    local display=$1 log=$2
    shift 2
    (cd "$data" && DISPLAY=$display exec "$brevio" "$@") >"$work/$log.log" 2>&1 &
    echo $!
}

windows() {
    DISPLAY=$1 xdotool search --onlyvisible --name '^Brevio \[Beta\]$' 2>/dev/null | wc -l
}

# A loaded machine or the sanitizer build can take many seconds to show a
# window, so every wait allows a minute; a passing run does not wait.
wait_windows() {
    local display=$1 count=$2
    for _ in $(seq 600); do
        [ "$(windows "$display")" -eq "$count" ] && return 0
        sleep 0.1
    done
    fail "$count window(s) expected on $display, found $(windows "$display")"
}

# Runs brevio to its end; fails unless it ends with the status within 60 s.
run_brevio() {
    local display=$1 expected=$2
    shift 2
    local status=0
    (cd "$data" && DISPLAY=$display timeout 60 "$brevio" "$@") >"$work/run.log" 2>&1 || status=$?
    [ "$status" -eq "$expected" ] ||
        fail "brevio $* ended with $status, not $expected: $(cat "$work/run.log")"
}

wait_report() {
    for _ in $(seq 1200); do
        [ -s "$1" ] && tail -c 64 "$1" | grep -q '%%EOF' && return 0
        sleep 0.1
    done
    fail "no report $(basename "$1")"
}

start_display a
first=$(start_brevio "$display_a" first a.json)
pids+=("$first")
wait_windows "$display_a" 1
window=$(DISPLAY=$display_a xdotool search --onlyvisible --name '^Brevio \[Beta\]$' | head -n1)

# The second start hands b.json and the duplicate a.json over and ends.
run_brevio "$display_a" 0 b.json a.json
box=$(DISPLAY=$display_a timeout 60 xdotool search --sync --onlyvisible --name '^Fehler$' |
    head -n1) || fail "no \"Fehler\" box for the handed-over duplicate"
# Answered with the keyboard, where the box has put the focus.
DISPLAY=$display_a xdotool windowfocus "$box" 2>/dev/null || true
DISPLAY=$display_a xdotool key Return
for _ in $(seq 300); do
    DISPLAY=$display_a xdotool search --onlyvisible --name '^Fehler$' >/dev/null 2>&1 || break
    sleep 0.1
done
[ "$(windows "$display_a")" -eq 1 ] || fail "a second window opened"

# Ctrl+Return converts every row: b.json is one of them now.
DISPLAY=$display_a xdotool windowactivate --sync "$window" 2>/dev/null ||
    DISPLAY=$display_a xdotool windowfocus --sync "$window"
DISPLAY=$display_a xdotool key --window "$window" ctrl+Return
wait_report "$data/a.pdf"
wait_report "$data/b.pdf"

# A double click on the first row's path opens its report. The row is the
# list's first, below the 60-pixel header; its path field starts at the left.
DISPLAY=$display_a xdotool mousemove --window "$window" 120 105
sleep 0.3
DISPLAY=$display_a xdotool click --repeat 2 --delay 60 1
for _ in $(seq 300); do
    [ -s "$work/opened" ] && break
    sleep 0.1
done
[ -s "$work/opened" ] || fail "the double click opened nothing"
grep -qx "file://$data/a.pdf" "$work/opened" ||
    fail "the double click opened $(cat "$work/opened"), not file://$data/a.pdf"

# --new-window: another window anyway.
second=$(start_brevio "$display_a" second --new-window c.json)
pids+=("$second")
wait_windows "$display_a" 2
kill "$second"

# Another display never reaches this window: a window of its own there.
start_display b
other=$(start_brevio "$display_b" other c.json)
pids+=("$other")
wait_windows "$display_b" 1
wait_windows "$display_a" 1
kill -0 "$other" 2>/dev/null || fail "brevio on the other display ended: $(cat "$work/other.log")"

# A killed window leaves its socket; the next start takes it over and
# serves the one after.
kill -9 "$first"
wait "$first" 2>/dev/null || true
wait_windows "$display_a" 0
third=$(start_brevio "$display_a" third d.json)
pids+=("$third")
wait_windows "$display_a" 1
sleep 0.5
kill -0 "$third" 2>/dev/null || fail "brevio after the killed window ended: $(cat "$work/third.log")"
run_brevio "$display_a" 0 e.json
[ "$(windows "$display_a")" -eq 1 ] || fail "a second window opened after the takeover"

# A window stopped in its terminal (Ctrl+Z) cannot answer: the start says
# the files were not taken, and the window, continued, does not list them
# after all (d.json, already listed, would bring up a "Fehler" box).
boxes() {
    DISPLAY=$display_a xdotool search --onlyvisible --name '^Fehler$' 2>/dev/null | wc -l
}
kill -STOP "$third"
status=0
(cd "$data" && DISPLAY=$display_a timeout 60 "$brevio" d.json) >"$work/stopped.log" 2>&1 || status=$?
kill -CONT "$third"
[ "$status" -eq 1 ] || fail "brevio beside a stopped window ended with $status: $(cat "$work/stopped.log")"
grep -qx 'brevio: the open window did not take the files; brevio --new-window opens another' \
    "$work/stopped.log" || fail "brevio beside a stopped window said: $(cat "$work/stopped.log")"
sleep 2
[ "$(boxes)" -eq 0 ] || fail "the window listed the files after its start was told it did not"
# Running again, it takes them: its box for the duplicate appears.
run_brevio "$display_a" 0 d.json
DISPLAY=$display_a timeout 60 xdotool search --sync --onlyvisible --name '^Fehler$' >/dev/null ||
    fail "no \"Fehler\" box from the continued window"
echo "window-one: passed"
