#!/usr/bin/env python3
"""Writes plots of at most 64 KB that ask for as much work or memory as they can, the same bytes on every run; measures what they cost.

usage: make_hostile.py write FOLDER [NAME...]        # all if none is named; FOLDER/NAME.plt
       make_hostile.py measure QMPLOT FILE...        # CPU seconds and peak MB of info and of convert to svg, pdf, png and rtl at 100 dpi

docs/limits.md tells what bounds each of them.
"""
import os
import pathlib
import random
import resource
import subprocess
import sys
import tempfile
import zipfile

SIZE = 1 << 16
SECONDS = int(os.environ.get("HOSTILE_SECONDS", "60"))  # of CPU; a command that takes more is given up
KINDS = ("info", "svg", "pdf", "png", "rtl")
HEAD = b"IN;SP1;PA;PU0,0;PD10,10;PU0,0;"
SQUARE = b"PU0,0;PM0;PD40000,0,40000,40000,0,40000;PM2;"
DASHES = b"UL1,1,1;LT1;"


def fill(start, piece, size=SIZE):
    """`start` and as many of `piece` (bytes, or a function of a counter) as fit."""
    parts, length, i = [start], len(start), 0
    while True:
        part = piece(i) if callable(piece) else piece
        if length + len(part) > size:
            return b"".join(parts)
        parts.append(part)
        length += len(part)
        i += 1


def encoded(value):
    """A number of an encoded polyline, base 64."""
    value = -2 * value + 1 if value < 0 else 2 * value
    out = b""
    while value >= 64:
        out += bytes([63 + value % 64])
        value //= 64
    return out + bytes([191 + value])


def tangle(vertices, reach, seed=1):
    """An encoded polyline to and fro over a square of side `reach`."""
    below = random.Random(seed).randrange
    out, x, y = b"PU0,0;PD;PE", 0, 0
    for _ in range(vertices):
        nx, ny = below(reach), below(reach)
        out += encoded(nx - x) + encoded(ny - y)
        x, y = nx, ny
    return out + encoded(-x) + encoded(-y) + b";"


def ruff(vertices, reach):
    """An encoded polyline of which every line crosses all others of the other direction."""
    out = b"PE"
    for i in range(vertices):
        out += encoded(reach if i % 2 == 0 else -reach) + encoded(1)
    return out + encoded(0) + encoded(-vertices) + b";"


def polygon(path):
    return b"PU0,0;PM0;PD;" + path + b"PM2;"


def transfer(letter, data):
    return b"\x1b*b%d%c" % (len(data), letter) + data


def raster(width, bits=1, resolution=100):
    planes = b"\x1b*v6W\0\3%c\x08\x08\x08" % {1: 1, 8: 8, 24: 8}[bits]
    return b"\x1b%%0A\x1b*t%dR\x1b*r%dS" % (resolution, width) + planes + b"\x1b*r1A"


def pages(piece):
    return fill(HEAD, piece)


HOSTILE = {
    "hatch-repeated": lambda: fill(HEAD + SQUARE + b"FT3,1,45;", b"FP"),
    "hatch-crossed": lambda: fill(HEAD + SQUARE + b"FT4,1,30;", b"FP"),
    "hatch-sliver": lambda: fill(HEAD + b"PU0,0;PM0;PD2147480000,0,2147480000,3,0,3;PM2;FT3,1,90;", b"FP"),
    "hatch-comb": lambda: fill(HEAD + polygon(ruff(6000, 40000)) + b"FT3,9,90;", b"FP"),
    "hatch-dashed": lambda: fill(HEAD + SQUARE + DASHES + b"FT3,10,0;", b"FP"),
    "dashes-long-lines": lambda: fill(HEAD + DASHES, lambda i: b"PU0,%d;PD40000,%d;" % (i * 10 % 40000, i * 10 % 40000 + 7)),
    "dashes-seven-lines": lambda: fill(HEAD + b"UL1,1,1,1,1,1,1,1,1,1,1;LT1;", lambda i: b"PU0,%d;PD2000000,%d;" % (i, i), 400),
    "dashes-far": lambda: fill(HEAD + DASHES, lambda i: b"PU%d,-2000000000;PD%d,2000000000;" % (i, i * 7)),
    "dashed-arcs": lambda: fill(HEAD + DASHES, b"CI20000;CI19999;"),
    "dashes-butt-wide": lambda: fill(HEAD + b"LA1,1,2,5;UL1,4,4;LT1;PW3;", lambda i: b"PU0,%d;PD40000,%d;" % (i * 10 % 40000, i * 9 % 40000)),
    "edge-repeated": lambda: fill(HEAD + polygon(b"PE" + (encoded(1) + encoded(3)) * 14000 + b";"), b"EP"),
    "fill-repeated": lambda: fill(HEAD + polygon(b"PE" + (encoded(1) + encoded(3)) * 14000 + b";"), b"FP"),
    "fill-page": lambda: fill(HEAD + SQUARE, b"FP"),
    "fill-many-contours": lambda: fill(HEAD + b"PU0,0;PM0;" + b"PD9,9,9,0,0,0;PM1;" * 1500 + b"PM2;", b"FP"),
    "fill-shade-colours": lambda: fill(HEAD + SQUARE, b"FT10,0;FP"),
    "rectangles": lambda: fill(HEAD, lambda i: b"RA%d,40000;" % (39999 - i % 9)),
    "rectangles-mode": lambda: fill(HEAD + b"MC1,160;PC1,200,99,7;SP1;", lambda i: b"RA%d,40000;" % (39999 - i % 9)),
    "circles-wide": lambda: fill(HEAD + b"PW300;PU20000,20000;", lambda i: b"CI%d;" % (9000 + i % 900)),
    "lines-wide": lambda: fill(HEAD + b"PW900;", b"PD40000,40000,0,0;"),
    "lines-wide-butt": lambda: fill(HEAD + b"LA1,1,2,5;PW900;", lambda i: b"PD40000,%d,0,0;" % (40000 - i % 99)),
    "lines-long": lambda: fill(HEAD + b"PD;", lambda i: tangle(400, 40000, i)),
    "tangle-filled": lambda: HEAD + polygon(tangle(10000, 40000)) + b"FP;",
    "tangle-filled-repeated": lambda: fill(HEAD + polygon(tangle(8000, 40000)), b"FP"),
    "tangle-hatched": lambda: fill(HEAD + polygon(tangle(8000, 40000)) + b"FT3,10,45;", b"FP"),
    "clip-tangle": lambda: fill(HEAD + b"IW100,100,30000,30000;" + polygon(tangle(8000, 40000)), b"FP"),
    "clip-comb": lambda: fill(HEAD + b"IW100,100,30000,30000;" + polygon(ruff(9000, 40000)), b"FP"),
    "clip-small": lambda: fill(HEAD + b"IW100,100,30000,30000;" + polygon(tangle(360, 40000)), b"FP"),
    "clip-wedges": lambda: fill(HEAD + b"IW0,0,900,900;", b"WG999,0,360;"),
    "pattern-page": lambda: fill(HEAD + b"RF1,8,8," + b"1,0,0,0," * 16 + b";FT11,1;" + SQUARE, b"FP"),
    "pattern-far": lambda: HEAD + b"RF1,8,8," + b"1,0,0,0," * 16 + b";FT11,1;PU0,0;PM0;PD2000000,0,2000000,500000,0,500000;PM2;FP;",
    "pattern-colours": lambda: fill(HEAD + b"RF1,200,200," + b"1,0," * 12000 + b";FT11,1;PU0,0;PM0;PD400,0,400,400,0,400;PM2;",
                                    lambda i: b"PC1,%d,%d,%d;FP" % (i % 251, i % 241, i % 239)),
    "pattern-definitions": lambda: fill(HEAD, lambda i: b"RF%d,255,255,1;" % (i % 9)),
    "pattern-large": lambda: fill(HEAD, b"RF1,32767,16383,1;"),
    "pattern-used": lambda: fill(HEAD + b"PU0,0;PM0;PD9000,0,9000,9000,0,9000;PM2;FT11,1;", b"RF1,255,255,1;FP"),
    "circles-segmented": lambda: fill(HEAD + b"IP0,0,1000,2000;SC0,1000,0,1000;PU400,400;", b"CI9;"),
    "wedges": lambda: fill(HEAD, b"WG9,0,360;"),
    "wedges-page": lambda: fill(HEAD, b"WG30000,0,360;"),
    "symbols": lambda: fill(HEAD + b"SM@;PD;", lambda i: b"PE" + (encoded(9) + encoded(5) + encoded(-9) + encoded(-5)) * 450 + b";"),
    "labels": lambda: fill(HEAD, b"LB&\x03"),
    "labels-long": lambda: fill(HEAD, b"LB" + b"&@8%" * 60 + b"\x03"),
    "labels-large": lambda: fill(HEAD + b"SI40,40;", b"LB&@\x03PA0,0;"),
    "pens": lambda: fill(HEAD, lambda i: b"SP%d;PD%d,9;" % (i % 250 + 1, i)),
    "pens-sixty": lambda: fill(HEAD, lambda i: b"SP%d;" % (i % 60 + 1) + b"PD9,9;PE" + (encoded(9) + encoded(5)) * 90 + b";"),
    "pages": lambda: pages(b"PDPG"),
    "pages-large": lambda: pages(b"PU0,0PDPU39999,39999PDPG"),
    "pages-texts": lambda: pages(b"LBa\x03PG"),
    "pages-filled": lambda: (HEAD + SQUARE) + fill(b"PU0,0PDPU20000,20000PD" + b"FP" * 1600, b"PGPU0,0PDPU20000,20000PD" + b"FP" * 1600, SIZE - 200),
    "hatch-tiny": lambda: fill(HEAD + b"PU0,0;PM0;PD99,0,99,99,0,99;PM2;FT3,1,45;PU40000,40000;PD;", b"FP"),
    "circles-outlined": lambda: fill(HEAD + b"LA1,1,2,5;PW2;PU20000,20000;", lambda i: b"CI%d;" % (9000 + i % 900)),
    "lines-short-outlined": lambda: fill(HEAD + b"PU40000,40000;PD;LA1,1,2,5;PW9;", lambda i: b"PU%d,%d;PD;" % (i * 37 % 9999, i * 91 % 40000)),
    "triangles-mode": lambda: fill(HEAD + b"MC1,168;PC1,200,99,7;SP1;PU0,0;PM0;PD40000,0,20000,40000;PM2;", b"FP"),
    "circles-thick": lambda: fill(HEAD + b"PW30;", lambda i: b"PU%d,%d;CI%d;" % (i * 37 % 40000, i * 91 % 40000, 20000 + i % 99)),
    "dashed-thick": lambda: fill(HEAD + b"UL1,1,1;LT1,.2;PW1;", lambda i: b"PU0,%d;PD40000,%d;" % (i * 10 % 40000, i * 10 % 40000 + 7)),
    "polygon-bands": lambda: fill(HEAD + b"PU0,0;PM0;PD" + b"9,40000,18,0," * 700 + b"0,0;PM2;", b"FP"),
    "labels-outlined": lambda: fill(HEAD + b"LA1,1,2,5;PW2;SI1,1;MC1,168;", b"LB&@8%\x03PA0,0;"),
    "page-gibi": lambda: HEAD + b"PU0,0;PD332000,332000;PD0,332000,332000,0;",
    "page-gibi-lines": lambda: fill(HEAD, lambda i: b"PU0,%d;PD330000,%d;" % (i * 70, i * 70 + 999)),
    "frames": lambda: fill(HEAD, b"FR2000000;PD9,9PU"),
    "pictures-white": lambda: fill(HEAD, lambda i: raster(900, 24) + b"\x1b*b1200Y\x1b*b1W\0\x1b*rC\x1b%0B"),
    "pictures-white-twenty": lambda: fill(HEAD, lambda i: raster(9000, 24) + b"\x1b*b9000Y\x1b*b1W\0\x1b*rC\x1b%0B", 1400),
    "pictures-tiny-enlarged": lambda: fill(HEAD, raster(8, 24, 2) + b"\x1b*t28000h28000V\x1b*b1W\x55\x1b*rC\x1b%0B"),
    "picture-enlarged": lambda: HEAD + raster(800, 1, 2) + b"".join(transfer(b"W"[0], bytes([i % 256]) * 100) for i in range(400)) + b"\x1b*rC\x1b%0B",
    "picture-rows": lambda: HEAD + raster(8000, 1) + b"\x1b*b3m3W\xe0\x41\xff" + b"\x1b*b65535Y\x1b*b1W\1" * 40 + b"\x1b*rC\x1b%0B",
    "picture-copies": lambda: HEAD + raster(30000, 24) + b"\x1b*b0m1W\x41\x1b*b3m0W" + b"\x1b*b0W" * 10000 + b"\x1b*rC\x1b%0B",
    "picture-blocks": lambda: HEAD + raster(1000, 1) + b"\x1b*b5m6W\4\xff\xff\4\xff\xff" * 4000 + b"\x1b*rC\x1b%0B",
    "picture-copied-block": lambda: HEAD + raster(4000, 1) + b"\x1b*b0m500W" + b"\xaa" * 500 + b"\x1b*b5m3W\5\xff\xff" * 90 + b"\x1b*rC\x1b%0B",
    "picture-wide": lambda: HEAD + raster(2000000000, 1) + b"\x1b*b1W\x01" * 20 + b"\x1b*rC\x1b%0B",
    "polygon-resent-white": lambda: fill(HEAD + polygon(tangle(3000, 20000)) + b"FT10,0;", b"FP"),
    "curves": lambda: fill(HEAD + b"PD;", b"BR9,9,9,0,0,9;"),
    "user-lines": lambda: fill(HEAD + b"UL1" + b",1" * 19 + b";", b"LT1;PD;LT;"),
    "window-lines": lambda: fill(HEAD + b"IW0,0,900,900;PD;", lambda i: tangle(400, 40000, i)),
}


def archive(path, plot):
    """A zip of at most 64 KB around as much of `plot` as deflate can hold."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as target:
        target.writestr(zipfile.ZipInfo("plan.prn"), plot, zipfile.ZIP_DEFLATED)
        filling = bytes(random.Random(1).randrange(256) for _ in range(SIZE - 1000 - path.stat().st_size))
        target.writestr(zipfile.ZipInfo("filling"), filling, zipfile.ZIP_STORED)


ARCHIVES = {
    "archive-patterns": lambda: HEAD + b"RF1,255,255;" * 800000,
    "archive-labels": lambda: HEAD + b"LB&@&@&@&@\x03" * 900000,
    "archive-lines": lambda: HEAD + b"PD1,1,2,2,3,3,4,4;" * 550000,
    "archive-blank": lambda: HEAD + b" " * 10000000,
}


def write(folder, names):
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for name, make in HOSTILE.items():
        if names and name not in names:
            continue
        data = make()
        assert len(data) <= SIZE, (name, len(data))
        (folder / (name + ".plt")).write_bytes(data)
    for name, make in ARCHIVES.items():
        if names and name not in names:
            continue
        archive(folder / (name + ".zip"), make())


def cost(command):
    """CPU seconds, peak megabytes, status (9: given up) and messages of a command."""
    limits = lambda: (resource.setrlimit(resource.RLIMIT_CPU, (SECONDS, SECONDS)),
                      resource.setrlimit(resource.RLIMIT_AS, (6 << 30, 6 << 30)))
    with tempfile.TemporaryFile() as said:
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=said, preexec_fn=limits)
        _, status, usage = os.wait4(process.pid, 0)
        said.seek(0)
        text = said.read().decode(errors="replace")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, status, text


def commands(qmplot, path, folder):
    yield "info", [qmplot, "info", path]
    for kind in KINDS[1:]:
        resolution = ["--dpi", "100"] if kind in ("png", "rtl") else []
        yield kind, [qmplot, "convert", *resolution, path, os.path.join(folder, "out." + kind)]


def measure(qmplot, paths):
    print("%-26s %s" % ("", "   ".join("%15s" % kind for kind in KINDS)))
    worst = []
    for path in paths:
        cells = []
        for kind in range(len(KINDS)):
            with tempfile.TemporaryDirectory() as folder:
                name, command = list(commands(qmplot, path, folder))[kind]
                seconds, megabytes, status, text = cost(command)
                mark = "" if status == 0 else "!" if "qmplot" in text else "X"
                cells.append("%6.2f s %4.0f M%1s" % (seconds, megabytes, mark))
                worst.append((seconds, megabytes, os.path.basename(path), name))
        print("%-26s %s" % (os.path.basename(path), "   ".join(cells)), flush=True)
    print("most CPU:    %.2f s, %s in %s" % (max(worst)[0], max(worst)[2], max(worst)[3]))
    most = max(worst, key=lambda entry: entry[1])
    print("most memory: %.0f MB, %s in %s" % (most[1], most[2], most[3]))


if __name__ == "__main__":
    if len(sys.argv) > 2 and sys.argv[1] == "write":
        write(sys.argv[2], sys.argv[3:])
    elif len(sys.argv) > 3 and sys.argv[1] == "measure":
        measure(sys.argv[2], sys.argv[3:])
    else:
        sys.exit(__doc__)
