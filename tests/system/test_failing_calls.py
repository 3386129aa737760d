"""One system call after the other fails, in the installer or in its helper: nothing is silent.

Each call that a run makes once it is in its own code can be made to fail, with one of the errors
that it could meet. A sample of them is, or all of them with INSTALLER_ALL_CALLS=1 (ten minutes).
INSTALLER_CALLS and INSTALLER_CALLS_SEED choose the sample and the errors (see scripts/fail-calls).
"""

import collections
import os
import random
import re
import unittest

from harness import SystemTest, tree, write
from traced import ROOT, calls_of, install, make_ordinary_user, run_traced
from versions import ABSENT, EDITORS, Versions, temporaries, wrongly_owned

ALL = os.environ.get("INSTALLER_ALL_CALLS") == "1"
SAMPLE = int(os.environ.get("INSTALLER_CALLS", "40"))
SEED = int(os.environ.get("INSTALLER_CALLS_SEED", "1"))
SANITIZED = os.environ.get("INSTALLER_SANITIZED") == "1"

DISK = ("EIO", "ENOSPC", "EDQUOT", "EACCES", "EROFS")
# What each call is made to give. Those that only read or look cannot meet a full disk.
ERRORS = {
    "openat": DISK, "mkdirat": DISK, "renameat": DISK, "renameat2": DISK, "unlinkat": DISK,
    "symlinkat": DISK, "linkat": DISK, "fchownat": DISK, "fchown": DISK, "fchmod": DISK,
    "fchmodat": DISK, "utimensat": DISK, "copy_file_range": DISK,
    "pwrite64": DISK, "write": DISK, "ftruncate": DISK, "fsync": DISK,
    "openat2": ("EIO", "EACCES"), "newfstatat": ("EIO", "EACCES"), "statx": ("EIO", "EACCES"),
    "fstat": ("EIO",), "getdents64": ("EIO",), "readlinkat": ("EIO",), "read": ("EIO",),
    "pread64": ("EIO",), "flock": ("ENOLCK",), "close": ("EIO",), "flistxattr": ("EIO",),
}
# What a signal may interrupt; the run goes on as if nothing had happened. Plain reads are left out:
# the C library reads the list of accounts with them, and does not repeat one.
INTERRUPTED = ("pread64", "write", "pwrite64", "copy_file_range", "recvfrom", "sendto",
               "poll", "wait4")
# The first call of each program's own; what comes before is its loader's.
FIRST_OWN_CALL = {"installer": "socket", "helper": "fcntl"}
OUTCOME = re.compile(r"The installation is (not )?complete \((\d+) items|"
                     r"Administrator rights were refused or lost: "
                     r"the installation is not complete \((\d+)")

NO_HOST = "The plug-in was put into no Photoshop"


def is_left_out(call, arguments):
    """A message that cannot be written is told to nobody. The C library reads the system's own lists,
    and says of an account in one that it cannot read only that there is none. A close that fails has
    closed all the same, but not under the tracer: the helper would wait for more for ever. Sanitizers
    find out by writing, here and there, whether memory is there."""
    return ((call == "write" and (SANITIZED or arguments.startswith("2<"))) or "/etc/" in arguments
            or (call == "close" and "<socket:" in arguments))


class FailingCalls(SystemTest):
    @classmethod
    def setUpClass(cls):
        cls.user = make_ordinary_user()

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.versions = Versions(self.scratch, 2, 3 << 20, 2)
        self.versions.prepare(self.disk)
        write("/Library/Somebody Else/kept.txt", "kept")
        self.tally = collections.Counter()
        self.chance = random.Random(SEED)

    def test_as_root_each_failure_is_told_and_the_next_run_completes(self):
        self.fail_calls(ROOT)

    def test_as_an_ordinary_user_each_failure_is_told_and_the_next_run_completes(self):
        os.chown(self.disk.home, self.user.number, self.user.number)
        self.fail_calls(self.user)

    def test_interrupted_calls_are_repeated(self):
        os.chown(self.disk.home, self.user.number, self.user.number)
        self.account = self.user
        self.install_undisturbed(0)
        points = [(who, call, number, "EINTR") for who in self.user.programs
                  for call, number in self.points(who, INTERRUPTED)]
        for version, point in enumerate(self.chosen(points, SAMPLE // 2), 1):
            with self.subTest(point=point):
                ended = self.run_failing(version % 2, *point)
                self.check_undisturbed(version % 2, ended)

    def fail_calls(self, account):
        self.account = account
        self.install_undisturbed(0)
        points = [(who, call, number, self.chance.choice(ERRORS[call]))
                  for who in account.programs for call, number in self.points(who, ERRORS)]
        version = 0
        for point in self.chosen(points, SAMPLE):
            version = 1 - version
            with self.subTest(account=account.name, point=point):
                self.fail_one(version, point)
            # One failure meets what the one before has left, too, but not for long.
            if self.tally["runs"] % 4 == 0:
                version = 1 - version
                self.install_undisturbed(version)
        self.install_undisturbed(1 - version)
        print(f"\n{account.name}: {dict(self.tally)}")
        # Most failures leave nothing to tell: the next way to do the same works.
        self.assertGreater(self.tally["failed"], self.tally["runs"] // 2,
                           "little failed: this proves little")

    def points(self, who, names):
        """Each call of those names, with its place among those of its name."""
        marker = FIRST_OWN_CALL[who]
        calls = calls_of(self.versions.products[0], self.account, self.environment, who,
                         [*names, marker], self.scratch / "trace")
        counted = collections.Counter()
        found = []
        begun = False
        for call, arguments in calls:
            counted[call] += 1
            if begun and call in names and not is_left_out(call, arguments):
                found.append((call, counted[call]))
            begun = begun or call == marker
        return found

    def chosen(self, points, count):
        if ALL or len(points) <= count:
            return points
        # Rare calls are as interesting as frequent ones.
        by_call = collections.defaultdict(list)
        for point in points:
            by_call[point[:2]].append(point)
        return [self.chance.choice(by_call[self.chance.choice(sorted(by_call))])
                for _ in range(count)]

    def run_failing(self, version, who, call, number, error):
        self.tally["runs"] += 1
        trace = write(self.scratch / "failing", "", 0o666)
        trace.chmod(0o666)
        ended = run_traced(self.versions.products[version], self.account, self.environment, who,
                           ["-y", "-e", f"trace={call}",
                            "-e", f"inject={call}:error={error}:when={number}"], trace)
        failed = [line for line in trace.read_text(errors="replace").splitlines()
                  if "(INJECTED)" in line]
        self.tally["failed"] += len(failed)
        # Which call has that place may differ from one run to the next.
        self.is_judged = not any(is_left_out(call, line.partition("(")[2]) for line in failed)
        return ended

    def fail_one(self, version, point):
        before, listed = self.versions.states(), self.listed()
        outside = self.outside()
        ended = self.run_failing(version, *point)
        if not self.is_judged:
            return
        self.assertEqual(ended.status, 0, ended.messages)
        if "there is nothing to install" in ended.last_line:
            self.tally["not begun"] += 1
            self.assertEqual(self.versions.states(), before)
            return
        found = OUTCOME.search(ended.last_line)
        self.assertTrue(found, ended.messages)
        complete = found.group(0).startswith("The installation is complete")
        after = self.versions.states()
        self.tally["complete" if complete else "not complete"] += 1
        for item, state in after.items():
            if state != ABSENT and version not in state:
                self.assertEqual(state, before[item], item)
        if self.listed() != listed:
            self.check_log(after, int(found.group(2) or found.group(3)), ended)
        self.assertEqual(self.outside(), outside)
        if not self.is_as_it_should_be(after, version):
            self.assertTrue(not complete or self.new_lines(ended), ended.messages)
            self.tally["told of"] += 1

    def is_as_it_should_be(self, states, version):
        """On purpose nobody asks whether the list of editors could be written."""
        items = [item for item in states if item != EDITORS]
        return (all(states[item] != ABSENT and version in states[item] for item in items)
                and not any(wrongly_owned(item, self.account.number) for item in items)
                and self.listed() == sorted(self.versions.items))

    def listed(self):
        log = self.disk.installer_log(self.versions.products[0])
        return sorted(log.read_text().splitlines()) if log.exists() else []

    def check_log(self, states, installed, ended):
        """Unless the messages say that it could not be written, it lists what was installed."""
        listed = self.listed()
        for line in listed:
            self.assertIn(line, states, ended.messages)
            if line != EDITORS:
                self.assertNotEqual(states[line], ABSENT, f"{line} is listed:\n{ended.messages}")
        if "installer log file" not in ended.messages and installed > 0:
            self.assertEqual(len(listed), installed, ended.messages)

    def new_lines(self, ended):
        """The messages that an undisturbed run does not have. A folder of paths files that cannot be
        listed has none but the end of the last line."""
        return [line for line in ended.messages.splitlines() if line not in self.usual_lines
                and (NO_HOST in line or not OUTCOME.search(line))]

    def outside(self):
        """What the run has no business with."""
        return tree(self.scratch / "0/Acme Filters 2 Installer.app/Contents/Resources",
                    self.disk.home / "Library/Preferences",
                    "/Library/Somebody Else", "/etc/sudoers.d")

    def install_undisturbed(self, version):
        self.check_undisturbed(version, install(self.versions.products[version], self.account,
                                                self.environment))

    def check_undisturbed(self, version, ended):
        self.assertEqual(ended.status, 0)
        self.assertIn(f"The installation is complete ({len(self.versions.items)} items",
                      ended.last_line, ended.messages)
        self.usual_lines = set(ended.messages.splitlines())
        states = self.versions.states()
        self.assertTrue(self.is_as_it_should_be(states, version), (states, ended.messages))
        self.assertEqual(temporaries("/Library", "/Applications", self.disk.home), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
