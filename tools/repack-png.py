#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Brevio developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Rewrites an 8-bit RGB PNG with the same pixels, every row unfiltered and
# compressed at zlib's best level:
#   tools/repack-png.py IN.png OUT.png
# Every process decodes the report's logo once before its first report, and
# undoing libpng's per-row prediction filters costs more than inflating
# unfiltered rows; for a flat-coloured logo the file even gets smaller.
# Only the image header and data are kept: the logo has no other chunks.
import struct
import sys
import zlib


def chunks(data):
    pos = 8
    while pos < len(data):
        (length,) = struct.unpack(">I", data[pos:pos + 4])
        yield data[pos + 4:pos + 8], data[pos + 8:pos + 8 + length]
        pos += 12 + length


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfiltered_rows(header, compressed):
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", header)
    if depth != 8 or colour != 2 or interlace != 0:
        sys.exit("only 8-bit RGB images without interlacing")
    raw = zlib.decompress(compressed)
    stride, bpp = width * 3, 3
    previous = bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        kind, line = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            a = line[i - bpp] if i >= bpp else 0
            b = previous[i]
            c = previous[i - bpp] if i >= bpp else 0
            predictor = [0, a, b, (a + b) >> 1, paeth(a, b, c)][kind]
            line[i] = (line[i] + predictor) & 0xFF
        yield bytes(line)
        previous = line


def chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def main(source, target):
    data = open(source, "rb").read()
    parts = list(chunks(data))
    header = next(body for kind, body in parts if kind == b"IHDR")
    compressed = b"".join(body for kind, body in parts if kind == b"IDAT")
    rows = b"".join(b"\0" + row for row in unfiltered_rows(header, compressed))
    with open(target, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                  chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    main(*sys.argv[1:3])
