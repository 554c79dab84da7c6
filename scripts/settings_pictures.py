#!/usr/bin/env python3
"""Pictures of the settings and of the dialogs that the menus open, light and dark, at 100 and 200 %: part of make_screenshots.py.
Alone: settings_pictures.py [PROGRAM_DIRECTORY].
"""

import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from virtual_display import ROOT, Display

TABS = ("appearance", "acars", "flight-log", "airline")
# A dark desktop, as the toolkit reads it from the files of one that it knows.
DARK_COLORS = {
    "Window": {"BackgroundNormal": "42,46,50", "ForegroundNormal": "252,252,252"},
    "View": {"BackgroundNormal": "27,30,32", "BackgroundAlternate": "35,38,41", "ForegroundNormal": "252,252,252",
             "ForegroundInactive": "161,169,177"},
    "Button": {"BackgroundNormal": "49,54,59", "ForegroundNormal": "252,252,252"},
    "Selection": {"BackgroundNormal": "61,174,233", "ForegroundNormal": "252,252,252"},
    "Tooltip": {"BackgroundNormal": "49,54,59", "ForegroundNormal": "252,252,252"},
}
LOCATIONS = ("62.123|-7.05|180|NVHP|North Cape Heliport|3/14/2026\r\n"
             "-33.9461|151.1772|21|YSSY|Sydney Kingsford Smith International Airport|11/2/2026\r\n")


def dark_desktop(directory):
    """The environment of a dark desktop."""
    sections = [f"[Colors:{name}]\n" + "".join(f"{key}={value}\n" for key, value in colors.items())
                for name, colors in DARK_COLORS.items()]
    (directory / "kdeglobals").write_text("".join(sections), encoding="ascii")
    return {"XDG_CONFIG_HOME": str(directory), "XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"}


def prepare_home(stage, home):
    """A pilot with an airline of many fields, optional fields, locations and a saved PIREP."""
    shutil.copytree(stage / "bin", home / "bin")
    shutil.copytree(ROOT / "docs" / "VA_SAMPLE", home / "VA_SAMPLE")
    (home / "VA_NORTH").mkdir()
    (home / "bin" / "fs9UD.wld").write_text(LOCATIONS, encoding="cp1252")
    (home / "bin" / "optfields.cfg").write_text("Gate^\r\nCabin crew^Anna|Ben|Clara\r\n\r\n\r\n\r\n", encoding="cp1252")
    reports = home / "reports"
    reports.mkdir()
    values = ["NV42", "Ada Example", "ada@example.net", "3/14/2026", "B738", "N738NV", "KJFK",
              "John F Kennedy International Airport", "1351Z", "1402Z", "12100 lbs", "11800 lbs", "KBOS"]
    (reports / "PIREP.txt").write_text("|".join(values + [str(i) for i in range(40)]) + "\r\n", encoding="cp1252")
    settings = {"Virtual_Airline": "SAMPLE", "PilotName": "Ada Example", "PilotEmail": "ada@example.net", "PilotID": "NV42",
                "Airline_IATA": "NV", "Airline_ICAO": "NVA", "OPT_AutoLog": "True", "OPT_PIREP": "True", "ACARS_TakeOff_Alt": "35",
                "WX_URL": "NOAA"}
    for name, value in settings.items():
        subprocess.run([stage / "norvane-cli", "--home", home, "settings", "set", name, value], check=True, timeout=60)


def take_settings(display, window, suffix):
    display.key("alt+5")
    time.sleep(0.5)
    for tab in TABS:
        display.take(window, f"6-settings-{tab}{suffix}")
        display.key("ctrl+Tab")


def take_dialogs(display, window, home, suffix):
    def open_with(title, *keys):
        display.xdotool("windowfocus", window)
        for key in keys:
            display.key(key)
        dialog = display.focus(title)
        time.sleep(0.3)
        return dialog

    dialog = open_with("^Airport Name/ICAO Lookup$", "F2")
    display.xdotool("type", "--delay", "30", "kennedy")
    time.sleep(0.3)
    display.take(dialog, f"7-dialog-airports{suffix}")
    display.key("Escape")
    dialog = open_with("^FS World Locations$", "F4")
    display.take(dialog, f"7-dialog-locations{suffix}")
    display.key("Escape")
    dialog = open_with("^About Norvane$", "alt+h", "a")
    display.take(dialog, f"7-dialog-about{suffix}")
    display.key("Escape")
    dialog = open_with("^Send PIREP$", "alt+f", "s")
    display.key("space")
    display.focus("^Select PIREP$")
    display.xdotool("type", "--delay", "20", str(home / "reports" / "PIREP.txt"))
    display.key("Return")
    time.sleep(0.5)
    display.take(dialog, f"7-dialog-pirep{suffix}")
    display.xdotool("windowfocus", dialog)
    display.key("Escape")
    # From the list of airlines over the pilot's fields and the code to its lookup.
    display.xdotool("windowfocus", window)
    display.key("alt+5", *["ctrl+Tab"] * 3, *["Tab"] * 5, "space")
    dialog = display.focus("^Airline IATA / ICAO Look UP$")
    display.xdotool("type", "--delay", "30", "luft")
    time.sleep(0.3)
    display.take(dialog, f"7-dialog-airlines{suffix}")
    display.key("Escape")


def take_look(stage, scale, dark):
    """One look of the window: all its settings and dialogs."""
    suffix = ("-dark" if dark else "") + ("-200" if scale == 2 else "")
    with tempfile.TemporaryDirectory() as directory:
        home = Path(directory) / "home"
        prepare_home(stage, home)
        display = Display(scale)
        environment = display.environment | (dark_desktop(Path(directory)) if dark else {})
        address = f"unix:{directory}/sim"
        simulator = subprocess.Popen([stage / "norvane-sim", "fly", "--listen", address], stdout=subprocess.DEVNULL)
        program = subprocess.Popen([stage / "norvane", "--home", home, "--sim", address], env=environment, stderr=subprocess.DEVNULL)
        try:
            window = display.open_main_window()
            take_settings(display, window, suffix)
            take_dialogs(display, window, home, suffix)
        finally:
            for process in (program, simulator):
                process.terminate()
                process.wait()
            display.close()


def take_all(stage):
    for scale in (1, 2):
        for dark in (False, True):
            take_look(stage, scale, dark)


if __name__ == "__main__":
    take_all(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else ROOT / "build" / "norvane")
