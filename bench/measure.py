#!/usr/bin/env python3
"""Measures qmplot on generated plots and prints a table (Markdown).

usage: measure.py QMPLOT FOLDER [--mb N,N...] [--plots KIND,...] [--to CONVERSION,...]

  FOLDER         the plots; made by make_plots.py where they are missing
  --mb           sizes in megabytes, 10 if not given
  --plots        kinds of make_plots.py, all if not given
  --to           of info, svg, pdf, png (72 dpi), png300 (300 dpi), hard (72 dpi without smooth edges), plt, rtl (150 dpi);
                 info, svg, pdf, png, plt if not given

Every conversion is one process, run twice; the faster run counts. Speed is megabytes of the plot file a second of CPU (user and
system); peak memory is the process's largest resident set; growth is what CPU and bytes are a megabyte of the plot, against the
first size of --mb. A conversion of more than 300 seconds is ended and shows as "-".
"""
import argparse
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

import make_plots

LIMIT = 300  # seconds of CPU
RUNS = 2
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
ROW = "| %-14s | %-6s | %8s | %8s | %8s | %12s | %10s |"


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


def measure(qmplot, plot, conversion):
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        command = [qmplot, "info", str(plot)]
        if conversion != "info":
            ending, options = CONVERSIONS[conversion]
            command = [qmplot, "convert", *options, str(plot), str(folder / ("out." + ending))]
        results = []
        for _ in range(RUNS):
            result = run(command, folder)
            if result is None:
                return None
            results.append(result)
        return min(results)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("qmplot")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--mb", default="10")
    parser.add_argument("--plots", default=",".join([*make_plots.TEXTS, *make_plots.PICTURES]))
    parser.add_argument("--to", default=USUAL)
    options = parser.parse_args()
    print(ROW % ("plot, MB", "to", "MB/s", "CPU s", "peak MB", "bytes", "growth"))
    print("|---|---|--:|--:|--:|--:|--:|")
    first = {}  # (CPU, bytes) a megabyte, by kind and conversion
    for size in options.mb.split(","):
        for kind in options.plots.split(","):
            plot = options.folder / ("%s-%s.plt" % (kind, size))
            if not plot.exists():
                make_plots.main([str(options.folder), size, kind])
            megabytes = plot.stat().st_size / 1e6
            for conversion in options.to.split(","):
                result = measure(options.qmplot, plot, conversion)
                shown = ("-",) * 5
                if result:
                    cpu, peak, written = result
                    each = (cpu / megabytes, written / megabytes)
                    start = first.setdefault((kind, conversion), each)
                    growth = "%.2f, %.2f" % (each[0] / start[0], each[1] / start[1] if start[1] else 0)
                    shown = ("%.1f" % (megabytes / cpu), "%.2f" % cpu, "%.1f" % (peak / 1e6), written or "", growth)
                print(ROW % ("%s %s" % (kind, size), conversion, *shown), flush=True)


if __name__ == "__main__":
    sys.exit(main())
