#!/usr/bin/env python3
"""Proves that include_rules.py finds what it is there to find, on sources made for each case.

The real table of ARCHITECTURE.md is used where a direction between the project's own folders is
meant, a small one where the reading of tables is.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
ARCHITECTURE = HERE.parent.parent / "ARCHITECTURE.md"

sys.path.insert(0, str(HERE))
import include_rules  # noqa: E402

REAL = include_rules.Table(ARCHITECTURE.read_text(encoding="utf-8"))

# The house from its top to its ground floor, said once more in the coarse: what stands further
# left may never be included by what stands further right. Between the members of one floor no
# arrow is allowed either.
FLOORS = [
    ["tools/mkinstaller"],
    ["tools/mkinstaller/lint", "tools/mkinstaller/making"],
    ["app/main.cpp"],
    ["app"],
    ["qt/window", "linux/desktop", "linux/rights", "steps/install", "steps/hosts"],
    ["install/engine", "wizard", "linux/files", "privileged/helper"],
    ["hosts", "privileged/trees"],
    ["product", "privileged/system"],
    ["ports"],
    ["foundation/text"],
    ["foundation/values"],
]

SMALL = """
| folder | what is in it | may include | outside headers |
|---|---|---|---|
| `src/window` | | `core`, `values` | toolkit |
| `src/privileged` | | `values` | system |
| `src/core` | | `values` | standard |
| `src/core/streams` | | `values` | standard and streams |
| `src/values` | | | standard |
"""


def header_in(place):
    return place if place.endswith(".cpp") else f"{place}/Aim.h"


class IncludeRules(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.source = pathlib.Path(self.folder.name) / "src"

    def write(self, path, text=""):
        file = self.source / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def make_every_place_of(self, table):
        for place in table.places:
            self.write(header_in(place))

    def faults(self, table):
        return include_rules.all_faults(table, self.source)[1]

    def faults_of_small(self, text=SMALL, **files):
        table = include_rules.Table(text)
        self.make_every_place_of(table)
        for path, content in files.items():
            self.write(path, content)
        return self.faults(table)

    def small(self, files):
        return self.faults_of_small(**files)

    # The project's own table.

    def test_no_folder_may_include_one_that_stands_above_it_in_the_table(self):
        self.make_every_place_of(REAL)
        for index, lower in enumerate(REAL.places):
            for upper in REAL.places[:index]:
                with self.subTest(f"{lower} -> {upper}"):
                    probe = f"{lower}/Probe.cpp" if not lower.endswith(".cpp") else lower
                    self.write(probe, f'#include "{header_in(upper)}"\n')
                    self.assertIn(
                        f'{probe}:1: {lower} may not include {upper}: "{header_in(upper)}"',
                        self.faults(REAL),
                    )
                    (self.source / probe).unlink()
                    self.make_every_place_of(REAL)

    def test_no_arrow_runs_up_or_along_a_floor(self):
        for height, floor in enumerate(FLOORS):
            for place in floor:
                for other in (p for above in FLOORS[: height + 1] for p in above if p != place):
                    with self.subTest(f"{place} -> {other}"):
                        self.assertIn(place, REAL.places)
                        self.assertFalse(REAL.allows(place, other))

    def test_the_core_knows_no_adapter_and_the_window_no_rule(self):
        core = ["app", "steps", "install", "hosts", "wizard", "product", "ports", "foundation"]
        adapters = ["linux", "qt", "privileged"]
        for place in (p for top in core for p in REAL.named(top) if p != "app/main.cpp"):
            for other in (p for top in adapters for p in REAL.named(top)):
                self.assertFalse(REAL.allows(place, other), f"{place} -> {other}")
        for place in REAL.named("qt") + REAL.named("linux"):
            for other in (p for top in core[:-2] for p in REAL.named(top)):
                self.assertFalse(REAL.allows(place, other), f"{place} -> {other}")
        # An installer that root has started runs the helper's tools in its own process.
        for place in (p for p in REAL.named("linux") if p != "linux/rights"):
            self.assertFalse(REAL.allows(place, "privileged/helper"), place)

    def test_what_runs_as_root_knows_itself_and_the_smallest_values(self):
        rows = REAL.named("privileged")
        self.assertTrue(rows)
        for place in rows:
            for other in REAL.places:
                if other not in rows + ["foundation/values"]:
                    self.assertFalse(REAL.allows(place, other), f"{place} -> {other}")

    def test_only_the_window_module_has_the_toolkit_and_only_adapters_and_tools_the_system(self):
        for place in REAL.places:
            outside = REAL.outside[place]
            self.assertEqual(outside == "toolkit", place.startswith("qt/"), place)
            self.assertEqual(
                outside == "system", place.startswith(("linux/", "privileged/", "tools/")), place
            )

    # How the table is read.

    def test_sources_that_keep_the_rules_pass(self):
        self.assertEqual(
            [],
            self.small(
                {
                    "window/Page.cpp": '#include <QWidget>\n#include "core/Aim.h"\n#include <string>\n',
                    "privileged/Helper.cpp": '#include <sys/stat.h>\n#include "values/Aim.h"\n',
                    "core/streams/Log.cpp": "#include <iostream>\n",
                    "core/Rule.cpp": '#include "core/Aim.h"\n#include "values/Aim.h"\n',
                }
            ),
        )

    def test_an_include_that_the_table_does_not_allow_is_found(self):
        self.assertEqual(
            ['core/Rule.cpp:2: core may not include window: "window/Aim.h"'],
            self.small({"core/Rule.cpp": '\n#include "window/Aim.h"\n'}),
        )

    def test_a_subfolder_with_its_own_row_has_its_own_rules(self):
        self.assertEqual(
            ['core/Rule.cpp:1: core may not include core/streams: "core/streams/Aim.h"'],
            self.small({"core/Rule.cpp": '#include "core/streams/Aim.h"\n'}),
        )

    def test_a_folder_without_a_row_is_found(self):
        self.assertEqual(
            {
                'core/Rule.cpp:1: core may not include a folder without a row: "core/new/X.h"',
                "core/new/X.h: the table has no row for src/core/new",
                "Stray.h: the table has no row for a file directly in src/",
            },
            set(
                self.small(
                    {
                        "core/new/X.h": "",
                        "Stray.h": "",
                        "core/Rule.cpp": '#include "core/new/X.h"\n',
                    }
                )
            ),
        )

    def test_a_row_without_its_folder_is_found(self):
        table = include_rules.Table(SMALL)
        self.write("values/Aim.h")
        self.assertIn(
            "core: the table has a row, the sources have no such place", self.faults(table)
        )

    def test_a_table_that_allows_a_row_above_is_found(self):
        upward = SMALL.replace("| `src/values` | | |", "| `src/values` | | `core` |")
        self.assertIn(
            "values: the table allows core, which stands above it", self.faults_of_small(upward)
        )

    def test_a_table_that_allows_what_it_does_not_have_is_found(self):
        unknown = SMALL.replace("`core`, `values`", "`core`, `nowhere`")
        self.assertIn(
            "window: the table allows nowhere, which has no row", self.faults_of_small(unknown)
        )

    def test_an_unknown_kind_of_headers_is_found(self):
        unknown = SMALL.replace("toolkit", "anything")
        self.assertIn('window: "anything" is no kind of headers', self.faults_of_small(unknown))

    def test_what_the_privileged_side_reaches_through_a_chain_is_found(self):
        found = self.small(
            {
                "privileged/Helper.cpp": '#include "values/Aim.h"\n',
                "values/Aim.h": '#include "core/Aim.h"\n',
            }
        )
        self.assertIn(
            "privileged/Helper.cpp: reaches core/Aim.h through "
            "privileged/Helper.cpp -> values/Aim.h -> core/Aim.h",
            found,
        )

    # Headers from outside the project.

    def test_outside_headers_that_a_folder_may_not_use_are_found(self):
        cases = {
            "<sys/stat.h>": "the system header <sys/stat.h> outside linux and privileged",
            "<unistd.h>": "the system header <unistd.h> outside linux and privileged",
            "<plist/plist.h>": "the system header <plist/plist.h> outside linux and privileged",
            "<QWidget>": "the toolkit's <QWidget> outside the window module",
            "<QtWidgets/QLabel>": "the toolkit's <QtWidgets/QLabel> outside the window module",
            '"ui_Main.h"': "the toolkit's <ui_Main.h> outside the window module",
            "<filesystem>": "<filesystem> reaches past the ports",
            "<fstream>": "<fstream> reaches past the ports",
        }
        for header, fault in cases.items():
            with self.subTest(header):
                self.assertEqual(
                    [f"core/Rule.cpp:1: {fault}"],
                    self.small({"core/Rule.cpp": f"#include {header}\n"}),
                )

    def test_adapters_may_not_use_the_toolkit_nor_the_window_the_system(self):
        self.assertEqual(
            ["privileged/Helper.cpp:1: the toolkit's <QFile> outside the window module"],
            self.small({"privileged/Helper.cpp": "#include <QFile>\n"}),
        )
        (self.source / "privileged/Helper.cpp").unlink()
        self.assertEqual(
            ["window/Page.cpp:1: the system header <unistd.h> outside linux and privileged"],
            self.small({"window/Page.cpp": "#include <unistd.h>\n"}),
        )

    # Ways to write an include that would escape the rules.

    def test_an_include_that_cannot_be_followed_is_found(self):
        cases = {
            '"Aim.h"': '"Aim.h" is no path from src/ on',
            '"../window/Aim.h"': '"../window/Aim.h" is no path from src/ on',
            "HEADER": "cannot tell what is included: HEADER",
        }
        for header, fault in cases.items():
            with self.subTest(header):
                self.assertEqual(
                    [f"core/Rule.cpp:1: {fault}"],
                    self.small({"core/Rule.cpp": f"#include {header}\n"}),
                )

    def test_an_include_with_unusual_blanks_is_found(self):
        self.assertEqual(
            ['core/Rule.cpp:1: core may not include window: "window/Aim.h"'],
            self.small({"core/Rule.cpp": '  #  include   "window/Aim.h"\n'}),
        )

    # The program itself.

    def test_sources_or_a_table_that_are_not_there_are_no_success(self):
        script = HERE / "include_rules.py"
        empty = pathlib.Path(self.folder.name) / "empty"
        empty.mkdir()
        no_table = pathlib.Path(self.folder.name) / "no-table.md"
        no_table.write_text("no rows", encoding="utf-8")
        for arguments in ([ARCHITECTURE, empty], [no_table, HERE.parent.parent / "src"], []):
            result = subprocess.run(
                [sys.executable, "-B", script, *arguments], capture_output=True, check=False
            )
            self.assertNotEqual(0, result.returncode)


if __name__ == "__main__":
    unittest.main()
