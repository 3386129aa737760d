"""Properties of installerctl that hold in every world: random payloads, hosts, users and disks.

INSTALLER_CTL_WORLDS says how many worlds, INSTALLER_CTL_SEED with which one to begin.
"""

import os
import pathlib
import random
import shutil
import stat
import subprocess
import unittest

from ctl import DIFFERENCES, DONE, ctl, versioned
from harness import Product, SystemTest, run, tree, write

WORLDS = int(os.environ.get("INSTALLER_CTL_WORLDS", "30"))
FIRST = int(os.environ.get("INSTALLER_CTL_SEED", "1"))

NAMES = ["a", "b c", "ü", "-x", "100%", "a.b", ".hidden", "O'Neil", "x" * 60]
PHOTOSHOPS = ["Adobe Photoshop CS6", "Adobe Photoshop CC", "Adobe Photoshop CC 2015",
              "Adobe Photoshop CC 2018", "Adobe Photoshop CC 2019", "Adobe Photoshop CS5",
              "Adobe Photoshop Elements 15"]
SUFFIXES = [".app", ".plugin", ".bundle"]


class World:
    """A payload and a disk, both made of one number."""

    def __init__(self, test, number):
        self.dice = random.Random(number)
        self.folder = test.scratch / f"world {number}"
        self.product = versioned(Product(self.folder / "maker"), "1.0")
        self.product.files.mkdir(parents=True, exist_ok=True)
        test.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.fill_payload()
        self.disk = test.new_disk(self.folder / "disk")
        self.users = self.dice.sample(["root", "ann", "bob"], self.dice.randint(1, 3))
        self.users_options = [word for user in self.users for word in ("--user", user)]
        for user in self.users:
            self.add_hosts(self.disk.root / "Users" / user)

    def name(self):
        return self.dice.choice(NAMES)

    def fill(self, folder, depth=2):
        folder.mkdir(parents=True, exist_ok=True)
        for _ in range(self.dice.randint(0, 3)):
            path = folder / self.name()
            kind = self.dice.randrange(6)
            if os.path.lexists(path):
                continue
            if kind == 0:
                os.symlink(self.dice.choice(["a", "../nowhere", "/etc/hostname"]), path)
            elif kind == 1 and depth:
                self.fill(path, depth - 1)
            else:
                write(path, self.dice.randbytes(self.dice.choice([0, 1, 300])),
                      self.dice.choice([0o644, 0o600, 0o755, 0o4755]))

    def fill_payload(self):
        files = self.product.files
        for _ in range(self.dice.randint(0, 2)):
            self.fill(files / "HD/Applications" / (self.name() + self.dice.choice(SUFFIXES)))
        support = files / "HD/Library/Application Support/Acme"
        for _ in range(self.dice.randint(0, 2)):
            self.fill(support / self.name())
        if self.dice.random() < 0.5:
            self.fill(support / "Shared" / ("nested" + self.dice.choice(SUFFIXES)))
        for folder in ("PHOTOSHOP", "PHOTOSHOP_PLUGINS"):
            for _ in range(self.dice.randint(0, 2)):
                self.fill(files / folder)
            if self.dice.random() < 0.7:
                self.fill(files / folder / "Sub" / (self.name() + ".plugin"))

    def add_hosts(self, home):
        preferences = home / "Library/Preferences"
        preferences.mkdir(parents=True)
        for name in self.dice.sample(PHOTOSHOPS, self.dice.randint(0, 3)):
            folder = self.disk.at(f"/Applications/{name}")
            if self.dice.random() < 0.9:
                (folder / f"{name}.app").mkdir(parents=True, exist_ok=True)
            plug_ins = self.dice.choice(["", f"/Applications/{name}/Own Plug-Ins\0"])
            write(preferences / f"{name} Paths", f"/Applications/{name}\0{plug_ins}".ljust(8, "\0"))

    def prepare(self, items):
        """Puts something where some of the items go: the same, something else, or more."""
        for item in items:
            destination = pathlib.Path(item["destination"])
            source = self.product.files / item["source"]
            how = self.dice.randrange(6)
            if how > 2 or os.path.lexists(destination) or not item["source"]:
                continue
            destination.parent.mkdir(parents=True, exist_ok=True)
            if how == 0 and source.is_dir() and not source.is_symlink():
                shutil.copytree(source, destination, symlinks=True)
                write(destination / "somebody's own", "own")
            elif how == 1:
                write(destination, "something else")
            else:
                subprocess.run(["cp", "-a", source, destination], check=True)
                self.give_installed_mode(destination)

    @staticmethod
    def give_installed_mode(top):
        for folder, _, files in os.walk(top):
            os.chmod(folder, 0o775)
            for name in files:
                if not os.path.islink(os.path.join(folder, name)):
                    os.chmod(os.path.join(folder, name), 0o775)
        if not os.path.islink(top):
            os.chmod(top, 0o775)


def below(path, places):
    return any(path == place or path.startswith(place + "/") for place in places)


def looks(seen):
    """What the plan compares."""
    return {path: (entry["kind"], entry.get("content"), entry.get("target"),
                   None if stat.S_ISLNK(entry["kind"]) else entry["mode"])
            for path, entry in seen.items()}


class InstallerctlWorlds(SystemTest):
    def new_disk(self, root):
        disk, _ = self.new_volume(root.relative_to(self.scratch))
        return disk

    def setUp(self):
        super().setUp()
        self.environment = {"HOME": str(self.scratch)}

    def ctl(self, world, verb, *arguments, root=None):
        return ctl(world.product, verb, "--target", root or world.disk.root, *world.users_options,
                   *arguments, environment=self.environment)

    def test_properties_hold_in_every_world(self):
        installed = 0
        for number in range(FIRST, FIRST + WORLDS):
            with self.subTest(world=number):
                world = World(self, number)
                world.prepare(self.ctl(world, "plan").items)
                plan = self.ctl(world, "plan")
                installed += len(plan.items)
                self.check_plan_against_quiet_run(world)
                self.check_life_of_an_installation(world, plan)
                shutil.rmtree(world.folder)
        self.assertGreater(installed, WORLDS)

    def check_plan_against_quiet_run(self, world):
        """On a copy of the disk, for the user who runs it."""
        copy = world.folder / "copy"
        subprocess.run(["cp", "-a", world.disk.root, copy], check=True)
        plan = ctl(world.product, "plan", "--target", copy, environment=self.environment)
        before = looks(tree(copy, times=False))
        outcome = run(world.product,
                      environment=self.environment | {"INSTALLER_TARGET_VOLUME": str(copy)})
        after = looks(tree(copy, times=False))
        log = copy / f"Library/Application Support/Acme/{world.product.name} Installer.log"
        logged = log.read_bytes().decode().splitlines() if log.exists() else []
        # Without the maker's folder the engine has no place for its log.
        if log.parent.exists() and plan.items:
            self.assertEqual([item["destination"] for item in plan.items], logged, outcome.messages)
        final = {item["destination"]: item for item in plan.items}
        for destination, item in final.items():
            was = {path: seen for path, seen in before.items() if below(path, [destination])}
            now = {path: seen for path, seen in after.items() if below(path, [destination])}
            expected = "new" if not was else "same" if was == now else "replace"
            self.assertEqual(item["action"], expected, destination)
            gone = {path for path in was if path not in now}
            self.assertEqual({path for path in gone if not below(path, item["lost"])}, set())
            self.assertEqual([path for path in item["lost"] if path in now], [])
        shutil.rmtree(copy)

    def check_life_of_an_installation(self, world, plan):
        places = [item["destination"] for item in plan.items]
        before = tree(world.disk.root, times=False)
        answer = self.ctl(world, "install")
        self.assertEqual((answer.status, answer.changed), (DONE, True), answer)
        self.assertEqual([item["destination"] for item in answer.items], places)
        whole = tree(world.disk.root, times=False)
        self.assertEqual(self.ctl(world, "verify").status, DONE)
        again = self.ctl(world, "install")
        self.assertEqual((again.status, again.changed), (DONE, False), again)
        self.assertEqual(tree(world.disk.root, times=False), whole)
        self.check_damage(world, places, whole)
        removed = self.ctl(world, "remove")
        self.assertEqual(removed.status, DONE, removed)
        expected = {path: seen for path, seen in before.items() if not below(path, places)}
        self.assertEqual(tree(world.disk.root, times=False), expected)

    def check_damage(self, world, places, whole):
        files = sorted(path for path, seen in whole.items()
                       if below(path, places) and stat.S_ISREG(seen["kind"]))
        if not files:
            return
        damaged = world.dice.choice(files)
        content = whole[damaged]["content"]
        pathlib.Path(damaged).write_bytes(content + b"!")
        answer = self.ctl(world, "verify")
        self.assertEqual(answer.status, DIFFERENCES)
        self.assertEqual({note["path"] for item in answer.items for note in item["differences"]},
                         {damaged})
        pathlib.Path(damaged).write_bytes(content)
        os.chmod(damaged, whole[damaged]["mode"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
