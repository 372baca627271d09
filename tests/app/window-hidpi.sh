#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The real brevio window on virtual X servers of 96 and 192 dpi: at 192 dpi
# the window is twice as large in device pixels and, scaled back down, looks
# like the 96-dpi one (the same layout, not a 96-dpi layout with doubled
# fonts in it).
#
#   window-hidpi.sh BREVIO EXAMPLE.json [FOLDER]
#
# Leaves window-96dpi.png and window-192dpi.png in FOLDER when given. Needs
# Xvfb (xvfb), xdotool and ImageMagick. Exits non-zero on any failure.
set -euo pipefail

brevio=${1:?usage: window-hidpi.sh BREVIO EXAMPLE.json [FOLDER]}
example=${2:?usage: window-hidpi.sh BREVIO EXAMPLE.json [FOLDER]}
keep=${3:-}

fail() {
    echo "window-hidpi: $*" >&2
    exit 1
}

for tool in Xvfb xdotool; do
    command -v "$tool" >/dev/null || fail "$tool not found"
done
# ImageMagick's, not another program of the same name earlier in PATH.
for tool in import convert compare; do
    [ -x "/usr/bin/$tool" ] || fail "/usr/bin/$tool (imagemagick) not found"
done
[ -x "$brevio" ] || fail "no brevio binary at $brevio"
brevio=$(realpath "$brevio")
example=$(realpath "$example")
[ -z "$keep" ] || keep=$(realpath -m "$keep")

work=$(mktemp -d)
pids=()
cleanup() {
    local status=$?
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT

# Deep enough that the row shows only the fixed end of the path, never the
# random part of the work folder: the screenshots can be compared.
data="$work/Kunden/Stadtwerke Nord/Anlagen/Lueftung Halle 2"
mkdir -p "$data"
cp "$example" "$data/zuluft-halle-2.json"

# One server and one window per resolution; prints "WIDTH HEIGHT" of the
# window and leaves its screenshot in $work/window-DPIdpi.png.
shoot() {
    local dpi=$1
    Xvfb -displayfd 3 -noreset -screen 0 2000x1400x24 -dpi "$dpi" -nolisten tcp \
        3>"$work/display-$dpi" >"$work/xvfb-$dpi.log" 2>&1 &
    pids+=($!)
    for _ in $(seq 100); do
        [ -s "$work/display-$dpi" ] && break
        sleep 0.1
    done
    [ -s "$work/display-$dpi" ] || fail "Xvfb at $dpi dpi did not start: $(cat "$work/xvfb-$dpi.log")"
    local display=":$(head -n1 "$work/display-$dpi")"

    (
        cd "$data"
        unset XDG_CURRENT_DESKTOP DESKTOP_SESSION QT_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS \
            QT_AUTO_SCREEN_SCALE_FACTOR QT_ENABLE_HIGHDPI_SCALING QT_FONT_DPI
        DISPLAY=$display QT_QPA_PLATFORM=xcb QT_QPA_PLATFORMTHEME=generic \
            exec "$brevio" --new-window zuluft-halle-2.json
    ) >"$work/brevio-$dpi.log" 2>&1 &
    pids+=($!)
    local window
    window=$(DISPLAY=$display timeout 20 xdotool search --sync --onlyvisible \
        --name '^Brevio \[Beta\]$' | head -n1) ||
        fail "no window at $dpi dpi: $(cat "$work/brevio-$dpi.log")"
    # The row's path is elided once the list has laid it out.
    sleep 1.5
    DISPLAY=$display /usr/bin/import -window "$window" "$work/window-${dpi}dpi.png"
    DISPLAY=$display xdotool getwindowgeometry --shell "$window" >"$work/geometry-$dpi"
}

shoot 96
shoot 192
eval "$(cat "$work/geometry-96")"
width96=$WIDTH height96=$HEIGHT
eval "$(cat "$work/geometry-192")"
width192=$WIDTH height192=$HEIGHT
echo "96 dpi: ${width96}x${height96}; 192 dpi: ${width192}x${height192}"

[ -z "$keep" ] || cp "$work/window-96dpi.png" "$work/window-192dpi.png" "$keep/"

[ "$width96" -eq 709 ] && [ "$height96" -eq 580 ] ||
    fail "the window is ${width96}x${height96} at 96 dpi, not 709x580"
[ "$width192" -eq $((2 * width96)) ] && [ "$height192" -eq $((2 * height96)) ] ||
    fail "at 192 dpi the window is ${width192}x${height192}, not twice ${width96}x${height96}"

# Scaled back down, the 192-dpi window matches the 96-dpi one but for the
# finer edges of text and artwork; 96-dpi sizes with a doubled font differ
# far more (the row's text outgrows its line).
/usr/bin/convert "$work/window-192dpi.png" -resize 50% "$work/halved.png"
# compare's status is 1 whenever the pictures differ at all.
difference=$(/usr/bin/compare -metric RMSE "$work/window-96dpi.png" "$work/halved.png" null: 2>&1 |
    sed -n 's/.*(\([0-9.e-]*\)).*/\1/p' || true)
echo "normalised RMSE, 96 dpi against 192 dpi halved: $difference"
awk -v d="$difference" 'BEGIN { exit !(d != "" && d < 0.05) }' ||
    fail "the 192-dpi window halved differs from the 96-dpi one (RMSE $difference)"
