"""Pictures of the flight log: the grid, its menu and dialogs, the statistics, and every report as a browser draws it."""

import random
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

AIRPORTS = [("KJFK", "John F Kennedy International Airport"), ("KBOS", "Logan International Airport"),
            ("KACK", "Nantucket Memorial Airport"), ("EGLL", "London Heathrow Airport"), ("LFPG", "Charles de Gaulle Airport"),
            ("EGPD", "Aberdeen Dyce Airport")]
AIRCRAFT = ["Norvane Twin Jet 150", "Norvane Regional 50", "Norvane Trainer 180"]
COMMENTS = ["", "", "Smooth all the way", "Go-around, second approach fine", "Visual 22L behind traffic"]
FLIGHTS = 40


def hours(value):
    return [f"{value:.1f}", f"{int(value)}:{int(value % 1 * 60):02}"]


def random_flight(pick):
    """The first 38 fields of a flight."""
    (origin, origin_name), (destination, destination_name) = pick.sample(AIRPORTS, 2)
    out = pick.randint(0, 20 * 60)
    block = pick.randint(70, 200)
    clock = [f"{minute // 60:02}{minute % 60:02}Z" for minute in (out, out + 9, out + block - 6, out + block)]
    fuel = pick.randint(6, 9) * 1000
    used = block * 40
    ids = [f"{pick.randint(1, 12)}/{pick.randint(1, 28)}/{pick.randint(2024, 2026)}", pick.choice(AIRCRAFT), "N150NV"]
    return (ids + [origin, origin_name, clock[0], clock[1], f"{fuel + used} lbs", destination, destination_name, clock[2], clock[3],
                   f"{fuel} lbs"] + hours(block / 60) + [f"{used} lbs"] + hours((block - 15) / 60) + [f"{used - 300} lbs"] +
            [pick.choice(COMMENTS), f"TR{pick.randint(100, 999)}", str(pick.randint(20, 150)), "4200 lbs",
             f"FL{pick.randint(20, 38) * 10}", "DCT.MERIT.J42.ORW.DCT", f"{pick.randint(150, 900)} nm", "98000 lbs", "120400 lbs",
             "119800 lbs", "108000 lbs", "107500 lbs", "N1: 92% 92%", "138", "-180", "131",
             f"{origin} 231351Z 31008KT 10SM FEW250 12/M02 A3012", f"{destination} 231554Z 34012KT 10SM FEW045 09/M04 A3008",
             pick.choice(["IFR", "IFR", "VFR"])])


def prepare_home(stage, home):
    shutil.copytree(stage / "bin", home / "bin")
    (home / "bin" / "optfields.cfg").write_text("Gate^\nWeather^Calm|Gusty|Rough\n", encoding="ascii")
    (home / "logs").mkdir()
    pick = random.Random(7)
    lines = ["|".join(random_flight(pick) + [f"B{i % 30}", pick.choice(["Calm", "Gusty"])]) for i in range(FLIGHTS)]
    (home / "logs" / "My Flight Log.txt").write_bytes(("\r\n".join(lines) + "\r\n").encode("cp1252"))
    for other in ("Charter", "Gliding Club"):
        (home / "logs" / f"{other}.txt").write_bytes(b"\r\n")


def take_windows(display):
    window = display.open_main_window()
    display.key("alt+3")
    display.take(window, "4-log-grid")
    display.key("Down", "Down", "Right", "Right", "Right", "shift+F10")
    time.sleep(0.5)
    display.take_place("4-log-pop-up")
    display.key("c")
    display.focus("^Select Flight Log$")
    display.take_place("4-log-chooser")
    display.dismiss("^Select Flight Log$")
    display.xdotool("windowfocus", window)
    display.key("F2", "K", "J")
    time.sleep(0.5)
    display.take_place("4-log-airports")
    display.key("Escape", "Escape")
    # Back over the title's links: statistics, report, print, preview.
    display.key("shift+Tab", "shift+Tab", "shift+Tab", "shift+Tab", "space")
    display.focus("^Create Report$")
    display.take_place("4-log-fields")
    display.key("Tab", "space")
    preview = display.focus("Print Preview")
    time.sleep(2)
    display.take(preview, "4-log-preview")
    display.dismiss("Print Preview")
    display.xdotool("windowfocus", window)
    display.key("F3")
    display.focus("^Manage Flight Logs$")
    display.take_place("4-log-manage")
    display.dismiss("^Manage Flight Logs$")
    display.xdotool("windowfocus", window)
    display.key("alt+l", "c")
    display.focus("^Convert MS Flight Simulator Flight Log$")
    display.take_place("4-log-convert")
    display.dismiss("^Convert MS Flight Simulator Flight Log$")
    display.xdotool("windowfocus", window)
    display.key("alt+4", "space")
    display.take(window, "4-log-statistics")


def take_reports(stage, home, display):
    for name, command in (("logbook", ["log", "report", "--fields", "Date,Aircraft Type,Origin,Destination,Block Time,Comments"]),
                          ("statistics-sheet", ["log", "statistics"]), ("acars-report", ["log", "acars-report", "3"]),
                          ("time-report", ["hours", "--report"])):
        subprocess.run([stage / "norvane-cli", "--home", home, *command], check=True, stdout=subprocess.DEVNULL)
        display.take_page(home / "report.html", f"5-report-{name}")


def take_all(stage, display):
    with tempfile.TemporaryDirectory() as directory:
        home = Path(directory)
        prepare_home(stage, home)
        program = subprocess.Popen([stage / "norvane", "--home", home], env=display.environment)
        try:
            take_windows(display)
        finally:
            program.terminate()
            program.wait()
        take_reports(stage, home, display)
