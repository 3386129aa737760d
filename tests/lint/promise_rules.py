#!/usr/bin/env python3
"""promise_rules.py ROOT: checks that the tests which ROOT/SECURITY.md names are in ROOT/tests.

Each row of a table with the head "promise | test" must name, in backticks in its last column, at
least one test: a suite or class, or `Suite.Test` for one test of it. Prints one line per row that
names none and per name that no test has, and ends with status 1 when there is any.
"""

import pathlib
import re
import sys

HEAD = re.compile(r"^\|\s*promise\s*\|\s*test\s*\|$")
BACKTICKED = re.compile(r"`([^`]*)`")
COMPILED_TEST = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
PYTHON_CLASS = re.compile(r"^class (\w+)\(", re.MULTILINE)
PYTHON_TEST = re.compile(r"^    def (test_\w+)\(", re.MULTILINE)


def python_tests(text):
    parts = PYTHON_CLASS.split(text)
    for name, body in zip(parts[1::2], parts[2::2]):
        for test in PYTHON_TEST.findall(body):
            yield name, test


def tests_of(folder):
    """The names that a table may use."""
    found = set()
    for file in sorted(folder.rglob("*")):
        # The samples of this folder's own checks are no tests.
        if "fixtures" in file.relative_to(folder).parts or file.suffix not in {".cpp", ".py"}:
            continue
        text = file.read_text(encoding="utf-8")
        pairs = python_tests(text) if file.suffix == ".py" else COMPILED_TEST.findall(text)
        for suite, test in pairs:
            found |= {suite, f"{suite}.{test}"}
    return found


def rows_of(text):
    """The line number and the last column of each row below such a head."""
    below_head = False
    for number, line in enumerate(text.splitlines(), 1):
        if HEAD.match(line):
            below_head = True
        elif not line.startswith("|"):
            below_head = False
        elif below_head and line.strip("|-: "):
            yield number, line.rstrip("| ").rpartition("|")[2]


def all_faults(root):
    tests = tests_of(root / "tests")
    count, faults = 0, []
    for number, column in rows_of((root / "SECURITY.md").read_text(encoding="utf-8")):
        count += 1
        names = BACKTICKED.findall(column)
        if not names:
            faults.append(f"SECURITY.md:{number}: this promise names no test")
        for name in names:
            if name not in tests:
                faults.append(f"SECURITY.md:{number}: there is no test {name}")
    return count, faults


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    count, faults = all_faults(pathlib.Path(sys.argv[1]))
    print("\n".join(faults) if faults else f"{count} promises name their tests.")
    # No promise at all means that the tables look different from what is read here.
    sys.exit(1 if faults or count == 0 else 0)


if __name__ == "__main__":
    main()
