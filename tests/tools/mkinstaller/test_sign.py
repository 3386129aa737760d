#!/usr/bin/env python3
"""Signed files: minisign(1) reads what mkinstaller writes and the other way round, and a signed
installer installs nothing if a file of it is not as it was signed.
"""

import os
import shutil
import stat
import unittest

from packing import PROGRAM, PackedProduct, run


def minisign(*arguments, check=True):
    return run("minisign", *arguments, check=check)


class Sign(PackedProduct):
    def setUp(self):
        super().setUp()
        self.key = self.scratch / "maker"
        self.public = self.scratch / "maker.pub"
        run(PROGRAM, "keygen", self.key)

    def pack_signed(self, form="tar", key=None, output=None):
        output = output or self.output
        made = run(PROGRAM, "pack", self.product, "--format", form, "--output", output, "--sign",
                   key or self.key)
        return [output / name for name in made.stdout.replace(f"{output}/", "").splitlines()]

    def verify(self, file, key=None):
        return minisign("-V", "-q", "-p", key or self.public, "-m", file, check=False).returncode

    def test_the_secret_key_is_for_its_owner_alone_and_never_replaced(self):
        self.assertEqual(0o600, stat.S_IMODE(os.stat(self.key).st_mode))
        before = self.key.read_text()
        again = run(PROGRAM, "keygen", self.key, check=False)
        self.assertEqual((1, ""), (again.returncode, again.stdout))
        self.assertEqual(before, self.key.read_text())

    def test_keys_differ(self):
        run(PROGRAM, "keygen", self.scratch / "other")
        self.assertNotEqual(self.public.read_text(), (self.scratch / "other.pub").read_text())

    def test_each_file_has_a_signature_that_minisign_accepts(self):
        files = self.pack_signed("run,tar")
        self.assertEqual(4, len(os.listdir(self.output)))
        for file in files:
            self.assertEqual(0, self.verify(file))
            with open(file, "ab") as end:
                end.write(b"x")
            self.assertNotEqual(0, self.verify(file))

    def test_minisign_signs_with_the_key(self):
        minisign("-S", "-s", self.key, "-m", self.public)
        self.assertEqual(0, self.verify(self.public))

    def test_signs_with_a_key_of_minisign(self):
        theirs = self.scratch / "theirs"
        minisign("-G", "-W", "-p", f"{theirs}.pub", "-s", theirs)
        self.assertEqual(0, self.verify(self.pack_signed(key=theirs)[0], f"{theirs}.pub"))

    def test_what_is_no_key_is_told_and_nothing_is_packed(self):
        damaged = self.scratch / "damaged"
        lines = self.key.read_text().split("\n")
        lines[1] = lines[1][:100] + ("A" if lines[1][100] != "A" else "B") + lines[1][101:]
        damaged.write_text("\n".join(lines))
        locked = self.scratch / "locked"
        run("sh", "-c", 'printf "password\\npassword\\n" | minisign -G -p "$1.pub" -s "$1"', "sh",
            locked)
        for key, problem in ((damaged, "it is damaged"), (self.public, "it is no secret key"),
                             (self.scratch / "none", "it cannot be read"),
                             (locked, "it has a password")):
            packed = run(PROGRAM, "pack", self.product, "--output", self.output, "--sign", key,
                         check=False)
            self.assertEqual((1, ""), (packed.returncode, packed.stdout))
            self.assertIn(f"the key {key}: {problem}", packed.stderr)
            self.assertFalse(self.output.exists())

    def test_the_same_product_and_key_give_the_same_bytes(self):
        first = self.pack_signed("run,tar", output=self.scratch / "first")
        second = self.pack_signed("run,tar", output=self.scratch / "second")
        for left, right in zip(first, second):
            self.assertEqual(left.read_bytes(), right.read_bytes())
            self.assertEqual(left.with_name(left.name + ".minisig").read_bytes(),
                             right.with_name(right.name + ".minisig").read_bytes())


class SignedInstaller(PackedProduct):
    def setUp(self):
        super().setUp()
        run(PROGRAM, "keygen", self.scratch / "maker")
        run(PROGRAM, "pack", self.product, "--format", "run,tar", "--output", self.output,
            "--sign", self.scratch / "maker")
        run("tar", "-xzf", self.output / "Acme-Filters-2-1.0.0.tar.gz", "-C", self.scratch)
        self.contents = self.scratch / "Acme Filters 2 Installer.app/Contents"
        self.volume, self.environment = self.new_volume()
        self.payload = self.contents / "Resources/files/PHOTOSHOP/Presets/Scripts/Filters 2.jsx"

    def install(self, program=None):
        return run(program or self.contents / "MacOS/Installer", "-quiet", check=False,
                   environment=self.environment)

    def assertRefused(self, problem):
        refused = self.install()
        self.assertIn(problem, refused.stderr)
        self.assertIn("; nothing is installed.", refused.stderr)
        self.assertEqual([], os.listdir(self.volume))
        return refused

    def test_installs_from_the_bundle_and_from_one_file(self):
        for program in (None, self.output / "Acme-Filters-2-1.0.0.run"):
            installed = self.install(program)
            self.assertTrue((self.volume / "Library/Application Support/Acme/Filters 2").is_dir(),
                            installed.stderr)
            shutil.rmtree(self.volume / "Library")

    def test_the_list_can_be_checked_with_the_systems_own_tools(self):
        minisign("-V", "-q", "-p", self.scratch / "maker.pub", "-m", self.contents / "manifest")
        run("sha256sum", "--check", "--strict", "--quiet", "manifest", cwd=self.contents)

    def test_a_changed_file_is_named_and_nothing_installed(self):
        with open(self.payload, "a", encoding="utf-8") as end:
            end.write("more")
        self.assertRefused("Presets/Scripts/Filters 2.jsx was changed")

    def test_a_changed_program_is_named(self):
        with open(self.contents / "MacOS/privileged-helper", "ab") as end:
            end.write(b"more")
        self.assertRefused("MacOS/privileged-helper was changed")

    def test_a_missing_file_is_named(self):
        self.payload.unlink()
        self.assertRefused("Presets/Scripts/Filters 2.jsx is missing")

    def test_an_added_file_is_named(self):
        self.payload.with_name("More.jsx").touch()
        self.assertRefused("Presets/Scripts/More.jsx is not part of")

    def test_a_link_in_place_of_a_file_is_named(self):
        elsewhere = self.scratch / "elsewhere"
        self.payload.rename(elsewhere)
        self.payload.symlink_to(elsewhere)
        self.assertRefused("Presets/Scripts/Filters 2.jsx was changed")

    def test_a_changed_list_is_refused(self):
        with open(self.payload, "a", encoding="utf-8") as end:
            end.write("more")
        run("sh", "-c", "find . -type f ! -name 'manifest*' ! -name maker.pub | sed 's|^./||' |"
                        "while read -r file; do sha256sum \"$file\"; done > manifest",
            cwd=self.contents)
        self.assertRefused("manifest is not as its maker signed it")

    def test_a_seal_that_lacks_a_part_is_refused(self):
        for part in ("manifest", "manifest.minisig", "maker.pub"):
            with self.subTest(part):
                (self.contents / part).rename(self.scratch / part)
                self.assertRefused("the signature of the installer is incomplete")
                (self.scratch / part).rename(self.contents / part)

    def test_a_window_is_refused_too(self):
        self.payload.unlink()
        refused = run(self.contents / "MacOS/Installer", environment=self.environment, check=False)
        self.assertEqual(1, refused.returncode)
        self.assertIn("is missing", refused.stderr)


if __name__ == "__main__":
    unittest.main()
