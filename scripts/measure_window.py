#!/usr/bin/env python3
"""Measures what the window costs: measure_window.py [BUILD_DIR], after ./run has built the release preset.

Prints the memory of the idle window beside that of an empty main window of the toolkit, and the processor time that a tracked
flight takes at the pilot's own pace. Needs no display.
"""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ENVIRONMENT = os.environ | {"QT_QPA_PLATFORM": "offscreen"}
SETTLED_S = 4
TRACKED_S = 30


def memory_mib(process):
    """The memory the process has in use (RSS), in MiB; its share (PSS) depends on who else runs."""
    for line in Path(f"/proc/{process.pid}/smaps_rollup").read_text(encoding="ascii").splitlines():
        if line.startswith("Rss:"):
            return int(line.split()[1]) / 1024
    raise RuntimeError("the kernel does not tell the memory of a process")


def cpu_s(process):
    fields = Path(f"/proc/{process.pid}/stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Running:
    """A program for the length of a block."""

    def __init__(self, *command):
        self.process = subprocess.Popen(command, env=ENVIRONMENT)

    def __enter__(self):
        time.sleep(SETTLED_S)
        if self.process.poll() is not None:
            raise RuntimeError(f"{self.process.args[0]} ended with status {self.process.returncode}")
        return self.process

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()


def main():
    build = Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else ROOT / "build" / "release"
    stage = ROOT / "build" / "norvane" if len(sys.argv) < 2 else build / "norvane"
    with tempfile.TemporaryDirectory() as home:
        with Running(build / "empty-window") as empty:
            empty_mib = memory_mib(empty)
        with Running(stage / "norvane", "--home", home) as idle:
            idle_mib = memory_mib(idle)
        with Running(stage / "norvane", "--home", home, "--demo", "--time-scale", "1") as tracking:
            before_s = cpu_s(tracking)
            time.sleep(TRACKED_S)
            tracking_percent = 100 * (cpu_s(tracking) - before_s) / TRACKED_S
    print(f"empty window     {empty_mib:7.1f} MiB")
    print(f"idle window      {idle_mib:7.1f} MiB, {idle_mib / empty_mib:.2f} times the empty one")
    print(f"tracked flight   {tracking_percent:7.2f} % of one core")


if __name__ == "__main__":
    main()
