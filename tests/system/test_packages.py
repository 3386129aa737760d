"""The packages of distributions that mkinstaller makes, on a throw-away machine: what they hold,
what they say to the package checkers, and what installing, using and removing them does.
"""

import os
import pathlib
import re
import shutil
import subprocess
import types
import unittest
import xml.etree.ElementTree as xml

from harness import ON_PRIVATE_MACHINE, SystemTest, run, write
from rights import Account, Installation, start_polkit

PROGRAM = pathlib.Path(os.environ["MKINSTALLER"])
BUNDLE = pathlib.Path("/usr/lib/acme/filters-2/Installer.app")
NAME = "acme-filters-2-installer"
COMMAND = pathlib.Path("/usr/bin") / NAME
ACTION = "com.acme.filters.install"
RECEIPT = pathlib.Path("/Library/Receipts/com.acme.filters.json")
QUESTION = "Filters 2 by Acme installs files for everybody who uses this computer."
# What the checker of RPM packages says on purpose, each with its reason.
ACCEPTED_BY_PURPOSE = (
    "no-signature",  # a package is signed with its maker's own key, by rpmsign
    "invalid-license",  # the licence is the maker's own
    "manpage-not-compressed bz2",  # gzip is what every system reads
    "no-manual-page-for-binary",  # follows from it: the page is looked for with the other suffix
)


def tool(*command, check=True, **options):
    finished = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                              check=False, **options)
    if check and finished.returncode != 0:
        raise AssertionError(f"{command}: {finished.returncode}\n{finished.stdout}"
                             f"{finished.stderr}")
    return finished


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would install packages on the real system")
    start_polkit()


class Packages(SystemTest):
    """A package of a small product, made once, and no package of it installed."""

    form = "deb"
    made = {}

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        if self.form not in Packages.made:
            Packages.made[self.form] = self.make()
        self.addCleanup(self.purge)

    def make(self, program=PROGRAM):
        folder = pathlib.Path("/var/tmp") / f"packages-{len(os.listdir('/var/tmp'))}"
        tool(program, "new", folder / "product", "--company", "Acme", "--product", "Filters 2",
             "--id", "com.acme.filters", "--languages", "en,de")
        made = tool(program, "pack", folder / "product", "--format", self.form, "--output", folder)
        return pathlib.Path(made.stdout.strip())

    @property
    def package(self):
        return Packages.made[self.form]

    def install(self, package=None, check=True):
        return tool("dpkg", "--install", package or self.package, check=check)

    def remove(self, check=True):
        return tool("dpkg", "--remove", NAME, check=check)

    def purge(self):
        shutil.rmtree(BUNDLE / "Contents/MacOS", ignore_errors=True)
        tool("dpkg", "--purge", NAME, check=False)

    def is_installed(self):
        return COMMAND.exists()


class PackagesDeb(Packages):
    def test_the_checker_is_silent(self):
        found = tool("lintian", "--allow-root", "--fail-on", "error,warning", self.package)
        self.assertEqual("", found.stdout)

    def test_a_quiet_run_needs_the_c_library_alone(self):
        needed = tool("dpkg-deb", "--field", self.package, "Depends").stdout
        self.assertRegex(needed, r"^libc6 \(>= [0-9.]+\)\n$")
        recommended = tool("dpkg-deb", "--field", self.package, "Recommends").stdout
        self.assertIn("libqt6widgets6", recommended)

    def test_installing_it_installs_nothing_into_hosts(self):
        folder = self.disk.add_photoshop("Adobe Photoshop CS6")
        before = sorted(folder.rglob("*"))
        self.install()
        self.assertEqual(before, sorted(folder.rglob("*")))
        self.assertEqual(["Adobe Photoshop CS6"], os.listdir("/Applications"))
        self.assertEqual([], os.listdir("/Library"))

    def test_everything_in_it_belongs_to_root_and_only_root_may_write(self):
        self.install()
        for path in tool("dpkg", "--listfiles", NAME).stdout.splitlines():
            status = os.lstat(path)
            self.assertEqual((0, 0, 0), (status.st_uid, status.st_gid, status.st_mode & 0o022), path)
        self.assertTrue(os.access(BUNDLE / "Contents/MacOS/privileged-helper", os.X_OK))

    def test_the_command_installs_the_product(self):
        self.install()
        folder = self.disk.add_photoshop("Adobe Photoshop CS6")
        outcome = run(types.SimpleNamespace(executable=COMMAND), environment=self.environment)
        self.assertEqual(0, outcome.status, outcome.messages)
        self.assertTrue((folder / "Presets/Scripts/Filters 2.jsx").is_file(), outcome.messages)

    def test_the_menu_entry_is_valid_and_leads_to_the_command(self):
        self.install()
        entry = f"/usr/share/applications/{NAME}.desktop"
        self.assertEqual("", tool("desktop-file-validate", entry).stdout)
        text = pathlib.Path(entry).read_text()
        self.assertIn(f"\nExec={COMMAND}\n", text)
        icon = pathlib.Path(f"/usr/share/icons/hicolor/256x256/apps/{NAME}.png")
        self.assertIn(f"\nIcon={icon.stem}\n", text)
        self.assertTrue(icon.is_file())

    def test_the_manual_page_can_be_read(self):
        self.install()
        page = tool("zcat", f"/usr/share/man/man1/{NAME}.1.gz").stdout
        self.assertIn("install Acme Filters 2", page)

    def test_the_question_is_the_products_own(self):
        self.install()
        account = Account("customer")
        self.disk.add_photoshop("Adobe Photoshop CS6")
        account.own(self.disk.home)
        product = types.SimpleNamespace(executable=BUNDLE / "Contents/MacOS/Installer")
        installation = Installation(self, product, account, self.environment,
                                    ("password", account.password))
        installation.go_on().wait()
        self.assertEqual([ACTION], [question["action"] for question in installation.questions])
        self.assertIn(QUESTION, installation.questions[0]["message"])
        self.assertTrue(pathlib.Path("/Library/Application Support/Acme").is_dir(), installation.messages)

    def test_the_question_is_asked_in_each_language_of_the_product(self):
        self.install()
        action = xml.parse(f"/usr/share/polkit-1/actions/{ACTION}.policy").getroot().find("action")
        languages = [message.get("{http://www.w3.org/XML/1998/namespace}lang")
                     for message in action.findall("message")]
        self.assertEqual([None, "de"], languages)

    def test_removing_it_leaves_nothing_of_its_own(self):
        self.install()
        files = [path for path in tool("dpkg", "--listfiles", NAME).stdout.splitlines()
                 if not os.path.isdir(path)]
        self.assertGreater(len(files), 20)
        self.remove()
        self.assertEqual([], [path for path in files if os.path.lexists(path)])


class PackagesDebRemoval(Packages):
    """What the tool for administrators recorded goes first."""

    def setUp(self):
        super().setUp()
        self.install()
        self.record = self.scratch / "called"
        write(BUNDLE / "Contents/MacOS/installerctl",
              f'#!/bin/sh\necho "$@" >> "{self.record}"\nexit "${{FAIL:-0}}"\n', 0o755)

    def test_the_tool_removes_what_it_recorded(self):
        write(RECEIPT, "{}")
        self.remove()
        self.assertEqual("remove\n", self.record.read_text())
        self.assertFalse(self.is_installed())

    def test_nothing_is_called_without_a_record(self):
        self.remove()
        self.assertFalse(self.record.exists())
        self.assertFalse(self.is_installed())

    def test_an_update_removes_nothing(self):
        write(RECEIPT, "{}")
        self.install()
        self.assertFalse(self.record.exists())

    def test_what_the_tool_keeps_on_purpose_does_not_keep_the_package(self):
        write(RECEIPT, "{}")
        removed = tool("dpkg", "--remove", NAME, env={**os.environ, "FAIL": "3"})
        self.assertEqual("remove\n", self.record.read_text(), removed.stderr)
        self.assertFalse(self.is_installed())

    def test_the_package_stays_if_the_tool_fails(self):
        write(RECEIPT, "{}")
        removed = tool("dpkg", "--remove", NAME, check=False, env={**os.environ, "FAIL": "1"})
        self.assertNotEqual(0, removed.returncode)
        self.assertTrue(self.is_installed())


class PackagesDamaged(Packages):
    """Nothing of a package that is not as it was made is installed."""

    told = r"(?m)^dpkg: error processing (archive|package) "

    def refusals(self):
        whole = self.package.read_bytes()
        for name, contents in {"lost its end": whole[:-200],
                               "lost its half": whole[:len(whole) // 2],
                               "empty": b"",
                               "changed": whole[:len(whole) // 2] +
                                          bytes([whole[len(whole) // 2] ^ 1]) +
                                          whole[len(whole) // 2 + 1:]}.items():
            with self.subTest(name):
                damaged = write(self.scratch / self.package.name, contents)
                refused = self.install(damaged, check=False)
                self.assertNotEqual(0, refused.returncode)
                self.assertRegex(refused.stderr, self.told)
                self.assertFalse(self.is_installed())
                self.assertFalse((BUNDLE / "Contents/MacOS/Installer").exists())

    def test_a_damaged_package_is_refused(self):
        self.refusals()


class PackagesRpm(Packages):
    form = "rpm"

    # This machine's own packages are of the other kind: the dependencies are known to nobody here.
    def install(self, package=None, check=True):
        return tool("rpm", "--install", "--nodeps", package or self.package, check=check)

    def remove(self, check=True):
        return tool("rpm", "--erase", NAME, check=check)

    def purge(self):
        tool("rpm", "--erase", "--noscripts", NAME, check=False)

    def test_the_checker_says_only_what_is_on_purpose(self):
        said = tool("rpmlint", self.package, check=False).stdout
        self.assertIn("1 packages and 0 specfiles checked", said)
        told = [line for line in re.findall(r"^[^ ]+: [EW]: .*$", said, re.MULTILINE)
                if not any(accepted in line for accepted in ACCEPTED_BY_PURPOSE)]
        self.assertEqual([], told)

    def test_a_quiet_run_needs_the_c_library_alone(self):
        needed = tool("rpm", "-qp", "--requires", self.package).stdout.split("\n")
        libraries = {line.split(".so")[0] for line in needed if ".so" in line}
        self.assertEqual({"libc", "libm", "ld-linux-x86-64"}, libraries)
        self.assertIn("libQt6Widgets.so.6()(64bit)",
                      tool("rpm", "-qp", "--recommends", self.package).stdout)

    def test_installs_and_is_whole_and_installs_the_product(self):
        self.install()
        self.assertEqual("", tool("rpm", "--verify", "--nodeps", NAME).stdout)
        self.assertEqual([], os.listdir("/Library"))
        folder = self.disk.add_photoshop("Adobe Photoshop CS6")
        outcome = run(types.SimpleNamespace(executable=COMMAND), environment=self.environment)
        self.assertTrue((folder / "Presets/Scripts/Filters 2.jsx").is_file(), outcome.messages)

    def test_the_tool_removes_what_it_recorded(self):
        self.install()
        record = self.scratch / "called"
        write(BUNDLE / "Contents/MacOS/installerctl", f'#!/bin/sh\necho "$@" > "{record}"\n', 0o755)
        write(RECEIPT, "{}")
        self.remove()
        self.assertEqual("remove\n", record.read_text())
        self.assertFalse(self.is_installed())

    def test_removing_it_leaves_nothing_of_its_own(self):
        self.install()
        self.remove()
        self.assertFalse(pathlib.Path("/usr/lib/acme").exists())
        self.assertFalse(self.is_installed())


class PackagesRpmDamaged(PackagesDamaged):
    form = "rpm"
    # An empty file is no package at all.
    told = r"does not verify: Payload SHA256 ALT digest: BAD|\nerror: .*not an rpm package"
    install, remove, purge = PackagesRpm.install, PackagesRpm.remove, PackagesRpm.purge


if __name__ == "__main__":
    unittest.main()
