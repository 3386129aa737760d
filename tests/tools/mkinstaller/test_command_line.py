#!/usr/bin/env python3
"""mkinstaller's command line: what it prints, where, and how it ends. The program is the argument."""

import json
import os
import pathlib
import pty
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1))
COMPLETION = PROGRAM.parent / "mkinstaller.bash"
MANUAL = PROGRAM.parent / "mkinstaller.1"
VERBS = ("new", "lint", "try", "build", "pack", "keygen", "help")


def run(*arguments, **environment):
    return subprocess.run(
        [PROGRAM, *arguments],
        capture_output=True,
        text=True,
        check=False,
        env={**os.environ, **environment},
    )


def run_on_terminal(*arguments, **environment):
    """What the program writes when its standard output is a terminal."""
    leader, follower = pty.openpty()
    with subprocess.Popen(
        [PROGRAM, *arguments], stdout=follower, env={**os.environ, "TERM": "xterm", **environment}
    ) as process:
        process.wait()
    os.close(follower)
    with open(leader, "rb", buffering=0) as terminal:
        return terminal.read(65536).decode()


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.product = self.folder / "product"
        made = run("new", self.product, "--company", "Acme", "--product", "Filters 2",
                   "--id", "com.acme.filters", "--languages", "en,de,ja")
        self.assertEqual(0, made.returncode, made.stderr)
        self.table = self.product / "de.lproj/Localizable.strings"

    def spoil(self, text, by):
        contents = self.table.read_text("utf-8")
        self.assertIn(text, contents)
        self.table.write_text(contents.replace(text, by, 1), "utf-8")

    def make_error(self):
        self.spoil('"Weiter";', '"Weiter"')

    def make_warning(self):
        self.spoil('"Weiter"', '"Continue"')

    def test_a_clean_product_gives_no_line_and_status_0(self):
        result = run("lint", self.product)
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))

    def test_new_makes_the_languages_that_are_asked_for(self):
        names = sorted(folder.name for folder in self.product.glob("*.lproj"))
        self.assertEqual(["de.lproj", "en.lproj", "ja.lproj"], names)

    def test_an_error_is_one_line_with_its_place_and_status_1(self):
        self.make_error()
        result = run("lint", self.product)
        self.assertEqual(1, result.returncode)
        self.assertEqual(
            f'{self.table}:2: error M014: ";" is missing after the value of "continue"; '
            "write ; behind the text\n",
            result.stdout,
        )

    def test_a_warning_leaves_status_0_unless_it_is_strict(self):
        self.make_warning()
        result = run("lint", self.product)
        self.assertEqual(0, result.returncode)
        self.assertIn(f"{self.table}:2: warning M023: ", result.stdout)
        strict = run("lint", "--strict", self.product)
        self.assertEqual(1, strict.returncode)
        self.assertIn(f"{self.table}:2: error M023: ", strict.stdout)

    def test_json_says_the_same(self):
        self.make_warning()
        self.make_error_elsewhere()
        result = run("lint", "--json", self.product)
        told = json.loads(result.stdout)
        self.assertEqual(1, result.returncode)
        self.assertEqual((1, 1), (told["errors"], told["warnings"]))
        self.assertEqual(["M023", "M014"], [finding["code"] for finding in told["findings"]])
        first = told["findings"][0]
        self.assertEqual(
            (str(self.table), 2, "warning"), (first["file"], first["line"], first["severity"])
        )
        self.assertTrue(first["problem"] and first["repair"] and first["title"])

    def make_error_elsewhere(self):
        self.spoil('"quit" = "Beenden";', '"quit" = "Beenden"')

    def test_json_of_a_clean_product_has_no_findings(self):
        told = json.loads(run("lint", "--json", self.product).stdout)
        self.assertEqual([], told["findings"])

    def test_json_survives_a_name_that_is_not_utf_8(self):
        os.close(os.open(os.fsencode(self.product / "files/PHOTOSHOP") + b"/\xff", os.O_CREAT))
        told = json.loads(run("lint", "--json", self.product).stdout)
        self.assertEqual(["M086"], [finding["code"] for finding in told["findings"]])

    def test_a_line_feed_in_a_name_does_not_make_two_lines(self):
        (self.product / "files/PHOTOSHOP/Read\nMe").touch()
        self.assertEqual(1, run("lint", self.product).stdout.count("\n"))

    def test_colours_are_for_terminals_only(self):
        self.make_error()
        self.assertNotIn("\033", run("lint", self.product).stdout)
        self.assertIn("\033[1;31merror\033[0m", run_on_terminal("lint", self.product, NO_COLOR=""))
        self.assertNotIn("\033", run_on_terminal("lint", self.product, NO_COLOR="1"))
        self.assertNotIn("\033", run_on_terminal("lint", self.product, TERM="dumb"))

    def test_build_puts_a_bundle_together_that_lint_accepts(self):
        result = run("build", self.product, "--output", self.folder)
        bundle = self.folder / "Acme Filters 2 Installer.app"
        self.assertEqual((0, f"{bundle}\n"), (result.returncode, result.stdout), result.stderr)
        self.assertTrue(os.access(bundle / "Contents/MacOS/Installer", os.X_OK))
        self.assertFalse((bundle / "Contents/Resources/README.md").exists())
        self.assertEqual((0, ""), (run("lint", bundle).returncode, run("lint", bundle).stdout))

    def test_what_build_makes_installs_the_product_at_once(self):
        run("build", self.product, "--output", self.folder)
        disk = self.folder / "disk"
        disk.mkdir()
        installer = self.folder / "Acme Filters 2 Installer.app/Contents/MacOS/Installer"
        environment = {**os.environ, "INSTALLER_TARGET_VOLUME": str(disk)}
        environment.pop("DISPLAY", None)
        subprocess.run([installer, "-quiet"], env=environment, capture_output=True, check=True)
        support = disk / "Library/Application Support/Acme"
        self.assertTrue((support / "Filters 2/Read Me.txt").is_file())
        self.assertIn("Read Me.txt", (support / "Filters 2 Installer.log").read_text("utf-8"))

    def test_pack_makes_signed_files(self):
        run("keygen", self.folder / "key")
        result = run("pack", self.product, "--format", "run,tar", "--sign", self.folder / "key",
                     "--output", self.folder / "files")
        self.assertEqual(0, result.returncode, result.stderr)
        made = [pathlib.Path(line) for line in result.stdout.splitlines()]
        self.assertEqual([".run", ".gz"], [file.suffix for file in made])
        for file in made:
            self.assertTrue(file.is_file())
            self.assertTrue(file.with_name(file.name + ".minisig").is_file())

    def test_wrong_use_has_status_2_and_says_why_on_standard_error(self):
        cases = {
            "no verb": [],
            "unknown verb": ["polish"],
            "no product": ["lint"],
            "product that is no folder": ["lint", self.folder / "nothing"],
            "unknown option": ["lint", "--loud", self.product],
            "no company": ["new", self.folder / "a", "--product", "P", "--id", "com.acme.p"],
            "identifier without dots": ["new", self.folder / "a", "--company", "C", "--product",
                                        "P", "--id", "p"],
            "folder that is not empty": ["new", self.product, "--company", "C", "--product", "P",
                                         "--id", "com.acme.p"],
            "help on nothing known": ["help", "M999"],
        }
        for name, arguments in cases.items():
            with self.subTest(name):
                result = run(*arguments)
                self.assertEqual((2, ""), (result.returncode, result.stdout))
                self.assertTrue(result.stderr)

    def test_help_and_version_have_status_0(self):
        for arguments in (["--help"], ["help"], ["lint", "--help"], ["help", "new"]):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual((0, ""), (result.returncode, result.stderr))
                self.assertIn("Usage: mkinstaller", result.stdout)
        self.assertRegex(run("--version").stdout, r"^mkinstaller \d+\.\d+\.\d+\n$")

    def test_help_explains_a_code(self):
        for code in ("M014", "m014"):
            result = run("help", code)
            self.assertEqual(0, result.returncode)
            self.assertTrue(result.stdout.startswith("M014 error: a semicolon is missing\n"))
            self.assertIn('    "quit" = "Quit";\n', result.stdout)
            self.assertNotIn("M015", result.stdout)

    def test_help_on_the_last_code_of_a_group_ends_with_it(self):
        self.assertNotIn("Tables of texts", run("help", "M009").stdout)


def options_of(verb):
    """The long options that the program itself says it has."""
    return set(re.findall(r"--[a-z-]+", run(verb, "--help").stdout))


def completed(*words):
    """What bash offers for the last one of the words."""
    script = (
        f"source '{COMPLETION}'; COMP_WORDS=(mkinstaller \"$@\"); COMP_CWORD=$#; _mkinstaller; "
        'printf "%s\\n" "${COMPREPLY[@]}"'
    )
    result = subprocess.run(
        ["bash", "-c", script, "bash", *words], capture_output=True, text=True, check=True
    )
    return set(result.stdout.split())


class CommandLineSurroundings(unittest.TestCase):
    """The completion and the manual page know the verbs and options that the program has."""

    def test_verbs_are_completed(self):
        self.assertEqual({*VERBS, "--help", "--version"}, completed(""))
        self.assertEqual({"lint"}, completed("li"))
        self.assertEqual(set(VERBS), completed("help", ""))

    def test_the_options_of_each_verb_are_completed(self):
        for verb in VERBS[:-1]:
            with self.subTest(verb):
                self.assertEqual(options_of(verb), completed(verb, "--"))

    def test_what_is_no_option_is_completed_as_a_folder(self):
        folder = str(PROGRAM.parent / "runtime")
        self.assertEqual({folder}, completed("lint", folder[:-2]))

    def test_the_manual_page_names_every_verb_and_option(self):
        manual = MANUAL.read_text("utf-8").replace("\\-", "-")
        for verb in VERBS:
            self.assertIn(verb, manual)
            for option in options_of(verb):
                self.assertIn(option, manual)


if __name__ == "__main__":
    unittest.main()
