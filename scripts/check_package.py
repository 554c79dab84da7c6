#!/usr/bin/env python3
"""Packs what was built and checks the package. check_package.py BUILD_DIRECTORY

Unpacks it into a directory of this check's own, flies from there with a home of this check's own, brings an upgrade, and asks
Debian's own checkers what they think of the package, the menu entry and the entry in software catalogues.
"""

import hashlib
import os
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = ("norvane", "norvane-cli", "norvane-sim")
FLIGHT_AT_MOST_S = 120

faults = []


def expect(condition, fault):
    if not condition:
        faults.append(fault)


def run(*command, **options):
    result = subprocess.run([str(part) for part in command], capture_output=True, text=True, timeout=FLIGHT_AT_MOST_S,
                            check=False, **options)
    expect(result.returncode == 0, f"{' '.join(map(str, command))}: status {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def contents(directory):
    return {file.relative_to(directory): hashlib.sha256(file.read_bytes()).hexdigest()
            for file in directory.rglob("*") if file.is_file()}


def pack(build, directory):
    run("cpack", "-G", "DEB", "--config", build / "CPackConfig.cmake", "-B", directory)
    packages = list(directory.glob("norvane_*.deb"))
    if len(packages) != 1:
        sys.exit("\n".join(faults + [f"check_package: {len(packages)} packages were made"]))
    return packages[0]


def check_programs(system, package):
    version = run("dpkg-deb", "--field", package, "Version").strip().split("-")[0]
    for name in PROGRAMS:
        program = system / "usr/bin" / name
        expect(run(program, "--version").strip() == f"{name} {version}", f"{name} --version is not {version}")
        expect(str(ROOT).encode() not in program.read_bytes(), f"{name} holds a path of this computer")


def check_flight(system, home):
    """A pilot's first flight, and an upgrade after it."""
    environment = {"HOME": str(home), "PATH": os.environ["PATH"], "LANG": "C.UTF-8"}
    program = system / "usr/bin/norvane-cli"
    shipped = system / "usr/share/norvane"
    pilots = home / ".local/share/norvane"
    before = contents(system)

    run(program, "settings", "list", env=environment)
    for name in ("bin/fs9.wld", "bin/fs2002.wld", "bin/airline.cfg", "nv.html"):
        expect((pilots / name).is_file(), f"{name} did not come to the pilot")
    run(program, "fly", "--demo", "--time-scale", "300", env=environment)
    log = pilots / "demo/logs/My Flight Log.txt"
    expect(log.is_file() and "KJFK" in log.read_text("cp1252"), "the demonstration's flight is not in its log")
    expect(contents(system) == before, "something was written where the programs are installed")

    (pilots / "bin/ac.cfg").write_text("My Cub@", encoding="ascii")
    (shipped / "bin/ac.cfg").write_text("Newer Jet@", encoding="ascii")
    (shipped / "bin/atcmod.cfg").write_text("NEWR@", encoding="ascii")
    run(program, "settings", "list", env=environment)
    expect((pilots / "bin/ac.cfg").read_text("ascii") == "My Cub@", "an upgrade overwrote what the pilot had changed")
    expect((pilots / "bin/atcmod.cfg").read_text("ascii") == "NEWR@", "an upgrade did not bring a newer file")


def main():
    build = Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory(prefix="norvane-package-") as name:
        directory = Path(name)
        package = pack(build, directory / "packed")
        run("lintian", "--allow-root", "--fail-on", "error,warning", package)
        system = directory / "system"
        run("dpkg-deb", "--extract", package, system)
        run("desktop-file-validate", system / "usr/share/applications/norvane.desktop")
        run("appstreamcli", "validate", "--no-net", system / "usr/share/metainfo/org.norvane.Norvane.metainfo.xml")
        check_programs(system, package)
        (directory / "home").mkdir()
        check_flight(system, directory / "home")
    for fault in faults:
        print(f"check_package: {fault}", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
