#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Makes the report's own font, "Brevio Sans", from Debian's fonts-dejavu-core:
#   tools/make-report-fonts.py [--subset] [OUTPUT_FOLDER]
# (default resources/fonts). Needs python3-fonttools (tools/install-packages.sh
# test installs it); Debian's own python3, not a virtual environment's.
#
# The report is drawn at fixed pixel sizes into a PDF, where TrueType hinting
# instructions do nothing but cost: the toolkit still loads and runs them for
# every face. So the copies lose every table and glyph program that only
# serves hinting, and keep outlines, advance widths, kerning and vertical
# metrics as they are, so that a report lays out exactly as it does with the
# system's DejaVu Sans. The family gets a name of its own: the Bitstream Vera
# licence asks for a modified font to be renamed, and a name nobody else
# installs means the program always finds its own copy.
#
# --subset keeps only Latin-1, Latin Extended-A and common punctuation and
# symbols; everything else then falls back to the installed fonts. It was
# measured and not taken (docs/performance.md): the committed faces are made
# without it.
import os
import struct
import sys

from fontTools import subset
from fontTools.ttLib import TTFont
from fontTools.ttLib.tables._c_m_a_p import cmap_format_unknown

SOURCE_FOLDER = "/usr/share/fonts/truetype/dejavu"
FACES = [
    ("DejaVuSans.ttf", "BrevioSans.ttf"),
    ("DejaVuSans-Bold.ttf", "BrevioSans-Bold.ttf"),
]
HINTING_TABLES = ["fpgm", "prep", "cvt ", "hdmx", "LTSH", "VDMX"]
# FontForge's build time stamp only makes the output differ between builds.
OTHER_DROPPED = ["FFTM"]
OLD_FAMILY = "DejaVu Sans"
NEW_FAMILY = "Brevio Sans"
OLD_POSTSCRIPT = "DejaVuSans"
NEW_POSTSCRIPT = "BrevioSans"
# Family, unique id, full name, PostScript name, typographic family.
RENAMED_IDS = {1, 3, 4, 6, 16}

SUBSET_RANGES = [
    (0x0020, 0x007E),  # Basic Latin
    (0x00A0, 0x017F),  # Latin-1 Supplement, Latin Extended-A
    (0x2010, 0x205E),  # general punctuation
    (0x20A0, 0x20BF),  # currency signs
    (0x2100, 0x215F),  # letterlike symbols (℃, №, ™)
    (0x2190, 0x21FF),  # arrows
    (0x2200, 0x22FF),  # mathematical operators
]


def strip_hinting(font):
    for tag in HINTING_TABLES + OTHER_DROPPED:
        if tag in font:
            del font[tag]
    glyf = font["glyf"]
    for name in font.getGlyphOrder():
        glyph = glyf[name]
        # Expanding a glyph decodes its outline; removing the program leaves
        # coordinates, flags and components untouched.
        glyph.expand(glyf)
        if hasattr(glyph, "program"):
            glyph.removeHinting()
    # maxp keeps DejaVu's limits for instructions, stack and storage: they
    # are upper bounds and stay true. Zeroing them would tell FreeType that
    # the font was never hinted, and FreeType then runs its auto-hinter on
    # every glyph it loads, which costs more than the dropped programs did.


def direct_cmap(font):
    # Every PDF the toolkit writes maps each embedded face back to text by
    # asking for the glyph of each of the 65,536 BMP code points, once per
    # face and document. DejaVu's Unicode tables (format 4 segments, format
    # 12 groups) answer each question with a binary search. A trimmed array
    # (format 10: one glyph id per code point from the first to the last)
    # answers with one array access. It is added as the full-repertoire
    # Unicode table (platform 3, encoding 10), the one FreeType and HarfBuzz
    # prefer; the BMP tables stay for everyone else. It costs two bytes per
    # code point up to the font's last one, so it ends with the BMP: DejaVu's
    # 550 characters beyond (mathematical letters, emoticons) lie behind a
    # gap of 120,000 code points that fontconfig walks when it registers the
    # face (4 M instructions a process, 250 kB a face). They keep their
    # glyphs and fall back to the installed fonts.
    cmap = {code: name for code, name in font.getBestCmap().items() if code <= 0xFFFF}
    first, last = min(cmap), max(cmap)
    glyphs = [font.getGlyphID(cmap[code]) if code in cmap else 0
              for code in range(first, last + 1)]
    data = struct.pack(">HHLLLL", 10, 0, 20 + 2 * len(glyphs), 0, first, len(glyphs))
    data += struct.pack(f">{len(glyphs)}H", *glyphs)
    table = cmap_format_unknown(10)
    table.platformID = 3
    table.platEncID = 10
    table.language = 0
    table.data = data
    table.cmap = {}
    kept = [t for t in font["cmap"].tables if t.format != 12]
    font["cmap"].tables = kept + [table]


# The Latin ligatures of Unicode's presentation forms (ff, fi, fl, ffi, ffl,
# long s t, st). Drawn as single glyphs, they reach a PDF's text layer as
# these code points, so a search for "Geöffnet" or "Offset" in a report
# would miss them.
LIGATURE_CODE_POINTS = range(0xFB00, 0xFB07)


def drop_latin_ligatures(font):
    # Only the substitutions that make these glyphs go; every other lookup
    # (Arabic's required ligatures among them) stays. Without them the
    # letters are drawn one by one with their own advance widths.
    cmap = font.getBestCmap()
    ligatures = {cmap[code] for code in LIGATURE_CODE_POINTS if code in cmap}
    for lookup in font["GSUB"].table.LookupList.Lookup:
        for subtable in lookup.SubTable:
            if subtable.LookupType == 7:
                subtable = subtable.ExtSubTable
            if subtable.LookupType != 4:
                continue
            for first in list(subtable.ligatures):
                kept = [lig for lig in subtable.ligatures[first] if lig.LigGlyph not in ligatures]
                if kept:
                    subtable.ligatures[first] = kept
                else:
                    del subtable.ligatures[first]


def rename(font):
    for record in font["name"].names:
        if record.nameID not in RENAMED_IDS:
            continue
        text = record.toUnicode()
        text = text.replace(OLD_FAMILY, NEW_FAMILY).replace(OLD_POSTSCRIPT, NEW_POSTSCRIPT)
        record.string = text


def keep_subset(font):
    unicodes = [c for low, high in SUBSET_RANGES for c in range(low, high + 1)]
    options = subset.Options()
    options.layout_features = ["*"]
    options.name_IDs = ["*"]
    options.name_languages = ["*"]
    options.notdef_outline = True
    options.glyph_names = True
    options.hinting = False
    options.recalc_bounds = False
    options.recalc_timestamp = False
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=unicodes)
    subsetter.subset(font)


def main(arguments):
    subsetting = "--subset" in arguments
    arguments = [a for a in arguments if a != "--subset"]
    here = os.path.dirname(os.path.abspath(__file__))
    output = arguments[0] if arguments else os.path.join(here, "..", "resources", "fonts")
    os.makedirs(output, exist_ok=True)
    for source, target in FACES:
        # The bounding boxes and the time stamp are kept as DejaVu has them.
        font = TTFont(os.path.join(SOURCE_FOLDER, source), recalcBBoxes=False,
                      recalcTimestamp=False)
        if subsetting:
            keep_subset(font)
        strip_hinting(font)
        drop_latin_ligatures(font)
        direct_cmap(font)
        rename(font)
        path = os.path.join(output, target)
        font.save(path)
        print(f"{path}: {os.path.getsize(path)} bytes")


if __name__ == "__main__":
    main(sys.argv[1:])
