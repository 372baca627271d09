#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs a build into a temporary DESTDIR, as "cmake --install" does for a
# user, and checks what a desktop and a terminal get from it.
#   check-install.sh BUILD-FOLDER VERSION REPORT-CHECK
set -euo pipefail
build=$1 version=$2 report_check=$3
# shellcheck source=SCRIPTDIR/checks.sh
source "$(dirname "$0")/checks.sh"

dest=$(mktemp -d)
trap 'rm -rf "$dest"' EXIT
DESTDIR=$dest cmake --install "$build" --prefix /usr >/dev/null || fail "cmake --install"
root=$dest/usr

check_file_list "$root"
check_icons "$root"
check_desktop_file "$root"
check_metainfo "$root" "$version"
check_man_pages "$root"
check_copyright "$root"
check_completion "$root"
check_window_version "$root" "$version"
check_conversion "$root" "$report_check"

# A user whose umask is 077 installs: the folders are still open to everyone
# (0755), and so are the files.
dest077=$(mktemp -d)
trap 'rm -rf "$dest" "$dest077"' EXIT
(umask 077 && DESTDIR=$dest077 cmake --install "$build" --prefix /usr >/dev/null) ||
    fail "cmake --install under umask 077"
closed=$(find "$dest077/usr" -type d ! -perm 0755)
[ -z "$closed" ] || fail "folders not 0755 after an install under umask 077: $closed"
unreadable=$(find "$dest077/usr" -type f ! -perm -0444)
[ -z "$unreadable" ] || fail "files not readable by everyone after an install under umask 077: $unreadable"
echo "installed tree OK"
