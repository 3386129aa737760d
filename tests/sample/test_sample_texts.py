#!/usr/bin/env python3
"""Proves that sample_texts.py finds faults, in a copy of the sample's texts for each case."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
RESOURCES = HERE.parents[1] / "resources"


class SampleTexts(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        for language in RESOURCES.glob("*.lproj"):
            shutil.copytree(language, self.folder / language.name)

    def change(self, name, old, new):
        file = self.folder / name
        text = file.read_text(encoding="utf-8")
        self.assertIn(old, text)
        file.write_text(text.replace(old, new), encoding="utf-8")

    def assertFaults(self, *faults):
        result = subprocess.run([sys.executable, "-B", HERE / "sample_texts.py", self.folder],
                                capture_output=True, text=True, check=False)
        self.assertEqual((list(faults), 1), (result.stdout.splitlines(), result.returncode),
                         result.stderr)

    def test_a_missing_page_is_found(self):
        (self.folder / "de.lproj/license.txt").unlink()
        self.assertFaults("de.lproj/license.txt: missing")

    def test_a_missing_language_is_found(self):
        shutil.rmtree(self.folder / "fr.lproj")
        self.assertFaults(*(f"fr.lproj/{name}: missing" for name in (
            "Localizable.strings", "aperture.rtf", "host_running.rtf", "installer.strings",
            "license.txt", "proceed.rtf", "register.rtf")))

    def test_a_page_without_its_mark_is_found(self):
        self.change("es.lproj/proceed.rtf", "%PRODUCTNAME%", "Tonewright")
        self.change("es.lproj/host_running.rtf", "%HOSTNAME%", "Photoshop")
        self.assertFaults("es.lproj/host_running.rtf: %HOSTNAME% is missing",
                          "es.lproj/proceed.rtf: %PRODUCTNAME% is missing")

    def test_a_text_that_would_run_together_with_the_name_behind_it_is_found(self):
        self.change("en.lproj/Localizable.strings", '"Installing "', '"Installing"')
        self.assertFaults('en.lproj/Localizable.strings: "installing_file" must end in a blank, '
                          "a name follows")

    def test_a_full_width_colon_needs_no_blank(self):
        table = (self.folder / "ja.lproj/Localizable.strings").read_text(encoding="utf-8")
        self.assertRegex(table, '"installing_file" = "[^"]*\N{FULLWIDTH COLON}"')


if __name__ == "__main__":
    unittest.main()
