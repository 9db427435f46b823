#!/usr/bin/env python3
"""Searches for plots of at most 64 KB that cost more CPU or memory than they should.

usage: search_cost.py QMPLOT SECONDS FOLDER [SEED]

A plot is a list of settings and of pieces that are repeated; it is changed at random, and changes that raise the cost of the worst of
`info` and `convert` to svg, pdf and png at 100 dpi are kept (hill climbing with restarts). What costs more than a second of CPU or
200 MB is left in FOLDER; docs/limits.md tells what bounds a plot.
"""
import os
import pathlib
import random
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import make_hostile as hostile  # noqa: E402

MOST_SECONDS = 1.0
MOST_MEGABYTES = 200.0


def number(r):
    return r.choice([0, 1, 2, 3, 9, 40, 99, 255, 300, 1000, 4000, 9999, 20000, 32767, 40000, r.randrange(60000), -r.randrange(9999)])


def path(r):
    n = r.choice([3, 10, 100, 1000, 6000])
    reach = r.choice([30, 400, 4000, 20000])
    return hostile.ruff(n, reach) if r.random() < 0.3 else hostile.tangle(n, reach, r.randrange(99))


def setting(r):
    n = lambda: number(r)
    return r.choice([
        lambda: b"FT%d,%d,%d;" % (r.choice([1, 3, 3, 4, 10, 11, 21]), abs(n()) % 300 + 1, n() % 180),
        lambda: b"PW%d;" % (abs(n()) % 2000), lambda: b"LA1,%d,2,%d;" % (r.randrange(1, 5), r.randrange(1, 7)),
        lambda: b"UL1,%d,%d;LT1;" % (abs(n()) % 200, abs(n()) % 200 + 1), lambda: b"LT%d,%d,1;" % (r.randrange(-8, 9), abs(n()) % 50 + 1),
        lambda: b"IW%d,%d,%d,%d;" % (abs(n()), abs(n()), abs(n()), abs(n())), lambda: b"SM%c;" % r.choice(b"@*8&"),
        lambda: b"MC1,%d;" % r.choice([0, 51, 85, 102, 136, 160, 168, 204, 238, 252]), lambda: b"TR%d;" % r.randrange(2),
        lambda: b"PC1,%d,%d,%d;" % (r.randrange(256), r.randrange(256), r.randrange(256)), lambda: b"SP%d;" % r.randrange(1, 60),
        lambda: b"SI%d,%d;" % (abs(n()) % 60, abs(n()) % 60), lambda: b"IP0,0,%d,%d;SC0,%d,0,%d;" % (abs(n()) + 1, abs(n()) + 1, abs(n()) + 1, abs(n()) + 1),
        lambda: b"RF1,%d,%d," % (r.randrange(1, 256), r.randrange(1, 256)) + b"1,0," * r.choice([1, 32, 3000]) + b";",
        lambda: b"RO%d;" % r.choice([0, 90, 180, 270]), lambda: b"PU%d,%d;PD;" % (n(), n()), lambda: b"PR;", lambda: b"PA;",
        lambda: b"PU%d,%d;PM0;" % (n(), n()) + path(r) + b"PM2;", lambda: hostile.SQUARE,
    ])()


def piece(r):
    n = lambda: number(r)
    return r.choice([
        lambda: b"FP", lambda: b"EP", lambda: b"FPEP", lambda: b"PD%d,%d;" % (n(), n()), lambda: b"PD%d,%dPU%d,%d;" % (n(), n(), n(), n()),
        lambda: b"CI%d;" % n(), lambda: b"WG%d,%d,%d;" % (n(), n() % 360, n() % 360), lambda: b"RA%d,%d;" % (n(), n()), lambda: b"EA%d,%d;" % (n(), n()),
        lambda: b"AA%d,%d,%d;" % (n(), n(), n()), lambda: b"BZ%d,%d,%d,%d,%d,%d;" % (n(), n(), n(), n(), n(), n()),
        lambda: b"LB" + bytes(r.randrange(33, 127) for _ in range(r.choice([1, 5, 80]))) + b"\x03", lambda: b"PG;", lambda: b"PDPG", lambda: path(r)[:400] + b";",
        lambda: hostile.raster(abs(n()) + 1, r.choice([1, 8, 24]), r.choice([2, 20, 100, 600])) + b"\x1b*b%dY" % (abs(n()) % 32767)
        + b"\x1b*b%dm" % r.choice([0, 1, 2, 3, 5]) + hostile.transfer(b"W"[0], bytes(r.randrange(256) for _ in range(r.choice([1, 9, 60]))))
        + b"\x1b*b0W" * r.choice([0, 5, 100]) + b"\x1b*rC\x1b%0B",
        lambda: setting(r),
    ])()


def invent(r):
    return {"head": [setting(r) for _ in range(r.randrange(5))], "loop": [piece(r) for _ in range(r.randrange(1, 4))]}


def vary(r, plot):
    plot = {part: list(items) for part, items in plot.items()}
    part = r.choice(["head", "loop"])
    make = setting if part == "head" else piece
    items = plot[part]
    if items and r.random() < 0.5:
        items[r.randrange(len(items))] = make(r)
    elif items and len(items) > 1 and r.random() < 0.3:
        items.pop(r.randrange(len(items)))
    else:
        items.insert(r.randrange(len(items) + 1), make(r))
    if not plot["loop"]:
        plot["loop"] = [piece(r)]
    return plot


def text(plot):
    head = (hostile.HEAD + b"".join(plot["head"]))[:hostile.SIZE - 100]
    return hostile.fill(head, b"".join(plot["loop"])[:60000])[:hostile.SIZE]


def price(qmplot, data, folder):
    file = os.path.join(folder, "plot.plt")
    pathlib.Path(file).write_bytes(data)
    worst = (0.0, "", 0.0, 0.0)
    for kind, command in hostile.commands(qmplot, file, folder):
        seconds, megabytes, status, said = hostile.cost(command)
        if status not in (0, 256, 512):  # 256 and 512: refused with a message
            worst = max(worst, (99.0, kind + " ended with status %d" % status, seconds, megabytes))
        worst = max(worst, (max(seconds / MOST_SECONDS, megabytes / MOST_MEGABYTES), kind, seconds, megabytes))
    return worst


def main(qmplot, seconds, keep, seed):
    r = random.Random(seed)
    keep = pathlib.Path(keep)
    keep.mkdir(parents=True, exist_ok=True)
    end, tried, record = time.time() + seconds, 0, 0.0
    while time.time() < end:
        plot, best, failures = invent(r), (0.0, "", 0.0, 0.0), 0
        while failures < 12 and time.time() < end:
            candidate = vary(r, plot)
            data = text(candidate)
            with tempfile.TemporaryDirectory() as folder:
                found = price(qmplot, data, folder)
            tried += 1
            if found[0] <= best[0] * 1.05:
                failures += 1
                continue
            plot, best, failures = candidate, found, 0
            if best[0] > 1.0:
                name = "cost-%d-%d.plt" % (seed, tried)
                (keep / name).write_bytes(data)
                print("%s: %s, %.2f s, %.0f MB" % (name, best[1], best[2], best[3]), flush=True)
        record = max(record, best[0])
    print("%d plots tried, the worst %.2f times what a plot may cost" % (tried, record))


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    main(sys.argv[1], float(sys.argv[2]), sys.argv[3], int(sys.argv[4]) if len(sys.argv) > 4 else 1)
