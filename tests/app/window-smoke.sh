#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Drives the real brevio binary on a virtual X server, the way a person
# would: opens the file dialog with the folder button, types three file
# names, converts them all with the header's convert button, waits for the
# reports and takes a screenshot of the window.
#
#   window-smoke.sh BREVIO EXAMPLE.json [SCREENSHOT.png]
#
# Needs Xvfb (xvfb), xdotool, /usr/bin/import (imagemagick) and pdftotext
# (poppler-utils). Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-smoke.sh BREVIO EXAMPLE.json [SCREENSHOT.png]}
example=${2:?usage: window-smoke.sh BREVIO EXAMPLE.json [SCREENSHOT.png]}
shot=${3:-}

source "$(dirname "${BASH_SOURCE[0]}")/virtual-display.sh"
require_tools Xvfb xdotool pdftotext
# /usr/bin/convert and friends are ImageMagick's; other tools of the same
# name may come first in PATH.
import=/usr/bin/import
[ -x "$import" ] || fail "$import (imagemagick) not found"
[ -x "$brevio" ] || fail "no brevio binary at $brevio"
[ -f "$example" ] || fail "no example configuration at $example"
# brevio runs in a folder of its own, so relative paths would break.
brevio=$(realpath "$brevio")
[ -z "$shot" ] || shot=$(realpath -m "$shot")

# A folder such as a user keeps configurations in; the rows show its end.
data="$work/Anlagen/Werk Nord/Lueftung"
mkdir -p "$data"
names=(zuluft-halle-2 abluft-halle-2 kuehlraum-ost)
for name in "${names[@]}"; do
    cp "$example" "$data/$name.json"
done

start_virtual_display

# Qt's own file dialog, whatever desktop the caller runs in; the dialog
# opens in the working directory.
(
    cd "$data"
    unset XDG_CURRENT_DESKTOP DESKTOP_SESSION GNOME_DESKTOP_SESSION_ID KDE_FULL_SESSION
    QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME=generic exec "$brevio"
) >"$work/brevio.log" 2>&1 &
brevio_pid=$!

alive() { kill -0 "$brevio_pid" 2>/dev/null || fail "brevio ended: $(cat "$work/brevio.log")"; }

window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Brevio \[Beta\]$' | head -n1) ||
    fail "no window titled 'Brevio [Beta]'"
alive
eval "$(xdotool getwindowgeometry --shell "$window")"
width=$WIDTH
height=$HEIGHT

# The header strip: 11 pixel margins, one tenth of the height but at least
# 60 pixels, square buttons 6 pixels apart at its right end.
header=$(((height - 2 * 11 - 6) / 10))
[ "$header" -ge 60 ] || header=60
centre_y=$((11 + header / 2))
konvert_x=$((width - 11 - header / 2))
brows_x=$((width - 11 - header - 6 - header / 2))

# A move before the press: the buttons count a click only where the
# pointer was before it.
click_at() {
    xdotool mousemove --window "$window" "$1" "$2"
    sleep 0.3
    xdotool mousemove --window "$window" $(($1 + 1)) "$2"
    sleep 0.2
    xdotool click 1
}

visible_dialog() {
    xdotool search --onlyvisible --name '.' 2>/dev/null | grep -vx "$window" | head -n1 || true
}

click_at "$brows_x" "$centre_y"
dialog=
for _ in $(seq 100); do
    dialog=$(visible_dialog)
    [ -n "$dialog" ] && break
    sleep 0.1
done
[ -n "$dialog" ] || fail "the folder button opened no dialog"
alive

# The dialog's name field has the focus; three names in its quoted form.
xdotool windowfocus --sync "$dialog" 2>/dev/null || true
xdotool mousemove --window "$dialog" 20 20
sleep 0.5
typed=""
for name in "${names[@]}"; do
    typed+="\"$name.json\" "
done
xdotool type --delay 20 "$typed"
sleep 0.3
xdotool key Return
for _ in $(seq 50); do
    [ -z "$(visible_dialog)" ] && break
    sleep 0.1
done
[ -z "$(visible_dialog)" ] || fail "the file dialog did not close"
alive
sleep 0.5

click_at "$konvert_x" "$centre_y"

for name in "${names[@]}"; do
    report="$data/$name.pdf"
    wait_for_report "$report"
    text=$(pdftotext "$report" - 2>/dev/null) || fail "pdftotext cannot read $name.pdf"
    grep -q "Allgemeine Einstellungen:" <<<"$text" || fail "$name.pdf lacks the general settings"
    grep -q "$name.json" <<<"$text" || fail "$name.pdf does not name its source"
    cmp -s "$example" "$data/$name.json" || fail "$name.json was changed"
done
alive

if [ -n "$shot" ]; then
    # Let the last progress values reach the bars.
    sleep 1
    "$import" -window "$window" "$shot" || fail "screenshot failed"
    [ -s "$shot" ] || fail "empty screenshot"
fi
echo "window-smoke: ${#names[@]} reports written${shot:+, screenshot $shot}"
