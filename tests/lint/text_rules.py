#!/usr/bin/env python3
"""text_rules.py RESOURCES [SRC]: checks that all languages of a bundle say the same things.

Every LANG.lproj folder must hold the same files as every other; a .strings table the same keys with
the same arguments as often; an .rtf or .txt page the same %NAME% marks. The tables must also hold
every key that a window description (*.ui) names and, with SRC, every key that the sources below that
folder ask for by name. What the texts say is their product's own concern: see tests/sample. Prints
one line per fault and ends with status 1 when there is any.
"""

import pathlib
import re
import sys
import xml.etree.ElementTree

TOKEN = re.compile(r'\s+|/\*.*?\*/|//[^\n]*|"((?:[^"\\]|\\.)*)"|([=;])', re.DOTALL)
ARGUMENT = re.compile(r"%(?:(\d+)\$)?@|%%|(%)")
LOOK_UP = re.compile(r'\b(localizedText|installerText|folderName)\(\s*[\w.()]+\s*,\s*"([^"]+)"')
TABLE_OF_LOOK_UP = {
    "localizedText": "Localizable.strings",
    "installerText": "installer.strings",
    "folderName": "installer.strings",
}
MARK = re.compile(r"%[A-Z]+%")

# The properties by which a widget of a window description names a text.
KEY_PROPERTIES = {"textKey", "accessibleNameKey"}


class FileError(Exception):
    pass


def tokens_of(text):
    position = 0
    while position < len(text):
        found = TOKEN.match(text, position)
        if not found:
            line = text.count("\n", 0, position) + 1
            raise FileError(f"line {line}: neither a text nor a comment")
        position = found.end()
        if found.group(1) is not None:
            yield ("text", found.group(1))
        elif found.group(2):
            yield (found.group(2), "")


def table_of(text):
    """The keys of a table with their texts; entries have the shape "key" = "text";"""
    tokens = list(tokens_of(text))
    table = {}
    for start in range(0, len(tokens), 4):
        entry = tokens[start : start + 4]
        if [kind for kind, _ in entry] != ["text", "=", "text", ";"]:
            raise FileError(f'the entry after {len(table)} others is not "key" = "text";')
        key, text_of_key = entry[0][1], entry[2][1]
        if key in table:
            raise FileError(f'the key "{key}" stands there twice')
        table[key] = text_of_key
    return table


def arguments_of(text):
    """The numbers of the arguments that a format uses, in ascending order and each as often as it is
    used; none when a percent sign stands alone. So only numbered arguments can change places."""
    numbers, following = [], 1
    for found in ARGUMENT.finditer(text):
        if found.group(2):
            return None
        if found.group(0) == "%%":
            continue
        if found.group(1):
            numbers.append(int(found.group(1)))
        else:
            numbers.append(following)
            following += 1
    return sorted(numbers)


def table_faults(name, table, model):
    for key in sorted(model.keys() - table.keys()):
        yield f'{name}: the key "{key}" is missing'
    for key in sorted(table.keys() - model.keys()):
        yield f'{name}: the key "{key}" is in no other language'
    for key in sorted(table):
        arguments = arguments_of(table[key])
        if arguments is None:
            yield f'{name}: "{key}" has a percent sign that fills in nothing'
        elif key in model and arguments != arguments_of(model[key]):
            yield f'{name}: "{key}" takes other arguments'
        if not table[key].strip():
            yield f'{name}: "{key}" is empty'


def page_faults(name, page, model):
    marks = set(MARK.findall(page))
    if marks != set(MARK.findall(model)):
        yield f"{name}: other marks than in the first language"
    if not page.strip():
        yield f"{name}: empty"
    if name.endswith(".rtf"):
        if not page.isascii() or not page.startswith("{\\rtf1"):
            yield f"{name}: no RTF page, or letters that are not written as RTF does"
        bare = re.sub(r"\\.", "", page, flags=re.DOTALL)
        if bare.count("{") != bare.count("}"):
            yield f"{name}: braces do not match"


def read(file):
    """A table's keys and texts, or a page's text."""
    try:
        text = file.read_text(encoding="utf-8")
    except UnicodeDecodeError:
        raise FileError("not UTF-8") from None
    return table_of(text) if file.suffix == ".strings" else text


def faults_of(resources):
    languages = sorted(folder for folder in resources.glob("*.lproj") if folder.is_dir())
    if not languages:
        return ["no language"]
    faults = []
    found = {file.name for folder in languages for file in folder.iterdir()}
    for file_name in sorted(found):
        contents = {}
        for folder in languages:
            name = f"{folder.name}/{file_name}"
            try:
                contents[name] = read(folder / file_name)
            except FileNotFoundError:
                faults.append(f"{name}: missing")
            except FileError as error:
                faults.append(f"{name}: {error}")
        model = next(iter(contents.values()), None)
        rule = table_faults if file_name.endswith(".strings") else page_faults
        for name, content in contents.items():
            faults += rule(name, content, model)
    return faults


def missing_key_faults(resources, asked):
    """Those of the (table, key, who asks) that a language does not have."""
    for folder in sorted(resources.glob("*.lproj")):
        for table, key, asking in sorted(asked):
            file = folder / table
            if not file.exists() or key not in read(file):
                yield f'{folder.name}/{table}: {asking} ask for "{key}"'


def description_faults(resources):
    """The keys that the window descriptions name and a language does not have."""
    asked = set()
    for file in sorted(resources.glob("*.ui")):
        try:
            properties = list(xml.etree.ElementTree.parse(file).iter("property"))
        except xml.etree.ElementTree.ParseError as error:
            yield f"{file.name}: {error}"
            continue
        for entry in properties:
            if entry.get("name") in KEY_PROPERTIES:
                key = entry.findtext("string", default="")
                asked.add(("Localizable.strings", key, f"the widgets of {file.name}"))
    yield from missing_key_faults(resources, asked)


def look_up_faults(resources, source):
    """The keys that the sources ask for and a language does not have."""
    asked = set()
    for file in source.rglob("*.cpp"):
        for function, key in LOOK_UP.findall(file.read_text(encoding="utf-8")):
            asked.add((TABLE_OF_LOOK_UP[function], key, "the sources"))
    if not asked:
        return [f"{source}: no source there asks for a text"]
    return list(missing_key_faults(resources, asked))


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    resources = pathlib.Path(sys.argv[1])
    faults = faults_of(resources) or list(description_faults(resources))
    if not faults and len(sys.argv) == 3:
        faults = look_up_faults(resources, pathlib.Path(sys.argv[2]))
    print("\n".join(faults) if faults else "All languages say the same things.")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
