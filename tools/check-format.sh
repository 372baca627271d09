#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Fails when a C++ file of src, tests or bench is not formatted as
# .clang-format says, and lists the offending lines. Build folders and the
# fuzz corpus are left out: they hold generated files, not ours.
#   tools/check-format.sh [SOURCE_DIR]    default: this checkout
# To fix: clang-format -i FILE...
set -euo pipefail
cd "${1:-$(dirname "$0")/..}"

files=()
while IFS= read -r -d '' file; do
    files+=("$file")
done < <(find src tests bench \
    \( -type d \( -name 'build*' -o -name CMakeFiles -o -path tests/fuzz/corpus \) -prune \) -o \
    \( -type f \( -name '*.cpp' -o -name '*.h' \) -print0 \) | sort -z)
[ ${#files[@]} -gt 0 ] || {
    echo "check-format.sh: no C++ files found under $PWD" >&2
    exit 1
}
clang-format --dry-run -Werror "${files[@]}"
echo "check-format.sh: ${#files[@]} files formatted"
