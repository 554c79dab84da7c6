#!/usr/bin/env python3
"""Flies the same flights with two builds and compares every file they leave: compare_builds.py BEFORE AFTER

Both are directories with norvane-cli and norvane-sim. Every scenario and every recording is flown under every set of settings
below, in step mode, so that each build samples the same moments of the same world. Rows, message logs, PIREPs, the report and what
was written to the screen must be the same byte for byte, but for what follows the computer's clock: the time of day in names of
files, and position reports, which are left out.
"""

import concurrent.futures
import difflib
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORLDS = sorted([*ROOT.glob("data/scenarios/*.json"), *ROOT.glob("tests/data/scenarios/*.json"), *ROOT.glob("tests/data/*.rec")])
STEP_MS = 500
TIME_SCALE = 100
FLIGHT_AT_MOST_S = 900
START_AT_MOST_S = 20

COMMON = {"OPT_AutoLog": "True", "OPT_PIREP": "True", "OPT_MessageLog": "True", "PilotName": "A. Pilot", "PilotID": "NVN1",
          "ACARS_Date": "0"}
SETTINGS = {
    "as installed": {},
    "metric and local": {"ACARS_Time": "0", "ACARS_Fuel": "1", "ACARS_Weight": "1", "ACARS_RecordArrival": "1",
                         "ACARS_TakeOff_Alt": "100"},
    "an airline's own": {"ACARS_EOF": "2", "ACARS_Fuel": "2", "ACARS_ATCModel": "True", "ACARS_TouchAndGo": "1", "WX_URL": "NONE",
                         "Airline_IATA": "NV", "Airline_ICAO": "NVN", "Airline_IATAPrefix": "True", "OPT_ACARS_To_FS": "True"},
}
# The computer's clock: in names of files, and where a page says when it was made.
CLOCK = re.compile(r"\d{4}-\d\d-\d\d[_ T-]+\d\d[:_.-]?\d\d([:_.-]?\d\d)?|\d\d?/\d\d?/\d{4} \d\d?:\d\d:\d\d( [AP]M)?|\b\d{8}_?\d{6}\b")


# Position reports come by the computer's timers, at whatever step the world has reached; they count in the numbers of messages.
MESSAGE_BEGIN = re.compile(r"(?m)^(?=\[<clock>Z?\])")
MESSAGE_NUMBER = re.compile(r"(Block ID|Msg No): \w+")


def masked(text, home):
    messages = MESSAGE_BEGIN.split(CLOCK.sub("<clock>", text.replace(str(home), "<home>")))
    kept = "".join(message for message in messages if "\nPOS " not in message)
    return MESSAGE_NUMBER.sub(r"\1: <n>", kept)


def wait_for(socket):
    end = time.monotonic() + START_AT_MOST_S
    while not socket.exists() and time.monotonic() < end:
        time.sleep(0.05)


def fly(build, world, settings):
    """What a flight has left: name -> text."""
    with tempfile.TemporaryDirectory(prefix="norvane-") as directory:
        home = Path(directory) / "home"
        link = f"unix:{directory}/sim"
        cli = [build / "norvane-cli", "--home", home, "--sim", link]
        for name, value in {**COMMON, **settings}.items():
            subprocess.run([*cli, "settings", "set", name, value], check=True, capture_output=True)
        source = ["replay", world] if world.suffix == ".rec" else ["fly", "--scenario", world]
        with subprocess.Popen([build / "norvane-sim", *source, "--step", str(STEP_MS), "--listen", link],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as simulator:
            wait_for(Path(directory) / "sim")
            flown = subprocess.run([*cli, "fly", "--flight-number", "214", "--time-scale", str(TIME_SCALE)], text=True,
                                   encoding="utf-8", errors="replace", capture_output=True, timeout=FLIGHT_AT_MOST_S, check=False)
            simulator.terminate()
        reported = subprocess.run([*cli, "log", "report"], capture_output=True, text=True, check=False)
        left = {"fly": f"status {flown.returncode}\n" + flown.stdout, "log report": f"status {reported.returncode}"}
        for file in sorted(path for part in ("logs", "reports", "messagelogs") for path in (home / part).rglob("*") if path.is_file()):
            left[str(file.relative_to(home))] = file.read_text(encoding="latin-1")
        for page in home.glob("report.html"):
            left[page.name] = page.read_text(encoding="latin-1")
        return {masked(name, home): masked(text, home) for name, text in left.items()}


def compare(before, after, world, name):
    """The differences of one flight, as lines."""
    old, new = fly(before, world, SETTINGS[name]), fly(after, world, SETTINGS[name])
    if "status 0" not in old["fly"]:
        return [f"not flown to its end before:\n{old['fly']}"], len(old)
    lines = []
    for file in sorted({*old, *new}):
        if old.get(file) != new.get(file):
            lines += difflib.unified_diff(old.get(file, "").splitlines(), new.get(file, "").splitlines(), f"before: {file}",
                                          f"after: {file}", lineterm="", n=0)
    return lines, len(old)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    before, after = (Path(argument).resolve() for argument in sys.argv[1:])
    differing = files = 0
    flights = [(world, name) for world in WORLDS for name in SETTINGS]
    with concurrent.futures.ThreadPoolExecutor(max_workers=2) as workers:
        compared = workers.map(lambda flight: compare(before, after, *flight), flights)
        for (world, name), (lines, count) in zip(flights, compared):
            files += count
            differing += bool(lines)
            print(f"{world.relative_to(ROOT)}, {name}: {'DIFFERS' if lines else f'{count} texts are the same'}", flush=True)
            print("\n".join(lines[:40]) + "\n" if lines else "", end="", flush=True)
    print(f"{len(flights)} flights, {files} texts: {differing} flights differ")
    sys.exit(1 if differing else 0)


if __name__ == "__main__":
    main()
