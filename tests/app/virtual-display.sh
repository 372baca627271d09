# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by the window scripts: a work folder, a virtual X server and the
# brevio process, all cleaned up however the script ends, and the checks
# every script starts with. The script sets brevio_pid once it starts
# brevio.

# "SCRIPT: message" on standard error, and the end of the script; a script
# with more to say defines its own fail() before sourcing this.
if ! declare -F fail >/dev/null; then
    fail() {
        echo "$(basename "$0" .sh): $*" >&2
        exit 1
    }
fi

# Fails unless every tool named is on the PATH.
require_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || fail "$tool not found"
    done
}

work=$(mktemp -d)
xvfb_pid=
brevio_pid=
cleanup() {
    local status=$?
    if [ -n "$brevio_pid" ]; then
        kill "$brevio_pid" 2>/dev/null || true
        wait "$brevio_pid" 2>/dev/null || true
    fi
    if [ -n "$xvfb_pid" ]; then
        kill "$xvfb_pid" 2>/dev/null || true
        wait "$xvfb_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
    exit "$status"
}
trap cleanup EXIT

# Xvfb picks a free display itself and writes its number once it accepts
# connections, so runs side by side never share a server. Exports DISPLAY.
start_virtual_display() {
    Xvfb -displayfd 3 -noreset -screen 0 1024x700x24 -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
    xvfb_pid=$!
    for _ in $(seq 100); do
        [ -s "$work/display" ] && break
        kill -0 "$xvfb_pid" 2>/dev/null || fail "Xvfb did not start: $(cat "$work/xvfb.log")"
        sleep 0.1
    done
    [ -s "$work/display" ] || fail "Xvfb did not report its display"
    DISPLAY=":$(head -n1 "$work/display")"
    export DISPLAY
}

# Waits up to a minute for a complete report at the path; fails without one.
wait_for_report() {
    local report=$1
    for _ in $(seq 600); do
        [ -s "$report" ] && tail -c 64 "$report" | grep -q '%%EOF' && return 0
        sleep 0.1
    done
    fail "no report $(basename "$report") after convert-all"
}
