#!/usr/bin/env python3
"""include_rules.py SRC: checks what the files below the folder SRC include.

The includes point one way, the core knows no operating system, and only platform/qt knows the
window toolkit. Prints one line per broken rule and ends with status 1 when there is any.
"""

import pathlib
import re
import sys

# The part of the sources -> the parts that it may include. The files directly in platform/ are
# interfaces; the folders below it are adapters.
MAY_INCLUDE = {
    "foundation": {"foundation"},
    "platform": {"platform", "foundation"},
    "wizard": {"wizard", "platform", "foundation"},
    "hosts": {"hosts", "install", "steps", "wizard", "platform", "foundation"},
    "install": {"hosts", "install", "steps", "wizard", "platform", "foundation"},
    "steps": {"hosts", "install", "steps", "wizard", "platform", "foundation"},
    "app": {"app", "hosts", "install", "steps", "wizard", "platform", "foundation"},
    "platform/linux": {
        "platform/linux",
        "platform/linux/files",
        "helper",
        "platform",
        "foundation",
    },
    "platform/linux/files": {"platform/linux/files", "platform", "foundation"},
    "platform/qt": {"platform/qt", "platform", "foundation"},
    "helper": {"helper", "platform/linux", "platform/linux/files", "platform", "foundation"},
}

# Composition: the one file that knows which adapters are used.
COMPOSITION = "app/main.cpp"
ADAPTERS = {"platform/linux", "platform/linux/files", "platform/qt"}

# Parts that talk to the operating system, with its headers and with system libraries.
SYSTEM_PARTS = {"platform/linux", "platform/linux/files", "helper"}
TOOLKIT_PART = "platform/qt"

# The headers of the C++20 standard library. Those that reach files, processes or terminals past
# the platform's interfaces are left out: <filesystem>, <fstream>, <cstdio>, <iostream>, <csignal>.
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

INCLUDE = re.compile(r'^\s*#\s*(?:include|include_next|import)\s*(?:<([^>]*)>|"([^"]*)"|(\S.*))')


def part_of(path):
    """The part of the sources that a path such as "platform/linux/files/X.h" belongs to."""
    folders = path.split("/")[:-1]
    # Only the files directly in platform/ are interfaces: a folder there needs a rule of its own.
    least = 2 if folders[:1] == ["platform"] and len(folders) > 1 else 1
    for length in range(len(folders), least - 1, -1):
        part = "/".join(folders[:length])
        if part in MAY_INCLUDE:
            return part
    return "/".join(folders)


def is_toolkit(header):
    return re.match(r"Q[A-Z]|Qt[A-Z]?\w*/|q\w+\.h$|ui_\w+\.h$", header) is not None


def angle_fault(path, part, header):
    if is_toolkit(header):
        return None if part == TOOLKIT_PART else f"the toolkit's <{header}> outside platform/qt"
    if header in STANDARD:
        return None
    if part in SYSTEM_PARTS:
        return None
    if header in STANDARD_THAT_REACHES_OUT:
        if part == TOOLKIT_PART or path == COMPOSITION:
            return None
        return f"<{header}> reaches past the platform's interfaces"
    return f"the system header <{header}> outside platform/linux and helper"


def quote_fault(source, path, part, header):
    if is_toolkit(header):
        return None if part == TOOLKIT_PART else f'the toolkit\'s "{header}" outside platform/qt'
    if ".." in header.split("/") or not (source / header).is_file():
        return f'"{header}" is no path from src/ on'
    target = part_of(header)
    if target in MAY_INCLUDE[part] or (path == COMPOSITION and target in ADAPTERS):
        return None
    return f'{part} may not include {target}: "{header}"'


def faults_of(source, file):
    path = file.relative_to(source).as_posix()
    part = part_of(path)
    if part not in MAY_INCLUDE:
        yield f"{path}: no rule says what {part or 'a file directly in src/'} may include"
        return
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if not found:
            continue
        angle, quoted, other = found.groups()
        if angle is not None:
            fault = angle_fault(path, part, angle)
        elif quoted is not None:
            fault = quote_fault(source, path, part, quoted)
        else:
            fault = f"cannot tell what is included: {other}"
        if fault:
            yield f"{path}:{number}: {fault}"


def all_faults(source):
    files = sorted(f for f in source.rglob("*") if f.suffix in {".h", ".cpp"} and f.is_file())
    return len(files), [fault for file in files for fault in faults_of(source, file)]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    count, faults = all_faults(pathlib.Path(sys.argv[1]))
    print("\n".join(faults) if faults else f"{count} files keep the include rules.")
    # No file at all means that the wrong folder was named.
    sys.exit(1 if faults or count == 0 else 0)


if __name__ == "__main__":
    main()
