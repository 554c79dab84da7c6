"""What the checks of the house share: the repository's files, and trees of fixtures for their self-tests."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


def tracked_files(root):
    """All files of the project below root, sorted: those of git, or all of them where there is no repository."""
    listed = subprocess.run(["git", "-C", str(root), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            capture_output=True, check=False)
    if listed.returncode == 0:
        names = [os.fsdecode(name) for name in listed.stdout.split(b"\0") if name]
    else:
        names = [str(path.relative_to(root)) for path in root.rglob("*")]
    return sorted(name for name in names
                  if (root / name).is_file() and not name.startswith(("build/", ".git/")))


def read_text(path):
    """The file's bytes as text, one character a byte: no file is too odd to be looked at."""
    return path.read_bytes().decode("latin-1")


def faults_in_tree(check, files):
    """The faults that check(root) finds in a tree of these files (name -> text)."""
    with tempfile.TemporaryDirectory() as directory:
        root = Path(directory)
        for name, text in files.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="latin-1")
        return check(root)


def self_test(check, cases):
    """Runs check on each case (title, files, number of faults expected); true when all agree."""
    agreed = True
    for title, files, expected in cases:
        found = faults_in_tree(check, files)
        if len(found) != expected:
            print(f"self-test: {title}: {expected} faults expected, found {found}")
            agreed = False
    return agreed


def main(title, check, cases):
    """The command line of a check: --self-test, or the check itself on the repository."""
    if sys.argv[1:] == ["--self-test"]:
        passed = self_test(check, cases)
        print(f"{title}: self-test {'passed' if passed else 'FAILED'}, {len(cases)} cases")
        sys.exit(0 if passed else 1)
    if sys.argv[1:]:
        sys.exit(f"usage: {sys.argv[0]} [--self-test]")
    faults = check(ROOT)
    for fault in faults:
        print(fault)
    print(f"{title}: {len(faults)} faults" if faults else f"{title}: clean")
    sys.exit(1 if faults else 0)
