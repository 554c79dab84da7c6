#!/usr/bin/env python3
"""Makes docs/screenshots: flies the demonstration in a real window on a display of its own and takes a picture of each page before
OUT, in cruise and at the gate; then the flight log with its dialogs and reports, and the settings and all other dialogs, light and
dark, at 100 and 200 %. make_screenshots.py [PROGRAM_DIRECTORY], after ./run has built the programs.

Needs the packages xvfb, xdotool, imagemagick and chromium. The airline's server and the weather source are this script's own, on loopback.
"""

import http.server
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

import log_pictures
import settings_pictures
from virtual_display import PICTURES, ROOT, Display

SPEED = 10
# After OFF the demonstration is level for the first time, before its step climb.
CRUISE_AFTER_S = 11 * 60 / SPEED
FLIGHT_AT_MOST_S = 60 * 60 / SPEED

REPORTS = {
    "KJFK": "KJFK 231351Z 31008KT 10SM FEW250 12/M02 A3012 RMK AO2 SLP198 T01221022",
    "KBOS": "KBOS 231554Z 34012KT 10SM FEW045 SCT250 09/M04 A3008 RMK AO2 SLP186 T00891039",
}
ANSWER = ("<html><body><h3>Thank you, captain.</h3><p>Flight report received and filed under <b>NV-1024</b>.</p>"
          "<p>Landing rated: smooth.</p></body></html>")


class Server(http.server.BaseHTTPRequestHandler):
    """The weather source and the airline's scripts."""

    def do_GET(self):
        code = self.path[-4:].upper()
        self.answer(REPORTS.get(code, ""), "text/plain")

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        self.answer(ANSWER if self.path == "/pirep" else "OK", "text/html")

    def answer(self, text, kind):
        body = text.encode("ascii")
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def prepare_home(stage, home, port):
    """A pilot with an airline, fields of both kinds and a weather source."""
    shutil.copytree(stage / "bin", home / "bin")
    airline = home / "VA_TERN AIR"
    airline.mkdir()
    (airline / "server.cfg").write_text(f"127.0.0.1:{port}\n/pirep\n/acars\n", encoding="ascii")
    (airline / "pirep.cfg").write_text("".join(f"Value {i}^value{i}\n" for i in range(1, 42)), encoding="ascii")
    (airline / "vafields.cfg").write_text("Stand^^stand\nService^Scheduled|Charter|Ferry^service\nCabin crew^^crew\n"
                                          "Delay code^None|Weather|Traffic|Technical^delay\n", encoding="ascii")
    (home / "bin" / "url.cfg").write_text(f"[NOAA]\nURL=127.0.0.1:{port}\nMETAR=/metar?ids=\nTAF=/taf?ids=\n",
                                          encoding="ascii")
    (home / "bin" / "optfields.cfg").write_text("Gate^\nWeather^Calm|Gusty|Rough\nCatering^\n", encoding="ascii")

    def cli(*arguments):
        subprocess.run([stage / "norvane-cli", "--home", home, *arguments], check=True)

    cli("airline", "use", "TERN AIR")
    for name, value in (("WX_URL", "NOAA"), ("OPT_PIREP", "True"), ("OPT_PIREP_SEND", "True"), ("PilotID", "TRN042"),
                        ("PilotName", "Ada Winter"), ("Airline_IATA", "TR"), ("Airline_ICAO", "TRN")):
        cli("settings", "set", name, value)


def wait_for(what, condition, at_most_s):
    end = time.monotonic() + at_most_s
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"make_screenshots: {what} did not come within {at_most_s:.0f} s")
        time.sleep(0.2)


def in_the_air(home):
    """The flight is stored from take-off on."""
    try:
        with sqlite3.connect(f"file:{home / 'settings.sqlite'}?mode=ro", uri=True) as store:
            return store.execute("SELECT count(*) FROM settings WHERE section = 'ACARS'").fetchone()[0] > 0
    except sqlite3.Error:
        return False


def logged(home):
    return any(b"|" in file.read_bytes() for file in (home / "logs").glob("*.txt"))


def take_all_pages(display, window, moment):
    """Each page of the ACARS panel, then the messages, and back to the first page."""
    for page in ("figures", "airline", "optional", "airline-fields"):
        display.take(window, f"{moment}-{page}")
        display.key("alt+Right")
    display.key("alt+2")
    display.take(window, f"{moment}-messages")
    display.key("alt+1", "alt+Left", "alt+Left", "alt+Left")


def fly(stage, home, display):
    program = subprocess.Popen([stage / "norvane", "--home", home, "--demo", "--time-scale", str(SPEED)],
                               env=display.environment)
    try:
        window = display.open_main_window()
        take_all_pages(display, window, "1-before-out")
        if in_the_air(home):
            sys.exit("make_screenshots: the flight was in the air before its first pictures were taken")
        wait_for("take-off", lambda: in_the_air(home), FLIGHT_AT_MOST_S)
        time.sleep(CRUISE_AFTER_S)
        take_all_pages(display, window, "2-cruise")
        wait_for("the logged flight", lambda: logged(home), FLIGHT_AT_MOST_S)
        response = display.find_window("^Response from Server")
        time.sleep(1)
        display.take(response, "3-gate-response")
        for box in (response, display.find_window("Save Flight Log$")):
            display.xdotool("windowfocus", box)
            display.key("Escape")
        display.xdotool("windowfocus", window)
        take_all_pages(display, window, "3-gate")
        # From the first field back over the page links.
        display.key("alt+Right", "alt+Left", "shift+Tab", "shift+Tab", "space")
        wait_for("the ACARS report", (home / "report.html").exists, 10)
        display.take_page(home / "report.html", "3-gate-acars-report")
    finally:
        program.terminate()
        program.wait()


def main():
    stage = Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else ROOT / "build" / "norvane"
    PICTURES.mkdir(parents=True, exist_ok=True)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Server)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    display = Display()
    try:
        with tempfile.TemporaryDirectory() as directory:
            home = Path(directory)
            prepare_home(stage, home, server.server_port)
            fly(stage, home, display)
        log_pictures.take_all(stage, display)
    finally:
        display.close()
        server.shutdown()
    settings_pictures.take_all(stage)


if __name__ == "__main__":
    main()
