#!/usr/bin/env python3
"""Writes font-specimen.plt: every glyph of the stroke font, and the font at several sizes, slants,
directions and label origins.

usage: make_font_specimen.py [FILE]        (default: font-specimen.plt beside this script)

All lengths are plotter units, 40 a millimetre; text sizes are centimetres.
"""
import math
import pathlib
import sys

WIDTH, HEIGHT = 16000, 11000
INK, GREY, ACCENT = 1, 2, 3
CELL = 640
TABLE_X, TABLE_TOP = 300, 9900
PANGRAM = "The quick brown fox jumps over the lazy dog"


def size(width, height):
    return b"SI%g,%g;" % (width, height)


def label(x, y, text):
    """Text at a point; strings are Latin-1, 3 ends the text."""
    data = text if isinstance(text, bytes) else text.encode("latin-1")
    return b"PU%d,%d;LB%s\3" % (x, y, data)


def line(x0, y0, x1, y1):
    return b"PU%d,%d;PD%d,%d;PU;" % (x0, y0, x1, y1)


def glyph_table():
    """The codes 32 to 255, sixteen in a row, each above its number."""
    rows = 14
    out = [b"SP%d;" % GREY]
    for i in range(17):
        x, y = TABLE_X + i * CELL, TABLE_TOP - i * CELL
        out.append(line(x, TABLE_TOP, x, TABLE_TOP - rows * CELL))
        if i <= rows:
            out.append(line(TABLE_X, y, TABLE_X + 16 * CELL, y))
    for code in range(32, 256):
        column, row = code % 16, code // 16 - 2
        x, y = TABLE_X + column * CELL, TABLE_TOP - (row + 1) * CELL
        out += [b"SP%d;" % ACCENT, size(0.1, 0.16), label(x + 30, y + 30, str(code))]
        out += [b"SP%d;" % INK, size(0.5, 0.7), label(x + 260, y + 200, bytes([code]))]
    return out


def sizes(x, y):
    out = [b"SP%d;" % INK]
    for height in (0.12, 0.18, 0.25, 0.35, 0.5):
        y -= 130 + height * 500
        width = height * 0.62
        fitting = int((WIDTH - 200 - x) / (width * 400 * 1.4))
        out += [size(width, height), label(x, y, PANGRAM[:fitting])]
    return out


def slants(x, y):
    out = [size(0.2, 0.32)]
    for i, tangent in enumerate((-0.4, 0, 0.2, 0.4)):
        out += [b"SL%g;" % tangent, label(x + i * 1150, y, "Slant%g" % tangent)]
    return out + [b"SL;"]


def directions(x, y):
    """A fan of text, a direction every thirty degrees."""
    out = [b"SP%d;" % INK, size(0.24, 0.36)]
    for degrees in range(0, 360, 30):
        run, rise = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
        text = "%d degrees" % degrees
        out += [b"DI%.4f,%.4f;" % (run, rise), label(x + run * 450, y + rise * 450, text)]
    return out + [b"DI1,0;"]


def origins(x, y):
    """The nine label origins about a cross."""
    out = [size(0.24, 0.36)]
    for number in range(1, 10):
        at_x, at_y = x + (number - 1) // 3 * 1700, y + (number - 1) % 3 * 420
        out += [b"SP%d;LO1;" % ACCENT, line(at_x - 60, at_y, at_x + 60, at_y),
                line(at_x, at_y - 60, at_x, at_y + 60)]
        out += [b"SP%d;LO%d;" % (INK, number), label(at_x, at_y, "LO%d" % number)]
    return out + [b"LO1;"]


def character_sets(x, y):
    """What sets 36 and 39 make of the ASCII codes they re-use."""
    out = [size(0.24, 0.36)]
    for i, (number, text) in enumerate(((0, "\\{|}~"), (36, "\\{|}"), (39, "{}~"))):
        out += [b"SD1,0;SD1,%d;" % number, label(x + i * 3400, y, "Set %d: %s" % (number, text))]
    return out + [b"SD1,0;"]


def specimen():
    out = [b"IN;NP4;PC%d,200,200,200;PC%d,0,90,160;SP%d;" % (GREY, ACCENT, INK)]
    out += [b"PU0,0;PD%d,0,%d,%d,0,%d,0,0;PU;" % (WIDTH, WIDTH, HEIGHT, HEIGHT)]
    out += [size(0.5, 0.7), label(TABLE_X, 10250, "The stroke font")]
    out += glyph_table() + sizes(11000, 10650) + slants(11100, 8250) + directions(13400, 5500)
    out += origins(11500, 1500) + character_sets(TABLE_X, 400)
    return b"\n".join(out) + b"\nSP0;\n"


if __name__ == "__main__":
    default = pathlib.Path(__file__).with_name("font-specimen.plt")
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    target.write_bytes(specimen())
