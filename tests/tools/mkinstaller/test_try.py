#!/usr/bin/env python3
"""mkinstaller try: what it shows, that it tells an installer that does not do what the plan says,
and that nothing but its sample disk is changed.
"""

import os
import pathlib
import plistlib
import re
import unittest

from packing import PROGRAM, PackedProduct, run, script

OFFERED = ("Adobe Photoshop CC", "Adobe Photoshop CS6", "Adobe Photoshop CC 2015",
           "Adobe Photoshop CC 2015.5", "Adobe Photoshop CC 2019")


class Try(PackedProduct):
    def setUp(self):
        super().setUp()
        self.home = self.new_folder("home")

    def try_out(self, *options, program=PROGRAM, environment=None, check=True):
        return run(program, "try", self.product, *options, check=check,
                   environment={"TMPDIR": str(self.temporary), "HOME": str(self.home),
                                **(environment or {})})

    def add_application(self):
        contents = self.product / "files/HD/Applications/Acme Tool.app/Contents"
        (contents / "MacOS").mkdir(parents=True)
        script(contents / "MacOS/Tool", "exit 0\n")
        (contents / "Info.plist").write_bytes(plistlib.dumps({
            "CFBundleIdentifier": "com.acme.tool", "CFBundleName": "Acme Tool",
            "CFBundleExecutable": "Tool", "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": "1.0", "CFBundleVersion": "1.0"}))

    def test_installs_twice_as_planned_and_changes_nothing_else(self):
        shown = self.try_out().stdout
        self.assertIn("The plan: 11 items for 5 Photoshop releases\n", shown)
        self.assertIn("    /Applications/Adobe Photoshop CS6/Plug-Ins/Acme/Filters 2.plugin\n", shown)
        self.assertIn("\nInstalled: every item is where the plan says", shown)
        self.assertIn("\nInstalled again: every item is where the plan says", shown)
        self.assertEqual([], os.listdir(self.home))
        self.assertNothingUnpacked()

    def test_shows_what_a_customer_sees(self):
        seen = self.try_out().stdout.partition("What a customer sees\n")[2]
        self.assertIn("Filters 2 by Acme installs files for everybody", seen)
        self.assertEqual(sorted(OFFERED), sorted(re.findall(r"^    (Adobe .*)$", seen, re.MULTILINE)))
        self.assertIn("    /Library/Application Support/Acme/Filters 2 Installer.log\n", seen)

    def test_shows_what_is_left_out_and_why(self):
        (self.product / "files/HD/Notes.txt").write_text("notes")
        self.assertRegex(self.try_out().stdout, r"\n  left out: Notes.txt: .+\n")

    def test_registers_applications_on_the_disk(self):
        self.add_application()
        shown = self.try_out("--keep").stdout
        disk = pathlib.Path(shown.rpartition("The sample disk: ")[2].strip())
        entries = list(disk.glob("Users/*/.local/share/applications/*.desktop"))
        self.assertEqual(1, len(entries), shown)
        self.assertIn("/" + str(entries[0].relative_to(disk)) + "\n", shown)
        self.assertIn("/Applications/Acme Tool.app/Contents/MacOS/Tool", entries[0].read_text())
        self.assertNotIn(str(disk), entries[0].read_text())
        self.assertEqual([], os.listdir(self.home))

    def test_keeps_the_disk_if_asked_to(self):
        shown = self.try_out("--keep").stdout
        disk = pathlib.Path(shown.rpartition("The sample disk: ")[2].strip())
        self.assertTrue((disk / "Library/Application Support/Acme/Filters 2/Read Me.txt").is_file())
        self.assertEqual([disk.name], os.listdir(self.temporary))

    def test_refuses_a_product_with_an_error(self):
        (self.product / "files/HD").rename(self.product / "files/hd")
        refused = self.try_out(check=False)
        self.assertEqual((1, ""), (refused.returncode, refused.stdout))
        self.assertIn("error M071: ", refused.stderr)

    def test_tells_what_an_installer_did_not_install(self):
        refused = self.try_out(program=self.kit_with(Installer="echo no >&2\n"), check=False)
        self.assertEqual(1, refused.returncode)
        self.assertRegex(refused.stderr, "Installed: the disk is not as the plan says\n    .*/Filters 2/"
                                         "Read Me.txt is missing\n")
        self.assertTrue(refused.stderr.endswith("The installer said:\nno\n"))
        self.assertNothingUnpacked()

    def test_tells_what_an_installer_changed(self):
        real = PROGRAM.parent / "runtime/Contents/MacOS/Installer"
        spoiling = self.kit_with(Installer=f"""
mv "$0" "$0.sh"; cp '{real}' "$0"; "$0" -quiet; rm "$0"; mv "$0.sh" "$0"
for folder in "$INSTALLER_TARGET_VOLUME/Applications/Adobe Photoshop CS6"; do
    echo more >> "$folder/Presets/Scripts/Filters 2.jsx"
    touch "$folder/Plug-Ins/Acme/Filters 2.plugin/Contents/more"
    rm -r "$folder 2019" 2> /dev/null
done
exit 0
""")
        refused = self.try_out(program=spoiling, check=False)
        self.assertEqual(1, refused.returncode, refused.stdout)
        self.assertIn("Scripts/Filters 2.jsx has other contents\n", refused.stderr)
        self.assertIn("Filters 2.plugin/Contents/more is not in the payload\n", refused.stderr)

    def test_a_quiet_run_has_no_display_and_a_window_has_one(self):
        recording = self.kit_with(
            Installer='echo "$*,${DISPLAY-none},$INSTALLER_TARGET_VOLUME" >> "$RECORD"\n')
        record = self.scratch / "record"
        self.try_out(program=recording, environment={"RECORD": str(record)}, check=False)
        self.assertRegex(record.read_text(), f"^-quiet,none,{self.temporary}/[^/]+\n$")
        record.unlink()
        # Through env: what the tests share takes the display away.
        run("env", "DISPLAY=:77", f"RECORD={record}", f"TMPDIR={self.temporary}", recording, "try",
            self.product, "--window")
        self.assertRegex(record.read_text(), f"^,:77,{self.temporary}/[^/]+\n$")


if __name__ == "__main__":
    unittest.main()
