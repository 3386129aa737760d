#!/usr/bin/env python3
"""sample_texts.py RESOURCES: checks what the texts of the sample product say.

They are there in each of its languages, with all of its pages; a page has the marks that the wizard
fills in; and a text that a name follows directly does not run together with it. Another product may
word its texts differently. Prints one line per fault and ends with status 1 when there is any.
"""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "lint"))
import text_rules  # noqa: E402

LANGUAGES = {"ar", "de", "en", "es", "fr", "ja"}

FILES = {
    "Localizable.strings",
    "aperture.rtf",
    "host_running.rtf",
    "installer.strings",
    "license.txt",
    "proceed.rtf",
    "register.rtf",
}

# What the step writes into a page: without the mark the page would never say the name.
MARKS_OF_PAGE = {"host_running.rtf": "%HOSTNAME%", "proceed.rtf": "%PRODUCTNAME%"}

# Texts that a name follows directly: without a blank the two would run together. The full-width
# colon brings its own.
FOLLOWED_BY_A_NAME = {"installing_file", "make_folder"}
BLANK_ENDS = (" ", "\N{FULLWIDTH COLON}")


def faults_of(resources):
    for language in sorted(LANGUAGES):
        folder = resources / f"{language}.lproj"
        for name in sorted(FILES):
            if not (folder / name).is_file():
                yield f"{folder.name}/{name}: missing"
                continue
            content = text_rules.read(folder / name)
            mark = MARKS_OF_PAGE.get(name)
            if mark and mark not in content:
                yield f"{folder.name}/{name}: {mark} is missing"
        table = folder / "Localizable.strings"
        texts = text_rules.read(table) if table.is_file() else {}
        for key in sorted(FOLLOWED_BY_A_NAME & texts.keys()):
            if not texts[key].endswith(BLANK_ENDS):
                yield f'{folder.name}/{table.name}: "{key}" must end in a blank, a name follows'


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    faults = list(faults_of(pathlib.Path(sys.argv[1])))
    print("\n".join(faults) if faults else "The sample's texts say what they must.")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
