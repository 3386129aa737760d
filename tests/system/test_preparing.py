"""Copies that are prepared ahead of time leave what copies at their own moment leave.

The same random payloads are installed by several threads, by one, and on file systems that have no
files without names: trees, lists and messages are the same.
"""

import os
import random
import unittest

from harness import Product, SystemTest, no_leftovers, run, tree
from traced import ROOT, calls_of, make_ordinary_user

WITHOUT_NAMELESS_FILES = os.environ["INSTALLER_WITHOUT_NAMELESS_FILES"]
SUPPORT = "HD/Library/Application Support/Acme/Filters 2"
SIZES = (0, 1, 100, 5000, 70_000, 1 << 20)
INSTALLED = ("/Library", "/Applications")


class Preparing(SystemTest):
    @classmethod
    def setUpClass(cls):
        cls.user = make_ordinary_user()

    def setUp(self):
        super().setUp()
        self.product = Product(self.scratch)

    def fill(self, chance):
        for number in range(chance.randint(30, 300)):
            folder = chance.choice(("PHOTOSHOP", "PHOTOSHOP_PLUGINS", SUPPORT))
            depth = [str(chance.randint(1, 3)) for _ in range(chance.randint(0, 3))]
            name = "/".join([folder, *depth, f"{number}.dat"])
            path = self.product.add(name, chance.randbytes(chance.choice(SIZES)).hex())
            path.chmod(chance.choice((0o644, 0o755, 0o604, 0o4755)))
            os.utime(path, ns=(chance.randrange(2**60), chance.randrange(2**60)))
            if chance.random() < 0.1:
                (path.parent / f"{number} link").symlink_to(chance.choice(("1", "/nowhere")))
        for number in range(chance.randint(0, 3)):
            self.product.add_package(f"HD/Applications/{number}.app", {
                f"Contents/{name}": chance.randbytes(chance.choice(SIZES)).hex()
                for name in range(chance.randint(0, 60))})

    def installed(self, account, twice, prefix=(), **environment):
        """What a run leaves on an empty disk, or on one that holds all items already."""
        disk, usual = self.new_machine()
        os.chown(disk.home, account.number, account.number)
        for name in ("Adobe Photoshop CS6", "Adobe Photoshop CC 2018"):
            disk.add_photoshop(name)
        for folder in INSTALLED:
            for place in (folder, *tree(folder)):
                os.lchown(place, account.number, account.number)
        for _ in range(2 if twice else 1):
            outcome = run(self.product, environment={**usual, **environment},
                          preexec_fn=lambda: prefix and os.sched_setaffinity(0, prefix),
                          **account.options)
            self.assertEqual(outcome.status, 0)
            self.assertIn("The installation is complete", outcome.messages)
        found = tree(*INSTALLED)
        found[str(disk.installer_log(self.product))].pop("modified")
        self.assertEqual(no_leftovers(*INSTALLED), [])
        return found, outcome.messages

    def compare(self, account, seed):
        chance = random.Random(seed)
        self.fill(chance)
        twice = chance.random() < 0.5
        expected = self.installed(account, twice, {0})
        self.assertGreater(len(expected[0]), 30)
        missing = {"LD_PRELOAD": WITHOUT_NAMELESS_FILES}
        self.assertEqual(self.installed(account, twice), expected)
        self.assertEqual(self.installed(account, twice, **missing), expected)
        self.assertEqual(self.installed(account, twice, {0}, **missing), expected)

    def test_random_payloads_of_root_are_installed_alike(self):
        for seed in range(3):
            with self.subTest(seed=seed):
                self.compare(ROOT, seed)

    def test_random_payloads_of_an_ordinary_user_are_installed_alike(self):
        for seed in range(10, 12):
            with self.subTest(seed=seed):
                self.compare(self.user, seed)

    def test_only_the_file_system_decides_whether_files_are_filled_without_names(self):
        self.fill(random.Random(1))
        for environment, wanted in (({}, True), ({"LD_PRELOAD": WITHOUT_NAMELESS_FILES}, False)):
            disk, usual = self.new_machine()
            disk.add_photoshop("Adobe Photoshop CS6")
            calls = calls_of(self.product, ROOT, {**usual, **environment}, "installer", ["linkat"],
                             self.scratch / "trace")
            self.assertEqual(bool(calls), wanted)


if __name__ == "__main__":
    unittest.main(verbosity=2)
