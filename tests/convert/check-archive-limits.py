#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# PDF/A-1 keeps the limits of PDF 1.4's implementations: no real number
# beyond +-32,767 and no string longer than 65,535 bytes. Converts every
# file of the bad-input corpus and configurations made here to be hostile
# (values of thousands of characters in every script and direction, a long
# unbreakable date and file name, trailing spaces, line breaks, and the
# names check-archive-title.py tries on the title) and looks through every
# object and every decompressed content stream of each report:
#   - no number in a content stream beyond +-32,767 (text positions are
#     written as plain numbers), no real anywhere beyond it, no integer
#     beyond 2^31 - 1;
#   - no string longer than 65,535 bytes.
# What a reader sees must not depend on how much of a value lies beyond its
# column: page 1 of a report whose values run a little past the column edge
# and page 1 of one whose values run on for thousands of characters are
# rendered (pdftoppm) and must be the same, pixel for pixel.
#   check-archive-limits.py BREVIO_CONVERT BAD_INPUT_FOLDER
# Needs Debian's python3-pikepdf and poppler-utils.
import decimal
import glob
import json
import os
import runpy
import shutil
import subprocess
import sys
import tempfile

import pikepdf

LARGEST_REAL = 32767
LARGEST_INTEGER = 2**31 - 1
LONGEST_STRING = 65535


def configuration(name="Anlage", location="Halle", date="2026-03-17", version="1",
                  measure="PRESSURE", file_version=None):
    document = {"configuration": {
        "name": name, "date": date, "location": location, "altitude": 412, "voltage": 18.5,
        "measureSystem": 1, "boardType": 4, "version": version,
        "outputs": [{"channel": 1, "range": 0, "unit": 9, "k_factor": 75, "producer": 1,
                     "response": 2, "measure": {"measure": measure, "unit": 9,
                                                "rangeLow": 0, "rangeHigh": 500}}],
        "relais": [{"lowThreshold": 120, "highThreshold": 380, "states": [0, 1],
                    "measure": {"measure": measure, "unit": 9}}]}}
    if file_version is not None:
        document["fileVersion"] = file_version
    return json.dumps(document, ensure_ascii=False)


def everywhere(value):
    return configuration(name=value, location=value, date=value, version=value, measure=value)


def in_columns(value):
    return configuration(name=value, location=value, version=value, measure=value)


# Patterns repeated to a value's length, with how often a value repeats
# one to run past the widest column (a bold heading across the page) while
# its glyphs stay well within the numbers PDF/A-1 allows. A value made of
# whole repetitions looks the same near its start (or, right to left, near
# its end) whatever its length, which the comparison of renderings relies on.
PATTERNS = {
    "latin": ("Abwasser ", 15),
    "unbroken": ("W", 120),
    "hebrew": ("שלום ", 30),
    "arabic": ("محطة ", 30),
    "mixed": ("Kessel ä 不锈 שלום 𝄞 ", 8),
    "combining": ("e\u0301\u0323", 120),
    "cjk": ("不锈钢车间", 15),
}


def repeated(pattern, length):
    return pattern * (length // len(pattern) + 1)


# (file name, content): the hostile configurations made here.
def hostile_configurations():
    cases = [
        ("name-5000.json", configuration(name="a" * 5000)),
        ("name-33000.json", configuration(name="a" * 33000)),
        ("every-string-100000.json", everywhere("S" * 100000)),
        ("date-unbroken-5000.json", configuration(date="D" * 5000)),
        ("trailing-spaces.json", configuration(name="Name" + " " * 50000)),
        ("date-wrapped-spaces.json", configuration(date="D" + " " * 50000 + "E")),
        ("line-breaks.json", everywhere("Zeile\n" * 5000)),
        ("line-separators.json", everywhere("Zeile\u2028" * 5000)),
        ("tabs.json", everywhere("\t" * 20000 + "x")),
        ("length-variants.json", everywhere("kurz\u009c" + "lang" * 5000)),
    ]
    for label, (pattern, _) in PATTERNS.items():
        cases.append((f"{label}-long.json", everywhere(repeated(pattern, 20000))))
    # The path under the title breaks after a slash; a file name that cannot
    # break runs on to the right, and its last script starts a new run there.
    cases.append(("W" * 200 + "αβγ" * 8 + ".json", configuration(name="")))
    # The names that check-archive-title.py gives the title.
    for number, (_, name, _, _) in enumerate(title_cases()):
        if name is not None:
            cases.append((f"hostile-name-{number}.json", configuration(name=name)))
    return cases


def title_cases():
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "check-archive-title.py")
    return runpy.run_path(path)["CASES"]


# (label, the short configuration, the long one): page 1 must look the same.
# The date's box wraps its text and centres the lines it holds, so only an
# unbreakable date is compared there.
def rendering_pairs():
    pairs = []
    for label, (pattern, repetitions) in PATTERNS.items():
        pairs.append((label, in_columns(pattern * repetitions),
                      in_columns(repeated(pattern, 20000))))
    pairs.append(("name only, 5,000 letters", configuration(name="a" * 120),
                  configuration(name="a" * 5000)))
    pairs.append(("unbroken date", configuration(date="D" * 150),
                  configuration(date="D" * 5000)))
    return pairs


def number_problem(value, in_content):
    if isinstance(value, bool):
        return None
    if isinstance(value, int):
        limit = LARGEST_REAL if in_content else LARGEST_INTEGER
        return f"number {value}" if abs(value) > limit else None
    if isinstance(value, decimal.Decimal):
        return f"number {value}" if abs(value) > LARGEST_REAL else None
    return None


def object_problems(value, where, seen, problems):
    if isinstance(value, pikepdf.Object) and value.is_indirect:
        key = value.objgen
        if key in seen:
            return
        seen.add(key)
    if isinstance(value, pikepdf.String):
        if len(bytes(value)) > LONGEST_STRING:
            problems.append(f"{where}: a string of {len(bytes(value))} bytes")
    elif isinstance(value, (pikepdf.Dictionary, pikepdf.Stream)):
        for key in value.keys():
            object_problems(value.get(key), f"{where} {key}", seen, problems)
    elif isinstance(value, pikepdf.Array):
        for index, item in enumerate(value):
            object_problems(item, f"{where}[{index}]", seen, problems)
    else:
        problem = number_problem(value, in_content=False)
        if problem:
            problems.append(f"{where}: {problem}")


def content_problems(owner, where, problems):
    for operands, operator in pikepdf.parse_content_stream(owner):
        for operand in operands:
            # TJ takes its strings and positions in an array.
            for item in (list(operand) if isinstance(operand, pikepdf.Array) else [operand]):
                if isinstance(item, pikepdf.String) and len(bytes(item)) > LONGEST_STRING:
                    problems.append(f"{where}: {operator}: a string of {len(bytes(item))} bytes")
                problem = number_problem(item, in_content=True)
                if problem:
                    problems.append(f"{where}: {problem} {operator}")


def report_problems(report):
    problems = []
    with pikepdf.open(report) as pdf:
        seen = set()
        object_problems(pdf.trailer, "trailer", seen, problems)
        for number, obj in enumerate(pdf.objects):
            object_problems(obj, f"object {number}", seen, problems)
        for number, page in enumerate(pdf.pages, 1):
            content_problems(page, f"page {number}", problems)
        for obj in pdf.objects:
            if isinstance(obj, pikepdf.Stream) and obj.get("/Subtype") == "/Form":
                content_problems(obj, f"form {obj.objgen}", problems)
    return problems


def convert(converter, folder, file_name, content):
    path = os.path.join(folder, file_name)
    # Lone surrogates reach the file as \uXXXX escapes.
    with open(path, "w", encoding="utf-8", errors="backslashreplace") as file:
        file.write(content)
    run = subprocess.run([converter, path], capture_output=True,
                         env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
    report = path[:-len(".json")] + ".pdf"
    return report if os.path.isfile(report) else None, run


def first_page(report, folder):
    prefix = os.path.join(folder, "page")
    subprocess.run(["pdftoppm", "-r", "200", "-gray", "-f", "1", "-l", "1", "-singlefile",
                    report, prefix], check=True)
    with open(prefix + ".pgm", "rb") as file:
        return file.read()


def main(arguments):
    converter, corpus = arguments
    failures = []
    reports = 0
    with tempfile.TemporaryDirectory() as folder:
        copies = os.path.join(folder, "corpus")
        os.makedirs(copies)
        for path in sorted(glob.glob(os.path.join(corpus, "*.json"))):
            file_name = os.path.basename(path)
            shutil.copyfile(path, os.path.join(copies, file_name))
            subprocess.run([converter, os.path.join(copies, file_name)], capture_output=True,
                           env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
            # The corpus's empty file gives no report, and is meant not to.
            report = os.path.join(copies, file_name[:-len(".json")] + ".pdf")
            if os.path.isfile(report):
                reports += 1
                failures += [f"{file_name}: {p}" for p in report_problems(report)]
        hostile = os.path.join(folder, "hostile")
        os.makedirs(hostile)
        for file_name, content in hostile_configurations():
            report, run = convert(converter, hostile, file_name, content)
            if report is None:
                failures.append(f"{file_name}: no report: {run.stderr!r}")
                continue
            reports += 1
            failures += [f"{file_name[:40]}: {p}" for p in report_problems(report)]
        for label, short, long in rendering_pairs():
            # The same path for both: it is drawn under the title.
            case = os.path.join(folder, "pair")
            pages = []
            for content in (short, long):
                os.makedirs(case, exist_ok=True)
                report, run = convert(converter, case, "anlage.json", content)
                if report:
                    pages.append(first_page(report, case))
                    failures += [f"{label}: {p}" for p in report_problems(report)]
                else:
                    pages.append(None)
                shutil.rmtree(case)
            if None in pages:
                failures.append(f"{label}: not converted")
            elif pages[0] != pages[1]:
                failures.append(f"{label}: page 1 looks different when the values run on")
    # A report can break the limits thousands of times; its first few say
    # enough.
    per_report = {}
    for failure in failures:
        per_report.setdefault(failure.split(":")[0], []).append(failure)
    for name, found in per_report.items():
        for failure in found[:3]:
            print("FAIL:", failure)
        if len(found) > 3:
            print(f"FAIL: {name}: {len(found) - 3} more")
    print(f"{reports} reports scanned, {len(rendering_pairs())} pairs compared, "
          f"{len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
