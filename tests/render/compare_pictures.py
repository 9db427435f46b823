#!/usr/bin/env python3
"""Compares the pictures that the formats show: a plot's first page as PNG, and as PDF and SVG drawn by other programs.

usage: compare_pictures.py QMPLOT PLOT...

PDF is drawn by pdftoppm and mutool, SVG by mutool; what is not installed is left out with a word, and when nothing can be compared
the exit status is 77. Two pictures agree when their mean difference is small and when no shift by up to two dots across or down brings
their edges nearer together.
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import zlib

DPI = 60
MOST_MEAN = 13.0  # of 255; the others draw hairlines lighter or darker, which counts most where there are many


def run(*command):
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL)


def darkness(rows):
    """Rows of 0 to 255 from rows of dots, each a list of samples."""
    return [[255 - sum(dot) // len(dot) for dot in row] for row in rows]


def read_png(path):
    """Rows of dots of a PNG as our writer makes them: any palette or eight bits, filters 0 and 1."""
    data, at, chunks = path.read_bytes(), 8, {}
    while at < len(data):
        length, name = int.from_bytes(data[at:at + 4], "big"), data[at + 4:at + 8]
        chunks[name] = chunks.get(name, b"") + data[at + 8:at + 8 + length]
        at += 12 + length
    head = chunks[b"IHDR"]
    width, height, bits, kind = int.from_bytes(head[:4], "big"), int.from_bytes(head[4:8], "big"), head[8], head[9]
    samples, palette = {0: 1, 2: 3, 3: 1}[kind], chunks.get(b"PLTE")
    stride, raw, rows = (width * samples * bits + 7) // 8 + 1, zlib.decompress(chunks[b"IDAT"]), []
    for y in range(height):
        row = bytearray(raw[y * stride + 1:(y + 1) * stride])
        for i in range(samples, len(row) if raw[y * stride] else 0):
            row[i] = (row[i] + row[i - samples]) & 255
        if bits < 8:
            row = [row[x * bits // 8] >> (8 - bits - x * bits % 8) & (1 << bits) - 1 for x in range(width)]
        if palette:
            rows.append([palette[3 * i:3 * i + 3] for i in row])
        else:
            rows.append([row[i:i + samples] for i in range(0, samples * width, samples)])
    return darkness(rows)


def read_ppm(path):
    data = path.read_bytes()
    _, size, _, dots = data.split(b"\n", 3)
    width, height = map(int, size.split())
    return darkness([[dots[i:i + 3] for i in range(y * width * 3, (y + 1) * width * 3, 3)] for y in range(height)])


def difference(ours, theirs, right, down):
    """Mean over the dots that both have, `theirs` shifted."""
    height, width = min(len(ours), len(theirs)), min(len(ours[0]), len(theirs[0]))
    total = 0
    for y in range(2, height - 2):
        shifted = theirs[y - down][2 - right:width - 2 - right]
        total += sum(map(abs, map(int.__sub__, ours[y][2:width - 2], shifted)))
    return total / ((width - 4) * (height - 4))


def disagreement(ours, theirs):
    """What is wrong, or nothing."""
    if abs(len(ours) - len(theirs)) > 1 or abs(len(ours[0]) - len(theirs[0])) > 1:
        return "%d x %d dots, not %d x %d" % (len(theirs[0]), len(theirs), len(ours[0]), len(ours))
    mean = difference(ours, theirs, 0, 0)
    if mean > MOST_MEAN:
        return "mean difference %.2f" % mean
    for right, down in ((-1, 0), (1, 0), (0, -1), (0, 1), (-2, 0), (2, 0), (0, -2), (0, 2)):
        if difference(ours, theirs, right, down) < mean:
            return "edges lie %d dots to the left and %d above" % (right, down)
    return None


def draw(command, qmplot, plot, folder, ending):
    page, picture = folder / ("page." + ending), folder / (ending + ".ppm")
    run(qmplot, "convert", "--page", "1", plot, page)
    run(*[{"PAGE": page, "PICTURE": picture, "STEM": picture.with_suffix("")}.get(word, word) for word in command])
    return read_ppm(picture)


PROGRAMS = {
    "pdftoppm": (("pdf",), ("pdftoppm", "-r", DPI, "-singlefile", "PAGE", "STEM")),
    "mutool": (("pdf", "svg"), ("mutool", "draw", "-q", "-r", DPI, "-o", "PICTURE", "PAGE")),
}


def main():
    qmplot, plots = sys.argv[1], sys.argv[2:]
    programs = {name: program for name, program in PROGRAMS.items() if shutil.which(name)}
    for name in PROGRAMS.keys() - programs.keys():
        print("SKIPPED, not installed: " + name)
    if not programs:
        return 77
    failures = 0
    for plot in plots:
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch)
            run(qmplot, "convert", "--dpi", DPI, "--page", "1", plot, folder / "page.png")
            ours = read_png(folder / "page.png")
            for name, (endings, command) in programs.items():
                for ending in endings:
                    theirs = draw(command, qmplot, plot, folder, ending)
                    wrong = disagreement(ours, theirs)
                    mean = difference(ours, theirs, 0, 0)
                    print("%s, %s by %s: mean %.2f %s" % (plot, ending, name, mean, wrong or ""), flush=True)
                    failures += wrong is not None
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
