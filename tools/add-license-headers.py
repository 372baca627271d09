#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Puts the licence header at the top of every source file that lacks it,
# or with --check only names them (exit 1 if there are any):
#   tools/add-license-headers.py [--check] [SOURCE_FOLDER]
# The files are git's list when the folder is a checkout, else every file
# below it but the build folders. Data (JSON fixtures, the fuzz corpus),
# images, the bundled fonts and documents are not sources and get none;
# the metainfo is CC0 by its own statement and keeps that; lupdate rewrites
# the Linguist sources (.ts) whole, so they carry none either.
import os
import subprocess
import sys

LINES = ("SPDX-FileCopyrightText: 2026 The Brevio developers",
         "SPDX-License-Identifier: GPL-3.0-or-later")

HASH = ("# ", "")
SLASHES = ("// ", "")
XML = ("<!-- ", " -->")
ROFF = ('.\\" ', "")


def comment_style(path):
    name = os.path.basename(path)
    if path.startswith(("tests/fuzz/corpus/", "examples/")) or "/data/" in path:
        return None
    if name.endswith((".cpp", ".h")):
        return SLASHES
    if name == "CMakeLists.txt" or name.endswith((".cmake", ".sh", ".py", ".desktop", ".supp")):
        return HASH
    if name in (".clang-format", ".gitignore") or path == ".ci/run":
        return HASH
    if path.startswith("packaging/bash-completion/"):
        return HASH
    if name.endswith((".ui", ".qrc", ".qrc.in")):
        return XML
    if name.endswith(".1.in"):
        return ROFF
    return None


def header(style):
    return "".join(style[0] + line + style[1] + "\n" for line in LINES)


def has_header(text):
    return all(line in "\n".join(text.splitlines()[:6]) for line in LINES)


def with_header(text, style):
    lines = text.splitlines(keepends=True)
    # A shebang or an XML declaration has to stay the first line.
    keep = 1 if lines and (lines[0].startswith("#!") or lines[0].startswith("<?xml")) else 0
    rest = "".join(lines[keep:])
    # C++ keeps a blank line between the header and the code's own start.
    gap = "\n" if style == SLASHES and not rest.startswith("\n") else ""
    return "".join(lines[:keep]) + header(style) + gap + rest


def source_files(root):
    try:
        listed = subprocess.run(["git", "-C", root, "ls-files", "-z"], check=True,
                                capture_output=True).stdout
        return [name for name in listed.decode().split("\0") if name]
    except (OSError, subprocess.CalledProcessError):
        found = []
        for folder, subfolders, files in os.walk(root):
            subfolders[:] = [d for d in subfolders
                             if d != ".git" and not (folder == root and d.startswith("build"))]
            found += [os.path.relpath(os.path.join(folder, f), root) for f in files]
        return found


def main():
    arguments = sys.argv[1:]
    check = "--check" in arguments
    arguments = [a for a in arguments if a != "--check"]
    root = arguments[0] if arguments else os.path.join(os.path.dirname(__file__), "..")
    missing = []
    for path in sorted(source_files(root)):
        style = comment_style(path)
        full = os.path.join(root, path)
        if style is None or not os.path.isfile(full):
            continue
        with open(full, encoding="utf-8") as source:
            text = source.read()
        if has_header(text):
            continue
        missing.append(path)
        if not check:
            with open(full, "w", encoding="utf-8") as source:
                source.write(with_header(text, style))
    if check and missing:
        print("no licence header in:\n  " + "\n  ".join(missing), file=sys.stderr)
        return 1
    if not check and missing:
        print("added a licence header to %d files" % len(missing))
    return 0


if __name__ == "__main__":
    sys.exit(main())
