#!/usr/bin/env python3
"""Proves that scripts/count-tests counts and names what failed, on a log that is made for each case."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "count-tests"


def entry(name, output, ending="Test Passed."):
    return (f"1/9 Testing: {name}\n1/9 Test: {name}\nOutput:\n----------\n{output}\n<end of output>\n"
            f"Test time =   0.01 sec\n----------\n{ending}\n\"{name}\" end time: now\n\n")


def counted(*entries, output=""):
    with tempfile.TemporaryDirectory() as folder:
        files = [pathlib.Path(folder, "log"), pathlib.Path(folder, "output")]
        files[0].write_text("Start testing: now\n" + "".join(entries) + "End testing: now\n")
        files[1].write_text(output)
        result = subprocess.run([sys.executable, "-B", SCRIPT, *files],
                                capture_output=True, text=True, check=True)
        lines = result.stdout.splitlines()
        return (*map(int, lines[:2]), lines[2:])


class CountTests(unittest.TestCase):
    def test_each_test_of_a_program_counts(self):
        passing = "[ RUN      ] Door.Opens\n[       OK ] Door.Opens (1 ms)\n"
        self.assertEqual(counted(entry("door_tests", passing)), (1, 0, []))

    def test_a_program_without_tests_of_its_own_is_one_test(self):
        self.assertEqual(counted(entry("lint.Rules", "All is well.")), (1, 0, []))
        self.assertEqual(counted(entry("lint.Rules", "A fault.", "Test Failed.")),
                         (0, 1, ["lint.Rules"]))

    def test_a_test_that_is_judged_by_what_it_prints_counts(self):
        self.assertEqual(counted(entry("Module.Shows", "one", "Test Pass Reason:\nFound")),
                         (1, 0, []))
        self.assertEqual(counted(entry("Module.Shows", "two", "Test Fail Reason:\nNot found")),
                         (0, 1, ["Module.Shows"]))

    def test_failed_and_skipped_tests_are_named_with_their_program(self):
        output = ("[ RUN      ] Door.Opens\n[  FAILED  ] Door.Opens (1 ms)\n"
                  "[ RUN      ] Door.Shuts\n[  SKIPPED ] Door.Shuts (0 ms)\n"
                  "[ RUN      ] All/Door.Locks/0\n"
                  "[  FAILED  ] All/Door.Locks/0, where GetParam() = Wood (0 ms)\n"
                  "[ RUN      ] Door.Creaks\n[       OK ] Door.Creaks (2 ms)\n"
                  "[  FAILED  ] 2 tests, listed below:\n[  FAILED  ] Door.Opens\n")
        self.assertEqual(counted(entry("door_tests", output, "Test Failed.")),
                         (1, 3, ["door_tests: Door.Opens", "door_tests: Door.Shuts",
                                 "door_tests: All/Door.Locks/0"]))

    def test_a_test_that_is_its_own_program_is_named_once(self):
        output = "[ RUN      ] Door.Opens\n[  FAILED  ] Door.Opens (1 ms)\n"
        self.assertEqual(counted(entry("Door.Opens", output, "Test Failed.")),
                         (0, 1, ["Door.Opens"]))

    def test_the_test_that_ended_its_program_is_named(self):
        output = ("[ RUN      ] Door.Opens\n[       OK ] Door.Opens (1 ms)\n"
                  "[ RUN      ] Door.Shuts\nSegmentation fault\n")
        self.assertEqual(counted(entry("door_tests", output, "Test Failed.")),
                         (1, 1, ["door_tests: Door.Shuts"]))

    def test_failed_and_skipped_system_tests_are_named(self):
        output = ("test_opens (__main__.Door.test_opens) ... FAIL\n"
                  "test_shuts (__main__.Door.test_shuts) ... ERROR\n"
                  "test_locks (__main__.Door.test_locks) ... skipped 'no key'\n"
                  "test_creaks (__main__.Door.test_creaks) ... ok\n"
                  "=====\nFAIL: test_opens (__main__.Door.test_opens)\n-----\n"
                  "=====\nERROR: test_shuts (__main__.Door.test_shuts)\n-----\n"
                  "Ran 4 tests in 1.0s\n\nFAILED (failures=1, errors=1, skipped=1)\n")
        passed, failed, names = counted(entry("System.door", output, "Test Failed."))
        self.assertEqual((passed, failed), (1, 3))
        self.assertEqual(sorted(names), ["System.door: test_locks (__main__.Door.test_locks)",
                                         "System.door: test_opens (__main__.Door.test_opens)",
                                         "System.door: test_shuts (__main__.Door.test_shuts)"])

    def test_programs_that_did_not_run_have_failed_though_the_log_has_them_as_passed(self):
        entries = [entry(name, "") for name in ("System.door", "System.key", "System.hinge")]
        output = ("1/3 Test #1: System.door ....***Skipped   0.01 sec\n"
                  "The following tests did not run:\n\t  1 - System.door (Skipped)\n"
                  "The following tests FAILED:\n\t  2 - System.key (Not Run)\n")
        self.assertEqual(counted(*entries, output=output), (1, 2, ["System.door", "System.key"]))

    def test_a_program_that_did_not_end_in_time_is_named(self):
        self.assertEqual(counted(entry("System.door", "test_opens ...", "Test Timeout.")),
                         (0, 1, ["System.door"]))


if __name__ == "__main__":
    unittest.main()
