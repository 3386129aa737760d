"""The Ansible role on sixteen throw-away machines, over ssh, with the real ansible-playbook."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent / "fleet"))

from ctl import DOWNGRADE, HOST_RUNS, ITEMS_FAILED, small_product  # noqa: E402
from harness import SystemTest, tree, write  # noqa: E402
from lab import Lab, command, enter_network_of_its_own  # noqa: E402

CACHE = "/var/cache/plugin-installer"


def user(login, *photoshops):
    """A person with these Photoshops."""
    lines = [f"useradd --create-home {login}", f"p=/home/{login}/Library/Preferences", 'mkdir -p "$p"']
    for name in photoshops:
        lines += [f'mkdir -p "/Applications/{name}/{name}.app"',
                  f'printf "/Applications/{name}\\0" > "$p/{name} Paths"']
    return "\n".join([*lines, f"chown -R {login}: /home/{login}/Library\n"])


CS6, CC, CC2015, CC2019 = ("Adobe Photoshop CS6", "Adobe Photoshop CC", "Adobe Photoshop CC 2015",
                           "Adobe Photoshop CC 2019")
OWN_PRESET = """
mkdir -p "/Library/Application Support/Acme/Filters 2/Presets"
echo mine > "/Library/Application Support/Acme/Filters 2/Presets/mine.preset"
"""
NEWER = """
mkdir -p /Library/Receipts
cat > /Library/Receipts/com.example.filters.json << EOF
{"schema": 1, "identifier": "com.example.filters", "company": "Acme", "product": "Filters 2",
 "version": "9.0", "complete": true, "since": "", "installed": "", "bundle": "", "users": [],
 "hosts": [], "items": [], "files": [], "folders": [], "menuEntries": [], "log": ""}
EOF
"""
FULL_DISK = "mount -t tmpfs -o size=16k,mode=0755 tmpfs /Applications\n"
READ_ONLY = f"""
mount -t tmpfs tmpfs "/Applications/{CC}"
mkdir "/Applications/{CC}/{CC}.app"
mount -o remount,ro "/Applications/{CC}"
"""
RUNNING = """
cp /bin/sleep /run/Photoshop
/run/Photoshop 100000 > /dev/null 2>&1 &
"""
BAD_RECEIPT = "mkdir -p /Library/Receipts; echo '{' > /Library/Receipts/com.example.filters.json\n"

# What each machine is, and the status with which its installation ends.
MACHINES = [
    ("nobody has a Photoshop", "", 0),
    ("one user", user("ann", CS6), 0),
    ("two users", user("ann", CS6) + user("bob", CC2015), 0),
    ("two users of one Photoshop", user("ann", CS6) + user("bob", CS6), 0),
    ("the shared plug-in folder", user("ann", CC2019), 0),
    ("three releases", user("ann", CS6, CC, CC2019), 0),
    ("a user's own preset", user("ann", CS6) + OWN_PRESET, 0),
    ("a newer version", user("ann", CS6) + NEWER, DOWNGRADE),
    ("a full disk", user("ann") + FULL_DISK, ITEMS_FAILED),
    ("a folder that cannot be written to", user("ann", CC) + READ_ONLY, ITEMS_FAILED),
    ("a host that runs", user("ann", CS6) + RUNNING, HOST_RUNS),
    ("a damaged receipt", user("ann", CS6) + BAD_RECEIPT, ITEMS_FAILED),
    ("a Photoshop that is not supported", user("ann", "Adobe Photoshop CS5"), 0),
    ("many users", "".join(user(f"user{number}", CS6) for number in range(4)), 0),
    ("one user more", user("ann", CC), 0),
    ("and another", user("ann", CC2015), 0),
]


def setUpModule():
    enter_network_of_its_own(len(MACHINES))


class Fleet(SystemTest):
    """One test, since each part begins where the one before it ended."""

    def setUp(self):
        super().setUp()
        self.archives = {version: self.archive(version) for version in ("1.0", "2.0")}
        self.lab = Lab(self.scratch, [setup for _, setup, _ in MACHINES])
        self.addCleanup(self.lab.end)
        self.expected = {machine.name: status
                         for machine, (_, _, status) in zip(self.lab.machines, MACHINES)}
        self.good = [machine for machine in self.lab.machines if not self.expected[machine.name]]
        self.bad = [machine for machine in self.lab.machines if self.expected[machine.name]]

    def archive(self, version):
        product = small_product(self.scratch / version, version)
        product.add_package("HD/Applications/Big.app", {"Contents/big": b"x" * 100000})
        if version == "1.0":
            product.add("PHOTOSHOP/only in 1.0.jsx", "old")
        self.bundle_name = product.bundle.name
        archive = self.scratch / f"filters-{version}.tar.gz"
        command("tar", "-C", product.bundle.parent, "-czf", archive, product.bundle.name)
        return archive

    def play(self, version="1.0", machines=None, check=False, **variables):
        return self.lab.play(
            {"plugin_installer_version": version,
             "plugin_installer_archive": str(self.archives[version]),
             "plugin_installer_bundle": self.bundle_name,
             **{f"plugin_installer_{name}": value for name, value in variables.items()}},
            check=check, machines=machines)

    def seen(self, machine):
        roots = [machine.at(folder) for folder in ("/Library", "/Applications", "/home")]
        prefix = len(str(machine.root))
        return {path[prefix:]: entry for path, entry in tree(*roots, times=False).items()}

    def everything(self, machines=None):
        return {machine.name: self.seen(machine) for machine in machines or self.lab.machines}

    def assertAll(self, results, machines, how="ok", changed=None):
        for machine in machines:
            note = results[machine.name]
            self.assertEqual(note["how"], how, note)
            if changed is not None:
                self.assertEqual(note["result"]["changed"], changed, note)

    def check_installed(self, version):
        for machine in self.good:
            tool = machine.at("/Applications/Tool.app/Contents/tool.txt")
            self.assertEqual(tool.read_text(), f"tool {version}", machine.name)
            receipt = json.loads(machine.at("/Library/Receipts/com.example.filters.json").read_text())
            self.assertEqual((receipt["version"], receipt["complete"]), (version, True))
            for host in receipt["hosts"]:
                plug_in = machine.at(host["plugIns"]) / "Filter.plugin/Contents/code"
                self.assertEqual(plug_in.read_text(), f"code {version}", machine.name)
                old = machine.at(host["application"]) / "only in 1.0.jsx"
                self.assertEqual(old.exists(), version == "1.0", machine.name)

    def test_installs_upgrades_verifies_and_removes_on_every_machine(self):
        before = self.everything()
        results = self.play()
        self.assertAll(results, self.good, changed=True)
        self.assertAll(results, self.bad, how="failed")
        for machine in self.bad:
            result = results[machine.name]["result"]
            self.assertEqual(result["status"], self.expected[machine.name], result)
        self.assertIn("newer than 1.0", results["m8"]["result"]["msg"])
        self.assertIn("Big.app", results["m9"]["result"]["msg"])
        self.assertIn(f"/Applications/{CC}/", results["m10"]["result"]["msg"])
        self.assertIn("Photoshop is running", results["m11"]["result"]["msg"])
        self.assertIn("no JSON", results["m12"]["result"]["msg"])
        self.check_installed("1.0")
        hosts = {machine.name: len(results[machine.name]["result"]["result"]["hosts"])
                 for machine in self.good}
        self.assertEqual((hosts["m1"], hosts["m3"], hosts["m6"], hosts["m14"]), (0, 2, 3, 4))
        # Where it was refused nothing was changed.
        for name in ("m8", "m11", "m12"):
            machine = self.lab.machines[int(name[1:]) - 1]
            self.assertEqual(self.seen(machine), before[name])

        installed = self.everything(self.good)
        self.assertAll(self.play(machines=self.good), self.good, changed=False)
        self.assertEqual(self.everything(self.good), installed)

        results = self.play(machines=self.good, state="verified")
        self.assertAll(results, self.good, changed=False)

        # The new version is not there yet, and the plan of the old one has no changes.
        self.assertAll(self.play(machines=self.good, check=True), self.good, changed=False)
        self.assertAll(self.play("2.0", machines=self.good), self.good, changed=True)
        self.check_installed("2.0")
        own = self.lab.machines[6].at("/Library/Application Support/Acme/Filters 2/Presets/mine.preset")
        self.assertEqual(own.read_text(), "mine\n")

        broken = [self.lab.machines[1], self.lab.machines[15]]
        for machine in broken:
            write(machine.at("/Applications/Tool.app/Contents/tool.txt"), "broken")
        results = self.play("2.0", machines=self.good, state="verified")
        self.assertAll(results, broken, how="failed")
        self.assertIn("/Applications/Tool.app/Contents/tool.txt: has other contents",
                      results["m2"]["result"]["msg"])
        self.assertAll(results, [machine for machine in self.good if machine not in broken])
        results = self.play("2.0", machines=broken, check=True)
        self.assertAll(results, broken, changed=True)
        self.assertIn("/Applications/Tool.app (new contents)", results["m2"]["result"]["diff"]["after"])
        self.assertAll(self.play("2.0", machines=broken), broken, changed=True)
        self.check_installed("2.0")

        self.assertAll(self.play("2.0", machines=self.good, state="absent"), self.good, changed=True)
        after = self.everything(self.good)
        # The one folder that was there before and was replaced; what the user had in it is there.
        replaced = "/Library/Application Support/Acme/Filters 2/Presets"
        self.assertIn(f"{replaced}/mine.preset", after["m7"])
        for machines in (before, after):
            del machines["m7"][replaced]
        self.assertEqual(after, {machine.name: before[machine.name] for machine in self.good})
        self.assertAll(self.play("2.0", machines=self.good, state="absent"), self.good, changed=False)


if __name__ == "__main__":
    unittest.main(verbosity=2)
