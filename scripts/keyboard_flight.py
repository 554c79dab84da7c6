#!/usr/bin/python3
"""Flies a flight in the window by keyboard alone: starts it, pauses and resumes, sends a comment, logs it, edits a cell of the log
and saves, changes a setting, sends a PIREP; then reads the files that this left. keyboard_flight.py PROGRAM_DIRECTORY

Needs the packages of check_accessibility.py: the keyboard focus is read from the accessibility bus. The airline's server is this
script's own, on loopback.
"""

import http.server
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import urllib.parse
from pathlib import Path

from check_accessibility import IN_SESSION, application
from virtual_display import Display

SPEED = 10
FLIGHT_AT_MOST_S = 150


class Airline(http.server.BaseHTTPRequestHandler):
    """Keeps the forms that were posted."""

    posted = []

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"])).decode("ascii")
        self.posted.append((self.path, urllib.parse.parse_qs(body, keep_blank_values=True, encoding="cp1252")))
        answer = b"<p>Received.</p>"
        self.send_response(200)
        self.send_header("Content-Length", str(len(answer)))
        self.end_headers()
        self.wfile.write(answer)

    def log_message(self, *_):
        pass


class Keyboard:
    """The keys, and where the keyboard's focus is."""

    def __init__(self, display, window):
        self.display = display
        self.window = window

    def key(self, *keys):
        self.display.key(*keys)

    def type(self, text):
        self.display.xdotool("type", "--delay", "20", text)
        time.sleep(0.3)

    def focus_name(self):
        import pyatspi

        def find(node):
            states = node.getState()
            # The current tab says that it has the focus as long as its page has it.
            focused = states.contains(pyatspi.STATE_FOCUSED) and states.contains(pyatspi.STATE_SHOWING)
            if focused and node.getRoleName() != "page tab":
                # A list or table has the focus together with its row.
                return node
            for child in node:
                if child is not None and child.getState().contains(pyatspi.STATE_SHOWING) and (found := find(child)) is not None:
                    return found
            return None

        for window in application("norvane"):
            if window.getState().contains(pyatspi.STATE_ACTIVE) and (found := find(window)) is not None:
                return found.name
        return ""

    def tab_to(self, name, backwards=False):
        """Presses Tab until the control of that name has the focus."""
        seen = []
        for _ in range(80):
            if (seen and seen[-1] == name) or self.focus_name() == name:
                return
            self.key("shift+Tab" if backwards else "Tab")
            seen.append(self.focus_name())
        raise SystemExit(f"keyboard_flight: no Tab leads to {name!r}; on the way: {seen}")

    def answer(self):
        """Enter in the message box that stands over the window; a display without a window manager has to be told who is on top."""
        for _ in range(50):
            boxes = [window for window in self.display.xdotool("search", "--onlyvisible", "--name", "^Norvane") if window != self.window]
            if boxes:
                break
            time.sleep(0.1)
        else:
            raise SystemExit("keyboard_flight: no message box came")
        self.display.xdotool("windowfocus", boxes[-1])
        self.key("Return")
        self.display.xdotool("windowfocus", self.window)
        time.sleep(0.3)

    def press(self, name, backwards=False):
        self.tab_to(name, backwards)
        self.key("space")


def wait_for(what, condition, at_most=30.0):
    end = time.monotonic() + at_most
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"keyboard_flight: {what} did not happen within {at_most} s")
        time.sleep(0.3)
    print(f"seen: {what}", flush=True)


class Pilot:
    """One home with an airline, and the programs on it."""

    def __init__(self, stage, directory, port):
        self.stage = stage
        self.home = Path(directory) / "home"
        self.address = f"unix:{directory}/sim"
        shutil.copytree(stage / "bin", self.home / "bin")
        (self.home / "VA").mkdir()
        airline = self.home / "VA_KEYS"
        airline.mkdir()
        (airline / "server.cfg").write_text(f"127.0.0.1:{port}\r\n/pirep\r\n/acars\r\n", encoding="ascii")
        (airline / "pirep.cfg").write_text("".join(f"Value {i}^v{i}\r\n" for i in range(42)), encoding="ascii")
        for name, value in (("Virtual_Airline", "KEYS"), ("OPT_PIREP", "True")):
            self.cli("settings", "set", name, value)

    def cli(self, *words):
        command = [str(self.stage / "norvane-cli"), "--home", str(self.home), *words]
        return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60).stdout

    def log(self):
        return (self.home / "logs" / "My Flight Log.txt").read_text(encoding="cp1252")


def status(words):
    """Whether a status bar's panel or a label shows a text that begins with `words`."""
    import pyatspi

    def shows(node):
        if not node.getState().contains(pyatspi.STATE_SHOWING):
            return False
        texts = [node.name, node.description]
        try:
            texts.append(node.queryText().getText(0, -1))
        except NotImplementedError:
            pass
        return any(text and words in text for text in texts) or any(child is not None and shows(child) for child in node)

    return any(shows(window) for window in application("norvane"))


def fly(keyboard, pilot):
    keyboard.press("On")
    wait_for("ACARS is on", lambda: status("ACARS: ON"))
    time.sleep(4)
    keyboard.press("Pause")
    wait_for("ACARS is paused", lambda: status("ACARS: PAUSED"))
    keyboard.press("Resume")
    wait_for("ACARS is on again", lambda: status("ACARS: ON"))

    keyboard.key("alt+2")
    keyboard.tab_to("Comment or airport")
    keyboard.type("Smooth air")
    keyboard.press("Enter Comment")
    wait_for("the comment at the airline", lambda: any("Smooth air" in str(form) for _, form in Airline.posted))

    keyboard.key("alt+1")
    wait_for("the gate", lambda: status("ACARS: OFF"), FLIGHT_AT_MOST_S)
    keyboard.press("Log Flight")
    keyboard.answer()
    wait_for("the row in the log", lambda: pilot.log().count("|") >= 52)


def edit_log(keyboard, pilot):
    keyboard.key("alt+3")
    time.sleep(0.5)
    keyboard.tab_to("Flight log")
    # The row that was logged is the current one; its aircraft type, two columns on.
    keyboard.key("Home", "Right", "Right")
    keyboard.key("F2", "ctrl+a")
    keyboard.type("ZZ99")
    keyboard.key("Return")
    keyboard.press("Save", backwards=True)
    keyboard.answer()
    wait_for("the edited cell in the file", lambda: "ZZ99" in pilot.log())


def change_setting(keyboard, pilot):
    keyboard.key("alt+5")
    time.sleep(0.5)
    keyboard.key("ctrl+Tab")
    keyboard.press("Auto Log Flight")
    keyboard.press("Save")
    keyboard.answer()
    wait_for("the setting in the store", lambda: "OPT_AutoLog=True" in pilot.cli("settings", "list"))


def send_pirep(keyboard, pilot):
    report = next((pilot.home / "reports").glob("*.txt"))
    keyboard.key("alt+f", "s")
    keyboard.display.focus("^Send PIREP$")
    keyboard.press("Select PIREP")
    keyboard.display.focus("^Select PIREP$")
    keyboard.type(str(report))
    keyboard.key("Return")
    time.sleep(0.5)
    keyboard.display.focus("^Send PIREP$")
    keyboard.press("Send PIREP")
    values = report.read_text(encoding="cp1252").split("|")
    wait_for("the PIREP at the airline",
             lambda: any(path == "/pirep" and form["v0"] == [values[0]] for path, form in Airline.posted))
    keyboard.display.dismiss("^Response from Server$")
    keyboard.display.focus("^Send PIREP$")
    keyboard.press("Close")
    keyboard.display.xdotool("windowfocus", keyboard.window)


def run(stage):
    airline = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Airline)
    threading.Thread(target=airline.serve_forever, daemon=True).start()
    with tempfile.TemporaryDirectory() as directory:
        pilot = Pilot(stage, directory, airline.server_port)
        display = Display()
        environment = display.environment | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        scenario = str(stage / "scenarios" / "piston-circuit.json")
        simulator = subprocess.Popen([str(stage / "norvane-sim"), "fly", "--scenario", scenario, "--speed", str(SPEED), "--listen",
                                      pilot.address], stdout=subprocess.DEVNULL)
        program = subprocess.Popen([str(stage / "norvane"), "--home", str(pilot.home), "--sim", pilot.address], env=environment)
        try:
            keyboard = Keyboard(display, display.open_main_window())
            fly(keyboard, pilot)
            edit_log(keyboard, pilot)
            change_setting(keyboard, pilot)
            send_pirep(keyboard, pilot)
            keyboard.key("alt+f", "x")
            program.wait(timeout=20)
            print("seen: the program ended")
        finally:
            if program.poll() is None:
                shot = Path(tempfile.gettempdir()) / "keyboard_flight.png"
                subprocess.run(["import", "-window", "root", str(shot)], env=display.environment, check=False)
                print(f"keyboard_flight: the window as it stood: {shot}", file=sys.stderr)
            for process in (program, simulator):
                process.terminate()
                process.wait()
            display.close()


def main():
    if IN_SESSION not in os.environ:
        command = ["dbus-run-session", "--", "/usr/bin/python3", "-B", *sys.argv]
        return os.execvpe(command[0], command, os.environ | {IN_SESSION: "1"})
    return run(Path(sys.argv[1]).resolve())


if __name__ == "__main__":
    main()
