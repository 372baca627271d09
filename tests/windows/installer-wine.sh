#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# The setup program and the zip of package-windows.sh under Wine: a silent
# installation per user (no administrator) into the folder given installs
# both programs, the licence, the README, the uninstaller and a Start-menu
# entry, and with /PATH puts brevio-convert on the user's PATH; the
# installed brevio-convert.exe runs; uninstall.exe /S takes every file,
# the entry, the PATH entry and the registry keys away again. The zip holds
# both programs, README and LICENSE, and its brevio-convert.exe runs.
#   installer-wine.sh BUILD_WINDOWS_DIR VERSION
set -euo pipefail
build=$1
version=$2
wine=/usr/lib/wine/wine64
setup=$build/brevio-$version-win64-setup.exe
zip=$build/brevio-$version-win64.zip
fail() {
    echo "FAIL: $*" >&2
    exit 1
}
[ -f "$setup" ] || fail "no $setup: run ./package-windows.sh"
[ -f "$zip" ] || fail "no $zip: run ./package-windows.sh"
unset QT_QPA_PLATFORM
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Per user: the setup program asks Windows for no elevation.
grep -aq 'level="asInvoker"' "$setup" || fail "the setup program asks for administrator rights"

# A fresh prefix each run, so nothing of an earlier installation counts.
rm -rf "$WINEPREFIX"
"$wine" "$setup" /S /PATH '/D=C:\SomeFolder'
folder=$WINEPREFIX/drive_c/SomeFolder
[ -d "$folder" ] || fail "nothing installed in C:\\SomeFolder"
installed=$(cd "$folder" && ls -A | sort | tr '\n' ' ')
[ "$installed" = "LICENSE.txt README.md brevio-convert.exe brevio.exe uninstall.exe " ] ||
    fail "installed: $installed"
menu=$(find "$WINEPREFIX/drive_c/users" -path '*Start Menu/Programs/Brevio.lnk')
[ -n "$menu" ] || fail "no Start-menu entry for Brevio"
out=$("$wine" 'C:\SomeFolder\brevio-convert.exe' --version)
[ "$out" = "brevio-convert $version" ] || fail "installed brevio-convert.exe --version: $out"
out=$("$wine" cmd /c 'brevio-convert --version' | tr -d '\r')
[ "$out" = "brevio-convert $version" ] || fail "brevio-convert on the PATH: $out"
"$wine" reg query 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevio' >/dev/null ||
    fail "no uninstall entry"

"$wine" 'C:\SomeFolder\uninstall.exe' /S
# The uninstaller runs on from a copy of itself: wait for it.
for _ in $(seq 600); do
    [ -e "$folder" ] || break
    sleep 0.1
done
[ -e "$folder" ] && fail "left after uninstall.exe /S: $(ls -A "$folder" | tr '\n' ' ')"
[ -e "$menu" ] && fail "the Start-menu entry is left"
"$wine" reg query 'HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\Brevio' >/dev/null 2>&1 &&
    fail "the uninstall entry is left"
path=$("$wine" reg query 'HKCU\Environment' /v Path 2>/dev/null | tr -d '\r' | grep -i 'SomeFolder' || true)
[ -z "$path" ] || fail "the PATH still names the folder: $path"

# The portable zip.
listing=$(unzip -Z1 "$zip" | sort | tr '\n' ' ')
expected="brevio-$version-win64/ brevio-$version-win64/LICENSE.txt brevio-$version-win64/README.md brevio-$version-win64/brevio-convert.exe brevio-$version-win64/brevio.exe "
[ "$listing" = "$expected" ] || fail "the zip holds: $listing"
unzip -q "$zip" -d "$work"
out=$("$wine" "$work/brevio-$version-win64/brevio-convert.exe" --version)
[ "$out" = "brevio-convert $version" ] || fail "brevio-convert.exe from the zip: $out"
echo "installer and zip: installed, ran, uninstalled without a trace"
