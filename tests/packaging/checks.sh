# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks shared by check-install.sh and check-package.sh, run on an
# installed tree: ROOT is its prefix (…/usr). Sourced, not run.
# shellcheck shell=bash

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

# Exactly the expected files: nothing from tests or bench, nothing missing.
check_file_list() { # root
    local actual
    actual=$(cd "$1" && find . -type f -o -type l | sed 's|^\./||' | LC_ALL=C sort)
    if [ "$actual" != "$(LC_ALL=C sort "$here/installed-files.txt")" ]; then
        diff <(LC_ALL=C sort "$here/installed-files.txt") <(echo "$actual") >&2 || true
        fail "installed files differ from tests/packaging/installed-files.txt (< expected, > installed)"
    fi
    [ -x "$1/bin/brevio" ] || fail "bin/brevio is not executable"
    [ -x "$1/bin/brevio-convert" ] || fail "bin/brevio-convert is not executable"
}

check_icons() { # root
    local size described
    for size in 16 22 24 32 48 64 128 256; do
        described=$(file -b "$1/share/icons/hicolor/${size}x${size}/apps/org.brevio.Brevio.png")
        [[ $described == "PNG image data, $size x $size,"* ]] ||
            fail "${size}x${size} icon is: $described"
    done
    grep -q '<svg ' "$1/share/icons/hicolor/scalable/apps/org.brevio.Brevio.svg" ||
        fail "the scalable icon is no SVG"
}

check_desktop_file() { # root
    local desktop=$1/share/applications/org.brevio.Brevio.desktop output
    # Hints are advice (two main categories are intended); warnings and
    # errors are not.
    output=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate: $output"
    if grep -v ': hint: ' <<<"$output" | grep -q .; then
        fail "desktop-file-validate: $output"
    fi
    for line in 'Name=Brevio' 'Exec=brevio %F' 'Icon=org.brevio.Brevio' \
        'Categories=Office;Utility;' 'StartupNotify=true' 'StartupWMClass=brevio'; do
        grep -qxF "$line" "$desktop" || fail "desktop file lacks $line"
    done
    check_not_default_for_json "$1"
    grep -q '^Comment=.' "$desktop" || fail "desktop file lacks an English comment"
    grep -q '^Comment\[de\]=.' "$desktop" || fail "desktop file lacks a German comment"
}

# Files reach Brevio through "Open with", drops and its command line; it is
# never the application for every JSON file on the machine.
check_not_default_for_json() { # root
    local desktop=$1/share/applications/org.brevio.Brevio.desktop data answer
    ! grep -q '^MimeType=' "$desktop" || fail "desktop file claims $(grep '^MimeType=' "$desktop")"
    if find "$1/.." -name '*mailcap*' | grep -q .; then
        fail "mailcap entries: $(find "$1/.." -name '*mailcap*')"
    fi
    # What a desktop asks: the default for application/json with only this
    # package's files installed (and a database built from them).
    data=$(mktemp -d)
    cp -r "$1/share/applications" "$data/"
    if command -v update-desktop-database >/dev/null; then
        update-desktop-database "$data/applications"
        ! grep -q 'org.brevio.Brevio' "$data/applications/mimeinfo.cache" 2>/dev/null ||
            fail "mimeinfo.cache names Brevio: $(cat "$data/applications/mimeinfo.cache")"
    fi
    if command -v gio >/dev/null; then
        answer=$(XDG_DATA_HOME="$data" XDG_DATA_DIRS="$data" XDG_CONFIG_HOME="$data" \
            XDG_CONFIG_DIRS="$data" gio mime application/json 2>&1 || true)
        ! grep -q 'org.brevio.Brevio' <<<"$answer" || fail "gio mime application/json: $answer"
    fi
    if command -v xdg-mime >/dev/null; then
        answer=$(XDG_DATA_HOME="$data" XDG_DATA_DIRS="$data" XDG_CONFIG_HOME="$data" \
            XDG_CONFIG_DIRS="$data" xdg-mime query default application/json 2>&1 || true)
        ! grep -q 'org.brevio.Brevio' <<<"$answer" || fail "xdg-mime: $answer"
    fi
    rm -rf "$data"
}

check_metainfo() { # root version
    local metainfo=$1/share/metainfo/org.brevio.Brevio.metainfo.xml output
    # With the network checks on: a URL would make them fail here, where
    # there is no network, and the metainfo names no host we do not run.
    output=$(appstreamcli validate --pedantic "$metainfo" 2>&1) || fail "appstreamcli: $output"
    # Infos too: each names something missing that the metainfo can give.
    # The one pedantic note is the upper-case letter of the reverse-DNS id.
    if grep -qE '^[EWI]: ' <<<"$output" ||
        grep -E '^P: ' <<<"$output" | grep -qv 'cid-contains-uppercase-letter'; then
        fail "appstreamcli: $output"
    fi
    ! grep -qE 'https?://' "$metainfo" || fail "metainfo names a URL: $(grep -E 'https?://' "$metainfo")"
    grep -qF '<project_license>GPL-3.0-or-later</project_license>' "$metainfo" ||
        fail "metainfo lacks the project licence"
    grep -qF "<release version=\"$2\" date=\"2026-11-22\">" "$metainfo" ||
        fail "metainfo lacks the release $2"
    grep -qF '<launchable type="desktop-id">org.brevio.Brevio.desktop</launchable>' "$metainfo" ||
        fail "metainfo lacks the launchable"
    grep -qF '<content_rating type="oars-1.1"' "$metainfo" || fail "metainfo lacks the content rating"
    for binary in brevio brevio-convert; do
        grep -qF "<binary>$binary</binary>" "$metainfo" || fail "metainfo does not provide $binary"
    done
}

check_copyright() { # root
    local copyright=$1/share/doc/brevio/copyright
    [ -f "$copyright" ] || fail "no copyright file"
    head -n1 "$copyright" | grep -qx \
        'Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/' ||
        fail "copyright is not in the machine-readable format"
    grep -qx 'License: GPL-3.0+' "$copyright" || fail "copyright lacks the program's licence"
    grep -qF '/usr/share/common-licenses/GPL-3' "$copyright" ||
        fail "copyright does not point to the licence text"
    grep -qx 'Files: resources/fonts/\*' "$copyright" || fail "copyright lacks the font's stanza"
    ! grep -qi 'proprietary' "$copyright" || fail "copyright still says proprietary"
}

check_man_pages() { # root
    local page warnings text
    for page in brevio brevio-convert; do
        warnings=$(zcat "$1/share/man/man1/$page.1.gz" | groff -ww -z -man 2>&1)
        [ -z "$warnings" ] || fail "groff on $page.1: $warnings"
        text=$(MANWIDTH=80 man -l "$1/share/man/man1/$page.1.gz" 2>&1 | col -b)
        for section in NAME SYNOPSIS DESCRIPTION OPTIONS 'EXIT STATUS' ENVIRONMENT EXAMPLES; do
            grep -qx "$section" <<<"$text" || fail "$page.1 has no $section section"
        done
    done
    grep -q 'BREVIO_DEBUG' <<<"$(zcat "$1/share/man/man1/brevio-convert.1.gz")" ||
        fail "brevio-convert.1 does not describe BREVIO_DEBUG"
}

# Completes words as bash would, with the installed completion loaded.
complete_words() { # root cword word...
    local root=$1 cword=$2
    shift 2
    bash --norc -c '
        source "$1"
        cword=$2
        shift 2
        COMP_WORDS=("$@")
        COMP_CWORD=$cword
        complete -p brevio-convert >/dev/null || exit 1
        _brevio_convert
        printf "%s\n" "${COMPREPLY[@]}" | LC_ALL=C sort' \
        complete "$root/share/bash-completion/completions/brevio-convert" "$cword" "$@"
}

check_completion() { # root
    local dir result
    result=$(complete_words "$1" 1 brevio-convert --jo)
    [ "$result" = "--jobs" ] || fail "completing --jo gave: $result"
    result=$(complete_words "$1" 2 brevio-convert --jobs '' | head -n1)
    [ "$result" = "1" ] || fail "completing --jobs gave: $result"
    dir=$(mktemp -d)
    mkdir "$dir/sub"
    touch "$dir/a.json" "$dir/b.JSON" "$dir/c.txt"
    result=$(cd "$dir" && complete_words "$1" 1 brevio-convert '')
    [ "$result" = "$(printf 'a.json\nsub')" ] || fail "completing files gave: $result"
    # After --output-dir only folders.
    result=$(cd "$dir" && complete_words "$1" 2 brevio-convert --output-dir '')
    [ "$result" = "sub" ] || fail "completing --output-dir gave: $result"
    rm -rf "$dir"
    result=$(complete_words "$1" 1 brevio-convert --js)
    [ "$result" = "--json" ] || fail "completing --js gave: $result"
    result=$(complete_words "$1" 2 brevio-convert --language '')
    [ "$result" = "$(printf 'de\nen')" ] || fail "completing --language gave: $result"
}

# The window program answers --version on a terminal without a display.
check_window_version() { # root version
    local output
    output=$(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$1/bin/brevio" --version) ||
        fail "brevio --version failed"
    [ "$output" = "brevio $2" ] || fail "brevio --version printed: $output"
}

check_conversion() { # root report-check
    BREVIO_INSTALLED_CONVERT=$1/bin/brevio-convert "$2" || fail "the installed brevio-convert"
}
