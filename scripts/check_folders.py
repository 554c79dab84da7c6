#!/usr/bin/env python3
"""Holds the one rule between the folders of src/: a folder includes only folders that stand before it.

The simulator's stand-in knows nothing of its clients, and the program without a window nothing of windows. Includes of
our own files are written from src/, and no header includes itself by a detour.
"""

import re

import house

ORDER = ["common", "simlink", "config", "simdata", "acars", "blackbox", "net", "deliveries", "logentry", "flightlog", "settingspanel", "messagepanel",
         "logpanel", "acarspanel", "worldtools", "app", "ui", "cli"]
ALLOWED = {folder: set(ORDER[:place + 1]) for place, folder in enumerate(ORDER)}
ALLOWED["cli"].discard("ui")
ALLOWED["simhost"] = {"common", "simlink", "simhost"}
ALLOWED["bridge"] = {"common", "simlink", "bridge"}

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)


def includes_of(root):
    """The quoted includes of each file of src/."""
    return {name: INCLUDE.findall(house.read_text(root / name)) for name in house.tracked_files(root)
            if name.startswith("src/") and name.endswith((".h", ".cpp"))}


def folder_faults(includes):
    faults = []
    for name, targets in includes.items():
        folder = name.split("/")[1]
        if folder not in ALLOWED:
            faults.append(f"{name}: the folder is not one of src/'s")
            continue
        for target in targets:
            if "src/" + target not in includes:
                faults.append(f'{name}: "{target}" is no file below src/')
            elif target.split("/")[0] not in ALLOWED[folder]:
                faults.append(f'{name}: "{target}" does not stand before {folder}')
    return faults


def cycle_faults(includes):
    faults = []
    done = set()

    def visit(name, path):
        if name in path:
            faults.append("include cycle: " + " -> ".join(path[path.index(name):] + [name]))
        elif name not in done:
            for target in includes.get(name, []):
                visit("src/" + target, path + [name])
            done.add(name)

    for name in includes:
        visit(name, [])
    return faults


def check(root):
    includes = includes_of(root)
    return folder_faults(includes) + cycle_faults(includes)


CASES = [
    ("an earlier folder is allowed", {"src/common/a.h": "", "src/acars/b.cpp": '#include "common/a.h"\n'}, 0),
    ("its own folder is allowed", {"src/ui/a.h": "", "src/ui/b.cpp": '#include "ui/a.h"\n'}, 0),
    ("a later folder", {"src/common/a.cpp": '#include "acars/b.h"\n', "src/acars/b.h": ""}, 1),
    ("a path not from src", {"src/acars/a.cpp": '#  include "b.h"\n', "src/acars/b.h": ""}, 1),
    ("the stand-in using a client's folder", {"src/simhost/a.cpp": '#include "config/b.h"\n', "src/config/b.h": ""}, 1),
    ("windows in the program without one", {"src/cli/a.cpp": '#include "ui/b.h"\n', "src/ui/b.h": ""}, 1),
    ("an unknown folder", {"src/misc/a.h": ""}, 1),
    ("a cycle", {"src/net/a.h": '#include "net/b.h"\n', "src/net/b.h": '#include "net/a.h"\n'}, 1),
]

if __name__ == "__main__":
    house.main("folder rule", check, CASES)
