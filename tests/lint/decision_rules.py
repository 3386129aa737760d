#!/usr/bin/env python3
"""decision_rules.py ROOT: checks the tables of ROOT/ARCHITECTURE.md that lead into the sources.

Every table whose head has a column "file" is read. In each of its rows

- "file" names one file below ROOT, in backticks;
- "function" (where the table has that column) names in backticks what that file defines or
  declares: `Class::function`, `function`, or a constant;
- "type" (where the table has it) names in backticks a type that the file declares;
- "test" (where the table has it) names in backticks at least one test below ROOT/tests: a suite or
  class, or `Suite.Test`;
- "when" (where the table has it) says when the rule is in force, in one of the words of WHEN.

Prints one line per fault and ends with status 1 when there is any.
"""

import pathlib
import re
import sys

from promise_rules import tests_of

WHEN = {"every run", "window only", "quiet run only", "in reserve"}
BACKTICKED = re.compile(r"`([^`]+)`")
NO_TYPE = r"(?!return\b|else\b|throw\b|delete\b|new\b|co_return\b|case\b)"
TYPE = r"\w[\w:<>,&*\[\] ]*[ *&]+"


def rows_of(text):
    """The line number and the cells by the name of their column, of each row of such a table."""
    head = None
    for number, line in enumerate(text.splitlines(), 1):
        if not line.startswith("|"):
            head = None
            continue
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if head is None:
            head = cells
        elif "file" in head and any(cell.strip("-: ") for cell in cells):
            yield number, dict(zip(head, cells))


def defines(path, text, name):
    """Whether the file defines or declares the function or constant."""
    qualifier, _, last = name.rpartition("::")
    constant = rf"^ *(?:inline |static )*constexpr [^=;(]*\b{last}\b\s*[={{]"
    if path.suffix == ".h":
        if qualifier and not declares(text, qualifier.rpartition("::")[2]):
            return False
        function = rf"^ *(?:\[\[nodiscard\]\] )?{NO_TYPE}(?:{TYPE}|explicit )?{last}\("
        if not qualifier:
            function = rf"^ *(?:\[\[nodiscard\]\] )?{NO_TYPE}{TYPE}{last}\("
    else:
        # Statements are indented, so what begins a line is no call.
        kind = f"(?:{TYPE})?" if qualifier else TYPE
        function = rf"^{kind}{name}\("
    return re.search(f"{function}|{constant}", text, re.MULTILINE) is not None


def declares(text, name):
    """Whether the file declares the type; a forward declaration is not enough."""
    return re.search(rf"\b(?:class|struct|enum class|enum|using) {name}\b[^;]*[{{=]", text) is not None


def one_name(cell):
    names = BACKTICKED.findall(cell)
    return names[0] if len(names) == 1 else None


def faults_of_row(root, row, tests):
    name = one_name(row["file"])
    path = root / name if name else None
    if path is None or not path.is_file():
        yield f"there is no file {row['file'] or '(none is named)'}"
    else:
        text = path.read_text(encoding="utf-8")
        for column, finds, what in (
            ("function", lambda found: defines(path, text, found), "does not define or declare"),
            ("type", lambda found: declares(text, found), "does not declare the type"),
        ):
            if column not in row:
                continue
            names = BACKTICKED.findall(row[column])
            if not names:
                yield f"this row names no {column}"
            yield from (f"{name} {what} {found}" for found in names if not finds(found))
    if "test" in row:
        names = BACKTICKED.findall(row["test"])
        if not names:
            yield "this row names no test"
        yield from (f"there is no test {found}" for found in names if found not in tests)
    if "when" in row and row["when"] not in WHEN:
        yield f'"{row["when"]}" is not one of: {", ".join(sorted(WHEN))}'


def all_faults(root):
    tests = tests_of(root / "tests")
    count, faults = 0, []
    for number, row in rows_of((root / "ARCHITECTURE.md").read_text(encoding="utf-8")):
        count += 1
        faults += [f"ARCHITECTURE.md:{number}: {fault}" for fault in faults_of_row(root, row, tests)]
    return count, faults


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    count, faults = all_faults(pathlib.Path(sys.argv[1]))
    print("\n".join(faults) if faults else f"{count} rows lead to what they name.")
    # No row at all means that the tables look different from what is read here.
    sys.exit(1 if faults or count == 0 else 0)


if __name__ == "__main__":
    main()
