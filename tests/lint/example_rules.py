#!/usr/bin/env python3
"""example_rules.py ROOT: checks that each example of ROOT/tests/README.md, a block of code below a
line "From `file`:", stands in that file to the letter. Prints one line per example that does not and
ends with status 1 when there is any."""

import pathlib
import re
import sys

EXAMPLE = re.compile(r"^From `([^`]+)`:\n\n```\w+\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    root = pathlib.Path(sys.argv[1])
    examples = EXAMPLE.findall((root / "tests/README.md").read_text(encoding="utf-8"))
    faults = [f"tests/README.md: this example does not stand in {name}: {code.splitlines()[0]}"
              for name, code in examples
              if not (root / name).is_file()
              or code not in (root / name).read_text(encoding="utf-8")]
    print("\n".join(faults) if faults else f"{len(examples)} examples stand in their files.")
    # No example at all means that they are written in another way than what is read here.
    sys.exit(1 if faults or not examples else 0)


if __name__ == "__main__":
    main()
