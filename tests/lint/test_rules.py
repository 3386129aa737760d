#!/usr/bin/env python3
"""Proves that the checks beside this file find what they are there to find.

fixtures/promises/good and fixtures/texts/base keep every rule. Each folder
below bad/ breaks one: its expected.txt holds the lines that the check must print, no more and no
fewer. A case of texts is the base with the case's files laid over it and without what the case's
removed.txt lists.
"""

import contextlib
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent


def run(check, *folders):
    return subprocess.run(
        [sys.executable, "-B", HERE / check, *folders], capture_output=True, text=True, check=False
    )


TEXTS = HERE / "fixtures/texts"


@contextlib.contextmanager
def over_the_base(case):
    """A folder of texts: the base, changed by the case."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copytree(TEXTS / "base", folder, dirs_exist_ok=True)
        removed = case / "removed.txt"
        for path in removed.read_text(encoding="utf-8").split() if removed.exists() else ():
            if (folder / path).is_dir():
                shutil.rmtree(folder / path)
            else:
                (folder / path).unlink()
        notes = shutil.ignore_patterns("expected.txt", "removed.txt")
        shutil.copytree(case, folder, dirs_exist_ok=True, ignore=notes)
        yield folder


class Rules(unittest.TestCase):
    def assertKeepsTheRules(self, check, folder):
        result = run(check, folder)
        self.assertEqual((0, ""), (result.returncode, result.stderr), result.stdout)

    def assertEachIsFound(self, check, fixtures, folder_of):
        cases = sorted((fixtures / "bad").iterdir())
        self.assertTrue(cases)
        for case in cases:
            with self.subTest(case.name), folder_of(case) as folder:
                expected = (case / "expected.txt").read_text(encoding="utf-8")
                self.assertTrue(expected)
                result = run(check, folder)
                self.assertEqual((expected, 1), (result.stdout, result.returncode), result.stderr)

    def test_promises_whose_tests_are_there_pass(self):
        self.assertKeepsTheRules("promise_rules.py", HERE / "fixtures/promises/good")

    def test_each_promise_without_its_test_is_found(self):
        self.assertEachIsFound(
            "promise_rules.py", HERE / "fixtures/promises", contextlib.nullcontext
        )

    def test_languages_that_agree_pass(self):
        self.assertKeepsTheRules("text_rules.py", TEXTS / "base")

    def test_a_folder_without_any_language_is_found(self):
        with tempfile.TemporaryDirectory() as folder:
            result = run("text_rules.py", folder)
            self.assertEqual(("no language\n", 1), (result.stdout, result.returncode))

    def test_a_table_that_no_language_has_holds_none_of_the_keys_that_are_asked_for(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            (folder / "en.lproj").mkdir()
            shutil.copy(TEXTS / "base/en.lproj/license.txt", folder / "en.lproj")
            result = run("text_rules.py", folder, HERE / "fixtures/look-ups/good")
            self.assertEqual(1, result.returncode, result.stderr)
            self.assertIn('en.lproj/Localizable.strings: the sources ask for', result.stdout)

    def test_each_difference_between_languages_is_found(self):
        self.assertEachIsFound("text_rules.py", TEXTS, over_the_base)

    def test_a_text_that_the_sources_ask_for_and_no_language_has_is_found(self):
        languages = TEXTS / "base"
        asking = HERE / "fixtures/look-ups"
        self.assertEqual(0, run("text_rules.py", languages, asking / "good").returncode)
        result = run("text_rules.py", languages, asking / "bad")
        expected = (asking / "bad/expected.txt").read_text(encoding="utf-8")
        self.assertEqual((expected, 1), (result.stdout, result.returncode), result.stderr)


if __name__ == "__main__":
    unittest.main()
