#!/usr/bin/env python3
"""Runs clang-tidy on the core: check_tidy.py BUILD_DIR. Files that passed and have not changed since are not run again.

The core is all of src/ but ui/, whose bindings hold no logic and whose toolkit's habits are not ours.

A file's stamp in build/tidy-stamps is named by a hash of all that decides the result: the file, every file of ours it
includes, its compile command, .clang-tidy and the tool's version.
"""

import concurrent.futures
import hashlib
import json
import os
import subprocess
import sys
from pathlib import Path

import check_folders
import house

STAMPS = house.ROOT / "build" / "tidy-stamps"
TOOL = "clang-tidy-14"
# The compile commands are GCC's and name warnings that clang does not know.
GCC_WARNINGS = "--extra-arg=-Wno-unknown-warning-option"


def closure(name, includes):
    """The file and all files of ours it includes, directly or not."""
    seen = set()
    waiting = [name]
    while waiting:
        current = waiting.pop()
        if current not in seen:
            seen.add(current)
            waiting += ["src/" + target for target in includes.get(current, [])]
    return sorted(file for file in seen if file in includes)


def stamp_of(name, command, includes, common):
    digest = hashlib.sha256(common + command.encode())
    for file in closure(name, includes):
        digest.update(file.encode() + b"\0" + (house.ROOT / file).read_bytes())
    return STAMPS / digest.hexdigest()


def run(build, name, stamp):
    """Runs the tool on one file; its complaints, or an empty text."""
    result = subprocess.run([TOOL, "-p", str(build), "--quiet", GCC_WARNINGS, str(house.ROOT / name)],
                            capture_output=True, text=True, errors="replace", check=False)
    if result.returncode == 0:
        stamp.touch()
        return ""
    return result.stdout + (result.stderr if "error:" not in result.stdout else "")


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: check_tidy.py BUILD_DIR")
    build = Path(sys.argv[1]).resolve()
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    includes = check_folders.includes_of(house.ROOT)
    version = subprocess.run([TOOL, "--version"], capture_output=True, check=True).stdout
    common = version + (house.ROOT / ".clang-tidy").read_bytes()
    STAMPS.mkdir(parents=True, exist_ok=True)

    wanted = {}
    for entry in commands:
        file = Path(entry["directory"], entry["file"]).resolve()
        if file.is_relative_to(house.ROOT / "src") and not file.is_relative_to(house.ROOT / "src" / "ui"):
            name = str(file.relative_to(house.ROOT))
            wanted[name] = stamp_of(name, entry["command"], includes, common)
    waiting = {name: stamp for name, stamp in wanted.items() if not stamp.exists()}
    print(f"clang-tidy: {len(wanted)} files, {len(waiting)} to look at", flush=True)

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for complaint in pool.map(lambda item: run(build, *item), waiting.items()):
            if complaint:
                failed += 1
                print(complaint, flush=True)
    print(f"clang-tidy: {failed} files with faults" if failed else "clang-tidy: clean")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
