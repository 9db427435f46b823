#!/usr/bin/env python3
"""Writes the plots of this folder, byte for byte the same on every run: python3 examples/make_examples.py

Lengths are millimetres, turned into plotter units (40 a millimetre) when they are written. docs/examples.md shows
the plots as qmplot draws them; scripts/pictures makes those pictures.
"""
import math
import pathlib

FOLDER = pathlib.Path(__file__).parent
ETX = "\x03"
PJL = "\x1b%-12345X@PJL JOB NAME=\"{}\"\r\n@PJL SET RESOLUTION=600\r\n@PJL ENTER LANGUAGE=HPGL2\r\n"


def units(value):
    return round(value * 40)


def pairs(points):
    return ",".join(f"{units(x)},{units(y)}" for x, y in points)


def ring(cx, cy, radius, count, start=0.0):
    return [(cx + radius * math.cos(start + 2 * math.pi * i / count),
             cy + radius * math.sin(start + 2 * math.pi * i / count)) for i in range(count)]


class Plot:
    """Collects commands; each method writes one kind of them."""

    def __init__(self, job, width, height):
        self.text = PJL.format(job) + f"\x1b%0BBP;IN;PS{units(width)},{units(height)};"

    def add(self, commands):
        self.text += commands
        return self

    def pens(self, table):
        for number, (width, red, green, blue) in table.items():
            self.add(f"PW{width},{number};PC{number},{red},{green},{blue};")
        return self.add("\n")

    def pen(self, number, line_type=""):
        return self.add(f"SP{number};LT{line_type};")

    def line(self, *points):
        return self.add(f"PU{pairs(points[:1])};PD{pairs(points[1:])};PU;")

    def box(self, x, y, width, height):
        return self.add(f"PU{pairs([(x, y)])};EA{pairs([(x + width, y + height)])};")

    def bar(self, x, y, width, height):
        return self.add(f"PU{pairs([(x, y)])};RA{pairs([(x + width, y + height)])};")

    def circle(self, x, y, radius):
        return self.add(f"PU{pairs([(x, y)])};CI{units(radius)};")

    def arc(self, cx, cy, x, y, sweep):
        return self.add(f"PU{pairs([(x, y)])};PD;AA{pairs([(cx, cy)])},{sweep};PU;")

    def area(self, *outlines, fill="FT1;", edge=True):
        """Areas filled together: an outline inside another one is a hole."""
        for i, outline in enumerate(outlines):
            self.add(f"PU{pairs(outline[:1])};" + ("PM0;" if i == 0 else "")
                     + f"PD{pairs(outline[1:])},{pairs(outline[:1])};"
                     + ("PM2;" if i == len(outlines) - 1 else "PM1;"))
        return self.add(fill + "FP;" + ("EP;" if edge else ""))

    def label(self, x, y, text, size=3.0, origin=1, direction=(1, 0)):
        width = size * 0.06
        return self.add(f"DI{direction[0]},{direction[1]};SI{width:.3f},{size / 10:.3f};LO{origin};"
                        f"PU{pairs([(x, y)])};LB{text}{ETX}\n")

    def page(self):
        return self.add("PG;\n")

    def save(self, name):
        (FOLDER / name).write_bytes((self.text + "PU;SP0;\n\x1b%-12345X").encode("latin-1"))


def title_block(plot, width, title, number):
    plot.pen(1).box(width - 110, 10, 100, 24).line((width - 110, 22), (width - 10, 22))
    plot.line((width - 40, 10), (width - 40, 22))
    plot.label(width - 107, 26, title, 4.5).label(width - 107, 14, "scale 1:100", 3).label(width - 37, 14, number, 3)


def floor_plan():
    plot = Plot("floor plan", 420, 297)
    plot.pens({1: (0.5, 0, 0, 0), 2: (0.25, 0, 70, 170), 3: (0.18, 120, 120, 120), 4: (0.18, 200, 30, 30),
               5: (0.25, 20, 110, 50), 6: (0.13, 90, 60, 30)})
    rooms = {"LIVING ROOM": (75, 65, 130, 90), "KITCHEN": (211, 65, 84, 90), "BEDROOM": (75, 161, 90, 74),
             "BATH": (171, 161, 50, 74), "STUDY": (227, 161, 68, 74)}
    outline = [(70, 60), (300, 60), (300, 240), (70, 240)]
    holes = [[(x, y), (x + w, y), (x + w, y + h), (x, y + h)] for x, y, w, h in rooms.values()]
    plot.pen(6).area(outline, *holes, fill=f"FT3,{units(1.5)},45;", edge=False)
    plot.pen(1).box(70, 60, 230, 180)
    for name, (x, y, w, h) in rooms.items():
        plot.pen(1).box(x, y, w, h)
        plot.pen(5).label(x + w / 2, y + h / 2 - 8, name, 3.6, 5)
        plot.label(x + w / 2, y + h / 2 - 14, f"{w * h / 100:.1f} m2", 2.8, 5)
    for cx, cy, dx, dy, sweep in ((120, 158, 18, 0, 90), (208, 110, 0, 18, 90), (190, 158, 16, 0, 90),
                                  (245, 158, 18, 0, 90), (72.5, 100, 0, 20, -90)):
        plot.pen(2).line((cx, cy), (cx + dx, cy + dy)).arc(cx, cy, cx + dx, cy + dy, sweep)
    for x, y, w, h in ((100, 60, 50, 5), (230, 60, 40, 5), (95, 235, 40, 5), (295, 90, 5, 40), (295, 185, 5, 30)):
        plot.pen(2).box(x, y, w, h)
        along = w > h
        plot.line((x, y + h / 2), (x + w, y + h / 2)) if along else plot.line((x + w / 2, y), (x + w / 2, y + h))
    plot.pen(3).box(90, 123, 60, 25).box(90, 143, 60, 5).box(105, 76, 30, 12).box(78, 172, 28, 50).box(79, 212, 12, 8)
    plot.box(93, 212, 12, 8).box(215, 70, 70, 15).circle(225, 77, 4).circle(238, 77, 4).box(174, 214, 45, 18)
    plot.circle(212, 170, 5).box(240, 212, 45, 20).circle(262, 207, 5)
    plot.pen(4)
    for x0, x1 in ((70, 208), (208, 300)):
        plot.line((x0, 45), (x1, 45))
        plot.label((x0 + x1) / 2, 46.5, f"{(x1 - x0) / 10:.2f}", 3, 4)
        for x in (x0, x1):
            plot.line((x, 42), (x, 55)).line((x - 1.5, 43.5), (x + 1.5, 46.5))
    plot.line((55, 60), (55, 240)).label(53.5, 150, "18.00", 3, 4, (0, 1))
    for y in (60, 240):
        plot.line((52, y), (65, y)).line((53.5, y - 1.5), (56.5, y + 1.5))
    plot.pen(1).box(10, 10, 400, 277)
    title_block(plot, 420, "GROUND FLOOR", "sheet 1")
    north = (370, 230)
    plot.pen(1).circle(*north, 15)
    plot.area([(370, 243), (365, 222), (370, 227)], fill="FT1;")
    plot.label(370, 248, "N", 5, 4)
    plot.save("floor-plan.plt")


def chart():
    plot = Plot("chart", 297, 210)
    plot.pens({1: (0.35, 0, 0, 0), 2: (0.13, 150, 150, 150), 3: (0.25, 90, 150, 220), 4: (0.25, 240, 170, 60),
               5: (0.6, 190, 30, 60)})
    left, bottom, width, height = 40, 40, 230, 130
    months = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
    rain = [71, 54, 62, 41, 55, 73, 80, 77, 60, 52, 66, 83]
    snow = [24, 30, 12, 4, 0, 0, 0, 0, 0, 2, 11, 27]
    warmth = [1, 2, 6, 10, 15, 18, 20, 19, 15, 10, 5, 2]
    plot.pen(1).label(left + width / 2, 190, "Rain, snow and temperature", 6, 4)
    for i in range(0, 101, 20):
        y = bottom + i * height / 100
        plot.pen(2, "2,2").line((left, y), (left + width, y))
        plot.pen(1).label(left - 3, y, str(i), 3, 18).label(left + width + 3, y, str(i // 4), 3, 2)
    step = width / 12
    for i, month in enumerate(months):
        x = left + i * step
        plot.pen(3).bar(x + 3, bottom, 6, rain[i] * height / 100)
        plot.pen(4).bar(x + 9.5, bottom, 6, snow[i] * height / 100)
        plot.pen(1).box(x + 3, bottom, 6, rain[i] * height / 100).label(x + step / 2, bottom - 3, month, 3, 6)
    curve = [(left + (i + 0.5) * step, bottom + t * 4 * height / 100) for i, t in enumerate(warmth)]
    plot.pen(5).line(*curve).add("SI0.18,0.25;SM*;").line(*curve).add("SM;")
    plot.pen(1).box(left, bottom, width, height)
    plot.label(left - 18, bottom + height / 2, "millimetres", 3.5, 4, (0, 1))
    plot.label(left + width + 18, bottom + height / 2, "degrees Celsius", 3.5, 4, (0, -1))
    for i, (pen, name) in enumerate(((3, "rain"), (4, "snow"), (5, "temperature"))):
        x = left + 30 + i * 60
        plot.pen(pen).bar(x, 20, 8, 4)
        plot.pen(1).box(x, 20, 8, 4).label(x + 11, 20.5, name, 3.2)
    plot.save("chart.plt")


def plate_front(plot):
    plot.pen(1).line((60, 60), (220, 60), (220, 120), (180, 160), (60, 160), (60, 60))
    for x, y in ((80, 80), (200, 80), (80, 140)):
        plot.pen(1).circle(x, y, 6)
        plot.pen(2, "5,8").line((x - 10, y), (x + 10, y)).line((x, y - 10), (x, y + 10))
    plot.pen(1).circle(140, 110, 25).circle(140, 110, 18)
    plot.pen(2, "5,8").line((105, 110), (175, 110)).line((140, 75), (140, 145))
    plot.pen(2, "4,6").line((115, 60), (115, 160)).line((165, 60), (165, 160))
    plot.pen(3).line((60, 50), (220, 50)).label(140, 51, "160", 3.5, 4)
    plot.line((230, 60), (230, 120)).label(229, 90, "60", 3.5, 4, (0, 1))
    plot.line((158, 128), (185, 175), (205, 175)).label(187, 176, "R25", 3.5)


def plate_section(plot):
    plot.pen(1)
    for part in ([(60, 90), (115, 90), (115, 110), (60, 110)], [(165, 90), (220, 90), (220, 110), (165, 110)]):
        plot.pen(3).area(part, fill=f"FT3,{units(2.5)},45;", edge=False)
        plot.pen(1).line(*part, part[0])
    plot.line((115, 90), (165, 90)).line((115, 110), (165, 110))
    plot.pen(2, "5,8").line((140, 80), (140, 120))
    plot.pen(3).line((240, 90), (240, 110)).label(239, 100, "20", 3.5, 4, (0, 1))
    plot.pen(1).label(140, 125, "A - A", 5, 4)


def plate_list(plot):
    rows = (("pos", "part", "material", "pieces"), ("1", "base plate", "steel", "1"), ("2", "bush 50/36", "bronze", "1"),
            ("3", "bolt M12 x 40", "steel", "3"), ("4", "washer 13", "steel", "6"))
    for i, row in enumerate(rows):
        y = 160 - i * 12
        plot.pen(1).box(60, y, 180, 12)
        for x, text in zip((63, 85, 150, 205), row):
            plot.label(x, y + 4, text, 4)
    for x in (80, 145, 200):
        plot.line((x, 172), (x, 112))


def sheets():
    plot = Plot("plate", 297, 210)
    plot.pens({1: (0.5, 0, 0, 0), 2: (0.18, 200, 90, 0), 3: (0.18, 0, 90, 180)})
    for i, (draw, title) in enumerate(((plate_front, "FRONT VIEW"), (plate_section, "SECTION"), (plate_list, "PARTS"))):
        if i > 0:
            plot.page()
        plot.pen(1).box(10, 10, 277, 190)
        draw(plot)
        title_block(plot, 297, title, f"sheet {i + 1}")
    plot.save("sheets.plt")


def height_at(x, y):
    """The landscape of the map: three hills and a valley; 0 to about 100 metres."""
    hills = ((60, 120, 95, 38), (190, 80, 75, 45), (150, 160, 55, 30), (120, 95, -45, 26))
    return 12 + x / 40 + sum(h * math.exp(-((x - cx) ** 2 + (y - cy) ** 2) / (2 * r * r)) for cx, cy, h, r in hills)


def contour(level, cell, columns, rows, origin):
    """Marching squares: the lines of one height as chains of points."""
    ahead, grid = {}, [[height_at(c * cell, r * cell) - level for c in range(columns + 1)] for r in range(rows + 1)]

    def crossing(c0, r0, c1, r1):
        a, b = grid[r0][c0], grid[r1][c1]
        t = a / (a - b)
        return (round(origin[0] + (c0 + (c1 - c0) * t) * cell, 4), round(origin[1] + (r0 + (r1 - r0) * t) * cell, 4))

    for r in range(rows):
        for c in range(columns):
            corners = ((c, r), (c + 1, r), (c + 1, r + 1), (c, r + 1))
            starts, ends = [], []
            for (c0, r0), (c1, r1) in zip(corners, corners[1:] + corners[:1]):
                if (grid[r0][c0] > 0) != (grid[r1][c1] > 0):
                    (starts if grid[r0][c0] > 0 else ends).append(crossing(*min((c0, r0), (c1, r1)),
                                                                           *max((c0, r0), (c1, r1))))
            ahead.update(zip(starts, ends))
    chains = []
    heads = [p for p in ahead if p not in set(ahead.values())]
    while ahead:
        point = heads.pop() if heads else next(iter(ahead))
        chain = [point]
        while chain[-1] in ahead:
            chain.append(ahead.pop(chain[-1]))
        chains.append(chain)
    return chains


def encoded(value):
    """One number of an encoded polyline: the sign in the lowest bit, base 64, least significant digit first."""
    value = 2 * abs(value) + (value < 0)
    digits = ""
    while value >= 64:
        digits += chr(63 + value % 64)
        value //= 64
    return digits + chr(191 + value)


def polyline(points):
    """PE commands of at most 200 points each: readers hold a limited number of them."""
    text, plotted = "", [(units(x), units(y)) for x, y in points]
    for first in range(0, len(plotted) - 1, 200):
        run = plotted[first:first + 201]
        text += "PE<=" + encoded(run[0][0]) + encoded(run[0][1])
        for (x0, y0), (x1, y1) in zip(run, run[1:]):
            text += encoded(x1 - x0) + encoded(y1 - y0)
        text += ";"
    return text


def contours():
    plot = Plot("contours", 297, 210)
    plot.pens({1: (0.35, 0, 0, 0), 2: (0.18, 170, 110, 60), 3: (0.4, 130, 70, 20), 4: (0.25, 30, 90, 190)})
    origin = (20, 20)
    for level in range(15, 105, 5):
        plot.pen(3 if level % 25 == 0 else 2)
        for chain in contour(level, 2.5, 102, 66, origin):
            plot.add(polyline(chain))
            if level % 25 == 0 and len(chain) > 40:
                x, y = chain[len(chain) // 2]
                plot.label(x, y, str(level), 3, 5)
    river = [(20 + x, 20 + 78 + 14 * math.sin(x / 23) + x / 9) for x in range(0, 256, 3)]
    plot.pen(4).add(polyline(river)).label(36, 120, "Mill Brook", 3, 1, (1, 0.15))
    plot.pen(1).box(20, 20, 255, 165).label(20, 190, "CONTOURS, 5 m", 5)
    plot.save("contours.plt")


def gear(cx, cy, teeth, radius):
    points = []
    for i in range(teeth):
        for share, reach in ((0.0, 0.9), (0.12, 1.0), (0.38, 1.0), (0.5, 0.9)):
            angle = 2 * math.pi * (i + share) / teeth
            points.append((cx + radius * reach * math.cos(angle), cy + radius * reach * math.sin(angle)))
    return points


def detail():
    """One drawing twice: whole in user units, and enlarged behind a soft-clip window, which cuts lines and areas.

    Circles are drawn as arcs, because a window does not cut CI; the bore is part of the gear's one outline, because it
    does not cut areas of several outlines either.
    """
    plot = Plot("detail", 297, 210)
    plot.pens({1: (0.35, 0, 0, 0), 2: (0.18, 190, 60, 0), 3: (0.13, 205, 222, 240)})
    outline, bore = gear(0, 0, 24, 90), ring(0, 0, 20, 72)
    area = outline + outline[:1] + bore + bore[:1]
    for p1, p2, window in (((20, 60), (130, 170), None), ((-305, -177), (255, 383), (150, 40, 277, 167))):
        if window:
            plot.pen(1).box(window[0], window[1], window[2] - window[0], window[3] - window[1])
            plot.add(f"IW{pairs([window[:2], window[2:]])};")
        plot.add(f"IP{pairs([p1, p2])};SC-100,100,-100,100;")
        first, *rest = (f"{x:.2f},{y:.2f}" for x, y in area)
        plot.pen(3).add(f"PU{first};PM0;PD{','.join(rest)};PM2;FT1;FP;")
        first, *rest = (f"{x:.2f},{y:.2f}" for x, y in outline + outline[:1])
        plot.pen(1).add(f"PU{first};PD{','.join(rest)};PU20,0;AA0,0,360;")
        for radius in (60, 75):
            plot.pen(2, "5,4").add(f"PU{radius},0;AA0,0,360;")
        plot.add("PU-98,0;PD98,0;PU0,-98;PD0,98;PU;IW;SC;")
    plot.pen(1).label(75, 178, "GEAR, 24 TEETH", 4, 4).label(213.5, 172, "DETAIL 5:1", 4, 4)
    plot.save("detail.plt")


if __name__ == "__main__":
    for make in (floor_plan, chart, sheets, contours, detail):
        make()
