#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Cross-builds the Windows programs (tools/build-windows.sh, building the
# static Qt once if the cache has none) and packs them as
#   build-windows/brevio-VERSION-win64-setup.exe   the setup program
#   build-windows/brevio-VERSION-win64.zip         the programs, README, LICENSE
# and prints both paths.
set -euo pipefail
cd "$(dirname "$0")"

tools/build-windows.sh
version=$(sed -n 's/^project(Brevio VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
out=$PWD/build-windows
programs=$out/programs
rm -rf "$programs"
mkdir -p "$programs"
cp "$out/src/app/brevio.exe" "$out/src/cli/brevio-convert.exe" "$programs/"

setup=$out/brevio-$version-win64-setup.exe
makensis -V2 -INPUTCHARSET UTF8 -DVERSION="$version" -DPROGRAMS="$programs" \
    -DLICENSE="$PWD/LICENSE" -DREADME="$PWD/README.md" -DICON="$PWD/resources/tIcon.ico" \
    -DOUTFILE="$setup" packaging/windows/brevio.nsi >&2

zip=$out/brevio-$version-win64.zip
rm -f "$zip"
staging=$out/zip/brevio-$version-win64
rm -rf "$out/zip"
mkdir -p "$staging"
cp "$programs"/*.exe "$staging/"
cp README.md "$staging/README.md"
cp LICENSE "$staging/LICENSE.txt"
(cd "$out/zip" && zip -q -r -X "$zip" "brevio-$version-win64")
echo "$setup"
echo "$zip"
