#!/usr/bin/python3
"""Walks the window as a screen reader does, every panel, page, menu and dialog of it, and reports controls that have no name.
check_accessibility.py PROGRAM_DIRECTORY; --self-test shows that a nameless control is found.

Needs the packages xvfb, xdotool, dbus, at-spi2-core and python3-pyatspi.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from virtual_display import Display

IN_SESSION = "NORVANE_ACCESSIBILITY_SESSION"
# Roles, as AT-SPI names them, of what the pilot reads or works with by its name.
NAMED_ROLES = {"push button", "toggle button", "check box", "radio button", "combo box", "text", "entry", "spin button", "page tab", "menu",
               "menu item", "check menu item", "link", "table", "tree table", "tree", "list", "slider", "dialog", "button"}
# Parts of a control that the toolkit makes; the control itself carries the name.
PARTS_OF = {"combo box", "spin button", "scroll bar"}
PANELS = 5
ACARS_PAGES = 4
SETTINGS_TABS = 4
# How each dialog opens, its title, and how it is left.
DIALOGS = [
    (["F2"], "^Airport Name/ICAO Lookup$", "Escape"),
    (["F3"], "^Manage Flight Logs$", "Escape"),
    (["F4"], "^FS World Locations$", "Escape"),
    (["alt+f", "s"], "^Send PIREP$", "Escape"),
    (["alt+l", "c"], "^Convert", "Escape"),
    (["alt+h", "a"], "^About Norvane$", "Escape"),
]
MENUS = ["alt+f", "alt+l", "alt+h"]


def nameless(node, path=""):
    """The showing controls below `node` that have no name, as paths of roles and names."""
    import pyatspi
    role = node.getRoleName()
    here = f"{path}/{role} '{node.name}'"
    if not node.getState().contains(pyatspi.STATE_SHOWING) and role != "application":
        return []
    found = []
    # Below the windows a frame is a line that is drawn around something.
    is_window = role == "frame" and path.count("/") == 1
    # A list's name is its entry here: what it is a list of stands in its description.
    name = node.description if role == "combo box" else node.name
    if (role in NAMED_ROLES or is_window) and not name.strip():
        found.append(here)
    if role in PARTS_OF:
        return found
    # A table's cells are texts of their own; a big one has thousands.
    if role in ("table", "tree table", "tree"):
        return found
    for child in node:
        if child is not None:
            found += nameless(child, here)
    return found


def count(node):
    import pyatspi
    if node is None or not node.getState().contains(pyatspi.STATE_SHOWING):
        return 0
    return (node.getRoleName() in NAMED_ROLES) + sum(count(child) for child in node)


def application(name):
    """The program's node, which comes a moment after its window."""
    import pyatspi
    for _ in range(100):
        for node in pyatspi.Registry.getDesktop(0):
            if node is not None and node.name == name and node.childCount > 0:
                return node
        time.sleep(0.1)
    raise SystemExit(f"check_accessibility: {name} is not on the accessibility bus")


class Walk:
    """Goes through the window and collects what is nameless."""

    def __init__(self, display, window):
        self.display = display
        self.window = window
        self.faults = []
        self.controls = 0

    def look(self, where):
        node = application("norvane")
        faults = nameless(node)
        controls = sum(count(child) for child in node)
        self.controls += controls
        print(f"{where}: {controls} controls, {len(faults)} without a name", flush=True)
        self.faults += [f"{where}: {fault}" for fault in faults]

    def panels(self):
        for panel in range(1, PANELS + 1):
            self.display.key(f"alt+{panel}")
            time.sleep(0.3)
            self.look(f"panel {panel}")
            if panel == 1:
                for page in range(2, ACARS_PAGES + 1):
                    self.display.key("alt+Right")
                    self.look(f"ACARS page {page}")
            if panel == PANELS:
                for tab in range(2, SETTINGS_TABS + 1):
                    self.display.key("ctrl+Tab")
                    self.look(f"settings tab {tab}")
        self.display.key("alt+1")

    def menus(self):
        for keys in MENUS:
            self.display.key(keys)
            time.sleep(0.3)
            self.look(f"menu {keys}")
            self.display.key("Escape", "Escape")

    def dialogs(self):
        for keys, title, leave in DIALOGS:
            self.display.xdotool("windowfocus", self.window)
            for key in keys:
                self.display.key(key)
            self.display.focus(title)
            self.look(f"dialog {title}")
            self.display.key(leave)
            time.sleep(0.3)


def prepare_home(stage, home):
    """A pilot with two airlines, one with fields of its own, and optional fields."""
    shutil.copytree(stage / "bin", home / "bin")
    (home / "bin" / "optfields.cfg").write_text("Gate^\r\nCrew^A|B\r\n", encoding="ascii")
    airline = home / "VA_SAMPLE"
    airline.mkdir()
    (airline / "server.cfg").write_text("127.0.0.1:9\r\n/pirep\r\n/acars\r\n", encoding="ascii")
    (airline / "pirep.cfg").write_text("".join(f"Value {i}^v{i}\r\n" for i in range(42)), encoding="ascii")
    (airline / "vafields.cfg").write_text("Runway^^runway\r\n", encoding="ascii")
    (home / "VA").mkdir()


def walk(stage):
    with tempfile.TemporaryDirectory() as directory:
        home = Path(directory) / "home"
        prepare_home(stage, home)
        command = [str(stage / "norvane-cli"), "--home", str(home), "airline", "use", "SAMPLE"]
        subprocess.run(command, check=True, timeout=60)
        address = f"unix:{directory}/sim"
        display = Display()
        environment = display.environment | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        simulator = subprocess.Popen([str(stage / "norvane-sim"), "fly", "--listen", address], stdout=subprocess.DEVNULL)
        program = subprocess.Popen([str(stage / "norvane"), "--home", str(home), "--sim", address], env=environment)
        try:
            found = Walk(display, display.open_main_window())
            found.panels()
            found.menus()
            found.dialogs()
            return found
        finally:
            program.terminate()
            program.wait()
            simulator.terminate()
            simulator.wait()
            display.close()


class Fake:
    """A node of a tree that no program has."""

    def __init__(self, role, name, children=()):
        self.role, self.name, self.children, self.description = role, name, children, ""

    def getRoleName(self):
        return self.role

    def getState(self):
        return self

    def contains(self, _state):
        return True

    def __iter__(self):
        return iter(self.children)


def self_test():
    tree = Fake("application", "norvane", [Fake("frame", "Norvane", [Fake("text", " "), Fake("frame", ""), Fake("text", "Origin"),
                                                               Fake("combo box", "lbs")])])
    here = "/application 'norvane'/frame 'Norvane'"
    if nameless(tree) != [f"{here}/text ' '", f"{here}/combo box 'lbs'"]:
        raise SystemExit("check_accessibility: the self-test did not find its nameless control")
    print("check_accessibility: a nameless control is found")


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if IN_SESSION not in os.environ:
        # A session bus of its own, on which the accessibility bus starts by itself. It wants the machine to have a name.
        subprocess.run(["dbus-uuidgen", "--ensure"], check=False)
        command = ["dbus-run-session", "--", "/usr/bin/python3", "-B", *sys.argv]
        return os.execvpe(command[0], command, os.environ | {IN_SESSION: "1"})
    found = walk(Path(sys.argv[1]).resolve())
    for fault in found.faults:
        print(fault, file=sys.stderr)
    if found.controls < 100:
        raise SystemExit(f"check_accessibility: only {found.controls} controls were found: the walk did not see the window")
    if found.faults:
        raise SystemExit(f"check_accessibility: {len(found.faults)} of {found.controls} controls have no name")
    print(f"check_accessibility: all {found.controls} controls have a name")
    return None


if __name__ == "__main__":
    main()
