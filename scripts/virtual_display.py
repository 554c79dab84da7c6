"""A display of a script's own, the program's window on it, and pictures of both and of pages in a browser."""

import os
import subprocess
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PICTURES = ROOT / "docs" / "screenshots"
SIZE = (1024, 640)
PLACE = (10, 10)


class Display:
    """A display of the script's own, and the one window on it. `scale` magnifies the window, and the display with it."""

    def __init__(self, scale=1):
        self.scale = scale
        screen = f"{1100 * scale}x{720 * scale}x24"
        reading, writing = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", screen, "-nolisten", "tcp"],
                                       pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.environment = os.environ | {"DISPLAY": ":" + number.readline().strip(), "no_proxy": "*",
                                             "QT_SCALE_FACTOR": str(scale)}
        # A report that the program opens is not to start a browser here.
        self.browser = tempfile.TemporaryDirectory()
        opener = Path(self.browser.name) / "xdg-open"
        opener.write_text("#!/bin/sh\n", encoding="ascii")
        opener.chmod(0o755)
        self.environment["PATH"] = f"{self.browser.name}:{self.environment['PATH']}"

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=True, capture_output=True,
                              text=True, timeout=60).stdout.split()

    def find_window(self, title):
        return self.xdotool("search", "--sync", "--onlyvisible", "--name", title)[0]

    def key(self, *keys):
        self.xdotool("key", *keys)
        time.sleep(0.15)

    def take(self, window, name):
        subprocess.run(["import", "-window", window, "-depth", "8", "-strip", str(self.picture(name))], env=self.environment,
                       check=True)

    def close(self):
        self.server.terminate()
        self.server.wait()
        self.browser.cleanup()

    def picture(self, name):
        file = PICTURES / f"{name}.png"
        print(file.relative_to(ROOT), flush=True)
        return file

    def open_main_window(self):
        window = self.find_window("^Norvane$")
        size = [length * self.scale for length in SIZE]
        self.xdotool("windowsize", window, *size, "windowmove", window, *PLACE, "windowfocus", window)
        time.sleep(0.5)
        return window

    def take_place(self, name):
        """The main window with all that stands over it: menus, lists, dialogs."""
        area = f"{SIZE[0] * self.scale}x{SIZE[1] * self.scale}+{PLACE[0]}+{PLACE[1]}"
        subprocess.run(["import", "-window", "root", "-crop", area, "+repage", "-depth", "8", "-strip", str(self.picture(name))],
                       env=self.environment, check=True)

    def dismiss(self, title, key="Escape"):
        """Waits for a dialog and closes it."""
        self.focus(title)
        self.key(key)

    def focus(self, title):
        window = self.find_window(title)
        self.xdotool("windowfocus", window)
        time.sleep(0.5)
        return window

    def take_page(self, page, name):
        """A page as a browser draws it."""
        with tempfile.TemporaryDirectory() as directory:
            subprocess.run(["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
                            f"--user-data-dir={directory}", "--window-size=1000,1000",
                            f"--screenshot={self.picture(name)}", page.as_uri()],
                           env=self.environment, check=True, capture_output=True, timeout=120)
