"""The quiet installation asks nothing of its surroundings, and starts nothing else by mistake."""

import os
import pty
import shutil
import subprocess
import unittest

from harness import TIME_LIMIT, Product, SystemTest, run, write


class Surroundings(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_volume()
        self.product = Product(self.scratch / "maker")
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "read me")
        self.readme = self.disk.support("Acme/Filters 2/readme.txt")

    def test_no_window_toolkit_and_no_display_library_is_loaded(self):
        trace = self.scratch / "trace"
        finished = subprocess.run(
            ["strace", "-f", "-o", str(trace), "-e", "trace=openat,connect",
             str(self.product.executable), "-quiet"],
            # A leak checker cannot work in a program that is being traced.
            env={**self.environment, "DISPLAY": ":0", "WAYLAND_DISPLAY": "wayland-0",
                 "ASAN_OPTIONS": "detect_leaks=0"},
            capture_output=True, timeout=TIME_LIMIT, check=False, stdin=subprocess.DEVNULL)
        self.assertEqual(finished.returncode, 0)
        self.assertTrue(self.readme.exists())
        for word in ("libQt", "libX11", "libxcb", "libwayland", "X11-unix", "wayland-0"):
            self.assertNotIn(word, trace.read_text(errors="replace"), word)

    def test_home_is_the_only_variable_that_the_installer_needs(self):
        self.assertEqual(set(self.environment), {"HOME", "INSTALLER_TARGET_VOLUME"})
        self.assertEqual(run(self.product, environment=self.environment).status, 0)
        self.assertTrue(self.readme.exists())

    def test_closed_standard_streams_do_not_matter(self):
        command = 'exec "$0" -quiet <&- >&- 2>&-'
        finished = subprocess.run(["sh", "-c", command, str(self.product.executable)],
                                  env=self.environment, timeout=TIME_LIMIT, check=False)
        self.assertEqual(finished.returncode, 0)
        self.assertEqual(self.readme.read_text(), "read me")

    def test_a_reader_of_its_messages_that_goes_away_does_not_stop_it(self):
        read_end, write_end = os.pipe()
        os.close(read_end)
        outcome = subprocess.run([str(self.product.executable), "-quiet"], env=self.environment,
                                 stderr=write_end, stdin=subprocess.DEVNULL, timeout=TIME_LIMIT,
                                 check=False)
        os.close(write_end)
        self.assertEqual(outcome.returncode, 0)
        self.assertTrue(self.readme.exists())

    def test_on_a_terminal_it_never_waits_for_input(self):
        controller, terminal = pty.openpty()
        finished = subprocess.run([str(self.product.executable), "-quiet"], env=self.environment,
                                  stdin=terminal, stdout=terminal, stderr=terminal,
                                  start_new_session=True, timeout=TIME_LIMIT, check=False)
        os.close(terminal)
        os.close(controller)
        self.assertEqual(finished.returncode, 0)
        self.assertTrue(self.readme.exists())

    def test_further_arguments_are_ignored(self):
        outcome = run(self.product, ("-quiet", "-verbose", "x"), self.environment)
        self.assertEqual(outcome.status, 0)
        self.assertTrue(self.readme.exists())

    def test_anything_but_the_exact_first_argument_wants_a_window_and_says_that_there_is_none(self):
        for arguments in ((), ("-QUIET",), ("--quiet",), ("x", "-quiet"), ("-quiet ",), ("",)):
            with self.subTest(arguments):
                outcome = run(self.product, arguments, self.environment)
                self.assertNotEqual(outcome.status, 0)
                self.assertIn("-quiet", outcome.messages)
                self.assertFalse(self.readme.exists())

    def dialogues(self, *names):
        """A folder of programs that write down with what they were started."""
        folder = self.scratch / "programs"
        shutil.rmtree(folder, ignore_errors=True)
        for name in names:
            write(folder / name, f'#!/bin/sh\necho "{name} $*" > "$RECORD"\n', 0o755)
        return {**self.environment, "PATH": str(folder), "DISPLAY": ":77",
                "RECORD": str(self.scratch / "record")}

    def test_a_person_at_a_display_without_the_toolkit_is_told_in_a_dialogue(self):
        names = ["notify-send", "xmessage", "zenity", "kdialog"]
        shown = {"notify-send": "--", "xmessage": "The", "zenity": "--error --no-markup --text=The",
                 "kdialog": "--error The"}
        for count, name in enumerate(names, 1):
            with self.subTest(name):
                outcome = run(self.product, (), self.dialogues(*names[:count]))
                self.assertEqual(outcome.status, 1)
                text = (self.scratch / "record").read_text()
                self.assertTrue(text.startswith(f"{name} {shown[name]}"), text)
                self.assertIn("InstallerWindow.so", text)
                self.assertIn("Start it with -quiet", text)

    def test_nobody_is_shown_a_dialogue_without_a_display_or_in_a_quiet_run(self):
        with_display = self.dialogues("kdialog")
        without = {name: value for name, value in with_display.items() if name != "DISPLAY"}
        self.assertEqual(run(self.product, (), without).status, 1)
        self.assertEqual(run(self.product, ("-quiet",), with_display).status, 0)
        self.assertFalse((self.scratch / "record").exists())

    def test_a_terminal_is_told_without_a_dialogue(self):
        environment = self.dialogues("kdialog")
        controller, terminal = os.openpty()
        finished = subprocess.run([str(self.product.executable)], env=environment,
                                  stdin=terminal, stdout=terminal, stderr=terminal,
                                  timeout=TIME_LIMIT, check=False)
        os.close(terminal)
        os.close(controller)
        self.assertEqual(finished.returncode, 1)
        self.assertFalse((self.scratch / "record").exists())

    def test_an_executable_outside_a_bundle_says_so_and_ends_with_success_when_quiet(self):
        alone = self.scratch / "Installer"
        alone.write_bytes(self.product.executable.read_bytes())
        alone.chmod(0o755)
        finished = subprocess.run([str(alone), "-quiet"], env=self.environment,
                                  capture_output=True, timeout=TIME_LIMIT, check=False, text=True,
                                  stdin=subprocess.DEVNULL)
        self.assertEqual(finished.returncode, 0)
        self.assertIn("bundle", finished.stderr)

    def test_an_alert_without_a_display_is_written_and_the_run_goes_on(self):
        texts = {"install_error_title": "The title", "install_error_format_string": "Item: %@%@",
                 "install_error_proceed": "Go on"}
        self.product.write_texts(texts, {"company_name": "Acme", "product_name": "Filters 2"})
        package = self.product.add_package("HD/Applications/Tool.app")
        os.mkfifo(package / "pipe")
        outcome = run(self.product, environment=self.environment)
        self.assertEqual(outcome.status, 0)
        self.assertIn("The title", outcome.messages)
        self.assertIn(f"Item: {self.disk.at('/Applications/Tool.app')}", outcome.messages)
        self.assertTrue(self.readme.exists())

    def test_an_unprivileged_user_whom_nobody_can_ask_is_refused_without_waiting(self):
        self.disk.at("/Library").chmod(0o777)
        self.scratch.chmod(0o755)
        os.chown(self.disk.home, 65534, 65534)
        outcome = run(self.product, environment=self.environment, user=65534, group=65534,
                      extra_groups=[])
        self.assertEqual(outcome.status, 0)
        self.assertIn("refused", outcome.messages)
        self.assertFalse(self.disk.installer_log(self.product).exists())


if __name__ == "__main__":
    unittest.main(verbosity=2)
