#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what is missing, builds Brevio for release and packs it as
# build-package/brevio_<version>_amd64.deb and prints the package's path.
#   ./package.sh [BUILD-FOLDER]   another folder than build-package
set -euo pipefail
build=$(realpath -m "${1:-$(dirname "$0")/build-package}")
cd "$(dirname "$0")"

tools/install-packages.sh package

# The compiler and linker flags Debian builds its own packages with
# (hardening included), so the package is checked like one from the archive.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)"
LDFLAGS="$(dpkg-buildflags --get LDFLAGS)"
export CXXFLAGS LDFLAGS

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBREVIO_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" >&2
(cd "$build" && cpack -G DEB >/dev/null)
ls "$build"/brevio_*.deb
