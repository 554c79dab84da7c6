#!/usr/bin/env python3
"""Holds the tables of commands in docs/formats.md against what the programs themselves say with --help."""

import re
import subprocess
import sys
from pathlib import Path

import house

PAGE = "docs/formats.md"
PROGRAMS = ("norvane-cli", "norvane-sim")
# What every program has; no table names them.
ALWAYS = {"--help", "--version"}


def help_of(program, words):
    return subprocess.run([program, *words, "--help"], capture_output=True, check=True, text=True).stdout


def read_help(text):
    """Options, number of positions and subcommands of one command."""
    options = set(re.findall(r"^ +(?:-\w,)?(--[\w-]+)", text, re.M)) - ALWAYS
    # Positions stand in the line of usage, behind the program's name and the command's own words.
    usage = re.search(r"^Usage: .*?\[OPTIONS\](.*)$", text, re.M)
    positions = len(usage.group(1).replace("SUBCOMMAND", "").split()) if usage else 0
    listed = text.split("Subcommands:\n")[1] if "Subcommands:\n" in text else ""
    return options, positions, re.findall(r"^  (\S+)", listed, re.M)


def commands_of(ask, words=()):
    """All commands that do something: their words -> (options, number of positions)."""
    options, positions, below = read_help(ask(words))
    if not below:
        return {words: (options, positions)}
    found = {}
    for name in below:
        found.update(commands_of(ask, (*words, name)))
    return found


def section(page, program):
    """The page's lines about a program."""
    parts = re.split(r"^## ", page, flags=re.M)
    return next((part for part in parts if part.startswith(f"`{program}`")), "")


def written_commands(lines):
    """The code of the first column of the tables."""
    for row in re.findall(r"^\| (.*)$", lines, re.M):
        yield from re.findall(r"`([^`]+)`", re.split(r"(?<!\\)\|", row)[0])


def faults_of(program, page, ask):
    lines = section(page, program)
    commands = commands_of(ask)
    faults = [f"{PAGE}: {program} takes {option}, which is not told"
              for option in sorted(read_help(ask(()))[0]) if option not in lines]
    told = set()
    for code in written_commands(lines):
        words = re.sub(r"[\[\]|\\]", " ", code).split()
        command = next((tuple(words[:n]) for n in (2, 1) if tuple(words[:n]) in commands), None)
        if command is None:
            # An exit status is no command.
            if not code.isdigit():
                faults.append(f"{PAGE}: {program} has no command `{code}`")
            continue
        told.add(command)
        options, positions = commands[command]
        written = {word for word in words if word.startswith("-") and len(word) > 2}
        faults += [f"{PAGE}: `{program} {' '.join(command)}` differs in {option}" for option in sorted(written ^ options)]
        taken = sum(1 for before, word in zip(words, words[1:]) if not word.startswith("-") and not before.startswith("-"))
        if taken - (len(command) - 1) != positions:
            faults.append(f"{PAGE}: `{code}` has {taken - len(command) + 1} positions, the program takes {positions}")
    return faults + [f"{PAGE}: `{program} {' '.join(command)}` is not told" for command in sorted(commands.keys() - told)]


def check(root, directory):
    page = (root / PAGE).read_text(encoding="utf-8")
    return [fault for program in PROGRAMS
            for fault in faults_of(program, page, lambda words, program=program: help_of(directory / program, words))]


HELP = {
    (): "Usage: p [OPTIONS] SUBCOMMAND\n\nOptions:\n  -h,--help  x\n  --map TEXT  x\n\nSubcommands:\n  fly   x\n  log   x\n",
    ("fly",): "Usage: p fly [OPTIONS]\n\nOptions:\n  -h,--help x\n  --new  x\n  -o TEXT  x\n",
    ("log",): "Usage: p log [OPTIONS] SUBCOMMAND\n\nSubcommands:\n  rows  x\n",
    ("log", "rows"): "Usage: p log rows [OPTIONS] [NAME]\n",
}
ROWS = "| command | |\n|---|---|\n| `fly [--new]` | x |\n| `log rows [NAME]` | `--x \\| y` |\n"
CASES = [
    ("all told", ROWS, 0),
    ("an option of one command that is not told", ROWS.replace("[--new]", ""), 1),
    ("an option that is none", ROWS.replace("--new", "--new] [--old \\| --older X"), 2),
    ("a command that is not told", ROWS.replace("| `fly [--new]` | x |\n", ""), 1),
    ("a command that is none", ROWS + "| `dance` | |\n", 1),
    ("a position that is not told", ROWS.replace(" [NAME]", ""), 1),
    ("an option of the program that is not told", ROWS.replace("--x", "") + "\n## `q`\n--map\n", 1),
]


def self_test():
    agreed = True
    for title, rows, expected in CASES:
        more = "" if "--map" in rows else "--map\n"
        found = faults_of("p", f"## `p`\n{more}\n{rows}", lambda words: HELP[tuple(words)])
        if len(found) != expected:
            print(f"self-test: {title}: {expected} faults expected, found {found}")
            agreed = False
    print(f"commands: self-test {'passed' if agreed else 'FAILED'}, {len(CASES)} cases")
    return agreed


if __name__ == "__main__":
    if sys.argv[1:] == ["--self-test"]:
        sys.exit(0 if self_test() else 1)
    if len(sys.argv) != 2:
        sys.exit(f"usage: {sys.argv[0]} --self-test | DIRECTORY_OF_THE_PROGRAMS")
    found_faults = check(house.ROOT, Path(sys.argv[1]))
    for line in found_faults:
        print(line)
    print(f"commands: {len(found_faults)} faults" if found_faults else "commands: clean")
    sys.exit(1 if found_faults else 0)
