#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# A report's title is written twice: into the document information (/Title)
# and into the XMP metadata (dc:title), which must stay well-formed XML for
# the file to be an archive document. Converts configurations whose name (or,
# without a name, whose file name) holds what neither can carry, parses each
# XMP packet with a strict XML parser and checks that both titles are one and
# the same text, the one expected for that name, and no longer than a PDF
# string may be.
#   check-archive-title.py BREVIO_CONVERT
# Needs Debian's python3-pikepdf.
import json
import os
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

import pikepdf

RDF = "{http://www.w3.org/1999/02/22-rdf-syntax-ns#}"
DC = "{http://purl.org/dc/elements/1.1/}"
REPLACEMENT = "\ufffd"
# A PDF string holds at most 65,535 bytes; a title is written as UTF-16 with
# a byte order mark, so 32,766 code units fit.
LONGEST_TITLE = 32766

CONTROLS = "".join(chr(c) for c in range(0x20))
CONTROLS_AS_TITLE = "".join(c if c in "\t\n" else REPLACEMENT for c in CONTROLS)

# (what the case is, the configuration's name or None for none, the file's
# name, the title both places must hold)
CASES = [
    ("escape character", "Anlage\u001b7", "anlage.json", "Anlage\ufffd7"),
    ("every control character", "a" + CONTROLS + "b", "anlage.json",
     "a" + CONTROLS_AS_TITLE + "b"),
    ("carriage return", "Halle\r2", "anlage.json", "Halle\ufffd2"),
    ("U+FFFE and U+FFFF", "A\ufffeB\uffffC", "anlage.json", "A\ufffdB\ufffdC"),
    ("lone high surrogate", "A\ud800B", "anlage.json", "A\ufffdB"),
    ("lone low surrogate at the end", "Kessel\udc80", "anlage.json", "Kessel\ufffd"),
    ("surrogates in the wrong order", "\udc00\ud800", "anlage.json", "\ufffd\ufffd"),
    ("NUL", "vor\u0000nach", "anlage.json", "vor\ufffdnach"),
    ("tab and line feed stay", "Halle\t2\nNord", "anlage.json", "Halle\t2\nNord"),
    # UTF-16 units holding a byte 0x0D: a PDF reader takes that byte for a
    # line end, so these go in decomposed where that avoids the byte, else
    # as U+FFFD.
    ("Czech", "Čistírna Brno-Modřice č. 2", "anlage.json",
     "Čistírna Brno-Modřice c\u030c. 2"),
    ("Chinese", "不锈钢车间", "anlage.json", "\ufffd锈钢车间"),
    ("Malayalam", "ഊർജം", "anlage.json", REPLACEMENT * 4),
    ("emoji whose low surrogate ends in 0x0D", "Kessel 😍", "anlage.json",
     "Kessel \ufffd"),
    ("astral character", "Note 𝄞", "anlage.json", "Note 𝄞"),
    ("PDF and XML syntax", "a(b)c\\d <&> \"x\" 'y' %1 %2 ]]> <?xpacket end='w'?>",
     "anlage.json", "a(b)c\\d <&> \"x\" 'y' %1 %2 ]]> <?xpacket end='w'?>"),
    ("40,000 characters", "a" * 40000, "anlage.json", "a" * LONGEST_TITLE),
    ("surrogate pair across the limit", "a" * (LONGEST_TITLE - 1) + "😀", "anlage.json",
     "a" * (LONGEST_TITLE - 1)),
    ("no name, escape character in the file name", None, "anlage\u001b7.json",
     "anlage\ufffd7.json"),
    ("no name, a byte that is not UTF-8 in the file name", None, b"Geb\xe4ude.json",
     "Geb\ufffdude.json"),
]


def configuration(name):
    members = {"date": "2026-03-17", "location": "Halle", "altitude": 1, "voltage": 2,
               "measureSystem": 1, "boardType": 1, "version": "1"}
    if name is not None:
        members["name"] = name
    # ensure_ascii writes lone surrogates as \uXXXX escapes, as a hostile
    # file would have them.
    return json.dumps({"configuration": members}, ensure_ascii=True)


def xmp_title(report):
    packet = report.Root.Metadata.read_bytes()
    root = ElementTree.fromstring(packet)
    items = root.findall(f".//{DC}title/{RDF}Alt/{RDF}li")
    if len(items) != 1:
        raise ValueError(f"{len(items)} dc:title entries")
    return items[0].text or ""


def shown(text):
    text = text if len(text) < 80 else text[:40] + f"…({len(text)} characters)…" + text[-20:]
    return ascii(text)


def check(converter, folder, case):
    label, name, file_name, expected = case
    path = os.path.join(os.fsencode(folder), os.fsencode(file_name))
    with open(path, "w", encoding="ascii") as file:
        file.write(configuration(name))
    run = subprocess.run([os.fsencode(converter), path], capture_output=True,
                         env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
    report_path = path[:-len(b".json")] + b".pdf"
    if not os.path.isfile(report_path):
        return [f"{label}: no report: {run.stderr.decode(errors='replace')}"]
    failures = []
    with pikepdf.open(report_path) as report:
        info = report.docinfo.get("/Title")
        info_title = str(info) if info is not None else ""
        if info is not None and len(bytes(info)) > 65535:
            failures.append(f"{label}: /Title holds {len(bytes(info))} bytes")
        try:
            metadata_title = xmp_title(report)
        except (ElementTree.ParseError, ValueError) as error:
            failures.append(f"{label}: the XMP packet is not well-formed: {error}")
            metadata_title = None
    if metadata_title is not None and metadata_title != info_title:
        failures.append(f"{label}: XMP title {shown(metadata_title)} is not /Title "
                        f"{shown(info_title)}")
    if info_title != expected:
        failures.append(f"{label}: /Title is {shown(info_title)}, expected {shown(expected)}")
    return failures


def main(arguments):
    converter = arguments[0]
    failures = []
    for case in CASES:
        with tempfile.TemporaryDirectory() as folder:
            failures += check(converter, folder, case)
    for failure in failures:
        print("FAIL:", failure)
    print(f"{len(CASES)} titles checked, {len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
