#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Builds the Qt that brevio.exe and brevio-convert.exe link against: qtbase
# 5.15 from Debian's own source package, cross-compiled with mingw-w64 for
# Windows x86-64, release and static, with only what Brevio uses.
#
#   tools/build-qt-windows.sh          build when missing, print the prefix
#   tools/build-qt-windows.sh --print  print the prefix it would use, build nothing
#
# The result lives in ${XDG_CACHE_HOME:-~/.cache}/brevio/qt-VERSION-win64-HASH,
# HASH being a digest of this script's configure options and of the
# compilers, so a changed option builds a new Qt beside the old one and an
# unchanged one is reused at once. A build takes about half an hour on two
# cores (docs/windows.md has the figures).
#
# Static, not shared: the two programs then need no DLL beyond Windows' own,
# so the zip and the installer cannot miss a plugin or a runtime library, and
# the programs cannot pick up another Qt from the PATH.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

print_only=no
case "${1:-}" in
'') ;;
--print) print_only=yes ;;
*)
    echo "usage: $0 [--print]" >&2
    exit 2
    ;;
esac

qt_version=5.15.8
cross=x86_64-w64-mingw32
# Only what Brevio uses: Core, Gui, Widgets, PrintSupport, Concurrent and
# Network (the one-window hand-over is a QLocalServer; no SSL, no proxies),
# the windows and offscreen platform plugins, and the bundled zlib, libpng,
# freetype, harfbuzz and pcre2 so nothing comes from the build machine.
configure_options=(
    -xplatform win32-g++ -device-option CROSS_COMPILE=${cross}-
    -release -static -static-runtime -opensource -confirm-license
    -nomake examples -nomake tests -no-compile-examples
    -no-opengl -no-dbus -no-icu -no-fontconfig -no-openssl -no-direct2d
    -no-feature-sql -no-feature-testlib -no-feature-xml -no-feature-vulkan
    -no-feature-networkproxy -no-feature-http -no-feature-ftp -no-feature-bearermanagement
    -no-feature-dnslookup -no-feature-udpsocket -no-feature-networkdiskcache
    -no-libjpeg -no-gif
    -qt-zlib -qt-libpng -qt-freetype -qt-harfbuzz -qt-pcre
)

compiler_ids="$(${cross}-g++-posix --version 2>/dev/null | head -n1 || true) $(g++ --version | head -n1)"
hash=$(printf '%s\n' "$qt_version" "${configure_options[@]}" "$compiler_ids" | sha256sum | cut -c1-12)
cache=${XDG_CACHE_HOME:-$HOME/.cache}/brevio
prefix=$cache/qt-$qt_version-win64-$hash

if [ "$print_only" = yes ] || [ -f "$prefix/.complete" ]; then
    echo "$prefix"
    exit 0
fi

tools/install-packages.sh windows >&2

write_wintab_headers() {
    cp /usr/include/wine/wine/windows/wintab.h "$1/wine-wintab.h"
    cp /usr/include/wine/wine/windows/pktdef.h "$1/"
    cat >"$1/wintab.h" <<'HEADER'
/* Wine's Wintab header, with the two macros of Wine's own headers it uses. */
#ifndef BREVIO_WINTAB_SHIM_H
#define BREVIO_WINTAB_SHIM_H
#include <windows.h>
#ifndef DECL_WINELIB_TYPE_AW
#define DECL_WINELIB_TYPE_AW(type) typedef type##W type;
#endif
#ifndef API
#define API WINAPI
#endif
#include "wine-wintab.h"
#endif
HEADER
}

work=$cache/qt-build-$hash
rm -rf "$work"
mkdir -p "$work/src" "$work/bin" "$work/include"

# Debian's qtbase source package, with Debian's patches applied.
if ! apt-get source --print-uris qtbase-opensource-src 2>/dev/null | grep -q "qtbase-opensource-src_$qt_version"; then
    sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    sed 's/^Types: deb$/Types: deb-src/' /etc/apt/sources.list.d/debian.sources |
        "${sudo[@]}" tee /etc/apt/sources.list.d/brevio-deb-src.sources >/dev/null
    "${sudo[@]}" apt-get update -qq
fi
(cd "$work/src" && apt-get source -qq qtbase-opensource-src >/dev/null 2>&1) || {
    echo "$0: apt-get source qtbase-opensource-src failed" >&2
    exit 1
}
source_dir=$(find "$work/src" -maxdepth 1 -type d -name "qtbase-opensource-src-$qt_version*" | head -n1)
[ -n "$source_dir" ] || {
    echo "$0: no qtbase $qt_version source unpacked in $work/src" >&2
    exit 1
}

# The posix thread model of mingw-w64 (std::thread and std::mutex work), under
# the plain names qmake's win32-g++ platform files call.
for tool in gcc g++; do
    ln -sf "$(command -v ${cross}-$tool-posix)" "$work/bin/${cross}-$tool"
done
# Debian's source leaves out the Wintab headers the windows platform plugin
# includes; Wine's development files carry the same public API, written
# with two macros of Wine's own headers that a shim supplies.
write_wintab_headers "$work/include"

start=$(date +%s)
mkdir -p "$work/build"
log=$cache/qt-build-$hash.log
echo "Building Qt $qt_version for Windows (about 20 minutes on two cores; log: $log)" >&2
if ! (
    cd "$work/build"
    export PATH="$work/bin:$PATH"
    "$source_dir/configure" -prefix "$prefix" "${configure_options[@]}" -I "$work/include"
    make -j"$(nproc)"
    make install
) >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    echo "$0: the Qt build failed; the whole log is $log" >&2
    exit 1
fi
end=$(date +%s)

# Qt's German dialogs: the translations are the same files on every platform.
mkdir -p "$prefix/translations"
cp /usr/share/qt5/translations/qtbase_de.qm "$prefix/translations/"
printf 'seconds=%s\nconfigure=%s\n' "$((end - start))" "${configure_options[*]}" >"$prefix/.complete"
rm -rf "$work"
echo "$prefix"
