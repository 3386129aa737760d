#!/usr/bin/env python3
"""The self-extracting file that mkinstaller packs: what it checks, starts, passes on and leaves."""

import os
import pathlib
import shutil
import signal
import subprocess
import time
import unittest

from packing import PROGRAM, TIME_LIMIT, PackedProduct, run, script

DAMAGED = "{} is damaged or incomplete; please download it again.\n"
# Says with what it was started, and ends with a status of its own.
ECHOING = 'printf "%s\\n" "${0##*/}" "$@" "$(cat)"; exit 7\n'
# Says where it lies and waits for a signal.
WAITING = 'echo $$ > "$MARK.new"; mv "$MARK.new" "$MARK"; exec sleep 1000\n'


def wait_for(path):
    end = time.monotonic() + TIME_LIMIT
    while not path.exists():
        assert time.monotonic() < end, f"waited in vain for {path}"
        time.sleep(0.005)


class RunFile(PackedProduct):
    def test_installs_and_leaves_nothing_behind(self):
        file = self.pack("run")
        volume, environment = self.new_volume()
        run(file, "-quiet", environment=environment)
        support = volume / "Library/Application Support/Acme"
        self.assertTrue((support / "Filters 2/Read Me.txt").is_file())
        self.assertNothingUnpacked()

    def test_starts_from_its_own_folder_by_its_bare_name(self):
        file = self.pack("run", self.kit_with(Installer=ECHOING))
        for name in (file.name, "-q.run"):
            if name != file.name:
                shutil.copy(file, file.with_name(name))
            started = run("sh", "--", name, cwd=file.parent, check=False)
            self.assertEqual((7, "Installer\n\n"), (started.returncode, started.stdout))

    def test_passes_on_arguments_input_and_status_in_each_shell(self):
        file = self.pack("run", self.kit_with(Installer=ECHOING))
        arguments = ["-quiet", "", "two words", "$(date)\n*"]
        shells = [shell for shell in ("sh", "dash", "bash") if shutil.which(shell)]
        for shell in shells:
            with self.subTest(shell):
                given = subprocess.run([shell, file, *arguments], input="typed", text=True,
                                       capture_output=True, check=False,
                                       env={**os.environ, "TMPDIR": str(self.temporary)})
                self.assertEqual((7, "\n".join(["Installer", *arguments, "typed"]) + "\n", ""),
                                 (given.returncode, given.stdout, given.stderr))
                self.assertNothingUnpacked()

    def test_works_without_an_open_standard_input(self):
        file = self.pack("run", self.kit_with(Installer="exit 9\n"))
        self.assertEqual(9, run("sh", "-c", f'exec "{file}" <&-', check=False).returncode)

    def test_verbs_reach_the_tool_for_administrators(self):
        file = self.pack("run", self.kit_with(installerctl=ECHOING))
        for verb in ("plan", "install", "verify", "remove", "status"):
            started = run(file, verb, "--json", check=False)
            self.assertEqual((7, f"installerctl\n{verb}\n--json\n\n"),
                             (started.returncode, started.stdout))

    def test_signals_end_the_installer_and_leave_nothing_behind(self):
        file = self.pack("run", self.kit_with(Installer=WAITING))
        for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                mark = self.scratch / number.name
                environment = {**os.environ, "MARK": str(mark), "TMPDIR": str(self.temporary)}
                with subprocess.Popen([file], env=environment) as process:
                    wait_for(mark)
                    process.send_signal(number)
                    self.assertEqual(128 + number, process.wait(TIME_LIMIT))
                self.assertFalse(pathlib.Path("/proc", mark.read_text().strip()).exists())
                self.assertNothingUnpacked()

    def test_unpacks_where_only_its_user_can_look(self):
        mark = self.scratch / "mode"
        kit = self.kit_with(Installer='stat -c %a "${0%/*/*/*/*}" > "$MARK"\n')
        run(self.pack("run", kit), environment={"MARK": str(mark)})
        self.assertEqual("700\n", mark.read_text())

    def start_with_temporary_folder(self, options, file):
        """With a file system mounted at the folder for temporary files, in a machine of its own."""
        return run("unshare", "--map-root-user", "--mount", "sh", "-c",
                   'mount -t tmpfs -o "$1" tmpfs "$2" && TMPDIR=$2 exec "$3"', "sh", options,
                   self.temporary, file, check=False)

    def test_takes_another_folder_where_programs_may_not_be_started(self):
        file = self.pack("run", self.kit_with(Installer='echo "${0%/*}"\n'))
        allowed = self.start_with_temporary_folder("rw", file)
        self.assertTrue(allowed.stdout.startswith(str(self.temporary)), allowed)
        forbidden = self.start_with_temporary_folder("noexec", file)
        self.assertTrue(forbidden.stdout.startswith("/var/tmp/installer."), forbidden)

    def test_takes_another_folder_where_there_is_no_room(self):
        file = self.pack("run", self.kit_with(Installer='echo "${0%/*}"\n'))
        started = self.start_with_temporary_folder("size=64k", file)
        self.assertTrue(started.stdout.startswith("/var/tmp/installer."), started)

    def test_names_a_program_that_is_missing(self):
        file = self.pack("run")
        tools = self.new_folder("tools")
        for tool in ("sh", "head", "mktemp", "rm", "sha256sum", "tail", "tar"):
            (tools / tool).symlink_to(shutil.which(tool))
        started = run(file, "-quiet", environment={"PATH": str(tools)}, check=False)
        self.assertEqual((1, f'{file.name} needs the program "gzip".\n'),
                         (started.returncode, started.stderr))

    def test_tells_people_without_a_terminal_in_a_dialogue(self):
        file = self.pack("run")
        file.write_bytes(file.read_bytes()[:-1])
        tools = self.new_folder("tools")
        for tool in ("sh", "head", "mktemp", "rm", "sha256sum", "tail", "tar", "gzip"):
            (tools / tool).symlink_to(shutil.which(tool))
        for dialogue, shown in (("notify-send", "-- "), ("xmessage", ""),
                                ("zenity", "--error --no-markup --text="), ("kdialog", "--error ")):
            with self.subTest(dialogue):
                script(tools / dialogue, f'echo "{dialogue} $*" > "$MARK"\n')
                mark = self.scratch / "mark"
                subprocess.run([file], check=False, capture_output=True,
                               env={"PATH": str(tools), "DISPLAY": ":9", "MARK": str(mark)})
                self.assertEqual(f"{dialogue} {shown}" + DAMAGED.format(file.name),
                                 mark.read_text())


class RunFileOtherCompression(PackedProduct):
    """A file that a maker has compressed for customers who have the program."""

    def pack_so(self, output):
        made = run(PROGRAM, "pack", self.product, "--compression", "zstd", "--output", output)
        return pathlib.Path(made.stdout.removesuffix("\n"))

    def test_installs_and_has_the_same_bytes_each_time(self):
        file = self.pack_so(self.output)
        self.assertIn(b"\n}\n\x28\xb5\x2f\xfd", file.read_bytes())
        self.assertEqual(file.read_bytes(), self.pack_so(self.scratch / "again").read_bytes())
        volume, environment = self.new_volume()
        run(file, "-quiet", environment=environment)
        self.assertTrue((volume / "Library/Application Support/Acme/Filters 2/Read Me.txt").is_file())
        self.assertNothingUnpacked()

    def test_names_the_program_where_it_is_missing(self):
        file = self.pack_so(self.output)
        tools = self.new_folder("tools")
        for tool in ("sh", "head", "mktemp", "rm", "sha256sum", "tail", "tar", "gzip"):
            (tools / tool).symlink_to(shutil.which(tool))
        started = run(file, "-quiet", environment={"PATH": str(tools)}, check=False)
        self.assertEqual((1, f'{file.name} needs the program "zstd".\n'),
                         (started.returncode, started.stderr))

    def test_a_changed_byte_is_refused(self):
        file = self.pack_so(self.output)
        contents = bytearray(file.read_bytes())
        contents[-100] ^= 1
        file.write_bytes(contents)
        volume, environment = self.new_volume()
        started = run(file, "-quiet", environment=environment, check=False)
        self.assertEqual((1, DAMAGED.format(file.name)), (started.returncode, started.stderr))
        self.assertEqual([], os.listdir(volume))

    def test_another_word_is_wrong_use(self):
        self.assertEqual(2, run(PROGRAM, "pack", self.product, "--compression", "xz",
                                check=False).returncode)


class RunFileDamage(PackedProduct):
    """No byte of the file can be changed, added or lost without a word, and nothing is installed."""

    def setUp(self):
        super().setUp()
        self.file = self.pack("run")
        self.whole = self.file.read_bytes()
        self.volume, self.environment = self.new_volume()

    def start(self, contents):
        self.file.write_bytes(contents)
        started = run(self.file, "-quiet", environment=self.environment, check=False)
        self.assertEqual([], os.listdir(self.volume))
        self.assertNothingUnpacked()
        return started

    def assertRefused(self, contents):
        started = self.start(contents)
        self.assertEqual((1, "", DAMAGED.format(self.file.name)),
                         (started.returncode, started.stdout, started.stderr))

    def test_a_file_that_lost_its_end_is_refused(self):
        head = self.whole.index(b"\n}\n{\n") + 5
        for length in (head, head + 1, head + 400, self.whole.index(b"\n}\n", head) + 3,
                       len(self.whole) // 2, len(self.whole) - 1):
            with self.subTest(length):
                self.assertRefused(self.whole[:length])

    def test_a_file_that_lost_its_end_early_never_passes_for_success(self):
        head = self.whole.index(b"\n}\n{\n")
        for length in range(11, head, 37):
            with self.subTest(length):
                self.assertNotEqual(0, self.start(self.whole[:length]).returncode)

    def test_a_changed_byte_is_refused(self):
        second = self.whole.index(b"\n}\n{\n") + 5
        payload = self.whole.index(b"\n}\n", second) + 3
        places = (self.whole.index(b"sum=") + 4, second + 10, payload - 20, payload + 2,
                  payload + 100, len(self.whole) // 2, len(self.whole) - 1)
        for place in places:
            with self.subTest(place):
                contents = bytearray(self.whole)
                contents[place] ^= 1
                self.assertRefused(bytes(contents))

    def test_what_was_added_is_refused(self):
        self.assertRefused(self.whole + b"\n")

    def test_line_ends_of_another_system_are_refused(self):
        self.file.write_bytes(self.whole.replace(b"\n", b"\r\n"))
        started = run("sh", self.file, "-quiet", environment=self.environment, check=False)
        self.assertNotEqual(0, started.returncode)
        self.assertEqual([], os.listdir(self.volume))


if __name__ == "__main__":
    unittest.main()
