#!/usr/bin/env python3
"""include_rules.py ARCHITECTURE.md SRC: checks what the files below the folder SRC include.

The rules are read from the table of folders in ARCHITECTURE.md, so the document and the check
cannot differ. Each row names a folder (or one file), what it may include, and which headers from
outside the project it may use. The rows stand from the top of the house to its ground floor: no
row may allow a row above it, so no arrow runs back up and there is no circle. Prints one line per
broken rule and ends with status 1 when there is any.
"""

import pathlib
import re
import sys

# What runs as root must be readable in one sitting, so it is also checked along every chain of
# includes, not only one step far.
CLOSED = "privileged"

# The headers of the C++20 standard library. Those that reach files, processes or terminals past
# the ports are left out: <filesystem>, <fstream>, <cstdio>, <iostream>, <csignal>.
STANDARD = set(
    """algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv
    chrono cinttypes climits clocale cmath codecvt compare complex concepts condition_variable
    coroutine cstdarg cstddef cstdint cstdlib cstring ctime cuchar cwchar cwctype deque exception
    execution expected format forward_list functional future initializer_list iomanip ios iosfwd
    istream iterator latch limits list locale map memory memory_resource mutex new numbers numeric
    optional ostream queue random ranges ratio regex scoped_allocator semaphore set shared_mutex
    source_location span sstream stack stdexcept stop_token streambuf string string_view
    syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
    unordered_set utility valarray variant vector version""".split()
)
STANDARD_THAT_REACHES_OUT = {"filesystem", "fstream", "cstdio", "iostream", "csignal"}

# The last column of the table.
CORE, STREAMS, TOOLKIT, SYSTEM = "standard", "standard and streams", "toolkit", "system"
OUTSIDE = {CORE, STREAMS, TOOLKIT, SYSTEM}

INCLUDE = re.compile(r'^\s*#\s*(?:include|include_next|import)\s*(?:<([^>]*)>|"([^"]*)"|(\S.*))')
ROW = re.compile(r"^\|\s*`src/([^`]+)`\s*\|[^|]*\|([^|]*)\|([^|]*)\|\s*$")


class Table:
    """The rows of the map, from top to bottom."""

    def __init__(self, text):
        self.allowed = {}  # place -> the names in "may include"
        self.outside = {}  # place -> the last column
        for line in text.splitlines():
            row = ROW.match(line)
            if row:
                place = row[1].rstrip("/")
                self.allowed[place] = re.findall(r"`([^`]+)`", row[2])
                self.outside[place] = row[3].strip()
        self.places = list(self.allowed)

    def faults(self):
        """What is wrong with the table itself."""
        for index, place in enumerate(self.places):
            if self.outside[place] not in OUTSIDE:
                yield f'{place}: "{self.outside[place]}" is no kind of headers'
            for name in self.allowed[place]:
                targets = self.named(name)
                if not targets:
                    yield f"{place}: the table allows {name}, which has no row"
                for target in targets:
                    if self.places.index(target) < index:
                        yield f"{place}: the table allows {target}, which stands above it"

    def named(self, name):
        """The places that a name in "may include" stands for: itself and what is below it."""
        return [p for p in self.places if p == name or p.startswith(name + "/")]

    def place_of(self, path):
        """The row of a file: its own, else that of its folder. None if there is neither."""
        if path in self.allowed:
            return path
        folder = path.rpartition("/")[0]
        return folder if folder in self.allowed else None

    def allows(self, place, target):
        return target == place or any(target in self.named(name) for name in self.allowed[place])


def is_toolkit(header):
    return re.match(r"Q[A-Z]|Qt[A-Z]?\w*/|q\w+\.h$|ui_\w+\.h$", header) is not None


def angle_fault(outside, header):
    if is_toolkit(header):
        return None if outside == TOOLKIT else f"the toolkit's <{header}> outside the window module"
    if header in STANDARD or outside == SYSTEM:
        return None
    if header in STANDARD_THAT_REACHES_OUT:
        return None if outside != CORE else f"<{header}> reaches past the ports"
    return f"the system header <{header}> outside linux and privileged"


def quote_fault(table, source, place, header):
    if is_toolkit(header):
        return angle_fault(table.outside[place], header)
    if ".." in header.split("/") or not (source / header).is_file():
        return f'"{header}" is no path from src/ on'
    target = table.place_of(header)
    if target is not None and table.allows(place, target):
        return None
    return f'{place} may not include {target or "a folder without a row"}: "{header}"'


def includes(file):
    """Number, <header>, "header" and anything else, for each include of a file."""
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if found:
            yield number, *found.groups()


def faults_of(table, source, file):
    path = file.relative_to(source).as_posix()
    place = table.place_of(path)
    if place is None:
        folder = path.rpartition("/")[0]
        yield f"{path}: the table has no row for {'src/' + folder if folder else 'a file directly in src/'}"
        return
    for number, angle, quoted, other in includes(file):
        if angle is not None:
            fault = angle_fault(table.outside[place], angle)
        elif quoted is not None:
            fault = quote_fault(table, source, place, quoted)
        else:
            fault = f"cannot tell what is included: {other}"
        if fault:
            yield f"{path}:{number}: {fault}"


def reached(source, path, chain, seen):
    """Each file that a file reaches through any chain of includes, with that chain."""
    for _, _, quoted, _ in includes(source / path):
        if quoted is None or quoted in seen or not (source / quoted).is_file():
            continue
        seen.add(quoted)
        yield quoted, chain + [quoted]
        yield from reached(source, quoted, chain + [quoted], seen)


def closure_faults(table, source, files):
    """What the privileged side reaches beyond itself and the few values that its rows allow."""
    rows = table.named(CLOSED)
    inside = set(rows)
    for row in rows:
        for name in table.allowed[row]:
            inside.update(table.named(name))
    for file in files:
        path = file.relative_to(source).as_posix()
        if table.place_of(path) not in rows:
            continue
        for target, chain in reached(source, path, [path], {path}):
            if table.place_of(target) not in inside:
                yield f"{path}: reaches {target} through {' -> '.join(chain)}"


def all_faults(table, source):
    files = sorted(f for f in source.rglob("*") if f.suffix in {".h", ".cpp"} and f.is_file())
    faults = list(table.faults())
    faults += [fault for file in files for fault in faults_of(table, source, file)]
    faults += closure_faults(table, source, files)
    for place in table.places:
        if not (source / place).exists():
            faults.append(f"{place}: the table has a row, the sources have no such place")
    return len(files), faults


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    table = Table(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    count, faults = all_faults(table, pathlib.Path(sys.argv[2]))
    print("\n".join(faults) if faults else f"{count} files keep the include rules.")
    # No row or no file at all means that the wrong place was named.
    sys.exit(1 if faults or not table.places or count == 0 else 0)


if __name__ == "__main__":
    main()
