#!/usr/bin/env python3
"""Writes generated plots to measure with, the same bytes on every run and machine.

usage: make_plots.py FOLDER MEGABYTES [KIND...]      # all kinds if none is named; writes FOLDER/KIND-MEGABYTES.plt

  vectors     polylines of up to 20 lines, a pen change now and then (PU/PD)
  vertices    the same, one vertex a command
  encoded     the same as encoded polylines (PE, 7-bit, relative)
  labels      labels of one to four words in five sizes, a tenth of them turned
  fine        chains of up to 40 lines of some 0.8 mm, as contours and surveys have them (PU/PD)
  arcs        arcs, circles, wedges, filled polygons, hatched and patterned rectangles
  mono        an A0 sheet, one bit a dot, PackBits rows: a plan with lettering and half tones
  colour      an A0 sheet, 24 bits a dot, plain rows: soft shades with noise
  mixed       20 pages, each of one of the kinds but fine in turn

Megabytes (10^6 bytes, may be a fraction) count the file's text, for the pictures their dots before compression, which sets the
resolution. Coordinates lie on an A0 sheet, in plotter units of 1/1016 inch.
"""
import math
import pathlib
import random
import sys

SHEET_X, SHEET_Y = 47000, 33000
INCHES_X, INCHES_Y = 46.8, 33.1
BLOCK = 1 << 16  # elements that are joined before they are written


class Numbers:
    """Random numbers from random() alone, the one call whose sequence Python promises to keep."""

    def __init__(self, seed):
        self.next = random.Random(seed).random

    def below(self, end):
        return int(self.next() * end)

    def between(self, low, high):
        return low + int(self.next() * (high - low))


# --- Vectors ----------------------------------------------------------------------------------------------------

def strokes(numbers):
    """Endless (pen or 0, [(x, y), ...]): a start and one to twenty further points."""
    below = numbers.below
    while True:
        pen = 1 + below(8) if below(50) == 0 else 0
        x, y = below(SHEET_X - 8000), below(SHEET_Y - 8000)
        points = [(x, y)]
        for _ in range(1 + below(20)):
            x, y = x + below(400), y + below(400)
            points.append((x, y))
        yield pen, points


def vectors(numbers):
    for pen, points in strokes(numbers):
        start = "PU%d,%d;PD" % points[0]
        yield ("SP%d;" % pen if pen else "") + start + ",".join(["%d,%d" % p for p in points[1:]]) + ";\n"


def vertices(numbers):
    for pen, points in strokes(numbers):
        yield ("SP%d;" % pen if pen else "") + "PU%d,%d;" % points[0] + "".join(["PD%d,%d;" % p for p in points[1:]]) + "\n"


def fine(numbers):
    below = numbers.below
    while True:
        points = [(below(SHEET_X), below(SHEET_Y))]
        for _ in range(1 + below(40)):
            x, y = points[-1]
            points.append((min(max(x + below(60) - 30, 0), SHEET_X), min(max(y + below(60) - 30, 0), SHEET_Y)))
        yield "PU%d,%d;PD" % points[0] + ",".join(["%d,%d" % p for p in points[1:]]) + ";\n"


def encode(value):
    """A number of an encoded polyline in base 32, lowest digit first."""
    value = 2 * value if value >= 0 else -2 * value + 1
    text = ""
    while value >= 32:
        text += chr(63 + value % 32)
        value //= 32
    return text + chr(95 + value)


def encoded(numbers):
    at_x, at_y = SHEET_X, SHEET_Y  # where the frame ends
    for pen, points in strokes(numbers):
        text = ("SP%d;" % pen if pen else "") + "PE7<"
        for x, y in points:
            text += encode(x - at_x) + encode(y - at_y)
            at_x, at_y = x, y
        yield text + ";\n"


# --- Labels -----------------------------------------------------------------------------------------------------

WORDS = ("Wall Door Window Column Beam Slab Stair Level Section Detail Roof Floor Ceiling Pipe Duct Cable Room Office Kitchen Bath "
         "Store Hall north south east west upper lower left right concrete steel timber glass brick 120 240 365 1.25 2.40 3.65 "
         "DN50 DN100 EI30 EI90 +0.00 -3.20 +2.75 A-A B-B").split()
SIZES = ("SI0.19,0.27;", "SI0.25,0.35;", "SI0.3,0.4;", "SI0.5,0.7;", "SI0.13,0.18;")


def labels(numbers):
    below, turned = numbers.below, False
    while True:
        change = below(20)
        text = SIZES[below(5)] if change == 0 else "SP%d;" % (1 + below(8)) if change == 1 else ""
        if turned or below(10) == 0:
            turned = not turned
            text += "DI0,1;" if turned else "DI1,0;"
        words = " ".join([WORDS[below(len(WORDS))] for _ in range(1 + below(4))])
        yield text + "PU%d,%d;LB%s\x03\n" % (below(SHEET_X - 3000), below(SHEET_Y - 3000), words)


# --- Arcs and fills ---------------------------------------------------------------------------------------------

FILLS = ("FT1;", "FT1;", "FT3,40,45;", "FT4,60,30;", "FT11,1;", "FT11,2;")


def filled_polygon(numbers, x, y):
    points = ["%d,%d" % (numbers.between(-300, 300), numbers.between(-300, 300)) for _ in range(3 + numbers.below(6))]
    return "PU%d,%d;PM0;PR%s;PA;PM2;FP;" % (x, y, ",".join(points))


def arcs(numbers):
    below, between = numbers.below, numbers.between
    yield "RF1,8,2,1,0,0,0,1,0,0,0,0,0,1,0,0,0,1,0;\n"
    yield "RF2,4,4,1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1;\n"
    while True:
        x, y, kind = between(3000, SHEET_X - 3000), between(3000, SHEET_Y - 3000), below(20)
        pen = "SP%d;" % (1 + below(8)) if below(20) == 0 else ""
        if kind < 10:
            text = "PU%d,%d;PD;AA%d,%d,%d;" % (x, y, x + between(-900, 900), y + between(-900, 900), between(-360, 360))
        elif kind < 14:
            text = "PU%d,%d;CI%d;" % (x, y, between(10, 900))
        elif kind < 16:
            text = "PU%d,%d;EW%d,%d,%d;" % (x, y, between(50, 900), below(360), between(-360, 360))
        elif kind < 17:
            text = FILLS[below(6)] + "PU%d,%d;WG%d,%d,%d;" % (x, y, between(50, 400), below(360), between(10, 360))
        elif kind < 18:
            text = FILLS[below(6)] + "PU%d,%d;RA%d,%d;" % (x, y, x + between(-400, 400), y + between(-400, 400))
        else:
            text = FILLS[below(6)] + filled_polygon(numbers, x, y)
        yield pen + text + "\n"


# --- Pictures ---------------------------------------------------------------------------------------------------

def packbits(row):
    """TIFF PackBits by runs of equal bytes; what does not repeat is copied."""
    out, at, literal = bytearray(), 0, 0
    end = len(row)

    def copy(start, stop):
        for i in range(start, stop, 128):
            piece = row[i:min(i + 128, stop)]
            out.append(len(piece) - 1)
            out.extend(piece)

    while at < end:
        byte = row[at:at + 1]
        run = 1
        if row[at:at + 3] == byte * 3:
            while run < 128 and row[at + run:at + run + 1] == byte:
                run += 1
            copy(literal, at)
            out.extend((257 - run, byte[0]))
            literal = at + run
        at += run
    copy(literal, end)
    return bytes(out)


def sheet(bits, resolution):
    """(dots a row, rows, what enters raster mode): an A0 sheet at `resolution` dots per inch."""
    width, height = int(INCHES_X * resolution) // 8 * 8, int(INCHES_Y * resolution)
    setup = b"\x1b*v6W" + bytes((0, 3, 24, 8, 8, 8)) if bits == 24 else b""
    enter = b"PU0,0;\x1b%%1A\x1b*t%dR\x1b*r%ds%dT" % (resolution, width, height)
    return width, height, enter + setup + b"\x1b*r1A"


def mono_rows(numbers, row_bytes, height):
    rows = 0
    while rows < height:
        row = bytearray(row_bytes)
        for _ in range(numbers.below(60)):  # walls and letters
            at = numbers.below(row_bytes)
            row[at] = 1 << numbers.below(8)
        if numbers.below(6) == 0:  # half tones
            at, length = numbers.below(row_bytes), row_bytes // 8
            row[at:at + length] = (b"\x11\x44" * length)[:max(0, min(length, row_bytes - at))]
        if numbers.below(15) == 0:
            row[:] = b"\xff" * row_bytes
        data = packbits(bytes(row))
        for _ in range(min(1 + numbers.below(12), height - rows)):
            rows += 1
            yield b"\x1b*b%dW" % len(data) + data


def colour_rows(numbers, row_bytes, height):
    texture = bytearray()
    for x in range(2 * row_bytes // 3):
        for phase in (0.0, 2.1, 4.2):
            shade = 128 + 90 * math.sin(x / 400 + phase) + 24 * math.sin(x / 37) + 8 * numbers.next()
            texture.append(int(shade))
    texture = bytes(texture)
    for y in range(height):
        start = 3 * int((row_bytes / 3 - 1) * (0.5 + 0.5 * math.sin(y / 700)))
        yield b"\x1b*b%dW" % row_bytes + texture[start:start + row_bytes]


def write_picture(out, kind, megabytes, seed):
    bits = {"mono": 1, "colour": 24}[kind]
    resolution = max(1, int(math.sqrt(megabytes * 8e6 / bits / (INCHES_X * INCHES_Y))))
    width, height, enter = sheet(bits, resolution)
    out.write(b"\x1b%0BIN;SP1;PU0,0;PD100,0;PU0,0;" + enter)
    out.write(b"\x1b*b2M" if bits == 1 else b"\x1b*b0M")
    rows = mono_rows if bits == 1 else colour_rows
    for row in rows(Numbers(seed), width * bits // 8, height):
        out.write(row)
    out.write(b"\x1b*rC\x1b%0BPG;")


# --- Files ------------------------------------------------------------------------------------------------------

PAGES = 20  # of a mixed plot
TEXTS = {"vectors": vectors, "vertices": vertices, "encoded": encoded, "labels": labels, "arcs": arcs, "fine": fine}
PICTURES = ("mono", "colour")
MIXED = ("vectors", "vertices", "encoded", "labels", "arcs", *PICTURES)
KINDS = (*TEXTS, *PICTURES, "mixed")


def write_text(out, kind, megabytes, seed):
    left = megabytes * 1e6
    block = ["IN;SP1;PU0,0;PD%d,0,%d,%d;PU;\n" % (SHEET_X, SHEET_X, SHEET_Y)]
    for element in TEXTS[kind](Numbers(seed)):
        block.append(element)
        left -= len(element)
        if len(block) >= BLOCK or left <= 0:
            out.write("".join(block).encode("ascii"))
            block = []
        if left <= 0:
            break
    out.write(b"SP0;PG;\n")


def write(out, kind, megabytes, seed):
    if kind == "mixed":
        for page in range(PAGES):
            write(out, MIXED[page % len(MIXED)], megabytes / PAGES, "page %d" % page)
    elif kind in TEXTS:
        write_text(out, kind, megabytes, seed)
    else:
        write_picture(out, kind, megabytes, seed)


def main(arguments):
    kinds = arguments[2:] or KINDS
    if len(arguments) < 2 or not all(kind in KINDS for kind in kinds):
        sys.exit(__doc__)
    folder, megabytes = pathlib.Path(arguments[0]), float(arguments[1])
    folder.mkdir(parents=True, exist_ok=True)
    for kind in kinds:
        path = folder / ("%s-%s.plt" % (kind, arguments[1]))
        with open(path, "wb") as out:
            write(out, kind, megabytes, kind)


if __name__ == "__main__":
    main(sys.argv[1:])
