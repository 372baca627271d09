#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# brevio.exe under Wine on a virtual X server: started without DISPLAY it
# never answers "no display" (that check is X11's and Wayland's); with a
# display it shows the window (a screenshot is kept), lists the file given
# on its command line and converts it on Ctrl+Return; brevio-windowcheck.exe
# checks the row's layout and the German file dialog from inside. A second
# start hands its file to the running window.
#   window-wine.sh BUILD_WINDOWS_DIR SCREENSHOT
set -euo pipefail
build=$1
screenshot=$2
wine=/usr/lib/wine/wine64
# The test suite's headless platform is not what brevio.exe is to show.
unset QT_QPA_PLATFORM
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
# shellcheck source=../app/virtual-display.sh
source "$(dirname "$0")/../app/virtual-display.sh"

# Wine's desktop process, and with it the graphics driver, belongs to the
# prefix's wineserver: a phase with DISPLAY and one without each wait for
# the server of the one before to end.
wait_for_wineserver() {
    /usr/lib/wine/wineserver -w
}

# A new prefix takes a while; a plain program makes it.
"$wine" "$build/src/cli/brevio-convert.exe" --version >/dev/null
wait_for_wineserver

start_virtual_display
cp "$(dirname "$0")/../../examples/multi-page-plant.json" "$work/anlage.json"
windows_file="Z:$(echo "$work/anlage.json" | tr / '\\')"

"$wine" "$build/brevio-windowcheck.exe" "$windows_file" >"$work/check.log" 2>&1 ||
    fail "window check: $(cat "$work/check.log")"
cat "$work/check.log"

"$wine" "$build/src/app/brevio.exe" "$windows_file" >"$work/brevio.log" 2>&1 &
brevio_pid=$!
window=
for _ in $(seq 600); do
    window=$(xdotool search --name '^Brevio \[Beta\]$' 2>/dev/null | head -n1) && [ -n "$window" ] && break
    kill -0 "$brevio_pid" 2>/dev/null || fail "brevio.exe ended: $(cat "$work/brevio.log")"
    sleep 0.1
done
[ -n "$window" ] || fail "no window titled \"Brevio [Beta]\" among: $(xdotool search --name . getwindowname %@ 2>&1 | tr '\n' ,); $(cat "$work/brevio.log")"
sleep 3
import -window root "$screenshot"
xdotool windowfocus --sync "$window" 2>/dev/null || xdotool windowfocus "$window"
xdotool key --window "$window" ctrl+Return
wait_for_report "$work/anlage.pdf"
pdftotext "$work/anlage.pdf" - | grep -q "Allgemeine Einstellungen" || fail "the report has no text"
ls -A "$work" | grep -q '^\.brevio-' && fail "a temporary folder is left: $(ls -A "$work")"

# One window: a second start hands its file to the running window over the
# user's pipe and ends with status 0; the window lists it and converts it.
cp "$work/anlage.json" "$work/zweite.json"
timeout 120 "$wine" "$build/src/app/brevio.exe" "Z:$(echo "$work/zweite.json" | tr / '\\')" \
    >"$work/second.log" 2>&1 || fail "the second start: $(cat "$work/second.log")"
kill -0 "$brevio_pid" 2>/dev/null || fail "the window ended"
sleep 2
xdotool key --window "$window" ctrl+Return
wait_for_report "$work/zweite.pdf"
kill "$brevio_pid"
wait "$brevio_pid" 2>/dev/null || true
brevio_pid=
wait_for_wineserver

# No DISPLAY: Windows has no such thing, and Wine needs none to run the
# program. After 15 s it has said nothing about a display and still runs.
env -u DISPLAY -u WAYLAND_DISPLAY "$wine" "$build/src/app/brevio.exe" --new-window >"$work/no-display.log" 2>&1 &
brevio_pid=$!
sleep 15
! grep -qi "display" "$work/no-display.log" || fail "without DISPLAY: $(cat "$work/no-display.log")"
kill -0 "$brevio_pid" 2>/dev/null || fail "without DISPLAY brevio.exe ended: $(cat "$work/no-display.log")"

echo "window under Wine: shown, listed, converted, started without DISPLAY; screenshot in $screenshot"
