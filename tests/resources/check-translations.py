#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# The English Linguist file is complete and current: every text the sources
# pass through tr() is in it (lupdate run afresh into a scratch file finds
# no other), and each has a finished translation, none unfinished, vanished
# or obsolete.
#   check-translations.py SOURCE_FOLDER
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree


def messages(path):
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        name = context.find("name").text
        for message in context.iter("message"):
            found[(name, message.find("source").text)] = message.find("translation")
    return found


def main():
    root = sys.argv[1]
    committed = os.path.join(root, "resources", "translations", "brevio_en.ts")
    problems = []
    have = messages(committed)
    for (context, source), translation in have.items():
        kind = translation.get("type")
        if kind in ("unfinished", "vanished", "obsolete") or not (translation.text or "").strip():
            problems.append("%s: %r is %s" % (context, source, kind or "empty"))
    with tempfile.TemporaryDirectory() as scratch:
        fresh = os.path.join(scratch, "fresh_en.ts")
        subprocess.run(["lupdate", "-no-obsolete", "-locations", "none", "-source-language", "de",
                        "-target-language", "en", os.path.join(root, "src", "convert"),
                        os.path.join(root, "src", "app"), "-ts", fresh],
                       check=True, capture_output=True)
        wanted = messages(fresh)
    for key in sorted(set(wanted) - set(have)):
        problems.append("%s: %r is not in brevio_en.ts" % key)
    for key in sorted(set(have) - set(wanted)):
        problems.append("%s: %r is no longer in the sources" % key)
    if problems:
        print("brevio_en.ts (update it with lupdate and tools/translations-en.py):\n  " +
              "\n  ".join(problems), file=sys.stderr)
        return 1
    print("brevio_en.ts: %d texts, all translated" % len(have))
    return 0


if __name__ == "__main__":
    sys.exit(main())
