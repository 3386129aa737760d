"""A signed file whose contents were changed after signing, and whose own sum was made to fit: refused
with the changed file's name before anybody is asked for administrator rights.
"""

import hashlib
import os
import pathlib
import re
import subprocess
import types
import unittest

from ctl import BUNDLE_UNUSABLE, DONE
from harness import ON_PRIVATE_MACHINE, SystemTest, tree, write
from rights import Account, Installation, start_polkit
from test_packages import tool

PROGRAM = pathlib.Path(os.environ["MKINSTALLER"])
ASKED = pathlib.Path("/run/asked")
# Grants everything, and notes each time that somebody wants to become root.
RULES = """polkit.addRule(function(action, subject) {
    polkit.spawn(["/bin/sh", "-c", "echo asked >> /run/asked"]);
    return polkit.Result.YES;
});
"""
SCRIPT = "Contents/Resources/files/PHOTOSHOP/Presets/Scripts/Filters 2.jsx"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make an account on the real system")
    SignedFiles.account = Account("customer")
    start_polkit(RULES)
    folder = pathlib.Path("/run/signed")
    tool(PROGRAM, "new", folder / "product", "--company", "Acme", "--product", "Filters 2", "--id",
         "com.acme.filters")
    tool(PROGRAM, "keygen", folder / "key")
    made = tool(PROGRAM, "pack", folder / "product", "--sign", folder / "key", "--output", folder)
    SignedFiles.signed = pathlib.Path(made.stdout.strip())


def repacked(file, scratch, change):
    """The file with other contents and the sum of these, as somebody would do it who has no key."""
    whole = file.read_bytes()
    start = int(re.search(rb'tail -n \+(\d+) "\$self" \| gzip', whole)[1])
    lines = whole.split(b"\n", start - 1)
    packed = scratch / "packed.tar.gz"
    packed.write_bytes(lines.pop())
    unpacked = scratch / "unpacked"
    unpacked.mkdir()
    tool("tar", "-xpzf", packed, "-C", unpacked)
    bundle, = unpacked.iterdir()
    change(bundle)
    tool("tar", "-czf", packed, "-C", unpacked, bundle.name)
    first, _, *rest = lines
    contents = b"\n".join(rest) + b"\n" + packed.read_bytes()
    found = hashlib.sha256(first + b"\n" + contents).hexdigest().encode()
    return write(scratch / file.name, first + b"\n{ # sum=" + found + b"\n" + contents, 0o755)


class SignedFiles(SystemTest):
    account = signed = None

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.account.own(self.disk.home)
        self.roots = ("/Library", "/Applications", str(self.disk.home))
        self.before = tree(*self.roots)
        # polkit's rules are read and obeyed by an account of its own.
        write(ASKED, mode=0o666)

    def changed(self, change=lambda bundle: write(bundle / SCRIPT, "changed")):
        return repacked(self.signed, self.scratch, change)

    def start(self, file, *arguments, **environment):
        return Installation(self, types.SimpleNamespace(executable=file), self.account,
                            {**self.environment, "PATH": os.environ["PATH"], **environment},
                            arguments=arguments).go_on().wait()

    def assertRefused(self, run, status, problem=f"{SCRIPT.removeprefix('Contents/')} was changed"):
        self.assertEqual(run.status, status, run.messages)
        self.assertIn(problem, run.messages)
        self.assertEqual(ASKED.read_text(), "")
        self.assertEqual(tree(*self.roots), self.before)

    def test_as_it_was_signed_it_is_installed_with_rights_that_are_asked_for(self):
        for file in (self.signed, repacked(self.signed, self.scratch, lambda bundle: None)):
            with self.subTest(file):
                ASKED.write_text("")
                run = self.start(file, "install")
                self.assertEqual(run.status, DONE, run.messages)
                self.assertEqual(ASKED.read_text(), "asked\n")
                self.assertEqual(self.start(file, "remove").status, DONE)

    def test_each_verb_of_the_administrators_tool_refuses_a_changed_file(self):
        file = self.changed()
        for verb in ("install", "plan", "verify", "remove", "status"):
            with self.subTest(verb):
                self.assertRefused(self.start(file, verb), BUNDLE_UNUSABLE)

    def test_a_quiet_run_refuses_a_changed_file(self):
        self.assertRefused(self.start(self.changed(), "-quiet"), 0)

    def test_a_window_is_not_opened_for_a_changed_file_and_a_person_sees_why(self):
        tools = self.scratch / "tools"
        shown = self.scratch / "shown"
        write(tools / "zenity", '#!/bin/sh\nprintf "%s\\n" "$@" > "$SHOWN"\n', 0o755)
        os.chown(self.scratch, self.account.user, self.account.group)
        run = self.start(self.changed(), DISPLAY=":77", SHOWN=str(shown),
                         PATH=f"{tools}:{os.environ['PATH']}")
        self.assertRefused(run, 1)
        self.assertIn("was changed", shown.read_text())

    def test_a_changed_program_is_refused_too(self):
        def change(bundle):
            with open(bundle / "Contents/MacOS/privileged-helper", "ab") as end:
                end.write(b"more")
        self.assertRefused(self.start(self.changed(change), "install"), BUNDLE_UNUSABLE,
                           "MacOS/privileged-helper was changed")

    def test_a_list_of_the_changed_files_does_not_help_without_the_key(self):
        def change(bundle):
            write(bundle / SCRIPT, "changed")
            listed = subprocess.run(
                "find . -type f ! -name 'manifest*' ! -name maker.pub -printf '%P\\0' |"
                " xargs -0 sha256sum > manifest", shell=True, check=True,
                cwd=bundle / "Contents", capture_output=True)
            self.assertEqual(listed.stderr, b"")
        self.assertRefused(self.start(self.changed(change), "install"), BUNDLE_UNUSABLE,
                           "manifest is not as its maker signed it")


if __name__ == "__main__":
    unittest.main(verbosity=2)
