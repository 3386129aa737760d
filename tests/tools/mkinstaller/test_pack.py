#!/usr/bin/env python3
"""mkinstaller pack: what it refuses, what it makes, and that the same product gives the same bytes."""

import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import tarfile
import unittest

from packing import PROGRAM, TIME_LIMIT, PackedProduct, run, script

FORMATS = ("run", "tar", "deb", "rpm")


class Pack(PackedProduct):
    def test_an_error_is_told_and_nothing_is_made(self):
        table = self.product / "de.lproj/Localizable.strings"
        table.write_text(table.read_text("utf-8").replace('"Weiter";', '"Weiter"', 1), "utf-8")
        packed = run(PROGRAM, "pack", self.product, "--format", ",".join(FORMATS), "--output",
                     self.output, check=False)
        self.assertEqual((1, ""), (packed.returncode, packed.stdout))
        self.assertIn(f"{table}:2: error M014: ", packed.stderr)
        self.assertFalse(self.output.exists())

    def test_a_warning_is_told_and_the_file_made(self):
        table = self.product / "de.lproj/Localizable.strings"
        table.write_text(table.read_text("utf-8").replace('"Weiter";', '"Continue";', 1), "utf-8")
        packed = run(PROGRAM, "pack", self.product, "--output", self.output)
        self.assertIn("warning M023: ", packed.stderr)
        self.assertTrue(pathlib.Path(packed.stdout.removesuffix("\n")).is_file())

    def test_prints_the_path_of_each_file_and_leaves_nothing_else(self):
        packed = run(PROGRAM, "pack", self.product, "--format", ",".join(FORMATS), "--output",
                     self.output, environment={"TMPDIR": str(self.temporary)})
        machine = run("uname", "-m").stdout.strip()
        debian = run("dpkg", "--print-architecture").stdout.strip()
        self.assertEqual([f"{self.output}/Acme-Filters-2-1.0.0.run",
                          f"{self.output}/Acme-Filters-2-1.0.0.tar.gz",
                          f"{self.output}/acme-filters-2-installer_1.0.0_{debian}.deb",
                          f"{self.output}/acme-filters-2-installer-1.0.0-1.{machine}.rpm"],
                         packed.stdout.splitlines())
        self.assertEqual(len(FORMATS), len(os.listdir(self.output)))
        self.assertNothingUnpacked()

    def test_a_bundle_is_packed_as_its_sources_are(self):
        from_sources = self.pack("tar").read_bytes()
        run(PROGRAM, "build", self.product, "--output", self.scratch)
        self.product = self.scratch / "Acme Filters 2 Installer.app"
        self.assertEqual(from_sources, self.pack("tar").read_bytes())

    def test_wrong_use_has_status_2(self):
        for arguments in (["pack"], ["pack", self.product, "--format", "zip"],
                          ["pack", self.scratch / "nothing"]):
            self.assertEqual(2, run(PROGRAM, *arguments, check=False).returncode)

    def test_a_folder_that_cannot_be_written_is_told(self):
        self.output.write_text("no folder")
        packed = run(PROGRAM, "pack", self.product, "--output", self.output, check=False)
        self.assertEqual((1, ""), (packed.returncode, packed.stdout))
        self.assertIn("mkinstaller: ", packed.stderr)


class PackProgress(PackedProduct):
    """A compression that does not go on before somebody lets it."""

    def setUp(self):
        super().setUp()
        self.gate = self.scratch / "gate"
        os.mkfifo(self.gate)
        tools = self.new_folder("tools")
        script(tools / "gzip", f'read -r line < "$GATE"\nexec "{shutil.which("gzip")}" "$@"\n')
        self.environment = {**os.environ, "GATE": str(self.gate),
                            "PATH": f"{tools}:{os.environ['PATH']}"}

    def test_long_packing_says_so_on_a_terminal_and_wipes_it(self):
        screen, terminal = os.openpty()
        process = subprocess.Popen([PROGRAM, "pack", self.product, "--output", self.output],
                                   env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=terminal)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        os.close(terminal)
        line = re.compile(rb"\rPacking Acme-Filters-2-1\.0\.0\.run: \d+ s\x1b\[K")
        with os.fdopen(screen, "rb", buffering=0) as reader:
            seen = b""
            while not line.search(seen):
                seen += reader.read(4096)
            self.gate.write_text("go on\n")
            try:
                while more := reader.read(4096):
                    seen += more
            except OSError:  # nobody has the terminal any more
                pass
        self.assertEqual(0, process.wait(TIME_LIMIT), seen)
        self.assertTrue(seen.endswith(b"\r\x1b[K"), seen)


class PackAgain(PackedProduct):
    """The bytes depend on the product, not on the machine, the folder or the day."""

    def pack_all(self, name, **options):
        folder = self.scratch / name
        self.pack(",".join(FORMATS), output=folder, **options)
        return {file.name: hashlib.sha256(file.read_bytes()).hexdigest()
                for file in folder.iterdir()}

    def test_the_same_product_gives_the_same_bytes(self):
        first = self.pack_all("first", umask=0o077)
        second = self.pack_all("second", umask=0o002,
                               environment={"TMPDIR": str(self.temporary), "TZ": "Asia/Tokyo"})
        self.assertEqual(len(FORMATS), len(first))
        self.assertEqual(first, second)

    def test_a_younger_copy_gives_the_same_bytes_for_one_source_date(self):
        date = {"SOURCE_DATE_EPOCH": "1500000000"}
        first = self.pack_all("first", environment=date)
        copy = self.scratch / "copy"
        shutil.copytree(self.product, copy, copy_function=shutil.copyfile, symlinks=True)
        for file in self.product.rglob("*"):
            (copy / file.relative_to(self.product)).chmod(file.stat().st_mode)
        self.product = copy
        self.assertEqual(first, self.pack_all("second", environment=date))


class PackTarFile(PackedProduct):
    def test_holds_the_bundle_with_modes_and_installs(self):
        file = self.pack("tar")
        with tarfile.open(file) as archive:
            members = archive.getmembers()
        self.assertEqual({"root"}, {member.uname or "root" for member in members})
        self.assertEqual({(0, 0)}, {(member.uid, member.gid) for member in members})
        self.assertEqual({0o755, 0o644}, {member.mode for member in members})
        run("tar", "-xzf", file, "-C", self.scratch)
        bundle = self.scratch / "Acme Filters 2 Installer.app"
        volume, environment = self.new_volume()
        run(bundle / "Contents/MacOS/Installer", "-quiet", environment=environment)
        self.assertTrue((volume / "Library/Application Support/Acme/Filters 2").is_dir())

    def test_carries_the_libraries_that_not_every_system_has(self):
        run("tar", "-xzf", self.pack("tar"), "-C", self.scratch)
        program = self.scratch / "Acme Filters 2 Installer.app/Contents/MacOS/Installer"
        needed = run("ldd", program).stdout
        for line in needed.splitlines():
            name = line.split()[0]
            if name.startswith("libplist"):
                self.assertIn(f"=> {self.scratch}/", line)


if __name__ == "__main__":
    unittest.main()
