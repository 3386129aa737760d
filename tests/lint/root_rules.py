#!/usr/bin/env python3
"""root_rules.py ROOT: checks that no file directly in ROOT is empty, since an empty file there is
what a program left behind by mistake. Prints one line per empty file and ends with status 1 when
there is any."""

import pathlib
import sys


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    files = sorted(path for path in pathlib.Path(sys.argv[1]).iterdir() if path.is_file())
    empty = [path.name for path in files if path.stat().st_size == 0]
    for name in empty:
        print(f"{name}: an empty file in the root folder")
    if files and not empty:
        print(f"{len(files)} files in the root folder hold something.")
    # No file at all means that this is not the root folder.
    sys.exit(1 if empty or not files else 0)


if __name__ == "__main__":
    main()
