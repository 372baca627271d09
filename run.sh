#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Installs what is missing, builds incrementally and runs Brevio.
#   ./run.sh           with a display: opens the window; without one:
#                      converts a copy of the bundled example in build-run/example
#                      and prints the report's path
#   ./run.sh FILE...   converts the given configuration files
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"

"$here/tools/install-packages.sh" run
cmake -S "$here" -B "$here/build-run" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DBREVIO_BUILD_TESTS=OFF >/dev/null
cmake --build "$here/build-run" >/dev/null

if [ $# -gt 0 ]; then
    exec "$here/build-run/src/cli/brevio-convert" "$@"
elif [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$here/build-run/src/app/brevio"
else
    exec "$here/tools/run-example.sh" "$here/build-run"
fi
