"""Killing the installer, its helper or both at random moments never leaves a mixture or debris.

INSTALLER_KILLS and INSTALLER_KILLS_SEED give the number of kills and the seed (see scripts/kill-runs).
"""

import collections
import os
import random
import signal
import time
import unittest

from harness import SystemTest
from traced import (ROOT, Installation, calls_of, install, make_ordinary_user, measured, traced)
from versions import ABSENT, EDITORS, Versions, temporaries, wrongly_owned

KILLS = int(os.environ.get("INSTALLER_KILLS", "40"))
SEED = int(os.environ.get("INSTALLER_KILLS_SEED", "1"))

# Between two of these nothing changes that a kill could leave half done.
CHANGING_CALLS = ("openat", "mkdirat", "renameat", "renameat2", "unlinkat", "fchownat", "fchown",
                  "fchmod", "utimensat", "copy_file_range", "pwrite64", "write", "symlinkat",
                  "linkat", "ftruncate", "flock", "sendto")
LARGE = 20 << 20
FEWEST_THAT_PROVE = 10
# Kills that follow each other before a run is left to finish, at most.
LONGEST_STREAK = 4


class Kills(SystemTest):
    @classmethod
    def setUpClass(cls):
        cls.user = make_ordinary_user()

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.versions = Versions(self.scratch, 3, LARGE, 12)
        self.versions.prepare(self.disk)
        self.tally = collections.Counter()

    def test_root_is_left_with_whole_items_and_the_next_run_completes(self):
        self.kill_runs(ROOT, KILLS - KILLS // 2, random.Random(SEED))

    def test_an_ordinary_user_is_left_with_whole_items_and_the_next_run_completes(self):
        os.chown(self.disk.home, self.user.number, self.user.number)
        self.kill_runs(self.user, KILLS // 2, random.Random(SEED + 1))

    def test_a_helper_lost_among_the_items_leaves_the_list_of_those_before_and_of_no_other(self):
        os.chown(self.disk.home, self.user.number, self.user.number)
        self.account = self.user
        self.install_undisturbed(0)
        product = self.versions.products[1]
        calls = calls_of(product, self.user, self.environment, "helper", ["fchownat"],
                         self.scratch / "trace")
        self.install_undisturbed(0)
        with traced(product, "helper",
                    ["-e", f"inject=fchownat:signal=KILL:when={len(calls) * 3 // 4}"]) as command:
            ended = Installation(product, self.user, self.environment, command).finish()
        listed = self.disk.logged_paths(product)
        self.assertIn(f"installation is not complete ({len(listed)} items", ended.last_line)
        self.assertTrue(0 < len(listed) < len(self.versions.items), listed)
        for item in listed:
            self.assertIn(1, self.versions.state(item), item)

    def kill_runs(self, account, count, chance):
        self.account = account
        install(self.versions.products[0], account, self.environment)
        # Measured on runs that replace, as nearly all of the runs do.
        self.calls = {who: [name for name, _ in calls_of(
            self.versions.products[1], account, self.environment, who, CHANGING_CALLS,
            self.scratch / "trace")] for who in account.programs}
        self.lasting = dict(zip(("both", "helper"), measured(self.versions.products[2], account,
                                                              self.environment)))
        self.lasting["installer"] = self.lasting["both"]
        version = 0
        killed = 0
        self.install_undisturbed(version)
        while killed < count:
            for _ in range(min(chance.randint(1, LONGEST_STREAK), count - killed)):
                version = (version + 1) % 3
                self.kill_one(version, chance)
                killed += 1
            version = (version + chance.randint(0, 1)) % 3
            self.install_undisturbed(version)
        self.report(count)

    def kill_one(self, version, chance):
        before, log = self.before, self.log()
        ways = [(way, program) for program in self.account.programs for way in ("delay", "call")]
        if "helper" in self.account.programs:
            ways.append(("delay", "both"))
        way, target = chance.choice(ways)
        moment = chance.random()
        with self.subTest(account=self.account.name, version=version, way=way, target=target,
                          moment=moment):
            kill = self.kill_after_a_delay if way == "delay" else self.kill_at_a_call
            ended = kill(self.versions.products[version], target, moment)
            self.before = after = self.versions.states()
            phase = self.check_states(before, after, version)
            if ended.status == 0 and (target != "helper" or "installation is complete" in ended.last_line):
                phase = "too late, the run was over"
            self.check_log(log, after, ended, target)
            self.tally[f"kills of {target} by {way}: {phase}"] += 1

    def kill_after_a_delay(self, product, target, moment):
        run = Installation(product, self.account, self.environment)
        helper = run.await_helper() if target == "helper" else None
        # The random moment itself: nothing is waited for.
        time.sleep(moment * self.lasting[target])
        try:
            if target == "both":
                os.killpg(run.process.pid, signal.SIGKILL)
            elif target == "installer":
                run.process.kill()
            elif helper:
                os.kill(helper, signal.SIGKILL)
        except ProcessLookupError:
            pass  # it was faster
        return run.finish()

    def kill_at_a_call(self, product, target, moment):
        # The tracer counts each call's occurrences by themselves.
        at = int(moment * len(self.calls[target]))
        call = self.calls[target][at]
        number = self.calls[target][:at + 1].count(call)
        options = ["-e", f"inject={call}:signal=KILL:when={number}"]
        with traced(product, target, options) as command:
            return Installation(product, self.account, self.environment, command).finish()

    def check_states(self, before, after, version):
        """Each item as it was, absent, or whole and new; tells how far the run had come."""
        seen = []
        for item, state in after.items():
            if item == EDITORS:
                continue  # the same in all versions
            if state == ABSENT:
                seen.append("absent")
            elif state == [version]:
                seen.append("new")
            else:
                self.assertEqual(state, before[item], item)
                seen.append("old")
        self.tally.update(f"items {word}" for word in seen)
        if set(seen) == {"new"}:
            return "after the last item"
        return "among the items" if "new" in seen or after != before else "before the first item"

    def check_log(self, before, states, ended, target):
        """The list of the run before, of this one, or none: never one that nobody wrote."""
        log = self.log()
        if target == "helper" and ended.status == 0 and log is not None and log != before:
            for line in log.decode().splitlines():
                self.assertIn(line, states, log)
                self.assertNotEqual(states[line], ABSENT, log)
            if "installer log file" not in ended.messages:
                count = len(log.splitlines())
                self.assertIn(f"({count} items installed", ended.messages)
        self.assertTrue(log in (None, b"") or log.endswith(b"\n"), log)
        listed = log.decode().splitlines() if log else []
        self.assertLessEqual(set(listed), set(self.versions.items))
        self.assertEqual(len(listed), len(set(listed)), log)

    def log(self):
        path = self.disk.installer_log(self.versions.products[0])
        return path.read_bytes() if path.exists() else None

    def install_undisturbed(self, version):
        product = self.versions.products[version]
        ended = install(product, self.account, self.environment)
        self.assertEqual(ended.status, 0)
        self.assertIn(f"The installation is complete ({len(self.versions.items)} items",
                      ended.last_line, ended.messages)
        self.before = self.versions.states()
        for item, state in self.before.items():
            self.assertIn(version, state, item)
            if item != EDITORS:
                self.assertEqual(wrongly_owned(item, self.account.number), [], item)
        self.assertEqual(sorted(self.disk.logged_paths(product)), sorted(self.versions.items))
        self.assertInstalled(self.disk.installer_log(product), owner=self.account.number, mode=0o644)
        self.assertEqual(temporaries("/Library", "/Applications", self.disk.home), [])

    def report(self, count):
        print(f"\n{count} kills of an installation by {self.account.name}:")
        for what, number in sorted(self.tally.items()):
            print(f"  {number:5} {what}")
        if count >= FEWEST_THAT_PROVE:
            for word in ("old", "absent", "new"):
                self.assertGreater(self.tally[f"items {word}"], 0,
                                   f"no kill left an item {word}: these prove little")


if __name__ == "__main__":
    unittest.main(verbosity=2)
