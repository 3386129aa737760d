#!/usr/bin/env python3
"""name_rules.py ROOT: checks the names of the tests in ROOT/tests, so that a failure that is read
in a log leads to its file and says by itself what does not hold.

- A suite begins with the name of its file: FooTest.cpp has Foo..., test_foo_bar.py has FooBar....
- No test begins with a word that continues another sentence (And, But, Of, Or, That, Unlike, Which).

Prints one line per fault and ends with status 1 when there is any.
"""

import ast
import pathlib
import re
import sys

MACRO = re.compile(r"^[ \t]*(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
CONTINUES = re.compile(r"(And|But|Of|Or|That|Unlike|Which)(?![a-z])")


def compiled_tests(file):
    text = file.read_text(encoding="utf-8")
    for match in MACRO.finditer(text):
        yield text.count("\n", 0, match.start(1)) + 1, match[1], match[2]


def python_tests(file):
    """The tests of each class, and the class itself where it takes tests over from another."""
    suites = set()
    for node in ast.parse(file.read_text(encoding="utf-8")).body:
        if not isinstance(node, ast.ClassDef):
            continue
        own = [part for part in node.body
               if isinstance(part, ast.FunctionDef) and part.name.startswith("test_")]
        inherits = any(isinstance(base, ast.Name) and base.id in suites for base in node.bases)
        if own or inherits:
            suites.add(node.name)
        if inherits and not own:
            yield node.lineno, node.name, ""
        for part in own:
            yield part.lineno, node.name, part.name.removeprefix("test_")


def camel_case(name):
    return "".join(word[:1].upper() + word[1:] for word in name.split("_"))


def tests_of(folder):
    """Each file of tests with the start of its suites' names and with its tests."""
    for file in sorted(folder.rglob("*")):
        # The samples of this folder's own checks are no tests.
        if "fixtures" in file.relative_to(folder).parts:
            continue
        if file.suffix == ".cpp":
            yield file, file.stem.removesuffix("Test"), compiled_tests(file)
        elif re.fullmatch(r"test_\w+\.py", file.name):
            yield file, camel_case(file.stem.removeprefix("test_")), python_tests(file)


def all_faults(root):
    count, faults = 0, []
    for file, start, tests in tests_of(root / "tests"):
        for line, suite, test in tests:
            count += 1
            place = f"{file.relative_to(root)}:{line}"
            if not suite.startswith(start):
                faults.append(f"{place}: the suite {suite} does not begin with {start}")
            if CONTINUES.match(camel_case(test)):
                faults.append(f"{place}: {test} cannot be read on its own")
    return count, faults


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    count, faults = all_faults(pathlib.Path(sys.argv[1]))
    print("\n".join(faults) if faults else f"{count} tests can be found and read by their names.")
    # No test at all means that they are written in another way than what is read here.
    sys.exit(1 if faults or count == 0 else 0)


if __name__ == "__main__":
    main()
