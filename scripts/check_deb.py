#!/usr/bin/env python3
"""Installs the package in a fresh Debian 12 and uses it there. check_deb.py PACKAGE [DIRECTORY]

Needs root, Debian's mirror, and the packages debootstrap, xvfb and xdotool. DIRECTORY keeps the fresh system for the next time;
without it a temporary one is made and removed. What is seen is printed, a step a line; the first one that fails ends the check.
"""

import contextlib
import os
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from virtual_display import Display

MIRROR = "http://deb.debian.org/debian"
PILOT = "pilot"
PILOTS_FILES = Path(f"home/{PILOT}/.local/share/norvane")
START_AT_MOST_S = 60


def step(text):
    print(f"check_deb: {text}", flush=True)


def require(condition, fault):
    if not condition:
        sys.exit(f"check_deb: FAILED: {fault}")


class Fresh_System:
    """A Debian 12 with nothing but what every one has, and a user."""

    def __init__(self, root):
        self.root = root

    def make(self):
        subprocess.run(["debootstrap", "--variant=minbase", "bookworm", self.root, MIRROR], check=True,
                       stdout=subprocess.DEVNULL)
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        # Nothing is started in there.
        policy = self.root / "usr/sbin/policy-rc.d"
        policy.write_text("#!/bin/sh\nexit 101\n", encoding="ascii")
        policy.chmod(0o755)
        self.run("useradd", "--create-home", "--shell", "/bin/sh", PILOT)

    @contextlib.contextmanager
    def mounted(self):
        mounts = [("proc", "proc"), ("tmpfs", "tmp"), ("tmpfs", "dev/shm")]
        for kind, place in mounts:
            (self.root / place).mkdir(exist_ok=True)
            subprocess.run(["mount", "-t", kind, kind, self.root / place], check=True)
        try:
            yield
        finally:
            for _, place in reversed(mounts):
                subprocess.run(["umount", "--lazy", self.root / place], check=True)

    def command(self, *command, user=None, **environment):
        """`command` in there, with a new environment."""
        home = f"/home/{user}" if user else "/root"
        values = {"HOME": home, "PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive",
                  **environment}
        identity = [f"--userspec={user}:{user}"] if user else []
        return ["chroot", *identity, self.root, "env", "-i", *(f"{name}={value}" for name, value in values.items()), *command]

    def run(self, *command, **options):
        result = subprocess.run(self.command(*command, **options), capture_output=True, text=True, check=False, timeout=900)
        require(result.returncode == 0, f"{' '.join(command)}: {result.returncode}\n{result.stdout}{result.stderr}")
        return result.stdout


def menu_command(system):
    """What the desktop starts: "Exec" of the menu entry without its field codes."""
    entry = (system.root / "usr/share/applications/norvane.desktop").read_text("utf-8")
    found = re.search(r"^Exec=(.*)$", entry, re.MULTILINE)
    require(found, "the menu entry starts nothing")
    return shlex.split(re.sub(r"%[a-zA-Z]", "", found.group(1)))


def check_window(system, arguments):
    """The menu entry shows the window, and a signal closes it."""
    display = Display()
    program = None
    try:
        program = subprocess.Popen(
            system.command(*menu_command(system), *arguments, user=PILOT, DISPLAY=display.environment["DISPLAY"]))
        window = display.find_window("^Norvane$")
        step(f"the menu entry's command showed the window {window}: {display.xdotool('getwindowgeometry', window)}")
        time.sleep(3)
        require(program.poll() is None, "the program ended by itself")
        program.send_signal(signal.SIGTERM)
        require(program.wait(timeout=START_AT_MOST_S) == 0, "the program did not end well")
    finally:
        if program and program.poll() is None:
            program.kill()
        display.close()


def check_flight(system):
    print(system.run("norvane-cli", "fly", "--demo", "--time-scale", "300", user=PILOT)[-400:])
    log = system.root / PILOTS_FILES / "demo/logs/My Flight Log.txt"
    require("KJFK" in log.read_text("cp1252"), "the demonstration's flight is not in its log")
    step("a demonstration flight is in the log")


def make_newer(package, newer):
    """The same package with a higher version and newer files."""
    with tempfile.TemporaryDirectory() as name:
        content = Path(name) / "content"
        subprocess.run(["dpkg-deb", "--raw-extract", package, content], check=True)
        control = content / "DEBIAN/control"
        control.write_text(re.sub(r"(?m)^Version: .*$", "Version: 99", control.read_text("utf-8")), encoding="utf-8")
        for file in ("ac.cfg", "atcmod.cfg"):
            (content / "usr/share/norvane/bin" / file).write_text("NEWR@", encoding="ascii")
        subprocess.run(["dpkg-deb", "--root-owner-group", "--build", content, newer], check=True, stdout=subprocess.DEVNULL)


def check(system, package):
    for left in (".local", ".config", ".cache"):
        shutil.rmtree(system.root / "home" / PILOT / left, ignore_errors=True)
    shutil.copy(package, system.root / "root/norvane.deb")
    system.run("apt-get", "update")
    system.run("apt-get", "install", "-y", "--no-install-recommends", "/root/norvane.deb")
    step(f"installed: {system.run('dpkg-query', '-W', 'norvane').strip()}")
    for program in ("norvane", "norvane-cli", "norvane-sim"):
        step(f"--version: {system.run(program, '--version').strip()}")

    check_window(system, [])
    pilots = system.root / PILOTS_FILES
    require((pilots / "bin/fs9.wld").is_file(), "the first start did not fill the pilot's directory")
    check_flight(system)

    (pilots / "bin/ac.cfg").write_text("My Cub@", encoding="ascii")
    make_newer(package, system.root / "root/newer.deb")
    system.run("apt-get", "install", "-y", "--no-install-recommends", "/root/newer.deb")
    check_window(system, [])
    require((pilots / "bin/ac.cfg").read_text("ascii") == "My Cub@", "the pilot's file was overwritten")
    require((pilots / "bin/atcmod.cfg").read_text("ascii") == "NEWR@", "the newer file did not come")
    step("upgraded: the pilot's changed file stayed, a newer one came")
    check_window(system, ["--demo"])

    left = sorted(file for file in (system.root / "home").rglob("*") if file.is_file())
    system.run("apt-get", "purge", "-y", "norvane")
    require(left == sorted(file for file in (system.root / "home").rglob("*") if file.is_file()), "files of the pilot's are gone")
    ours = [name for name in system.run("find", "/usr", "/etc", "/var", "-name", "*norvane*").split()
            if not name.startswith("/var/log")]
    require(not ours, f"left behind: {ours}")
    step(f"removed: nothing of it is left, and all {len(left)} files of the pilot's are")


def main():
    require(os.geteuid() == 0, "only root can make a fresh system")
    package = Path(sys.argv[1]).resolve()
    with contextlib.ExitStack() as stack:
        if len(sys.argv) > 2:
            root = Path(sys.argv[2]).resolve()
        else:
            root = Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="norvane-deb-"))) / "system"
        system = Fresh_System(root)
        if not (root / "home" / PILOT).is_dir():
            step(f"making a fresh Debian 12 in {root}")
            system.make()
        stack.enter_context(system.mounted())
        check(system, package)


if __name__ == "__main__":
    main()
