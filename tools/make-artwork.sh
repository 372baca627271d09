#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Regenerates the Brevio artwork (logo, button images, application icon)
# under resources/ with ImageMagick -draw primitives.
#
# Usage: tools/make-artwork.sh            (run from anywhere)
#   IM=/path/to/convert   override the ImageMagick convert binary
#   FONT=/path/to/font    override the bold sans font for the wordmark
#
# Output is deterministic: metadata and PNG time chunks are stripped, so
# running the script twice gives byte-identical files for a given
# ImageMagick version and font.
# shellcheck disable=SC2086  # $OUT is split into arguments on purpose
set -eu

ROOT=$(cd "$(dirname "$0")/.." && pwd)
IMG="$ROOT/resources/img"
ICO="$ROOT/resources/tIcon.ico"

# The real ImageMagick binary; do not rely on whatever "convert" is first
# in PATH.
if [ -z "${IM:-}" ]; then
    if [ -x /usr/bin/convert ]; then
        IM=/usr/bin/convert
    elif command -v magick >/dev/null 2>&1; then
        IM=magick
    else
        echo "make-artwork: ImageMagick not found (apt-get install imagemagick)" >&2
        exit 1
    fi
fi

if [ -z "${FONT:-}" ]; then
    FONT=/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf
    if [ ! -f "$FONT" ] && command -v fc-match >/dev/null 2>&1; then
        FONT=$(fc-match -f '%{file}' 'DejaVu Sans:bold')
    fi
fi
[ -f "$FONT" ] || { echo "make-artwork: font not found: $FONT" >&2; exit 1; }

TMP=$(mktemp -d)
trap 'rm -rf "$TMP"' EXIT INT TERM

mkdir -p "$IMG"

# Palette: calm blue / teal.
BLUE='#1f5f8b'      # primary
BLUE_LT='#8fb9d6'   # folded corner
TEAL='#2a9d8f'      # accent
INK='#37474f'       # neutral symbol colour
INK_LT='#546e7a'    # neutral, lighter shade
PRESS='#1f6fb2'     # "blue" pressed variants
PRESS_LT='#3d8ad0'  # pressed, lighter shade

# Points of a circular arc around cx,cy with radius r, from -a to +a degrees
# (0 = pointing right), for an open "polyline"; the arc primitives of
# ImageMagick 6 close the shape with a chord when stroked.
arc() { # cx cy r a
    awk -v cx="$1" -v cy="$2" -v r="$3" -v a="$4" 'BEGIN {
        pi = atan2(0, -1)
        for (i = 0; i <= 24; i++) {
            t = (-a + 2 * a * i / 24) * pi / 180
            printf "%.1f,%.1f ", cx + r * cos(t), cy + r * sin(t)
        }
    }'
}

# Common output options: no metadata, no time chunks, best compression.
# $OUT is expanded unquoted on purpose, to split it into arguments.
OUT="-strip -define png:exclude-chunks=date,time -define png:compression-level=9"

# ---------------------------------------------------------------------------
# Logo: 1000 x 241, opaque white background (PNG24, no alpha channel).
# A stylised document with text lines and two signal waves, then the
# wordmark.
# ---------------------------------------------------------------------------
"$IM" -size 1000x241 xc:white \
    -fill "$BLUE" -stroke "$BLUE" -strokewidth 10 \
    -draw "stroke-linejoin round polygon 45,30 140,30 185,75 185,211 45,211" \
    -fill "$BLUE_LT" -stroke "$BLUE_LT" -strokewidth 6 \
    -draw "stroke-linejoin round polygon 140,30 140,75 185,75" \
    -stroke white -strokewidth 14 -fill none \
    -draw "stroke-linecap round line 75,110 155,110" \
    -draw "stroke-linecap round line 75,145 155,145" \
    -draw "stroke-linecap round line 75,180 125,180" \
    -stroke "$TEAL" -strokewidth 12 -fill none \
    -draw "stroke-linecap round stroke-linejoin round polyline $(arc 175 120 44 42)" \
    -draw "stroke-linecap round stroke-linejoin round polyline $(arc 175 120 74 42)" \
    -stroke none -fill "$BLUE" -font "$FONT" -pointsize 150 \
    -draw "text 300,175 'Brevio'" \
    -fill "$TEAL" -draw "roundrectangle 314,195 836,204 4,4" \
    -alpha off -type TrueColor $OUT "PNG24:$IMG/veltrixLogoMain.png"
# Every process decodes the logo before its first report: unfiltered rows
# decode faster, with the same pixels.
"$(dirname "$0")/repack-png.py" "$IMG/veltrixLogoMain.png" "$IMG/veltrixLogoMain.png"

# ---------------------------------------------------------------------------
# Button images: 142 x 142, transparent background.
# ---------------------------------------------------------------------------

# Folder symbol: back part with tab in the first colour, front flap in the
# second (lighter) colour.
folder() { # back front output
    "$IM" -size 142x142 xc:none \
        -fill "$1" -stroke none \
        -draw "roundrectangle 14,26 64,52 8,8" \
        -draw "roundrectangle 14,38 128,116 10,10" \
        -fill "$2" \
        -draw "roundrectangle 14,54 128,116 10,10" \
        $OUT "PNG32:$3"
}

# Pencil symbol in the given colour.
pencil() { # colour output
    "$IM" -size 142x142 xc:none \
        -fill "$1" -stroke none \
        -draw "polygon 92,18 124,50 54,120 22,88" \
        -stroke "$1" -strokewidth 4 \
        -draw "stroke-linejoin round polygon 18,92 50,124 10,132" \
        -stroke none -fill "#ffffff59" \
        -draw "polygon 84,26 92,34 30,96 22,88" \
        -fill white \
        -draw "polygon 82,28 114,60 108,66 76,34" \
        $OUT "PNG32:$2"
}

# Round buttons take a disc colour, a ring colour and a symbol colour; the
# pressed variants swap disc and symbol colours.
# Switch: two opposed arrows.
switch_btn() { # disc ring symbol output
    "$IM" -size 142x142 xc:none \
        -fill "$1" -stroke "$2" -strokewidth 8 \
        -draw "circle 71,71 71,9" \
        -stroke "$3" -strokewidth 10 -fill none \
        -draw "stroke-linecap round line 36,54 92,54" \
        -draw "stroke-linecap round line 50,88 106,88" \
        -stroke "$3" -strokewidth 4 -fill "$3" \
        -draw "stroke-linejoin round polygon 88,38 110,54 88,70" \
        -draw "stroke-linejoin round polygon 54,72 32,88 54,104" \
        $OUT "PNG32:$4"
}

# Close: an X.
close_btn() { # disc ring symbol output
    "$IM" -size 142x142 xc:none \
        -fill "$1" -stroke "$2" -strokewidth 8 \
        -draw "circle 71,71 71,9" \
        -stroke "$3" -strokewidth 14 -fill none \
        -draw "stroke-linecap round line 47,47 95,95" \
        -draw "stroke-linecap round line 95,47 47,95" \
        $OUT "PNG32:$4"
}

folder "$INK"   "$INK_LT"   "$IMG/Folder_icon.png"
folder "$PRESS" "$PRESS_LT" "$IMG/Folder_icon_blau.png"
pencil "$INK"   "$IMG/Edit.png"
pencil "$PRESS" "$IMG/Edit_blau.png"
switch_btn white   "$BLUE" "$BLUE" "$IMG/IconSwitch.png"
switch_btn "$BLUE" "$BLUE" white   "$IMG/IconSwitchInv.png"
close_btn  white   "$BLUE" "$BLUE" "$IMG/btnClose.png"
close_btn  "$BLUE" "$BLUE" white   "$IMG/btnCloseInv.png"

# ---------------------------------------------------------------------------
# Application icon: the logo mark (white) on a blue rounded square. Desktops
# take it from the hicolor icon theme under the application's id, as SVG and
# as PNG in the sizes they ask for; Windows builds take the ICO with 16, 24,
# 32, 48, 64 and 256 pixel images.
# ---------------------------------------------------------------------------
APP_ID=org.brevio.Brevio
HICOLOR="$ROOT/resources/icons/hicolor"
icon_png() { # size
    echo "$HICOLOR/${1}x${1}/apps/$APP_ID.png"
}
mkdir -p "$HICOLOR/scalable/apps"
for s in 16 22 24 32 48 64 128 256; do
    mkdir -p "$HICOLOR/${s}x${s}/apps"
done

"$IM" -size 256x256 xc:none \
    -fill "$BLUE" -stroke none \
    -draw "roundrectangle 0,0 255,255 48,48" \
    -fill white -stroke white -strokewidth 10 \
    -draw "stroke-linejoin round polygon 58,44 150,44 196,90 196,212 58,212" \
    -fill "$BLUE_LT" -stroke "$BLUE_LT" -strokewidth 6 \
    -draw "stroke-linejoin round polygon 150,44 150,90 196,90" \
    -stroke "$TEAL" -strokewidth 18 -fill none \
    -draw "stroke-linecap round line 88,118 166,118" \
    -draw "stroke-linecap round line 88,152 166,152" \
    -draw "stroke-linecap round line 88,186 134,186" \
    $OUT "PNG32:$(icon_png 256)"

for s in 16 22 24 32 48 64 128; do
    "$IM" "$(icon_png 256)" -filter Lanczos -resize ${s}x${s} \
        $OUT "PNG32:$(icon_png $s)"
done

# The same drawing as SVG. ImageMagick places coordinates on pixel centres,
# SVG on pixel corners, hence the half-pixel shift of everything but the
# background.
cat >"$HICOLOR/scalable/apps/$APP_ID.svg" <<EOF
<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="256" height="256" viewBox="0 0 256 256">
  <rect width="256" height="256" rx="48" ry="48" fill="$BLUE"/>
  <g transform="translate(0.5 0.5)" stroke-linejoin="round">
    <polygon points="58,44 150,44 196,90 196,212 58,212" fill="#ffffff" stroke="#ffffff" stroke-width="10"/>
    <polygon points="150,44 150,90 196,90" fill="$BLUE_LT" stroke="$BLUE_LT" stroke-width="6"/>
    <g fill="none" stroke="$TEAL" stroke-width="18" stroke-linecap="round">
      <line x1="88" y1="118" x2="166" y2="118"/>
      <line x1="88" y1="152" x2="166" y2="152"/>
      <line x1="88" y1="186" x2="134" y2="186"/>
    </g>
  </g>
</svg>
EOF

"$IM" "$(icon_png 16)" "$(icon_png 24)" "$(icon_png 32)" \
    "$(icon_png 48)" "$(icon_png 64)" "$(icon_png 256)" \
    $OUT "ICO:$ICO"

echo "make-artwork: wrote $IMG/*.png, $HICOLOR and $ICO"
