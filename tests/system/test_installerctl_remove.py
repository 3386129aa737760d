"""installerctl remove: what was there before is there again, and nothing of anybody else is lost."""

import os
import random
import shutil
import signal
import subprocess
import unittest

from ctl import (DIFFERENCES, DONE, NOT_INSTALLED, ctl, program, small_product, versioned)
from harness import Product, SystemTest, tree, write
from traced import tracer

KILLS = int(os.environ.get("INSTALLER_CTL_KILLS", "12"))


class Scene(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = small_product(self.scratch / "maker")
        self.product.add_package("HD/Applications/Menu.app", executable="menu")
        self.photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")
        self.roots = ("/Library", "/Applications", str(self.disk.home))

    def ctl(self, *arguments, product=None):
        return ctl(product or self.product, *arguments, environment=self.environment)

    def good(self, *arguments, **options):
        answer = self.ctl(*arguments, **options)
        self.assertEqual(answer.status, DONE, answer)
        return answer

    def seen(self):
        """Everything but the times, which every entry changes in the folder that it is in."""
        return tree(*self.roots, times=False)


class InstallerctlRemove(Scene):
    def test_what_was_there_before_is_there_again_and_nothing_else(self):
        write(self.photoshop / "Plug-Ins/Other.plugin/code", "another maker's")
        before = self.seen()
        self.good("install")
        self.assertTrue(list((self.disk.home / ".local/share/applications").iterdir()))
        answer = self.good("remove")
        self.assertEqual(set(answer.results().values()), {"removed"})
        self.assertEqual(self.seen(), before)
        self.assertEqual(self.ctl("remove").status, NOT_INSTALLED)

    def test_a_dry_run_says_the_same_and_removes_nothing(self):
        self.good("install")
        write("/Applications/Tool.app/Contents/tool.txt", "mine now")
        before = self.seen()
        planned = self.ctl("remove", "--dry-run")
        self.assertEqual(planned.status, DIFFERENCES)
        self.assertEqual(self.seen(), before)
        done = self.ctl("remove")
        self.assertEqual(planned.kept, done.kept)
        self.assertEqual(planned.results(), done.results())

    def test_changed_files_stay_and_are_named(self):
        self.good("install")
        changed = write("/Applications/Tool.app/Contents/tool.txt", "mine now")
        answer = self.ctl("remove")
        self.assertEqual(answer.status, DIFFERENCES)
        self.assertEqual(answer.kept, [{"path": str(changed), "reason": "was changed since"}])
        self.assertEqual(changed.read_text(), "mine now")
        self.assertEqual(os.listdir("/Applications/Tool.app/Contents"), ["tool.txt"])
        self.assertFalse((self.photoshop / "Plug-Ins/Filter.plugin").exists())

    def test_what_somebody_put_into_an_item_stays_and_is_named(self):
        self.good("install")
        own = write(self.disk.support("Acme/Filters 2/Presets/mine/own.preset"), "mine")
        answer = self.ctl("remove")
        self.assertEqual(answer.kept, [{"path": str(own.parent), "reason": "was not installed"}])
        self.assertEqual(os.listdir(own.parent.parent), ["mine"])

    def test_a_link_that_took_an_items_place_is_neither_removed_nor_followed(self):
        self.good("install")
        outside = write(self.scratch / "outside/Contents/tool.txt", "tool 1.0").parents[1]
        shutil.rmtree("/Applications/Tool.app")
        os.symlink(outside, "/Applications/Tool.app")
        answer = self.ctl("remove")
        self.assertEqual(answer.status, DIFFERENCES)
        self.assertEqual((outside / "Contents/tool.txt").read_text(), "tool 1.0")
        self.assertTrue(os.path.islink("/Applications/Tool.app"))

    def test_what_another_product_needs_stays_until_that_is_removed(self):
        before = self.seen()
        other = versioned(Product(self.scratch / "other", name="Other"), "1.0", "com.example.other")
        shared = "HD/Library/Application Support/Acme/Shared/tones.txt"
        for product in (self.product, other):
            product.add(shared, "tones")
            self.good("install", product=product)
        tones = self.disk.support("Acme/Shared/tones.txt")
        answer = self.good("remove")
        self.assertEqual(answer.results()[str(tones)], "shared")
        self.assertEqual(tones.read_text(), "tones")
        self.assertEqual(self.ctl("verify", product=other).status, DONE)
        self.good("remove", product=other)
        self.assertEqual(self.seen(), before)

    def test_a_quiet_installation_without_a_receipt_is_left_alone(self):
        subprocess.run([self.product.executable, "-quiet"], env=self.environment, check=True,
                       capture_output=True)
        before = self.seen()
        self.assertEqual(self.ctl("remove").status, NOT_INSTALLED)
        self.assertEqual(self.seen(), before)

    def test_names_of_any_bytes_are_recorded_verified_and_removed(self):
        before = self.seen()
        name = os.fsdecode(b"odd \xff\n name.jsx")
        self.product.add(f"PHOTOSHOP/{name}", "odd")
        os.symlink(os.fsdecode(b"\xfe"), self.product.files / "HD/Applications/Tool.app/odd link")
        self.good("install")
        self.assertEqual((self.photoshop / name).read_text(), "odd")
        self.good("verify")
        self.assertFalse(self.good("install").changed)
        self.good("remove")
        self.assertEqual(self.seen(), before)


class InstallerctlRemoveKilled(Scene):
    """Ended at any moment, a run loses nothing that is not the product's, and the next completes."""

    def setUp(self):
        super().setUp()
        self.own = {write(self.photoshop / "Plug-Ins/Mine.plugin/code", "mine"): "mine",
                    write(self.disk.support("Acme/mine.txt"), "of mine"): "of mine"}
        self.before = self.seen()
        self.kills = 0
        self.calls = {verb: self.traced_calls(verb) for verb in ("install", "remove")}

    def traced_calls(self, verb):
        """The calls that the program itself makes, each by its name and its number of that name."""
        log = self.scratch / "calls"
        subprocess.run([*tracer(["-e", self.CALLS], log), program(self.product), verb],
                       env=self.environment, check=True, capture_output=True)
        seen, calls = {}, []
        for line in log.read_text(errors="replace").splitlines():
            name, called, _ = line.partition("(")
            # A call that is newer than the tracer has no name.
            if called and not name.startswith("syscall_"):
                seen[name] = seen.get(name, 0) + 1
                calls.append((name, seen[name]))
        return calls

    def places(self, verb):
        calls = self.calls[verb]
        return random.Random(20260131).sample(calls, min(KILLS, len(calls)))

    CALLS = "trace=renameat2,renameat,rename,unlinkat,linkat,mkdirat,fchownat,fchmodat,fchmod,fchown"

    def killed(self, verb, place):
        """Kills the run at one of its calls that change the disk."""
        name, number = place
        ended = subprocess.run(
            [*tracer(["-f", "-e", self.CALLS, "-e", f"inject={name}:signal=SIGKILL:when={number}"]),
             program(self.product), verb], env=self.environment, check=False, capture_output=True)
        # Threads that prepare copies may make the call in the main one's place: then nothing dies.
        self.kills += ended.returncode == -signal.SIGKILL

    def assertNothingOfOursIsLost(self):
        for path, content in self.own.items():
            self.assertEqual(path.read_text(), content)

    def assertMostWereKilled(self, places):
        self.assertGreater(self.kills, len(places) / 2)

    def test_an_installation_is_completed_by_the_next_and_then_removed_without_a_trace(self):
        places = self.places("install")
        for place in places:
            with self.subTest(place=place):
                self.killed("install", place)
                self.assertNothingOfOursIsLost()
                self.good("install")
                self.good("verify")
                self.good("remove")
                self.assertEqual(self.seen(), self.before)
        self.assertMostWereKilled(places)

    def test_a_half_installation_can_be_removed_without_a_trace(self):
        places = self.places("install")
        for place in places:
            with self.subTest(place=place):
                self.killed("install", place)
                if self.ctl("remove").status == NOT_INSTALLED:
                    # Killed before the receipt, so before anything else.
                    self.good("install")
                    self.good("remove")
                self.assertNothingOfOursIsLost()
                self.assertEqual(self.seen(), self.before)
        self.assertMostWereKilled(places)

    def test_a_removal_is_completed_by_the_next(self):
        places = self.places("remove")
        for place in places:
            with self.subTest(place=place):
                self.good("install")
                self.killed("remove", place)
                self.assertNothingOfOursIsLost()
                self.assertIn(self.ctl("remove").status, (DONE, NOT_INSTALLED))
                self.assertEqual(self.seen(), self.before)
        self.assertMostWereKilled(places)



if __name__ == "__main__":
    unittest.main(verbosity=2)
