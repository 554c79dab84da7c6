#!/usr/bin/env python3
"""Measures how many small faults the tests notice: mutate.py [--sample N] [--seed S] [--at-least PERCENT] [--workers W] [PATH ...]

Makes a fault in a source of src/ (see mutants.py), compiles that file alone, links the tests of its folder with it in front of the
folder's library, and runs them: a mutant that no test notices has survived and is printed. Each worker has a build of its own
below build/. A mutant that the compiler refuses does not count, another one takes its place. mutants_accepted.txt lists
survivors that change nothing a test could see, each with the reason; they do not count either."""

import argparse
import json
import os
import random
import shlex
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

import house
from mutants import mutants_of

# The tests that a folder's faults ought to fail, the likeliest first.
TESTS = {
    "common": ["common", "config", "flightlog", "logpanel", "acars", "net", "blackbox", "worldtools", "cli"],
    "simlink": ["simlink", "acars"],
    "config": ["config", "settingspanel", "app"],
    "settingspanel": ["settingspanel", "ui"],
    "messagepanel": ["messagepanel", "flights"],
    "simdata": ["simdata", "acarspanel"],
    "acars": ["acars", "flights", "acarspanel"],
    "blackbox": ["blackbox", "app", "flights"],
    "net": ["net", "messagepanel", "acarspanel"],
    "logentry": ["logentry", "acarspanel"],
    "flightlog": ["flightlog", "logpanel", "flights"],
    "logpanel": ["logpanel", "flights"],
    "acarspanel": ["acarspanel", "flights"],
    "worldtools": ["worldtools"],
    "app": ["app", "cli", "ui"],
    "ui": ["ui"],
    "cli": ["cli"],
    "simhost": ["simhost"],
}
# What only another system compiles.
FOREIGN = ("src/bridge/", "_windows.cpp")
# Tests that start programs, and the folders that a program is not made of.
STARTS_PROGRAMS = {"app", "cli", "ui", "simhost", "flights"}
PROGRAMS = {"norvane": {"cli", "simhost"}, "norvane-cli": {"ui", "simhost"}}
SIMULATOR_FOLDERS = {"common", "simlink", "simhost"}
ACCEPTED = house.ROOT / "scripts" / "mutants_accepted.txt"
# How much longer than without a fault tests may take before they count as hanging.
PATIENCE = 5
LEAST_PATIENCE_S = 20


class Build:
    """One worker's build of the project."""

    def __init__(self, number):
        self.directory = house.ROOT / "build" / f"mutants-{number}"
        self.durations = {}

    def make(self):
        for command in (["cmake", "--preset", "dev", "-B", str(self.directory), "-DCMAKE_CXX_FLAGS_DEBUG=-g0",
                         f"-DNORVANE_STAGE_DIR={self.directory}/norvane"],
                        ["cmake", "--build", str(self.directory)]):
            subprocess.run(command, cwd=house.ROOT, check=True, stdout=subprocess.DEVNULL)
        commands = json.loads((self.directory / "compile_commands.json").read_text())
        self.compile_commands = {os.path.relpath(entry["file"], house.ROOT): entry["command"] for entry in commands}

    def compile(self, name, text):
        """The mutated file's object; None where the compiler refuses it."""
        source = self.directory / "mutant.cpp"
        source.write_text(text, encoding="latin-1")
        words = shlex.split(self.compile_commands[name])
        if words[0].endswith("ccache"):
            words = words[1:]
        words[words.index("-o") + 1] = "mutant.o"
        words[words.index("-c") + 1] = str(source)
        words += ["-Wno-error", "-w"]
        done = subprocess.run(words, cwd=self.directory, capture_output=True, check=False)
        return self.directory / "mutant.o" if done.returncode == 0 else None

    def link(self, target, output, mutated):
        listed = subprocess.run(["ninja", "-t", "commands", "-s", target], cwd=self.directory, capture_output=True,
                                text=True, check=True).stdout
        command = next(line for line in listed.splitlines() if f" -o {target} " in line)
        command = command.replace(f" -o {target} ", f" {mutated} -o {output} ", 1)
        return subprocess.run(command, shell=True, cwd=self.directory, capture_output=True, check=False).returncode == 0

    def run(self, program, longest):
        """Whether the tests passed; a run that takes too long has not."""
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        run = subprocess.Popen([str(program), "--gtest_brief=1", "--gtest_fail_fast"], cwd=self.directory, env=environment,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        try:
            return run.wait(timeout=longest) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(run.pid, 9)
            except ProcessLookupError:
                pass
            run.wait()

    def duration(self, tests):
        """How long the tests take without a fault, which they must pass."""
        if tests not in self.durations:
            begin = time.monotonic()
            if not self.run(self.directory / f"test_{tests}", 600):
                sys.exit(f"mutate.py: test_{tests} fails without a fault; mend that first")
            self.durations[tests] = time.monotonic() - begin
        return self.durations[tests]

    def programs_of(self, folder, tests):
        if tests not in STARTS_PROGRAMS:
            return []
        made = [name for name, without in PROGRAMS.items() if folder not in without]
        return made + (["norvane-sim"] if folder in SIMULATOR_FOLDERS else [])

    def is_killed(self, folder, tests, mutated):
        longest = max(LEAST_PATIENCE_S, PATIENCE * self.duration(tests))
        program = self.directory / f"test_{tests}.mutant"
        replaced = []
        try:
            for name in self.programs_of(folder, tests):
                whole = self.directory / "norvane" / name
                whole.rename(whole.with_suffix(".whole"))
                replaced.append(whole)
                if not self.link(f"norvane/{name}", f"norvane/{name}", mutated):
                    return True
            if not self.link(f"test_{tests}", program.name, mutated):
                return True
            return not self.run(program, longest)
        finally:
            for whole in replaced:
                whole.with_suffix(".whole").rename(whole)


def folder_of(name):
    return name.split("/")[1]


def all_mutants(files):
    for name in house.tracked_files(house.ROOT):
        if not (name.startswith("src/") and name.endswith(".cpp")) or any(part in name for part in FOREIGN):
            continue
        if folder_of(name) in TESTS and (not files or name.startswith(tuple(files))):
            yield from mutants_of(name, house.read_text(house.ROOT / name))


def accepted_survivors(text):
    """(file, operator, line) of each; lines of the list are "file | operator | line | reason"."""
    accepted = set()
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        parts = [part.strip() for part in line.split(" | ")]
        if len(parts) != 4 or not parts[3]:
            sys.exit(f"mutants_accepted.txt:{number}: not \"file | operator | line | reason\"")
        accepted.add(tuple(parts[:3]))
    return accepted


def is_accepted(mutant, text, accepted):
    line = text.splitlines()[mutant.line - 1].strip()
    return (mutant.name, mutant.operator, line) in accepted


class Hunt:
    """The mutants of a sample, handed to the workers one by one, and what became of them."""

    def __init__(self, mutants, wanted, accepted):
        self.waiting = list(mutants)
        self.left = wanted
        self.accepted = accepted
        self.lock = threading.Lock()
        self.killed = 0
        self.survivors = []

    def next(self):
        with self.lock:
            while self.waiting and self.left > 0:
                mutant = self.waiting.pop(0)
                if not is_accepted(mutant, house.read_text(house.ROOT / mutant.name), self.accepted):
                    self.left -= 1
                    return mutant
            return None

    def refused(self):
        with self.lock:
            self.left += 1

    def judge(self, mutant, text, killed):
        with self.lock:
            if killed:
                self.killed += 1
            else:
                self.survivors.append(mutant.describe(text))
                print(self.survivors[-1], flush=True)


def work(build, hunt):
    build.make()
    while (mutant := hunt.next()) is not None:
        text = house.read_text(house.ROOT / mutant.name)
        mutated = build.compile(mutant.name, mutant.apply(text))
        if mutated is None:
            hunt.refused()
            continue
        folder = folder_of(mutant.name)
        hunt.judge(mutant, text, any(build.is_killed(folder, tests, mutated) for tests in TESTS[folder]))


SELF_TEST_SOURCE = """#include "a.h"
// if (a < 1) of a comment
int Clamp(int value, int most) {
    if (value > most)
        return most;
    Note("x < 1", value);
    std::vector<int> kept;
    kept.reserve(most);
    return std::min(value, most) + 10;
}
"""
SELF_TEST_MUTANTS = [
    (4, "condition", "!(value > most)"), (4, "boundary", ">="), (6, "statement removed", ""),
    (6, "arguments swapped", 'value, "x < 1"'), (9, "constant", "-"), (9, "constant", "(10 + 1)"),
]


def self_test():
    """The operators on a small text, and that a mutant with a test lives no longer than one without lives on."""
    made = [(mutant.line, mutant.operator, mutant.new) for mutant in mutants_of("a.cpp", SELF_TEST_SOURCE)]
    faults = [f"not made: {wanted}" for wanted in SELF_TEST_MUTANTS if wanted not in made]
    faults += [f"made, but not wanted: {extra}" for extra in made if extra not in SELF_TEST_MUTANTS]
    with tempfile.TemporaryDirectory() as directory:
        build = Build("self-test")
        build.directory = Path(directory)
        for status, killed in (("1", True), ("0", False)):
            program = build.directory / "test_x"
            program.write_text(f"#!/bin/sh\nexit {status}\n")
            program.chmod(0o755)
            if build.run(program, 10) == killed:
                faults.append(f"tests that end with {status} are misread")
        program.write_text("#!/bin/sh\nsleep 60\n")
        if build.run(program, 0.2):
            faults.append("tests that hang count as passed")
    if is_accepted(mutants_of("a.cpp", SELF_TEST_SOURCE)[0], SELF_TEST_SOURCE,
                   accepted_survivors("a.cpp | condition | if (value > most) | -\n")) is False:
        faults.append("an accepted survivor is not recognised")
    for fault in faults:
        print(f"self-test: {fault}")
    print(f"mutants: self-test {'FAILED' if faults else 'passed'}")
    sys.exit(1 if faults else 0)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, default=150)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--at-least", type=float, default=88)
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("files", nargs="*", metavar="PATH", help="how the names of the wanted sources begin; all of src/ unless told")
    options = parser.parse_args()
    if options.self_test:
        self_test()
    mutants = list(all_mutants(options.files))
    random.Random(options.seed).shuffle(mutants)
    hunt = Hunt(mutants, options.sample, accepted_survivors(ACCEPTED.read_text() if ACCEPTED.exists() else ""))
    workers = [threading.Thread(target=work, args=(Build(number), hunt)) for number in range(1, options.workers + 1)]
    begin = time.monotonic()
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    judged = hunt.killed + len(hunt.survivors)
    percent = 100 * hunt.killed / judged if judged else 0
    print(f"mutants of seed {options.seed}: {judged} tried of {len(mutants)}, {hunt.killed} killed ({percent:.1f} %), "
          f"{len(hunt.survivors)} survived; {(time.monotonic() - begin) / 60:.0f} min")
    if hunt.left > 0 and hunt.waiting:
        sys.exit("mutate.py: a worker stopped before the end; see above")
    sys.exit(0 if percent >= options.at_least else 1)


if __name__ == "__main__":
    main()
