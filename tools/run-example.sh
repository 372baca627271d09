#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Converts a copy of the bundled example inside a build folder and prints
# the report's path: the source tree stays exactly as it was checked out.
#   tools/run-example.sh BUILD_FOLDER
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
build=${1:?usage: tools/run-example.sh BUILD_FOLDER}

mkdir -p "$build/example"
cp "$here/examples/pressure-transmitter.json" "$build/example/"
exec "$build/src/cli/brevio-convert" "$build/example/pressure-transmitter.json"
