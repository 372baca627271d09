#!/usr/bin/env bash
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
check_completion "$root"
check_window_version "$root" "$version"
check_conversion "$root" "$report_check"
echo "installed tree OK"
