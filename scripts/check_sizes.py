#!/usr/bin/env python3
"""Holds the size of files: one that reaches 500 lines has more than one subject. (Functions: see .clang-tidy.)"""

import house

LINES_ALLOWED = 499
FOLDERS = ("src/", "tests/", "scripts/", "bench/", "cmake/")
DATA = "tests/data/"


def check(root):
    faults = []
    for name in house.tracked_files(root):
        if name.startswith(FOLDERS) and not name.startswith(DATA):
            lines = len(house.read_text(root / name).splitlines())
            if lines > LINES_ALLOWED:
                faults.append(f"{name}: {lines} lines, at most {LINES_ALLOWED} are allowed")
    return faults


CASES = [
    ("the largest file allowed", {"src/common/a.cpp": "\n" * LINES_ALLOWED}, 0),
    ("a line too many", {"src/common/a.cpp": "\n" * (LINES_ALLOWED + 1)}, 1),
    ("a line too many without its end", {"tests/acars/a_test.cpp": "\n" * LINES_ALLOWED + "x"}, 1),
    ("data may be long", {"tests/data/a.rec": "\n" * 900, "data/bin/fs9.wld": "\n" * 900}, 0),
]

if __name__ == "__main__":
    house.main("file sizes", check, CASES)
