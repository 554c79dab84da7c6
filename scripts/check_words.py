#!/usr/bin/env python3
"""Keeps the project's own words: its files explain themselves and point at no paper outside the repository.

The patterns are put together from pieces so that this file does not match itself.
"""

import re

import house

PATTERNS = [re.compile(text, re.ASCII) for text in (
    r"(?i:\bspecific" + r"ations?\b)",
    r"(?i:\bthe sp" + r"ec\b)",
    r"\bspec\." + r"md\b",
    r"\bPart" + r"s? [0-9]+\.[0-9]\b",
    r"\b[Ii]ssu" + r"es? #?[0-9]+\b",
    r"\b[Dd]ecis" + r"ions? #?[0-9]+\b",
)]

# True uses of such words: (file, text of the line).
EXCEPTIONS = set()


def is_foreign(line):
    return any(pattern.search(line) for pattern in PATTERNS)


def check(root):
    faults = []
    for name in house.tracked_files(root):
        if is_foreign(name):
            faults.append(f"{name}: its name points outside the repository")
        for number, line in enumerate(house.read_text(root / name).splitlines(), 1):
            if is_foreign(line) and (name, line.strip()) not in EXCEPTIONS:
                faults.append(f"{name}:{number}: {line.strip()[:120]}")
    return faults


CASES = [
    ("plain words", {"README.md": "Parts of a special aspect; an issue with 3 parts; Part 25.\n"}, 0),
    ("the paper by name", {"src/a.h": "// as the Specific" + "ation says\n"}, 1),
    ("the paper by its short name", {"a.md": "see the sp" + "ec\n", "b.md": "sp" + "ec.md\n"}, 2),
    ("a place in it", {"src/a.h": "int a;\n// Part" + " 4.2 asks\n"}, 1),
    ("a task", {"src/a.h": "// issu" + "e 12\n", "src/b.h": "// Issu" + "e #3\n"}, 2),
    ("a ruling by number", {"tests/a.cpp": "// decis" + "ion 7\n"}, 1),
    ("a file's name", {"docs/specific" + "ation": "\n"}, 1),
    ("a file of bytes", {"data/a.bin": "\x00\xffThe sp" + "ec\x00\n"}, 1),
]

if __name__ == "__main__":
    house.main("own words", check, CASES)
