#!/usr/bin/env python3
"""Measures qmplot on generated plots and prints a table (Markdown).

usage: measure.py QMPLOT FOLDER [--mb N,N...] [--plots KIND,...] [--to CONVERSION,...] [--runs N] [--against COMMAND]

  FOLDER         the plots; made by make_plots.py where they are missing
  --mb           sizes in megabytes, 10 if not given
  --plots        kinds of make_plots.py, all if not given
  --to           of info, svg, pdf, png (72 dpi), png300 (300 dpi), hard (72 dpi without smooth edges), plt, rtl (150 dpi);
                 info, svg, pdf, png, plt if not given
  --runs         of each conversion, 2 if not given
  --against      another program, {plot} and {out} being the files, as in --against 'old/qmplot convert {plot} {out}.pdf'; it runs
                 in turn with each conversion, and the last column is its CPU to that of the conversion: the middle one of the pairs

Every conversion is one process, run several times; the fastest run counts. Speed is megabytes of the plot file a second of CPU (user and
system); peak memory is the process's largest resident set; growth is what CPU and bytes are a megabyte of the plot, against the
first size of --mb. A conversion of more than 300 seconds is ended and shows as "-".
"""
import argparse
import os
import pathlib
import resource
import shlex
import statistics
import subprocess
import sys
import tempfile

import make_plots

LIMIT = 300  # seconds of CPU
# Name: (ending of the file, options).
CONVERSIONS = {
    "info": ("", []),
    "svg": ("svg", []),
    "pdf": ("pdf", []),
    "png": ("png", ["--dpi", "72"]),
    "plt": ("plt", []),
    "png300": ("png", ["--dpi", "300"]),
    "hard": ("png", ["--dpi", "72", "--no-antialias"]),
    "rtl": ("plt", ["--rtl", "--dpi", "150"]),
}
USUAL = "info,svg,pdf,png,plt"
ROW = "| %-14s | %-6s | %8s | %8s | %8s | %12s | %10s | %7s |"


def run(command, folder):
    """(CPU seconds, peak bytes, bytes written) of a command, or None when it fails or takes too long."""
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                             preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (LIMIT, LIMIT)))
    _, status, usage = os.wait4(child.pid, 0)
    child.returncode = status
    written = sum(path.stat().st_size for path in folder.iterdir())
    for path in folder.iterdir():
        path.unlink()
    return None if status else (usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024, written)


def measure(options, plot, conversion):
    """The best run as (CPU, peak, bytes written) and the other program's CPU to ours, both None after a failure."""
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        command = [options.qmplot, "info", str(plot)]
        if conversion != "info":
            ending, more = CONVERSIONS[conversion]
            command = [options.qmplot, "convert", *more, str(plot), str(folder / ("out." + ending))]
        other = options.against.format(plot=shlex.quote(str(plot)), out=shlex.quote(str(folder / "out")))
        results, ratios = [], []
        for _ in range(options.runs):
            result = run(command, folder)
            if result is None:
                return None, None
            results.append(result)
            against = run(shlex.split(other), folder) if other else None
            if against:
                ratios.append(against[0] / result[0])
        return min(results), statistics.median(ratios) if ratios else None


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("qmplot")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--mb", default="10")
    parser.add_argument("--plots", default=",".join(make_plots.KINDS))
    parser.add_argument("--to", default=USUAL)
    parser.add_argument("--runs", type=int, default=2)
    parser.add_argument("--against", default="")
    options = parser.parse_args()
    print(ROW % ("plot, MB", "to", "MB/s", "CPU s", "peak MB", "bytes", "growth", "against"))
    print("|---|---|--:|--:|--:|--:|--:|--:|")
    first = {}  # (CPU, bytes) a megabyte, by kind and conversion
    for size in options.mb.split(","):
        for kind in options.plots.split(","):
            plot = options.folder / ("%s-%s.plt" % (kind, size))
            if not plot.exists():
                make_plots.main([str(options.folder), size, kind])
            megabytes = plot.stat().st_size / 1e6
            for conversion in options.to.split(","):
                result, ratio = measure(options, plot, conversion)
                shown = ("-",) * 5
                if result:
                    cpu, peak, written = result
                    each = (cpu / megabytes, written / megabytes)
                    start = first.setdefault((kind, conversion), each)
                    growth = "%.2f, %.2f" % (each[0] / start[0], each[1] / start[1] if start[1] else 0)
                    shown = ("%.1f" % (megabytes / cpu), "%.2f" % cpu, "%.1f" % (peak / 1e6), written or "", growth)
                print(ROW % ("%s %s" % (kind, size), conversion, *shown, "%.1f" % ratio if ratio else ""),
                      flush=True)


if __name__ == "__main__":
    sys.exit(main())
