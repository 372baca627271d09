#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Reports are archive documents: converts each configuration given with
# brevio-convert and checks the PDF/A-1b rules that can be checked here
# (there is no full validator on Debian): the PDF/A claim in XMP metadata
# that repeats the document information, an sRGB output intent, every font
# embedded, no soft-masked images, no encryption, a clean `qpdf --check`,
# and a text layer that holds the letters as printed (no ligature code
# points, so a search for "Geöffnet" or "Offset" finds them).
#   check-archive.py BREVIO_CONVERT CONFIGURATION...
# Needs Debian's python3-pikepdf and qpdf.
import os
import re
import shutil
import subprocess
import sys
import tempfile

import pikepdf

LIGATURES = re.compile("[\ufb00-\ufb06]")
XMP = "{http://ns.adobe.com/xap/1.0/}"
PDFAID = "{http://www.aiim.org/pdfa/ns/id/}"
DC = "{http://purl.org/dc/elements/1.1/}"
PDF = "{http://ns.adobe.com/pdf/1.3/}"


def pdf_date_to_xmp(value):
    # D:YYYYMMDDHHmmSS+hh'mm' -> YYYY-MM-DDTHH:mm:SS+hh:mm (Z for UTC)
    match = re.match(r"D:(\d{4})(\d{2})(\d{2})(\d{2})(\d{2})(\d{2})(Z|[+-]\d{2}'\d{2}'?)?", value)
    if not match:
        return None
    y, mo, d, h, mi, s, zone = match.groups()
    zone = zone or "Z"
    if zone not in ("Z",):
        zone = zone.replace("'", ":").rstrip(":")
        if zone in ("+00:00", "-00:00"):
            zone = "Z"
    return f"{y}-{mo}-{d}T{h}:{mi}:{s}{zone}"


def check(report, failures):
    def fail(message):
        failures.append(f"{os.path.basename(report)}: {message}")

    result = subprocess.run(["qpdf", "--check", report], capture_output=True, text=True)
    if result.returncode != 0:
        fail("qpdf --check: " + result.stdout + result.stderr)

    with pikepdf.open(report) as pdf:
        root = pdf.trailer.Root
        if "/Encrypt" in pdf.trailer:
            fail("encrypted")
        intents = root.get("/OutputIntents")
        if not intents or len(intents) != 1:
            fail("no single output intent")
        else:
            intent = intents[0]
            if intent.get("/S") != "/GTS_PDFA1":
                fail(f"output intent subtype {intent.get('/S')}")
            if "/DestOutputProfile" not in intent:
                fail("output intent without an ICC profile")
            elif not str(intent.get("/OutputConditionIdentifier", "")).startswith("sRGB"):
                fail("output intent is not sRGB")
        metadata = pdf.open_metadata(set_pikepdf_as_editor=False)
        info = pdf.docinfo
        if metadata.get(PDFAID + "part") != "1" or metadata.get(PDFAID + "conformance") != "B":
            fail("no PDF/A-1b claim in the XMP metadata")
        title = str(info.get("/Title", ""))
        if not title or metadata.get(DC + "title") != title:
            fail(f"XMP title {metadata.get(DC + 'title')!r} is not the document's {title!r}")
        if metadata.get(XMP + "CreatorTool") != str(info.get("/Creator", "")):
            fail("XMP creator differs from the document information")
        if metadata.get(PDF + "Producer") != str(info.get("/Producer", "")):
            fail("XMP producer differs from the document information")
        for xmp_key, info_key in (("CreateDate", "/CreationDate"), ("ModifyDate", "/ModDate")):
            if info_key in info and metadata.get(XMP + xmp_key) != pdf_date_to_xmp(
                    str(info[info_key])):
                fail(f"XMP {xmp_key} {metadata.get(XMP + xmp_key)} differs from {info[info_key]}")

        fonts = 0
        for obj in pdf.objects:
            if not isinstance(obj, pikepdf.Dictionary):
                continue
            if obj.get("/Type") == "/FontDescriptor":
                fonts += 1
                if not any(key in obj for key in ("/FontFile", "/FontFile2", "/FontFile3")):
                    fail(f"font {obj.get('/FontName')} is not embedded")
            if obj.get("/Subtype") == "/Image" and "/SMask" in obj:
                fail("an image has a soft mask (transparency)")
            mask = obj.get("/SMask")
            if mask is not None and obj.get("/Type") == "/ExtGState" and mask != "/None":
                fail("a graphics state has a soft mask")
            if obj.get("/Type") == "/Font" and obj.get("/Subtype") == "/Type3":
                fail("a Type 3 font")
        if fonts == 0:
            fail("no font at all")

    text = subprocess.run(["pdftotext", report, "-"], capture_output=True).stdout.decode("utf-8")
    if LIGATURES.search(text):
        fail("ligature code points in the text layer: " + ", ".join(sorted(set(
            LIGATURES.findall(text)))))
    return text


def main(arguments):
    converter, configurations = arguments[0], arguments[1:]
    failures = []
    texts = ""
    with tempfile.TemporaryDirectory() as folder:
        for configuration in configurations:
            copy = os.path.join(folder, os.path.basename(configuration))
            shutil.copyfile(configuration, copy)
            environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
            run = subprocess.run([converter, copy], capture_output=True, text=True,
                                 env=environment)
            report = copy[:-len(".json")] + ".pdf"
            if run.returncode != 0 or not os.path.isfile(report):
                failures.append(f"{configuration}: not converted: {run.stderr}")
                continue
            texts += check(report, failures)
    # Words the font's ligatures would have joined (ff, fl, ffi, ffl).
    for word in ("Geöffnet", "Offset", "Allgemeine Einstellungen", "Fluss", "Abfluss",
                 "Schiffswerft", "Auffahrt", "official"):
        if word not in texts:
            failures.append(f"{word!r} is not found in the text of any report")
    for failure in failures:
        print("FAIL:", failure)
    print(f"{len(configurations)} reports checked, {len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
