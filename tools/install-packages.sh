#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs the Debian packages a task needs, only those still missing.
#   tools/install-packages.sh run    what building and running Brevio needs
#   tools/install-packages.sh test   that, plus what the tests need (packaging included)
#   tools/install-packages.sh fuzz   that, plus clang and its fuzzer runtime
#   tools/install-packages.sh package   "run", plus what building the .deb needs
#   tools/install-packages.sh windows   "run", plus the Windows cross build and Wine
set -euo pipefail

run_packages=(cmake ninja-build g++ pkg-config qtbase5-dev qtbase5-dev-tools fonts-dejavu-core
    fonts-wqy-microhei qttranslations5-l10n qttools5-dev qttools5-dev-tools)
test_packages=(libpoppler-qt5-dev poppler-utils xvfb xdotool imagemagick x11-utils python3-fonttools
    fonts-dejavu-extra fontconfig desktop-file-utils appstream groff-base man-db lintian strace
    clang-format python3-pikepdf qpdf locales)
package_packages=(dpkg-dev file)
fuzz_packages=(clang libclang-rt-14-dev)
# Cross-building for Windows (Qt from Debian's source package), the
# installer, and running the Windows programs under Wine.
windows_packages=(g++-mingw-w64-x86-64-posix mingw-w64 libwine-dev wine64 nsis dpkg-dev perl python3
    make zip unzip xvfb xdotool imagemagick poppler-utils)

case "${1:-}" in
run) wanted=("${run_packages[@]}") ;;
test) wanted=("${run_packages[@]}" "${test_packages[@]}" "${package_packages[@]}") ;;
fuzz) wanted=("${run_packages[@]}" "${fuzz_packages[@]}") ;;
package) wanted=("${run_packages[@]}" "${package_packages[@]}") ;;
windows) wanted=("${run_packages[@]}" "${windows_packages[@]}") ;;
*)
    echo "usage: $0 run|test|fuzz|package|windows" >&2
    exit 2
    ;;
esac

# The tests of a locale that is not UTF-8 need one made (as root, once).
make_test_locale() {
    locale -a | grep -qx fr_FR.iso88591 && return 0
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    "${sudo[@]}" localedef -i fr_FR -f ISO-8859-1 fr_FR.ISO-8859-1
}

missing=()
for package in "${wanted[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    [ "$1" = test ] && make_test_locale
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo=()
[ "$(id -u)" -ne 0 ] && sudo=(sudo)
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
[ "$1" = test ] && make_test_locale
exit 0
