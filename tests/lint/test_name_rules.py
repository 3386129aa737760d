#!/usr/bin/env python3
"""Proves that name_rules.py, root_rules.py and example_rules.py find faults, on a small tree made for each case."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent


def run(check, files):
    """The status and the lines of the check in a folder with these files."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        result = subprocess.run([sys.executable, "-B", HERE / check, folder],
                                capture_output=True, text=True, check=False)
        return result.returncode, result.stdout.splitlines()


class NameRules(unittest.TestCase):
    def assertPasses(self, files):
        status, lines = run("name_rules.py", files)
        self.assertEqual(status, 0, lines)

    def assertFaults(self, files, *faults):
        self.assertEqual(run("name_rules.py", files), (1, list(faults)))

    def test_suites_that_begin_like_their_file_pass(self):
        self.assertPasses({
            "tests/a/DoorTest.cpp": "TEST(Door, Opens) {}\nTEST_F(DoorTest, Shuts) {}\n"
                                    "TEST_P(DoorLock, Locks) {}\n",
            "tests/system/test_front_door.py": "class FrontDoor(Case):\n    def test_opens(self): 0\n",
        })

    def test_words_that_only_begin_like_those_that_are_refused_pass(self):
        self.assertPasses({"tests/DoorTest.cpp": "TEST(Door, OrderIsKept) {}\n"
                                                 "TEST(Door, OffersAKey) {}\n"})

    def test_a_suite_that_does_not_begin_like_its_file_is_found(self):
        for macro in ("TEST", "TEST_F", "TEST_P"):
            self.assertFaults({"tests/DoorTest.cpp": f"\n{macro}(Window, Opens) {{}}\n"},
                              "tests/DoorTest.cpp:2: the suite Window does not begin with Door")

    def test_a_suite_over_two_lines_is_read(self):
        self.assertFaults({"tests/DoorTest.cpp": "TEST(Window,\n     Opens) {}\n"},
                          "tests/DoorTest.cpp:1: the suite Window does not begin with Door")

    def test_a_python_suite_that_does_not_begin_like_its_file_is_found(self):
        self.assertFaults(
            {"tests/test_front_door.py": "class Window(Case):\n    def test_opens(self): 0\n"},
            "tests/test_front_door.py:2: the suite Window does not begin with FrontDoor")

    def test_a_python_suite_that_only_inherits_its_tests_is_checked_too(self):
        self.assertFaults(
            {"tests/test_door.py": "class Door(Case):\n    def test_opens(self): 0\n"
                                   "class Window(Door):\n    pass\n"},
            "tests/test_door.py:3: the suite Window does not begin with Door")

    def test_each_word_that_continues_a_sentence_is_found(self):
        for word in ("And", "But", "Of", "Or", "That", "Unlike", "Which"):
            self.assertFaults({"tests/DoorTest.cpp": f"TEST(Door, {word}ItsKey) {{}}\n"},
                              f"tests/DoorTest.cpp:1: {word}ItsKey cannot be read on its own")
            name = f"{word.lower()}_its_key"
            self.assertFaults(
                {"tests/test_door.py": f"class Door(Case):\n    def test_{name}(self): 0\n"},
                f"tests/test_door.py:2: {name} cannot be read on its own")

    def test_a_tree_without_any_test_is_a_fault(self):
        self.assertEqual(run("name_rules.py", {"tests/README.md": "text"})[0], 1)

    def test_names_are_read_from_the_fixtures_of_no_lint(self):
        self.assertPasses({"tests/DoorTest.cpp": "TEST(Door, Opens) {}\n",
                           "tests/lint/fixtures/GateTest.cpp": "TEST(Window, AndShuts) {}\n"})


class NameRulesOfTheRootFolder(unittest.TestCase):
    def test_files_that_hold_something_pass(self):
        files = {"README.md": "text", "folder/empty": ""}
        self.assertEqual(run("root_rules.py", files)[0], 0)

    def test_each_empty_file_is_found(self):
        files = {"README.md": "text", "b.wmf": "", "a": "", "folder/empty": ""}
        self.assertEqual(run("root_rules.py", files),
                         (1, ["a: an empty file in the root folder",
                              "b.wmf: an empty file in the root folder"]))

    def test_a_folder_without_files_is_a_fault(self):
        self.assertEqual(run("root_rules.py", {"folder/file": "text"})[0], 1)


class NameRulesOfExamples(unittest.TestCase):
    README = "From `tests/DoorTest.cpp`:\n\n```cpp\nTEST(Door, Opens) {\n}\n```\n"

    def test_an_example_that_stands_in_its_file_passes(self):
        files = {"tests/README.md": self.README,
                 "tests/DoorTest.cpp": "int x;\n\nTEST(Door, Opens) {\n}\n"}
        self.assertEqual(run("example_rules.py", files)[0], 0)

    def test_an_example_that_has_changed_in_its_file_is_found(self):
        fault = ("tests/README.md: this example does not stand in tests/DoorTest.cpp: "
                 "TEST(Door, Opens) {")
        files = {"tests/README.md": self.README,
                 "tests/DoorTest.cpp": "TEST(Door, Opens) {\n    open();\n}\n"}
        self.assertEqual(run("example_rules.py", files), (1, [fault]))
        self.assertEqual(run("example_rules.py", {"tests/README.md": self.README}), (1, [fault]))

    def test_a_readme_without_examples_is_a_fault(self):
        self.assertEqual(run("example_rules.py", {"tests/README.md": "text"})[0], 1)


if __name__ == "__main__":
    unittest.main()
