#!/usr/bin/env python3
"""Writes the raster plots of this folder, the same bytes on every run.

usage: make_raster_examples.py

  spheres.plt   a colour picture: 24 bits a pixel, PackBits rows
  gear.plt      a scanned drawing: one bit a pixel, delta rows, on the plot's own vectors
  terrain.plt   a map in eight colours of its own: three bit planes, PackBits, on a landscape page

Positions and lengths are plotter units, 40 a millimetre; pictures count in dots of their resolution. A job header
that names HP-GL/2 makes pictures of portrait pages stand upright, their top left corner at the pen. On landscape
pages pictures are turned by a quarter: their rows run upward, so the map is sent column by column.
"""
import math
import pathlib

FOLDER = pathlib.Path(__file__).parent
UNITS_PER_INCH = 1016
HEADER = b"\x1b%-12345X@PJL ENTER LANGUAGE=HPGL2\r\n"
FOOTER = b"PG;\x1b%-12345X"
UNENCODED, PACKBITS, DELTA = 0, 2, 3


# --- Row compression --------------------------------------------------------------------------------------------

def packbits(row):
    """TIFF PackBits: runs of three and more, literals between them."""
    out, literal, at = bytearray(), bytearray(), 0

    def flush():
        if literal:
            out.append(len(literal) - 1)
            out.extend(literal)
            literal.clear()

    while at < len(row):
        run = 1
        while run < 128 and at + run < len(row) and row[at + run] == row[at]:
            run += 1
        if run >= 3:
            flush()
            out.extend((257 - run, row[at]))
            at += run
            continue
        literal.append(row[at])
        at += 1
        if len(literal) == 128:
            flush()
    flush()
    return bytes(out)


def delta(row, seed):
    """Replacements of up to eight bytes of the row above."""
    out, kept, at = bytearray(), 0, 0
    while at < len(row):
        if row[at] == seed[at]:
            kept, at = kept + 1, at + 1
            continue
        end = at
        while end < len(row) and end - at < 8 and row[end] != seed[end]:
            end += 1
        out.append((end - at - 1) << 5 | min(kept, 31))
        if kept >= 31:
            rest = kept - 31
            out.extend([255] * (rest // 255) + [rest % 255])
        out.extend(row[at:end])
        kept, at = 0, end
    return bytes(out)


# --- Escapes ----------------------------------------------------------------------------------------------------

def transfer(data, letter=b"W"):
    return b"\x1b*b%d%s%s" % (len(data), letter, data)


def picture(width, height, resolution, method, setup, rows):
    """Raster mode at the pen position, one picture, and back to vectors."""
    return (b"\x1b%%1A\x1b*t%dR\x1b*r%ds%dT" % (resolution, width, height) + setup + b"\x1b*r1A\x1b*b%dM" % method
            + b"".join(rows) + b"\x1b*rC\x1b%0B")


def configure(encoding, bits):
    return b"\x1b*v6W" + bytes((0, encoding, bits, 8, 8, 8))


def frame(x, y, width, height, title, height_cm=0.4):
    return (b"SP1;PU%d,%d;EA%d,%d;SI%g,%g;PU%d,%d;LB%s\x03" %
            (x, y, x + width, y + height, height_cm * 0.7, height_cm, x, y - 400, title.encode("latin-1")))


def page(length, width, commands):
    return HEADER + b"\x1b%%0BBP;IN;PS%d,%d;PC1,0,0,0;PW0.35,1;" % (length, width) + commands + FOOTER


def units(dots, resolution):
    return round(dots * UNITS_PER_INCH / resolution)


# --- The pictures -----------------------------------------------------------------------------------------------

SPHERES = ((-1.1, 0.9, 4.2, 0.9, (214, 64, 48)), (0.9, 0.7, 3.4, 0.7, (52, 120, 206)),
           (0.1, 0.35, 2.4, 0.35, (240, 186, 44)))
LIGHT = (-0.48, 0.72, -0.5)


def hit_sphere(origin, ray):
    """The nearest sphere along a ray, as (distance, sphere)."""
    best = None
    for sphere in SPHERES:
        to = [origin[i] - sphere[i] for i in range(3)]
        b = sum(to[i] * ray[i] for i in range(3))
        c = sum(v * v for v in to) - sphere[3] ** 2
        root = b * b - c
        if root > 0 and -b - math.sqrt(root) > 1e-4 and (best is None or -b - math.sqrt(root) < best[0]):
            best = (-b - math.sqrt(root), sphere)
    return best


def sphere_colour(ray):
    eye = (0.0, 1.2, -1.0)
    hit = hit_sphere(eye, ray)
    if hit:
        point = [eye[i] + hit[0] * ray[i] for i in range(3)]
        normal = [(point[i] - hit[1][i]) / hit[1][3] for i in range(3)]
        shade = max(0.0, sum(normal[i] * LIGHT[i] for i in range(3)))
        glint = 160 * shade ** 40
        return tuple(min(255, round(hit[1][4][i] * (0.25 + 0.75 * shade) + glint)) for i in range(3))
    if ray[1] < -0.02:
        far = -eye[1] / ray[1]
        point = [eye[i] + far * ray[i] for i in range(3)]
        grey = 232 if (math.floor(point[0] * 2) + math.floor(point[2] * 2)) % 2 else 168
        return (grey // 2,) * 3 if hit_sphere(point, LIGHT) else (grey,) * 3
    return (255, 255, 255)


def spheres():
    width, height, resolution = 260, 200, 72
    rows = []
    for y in range(height):
        row = bytearray()
        for x in range(width):
            ray = ((x - width / 2) / 180, (height / 2 - y) / 180 - 0.12, 1.0)
            length = math.sqrt(sum(v * v for v in ray))
            row.extend(sphere_colour([v / length for v in ray]))
        rows.append(transfer(packbits(row)))
    wide, high = units(width, resolution), units(height, resolution)
    return page(wide + 800, wide + 1200,
                b"PU400,%d;" % (high + 800) + picture(width, height, resolution, PACKBITS, configure(3, 8), rows)
                + frame(400, 800, wide, high, "24 bits, PackBits"))


def gear_ink(x, y):
    """Ink of the scanned drawing at a point in pixels from the centre of the gear."""
    radius, angle = math.hypot(x, y), math.atan2(y, x)
    wave = math.cos(angle * 24) * 3
    rim = 330 + 26 * max(-1.0, min(1.0, wave))
    flank = 26 * 72 * math.sin(angle * 24) / 330 if abs(wave) < 1 else 0.0
    hole = min(math.hypot(x - 200 * math.cos(i * math.pi / 3), y - 200 * math.sin(i * math.pi / 3)) for i in range(6))
    outline = abs(radius - rim) < 3 * math.hypot(1, flank) or abs(radius - 90) < 3 or abs(hole - 52) < 3
    hatched = 90 < radius < rim and hole > 52 and (x - y) % 22 < 2
    axis = (abs(x) < 1.5 or abs(y) < 1.5) and radius < 400 and radius % 60 < 44
    speck = (int(x) * 7919 + int(y) * 104729) % 9973 == 0
    return outline or hatched or axis or speck


def gear():
    width, height, resolution = 840, 840, 200
    rows, seed = [], bytes((width + 7) // 8)
    for y in range(height):
        row = bytearray((width + 7) // 8)
        for x in range(width):
            if gear_ink(x - width / 2, y - height / 2):
                row[x // 8] |= 128 >> x % 8
        rows.append(transfer(delta(row, seed)))
        seed = bytes(row)
    wide, high = units(width, resolution), units(height, resolution)
    return page(wide + 800, high + 1600,
                b"PU400,%d;" % (high + 1000) + picture(width, height, resolution, DELTA, configure(0, 1), rows)
                + frame(400, 1000, wide, high, "One bit, delta rows")
                + b"PC2,200,30,30;PW0.5,2;SP2;PU%d,%d;CI%d;" % (400 + wide // 2, 1000 + high // 2, units(200, resolution)))


TERRAIN = ((60, 110, 180), (120, 180, 220), (96, 160, 96), (150, 190, 110), (214, 200, 130), (190, 150, 100),
           (140, 110, 90), (250, 250, 250))


def terrain_level(x, y):
    """One of eight levels of height at a point of the unit square."""
    height = 0.42 * math.sin(3.1 * x + 1.3) * math.cos(4.7 * y - 0.4) + 0.3 * math.sin(9.2 * x - 5.1 * y)
    height += 0.16 * math.cos(17 * x + 11 * y) + 0.5 * math.exp(-9 * ((x - 0.68) ** 2 + (y - 0.55) ** 2))
    return max(0, min(7, int((height + 0.75) * 4.6)))


def terrain():
    width, height, resolution = 480, 330, 100  # as seen; the picture's own rows are the columns
    rows = []
    for x in range(width):
        planes = [bytearray((height + 7) // 8) for _ in range(3)]
        for y in range(height):
            level = terrain_level(x / width, y / width)
            for plane in range(3):
                if level >> plane & 1:
                    planes[plane][y // 8] |= 128 >> y % 8
        rows.extend(transfer(packbits(plane), b"V" if i < 2 else b"W") for i, plane in enumerate(planes))
    palette = b"".join(b"\x1b*v%da%db%dc%dI" % (*colour, index) for index, colour in enumerate(TERRAIN))
    wide, high = units(width, resolution), units(height, resolution)
    return page(wide + 800, high + 1400,
                b"PU400,900;" + picture(height, width, resolution, PACKBITS, configure(0, 3) + palette, rows)
                + frame(400, 900, wide, high, "Eight colours, three planes"))


if __name__ == "__main__":
    for make in (spheres, gear, terrain):
        (FOLDER / f"{make.__name__}.plt").write_bytes(make())
