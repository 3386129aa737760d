"""What installerctl says beside its report: the progress bar on a terminal, and the system log's line.
On the throw-away machine, which has a /dev of its own where the log is read.
"""

import os
import re
import socket
import subprocess
import unittest

from ctl import DIFFERENCES, DONE, ITEMS_FAILED, NOT_INSTALLED, program, small_product
from harness import TIME_LIMIT, SystemTest, write
from traced import tracer

# Holds back the first names that the main thread gives and takes, so that the work counts as long.
SLOW = tracer(["-e", "trace=linkat,renameat2,unlinkat",
               "-e", "inject=linkat,renameat2,unlinkat:delay_enter=600000:when=1"])
# Starts a program on a /dev whose log is the given socket.
WITH_LOG = ["unshare", "--mount", "sh", "-euc", """
    mount -t tmpfs tmpfs /mnt
    for node in null zero random urandom; do touch /mnt/$node; mount --bind /dev/$node /mnt/$node; done
    ln -s "$1" /mnt/log
    mount --rbind /mnt /dev
    shift
    exec "$@"
""", "sh"]


class Scene(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = small_product(self.scratch / "maker")
        self.disk.add_photoshop("Adobe Photoshop CS6")

    def slowly(self, verb, **options):
        return subprocess.Popen([*SLOW, program(self.product), verb], env=self.environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, **options)


class InstallerctlMessagesProgress(Scene):
    def on_terminal(self, verb):
        """What was shown on the terminal that has the program's standard error."""
        screen, terminal = os.openpty()
        process = self.slowly(verb, stderr=terminal)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        os.close(terminal)
        seen = b""
        with os.fdopen(screen, "rb", buffering=0) as reader:
            while True:
                try:
                    seen += reader.read(65536)
                except OSError:  # nobody has the terminal any more
                    break
        self.assertEqual(process.wait(TIME_LIMIT), DONE, seen)
        return seen.decode()

    def test_long_work_shows_a_bar_with_rate_and_time_and_wipes_it(self):
        for verb, word in (("install", "Installing"), ("remove", "Removing")):
            with self.subTest(verb):
                shown = self.on_terminal(verb)
                self.assertRegex(shown, rf"\r{word} \[[# ]{{30}}\] \d+ %, \d+ MB/s, \d+ s left\x1b\[K")
                self.assertEqual(re.sub(r"\r[^\r]*\x1b\[K", "", shown), "")
                self.assertTrue(shown.endswith("\r\x1b[K"), repr(shown))

    def test_elsewhere_there_is_none(self):
        for verb in ("install", "remove"):
            with self.subTest(verb):
                process = self.slowly(verb, stderr=subprocess.PIPE)
                _, messages = process.communicate(timeout=TIME_LIMIT)
                self.assertEqual((process.returncode, messages), (DONE, b""))


class InstallerctlMessagesSystemLog(Scene):
    def setUp(self):
        super().setUp()
        self.log = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM | socket.SOCK_NONBLOCK)
        self.addCleanup(self.log.close)
        self.log.bind(str(self.scratch / "log"))

    def logged(self, *arguments, status=DONE):
        """What one run has sent to the system log."""
        ended = subprocess.run([*WITH_LOG, self.scratch / "log", program(self.product), *arguments],
                               env={**self.environment, "PATH": os.environ["PATH"]}, check=False,
                               capture_output=True, timeout=TIME_LIMIT)
        self.assertEqual(ended.returncode, status, ended)
        lines = []
        while True:
            try:
                lines.append(self.log.recv(65536).decode())
            except BlockingIOError:
                return lines

    def test_each_run_leaves_one_line_that_says_how_it_went(self):
        for arguments, status, summary in (
                (["status"], NOT_INSTALLED, "It is not installed"),
                (["plan"], DIFFERENCES, "5 new, 0 replaced, 0 the same; there is no receipt yet"),
                (["install"], DONE, "5 of 5 items installed"),
                (["install", "--json"], DONE, "Nothing differs: nothing was done"),
                (["verify"], DONE, None),
                (["remove"], DONE, None),
                (["remove"], NOT_INSTALLED, None)):
            with self.subTest(arguments):
                line, = self.logged(*arguments, status=status)
                start, said = re.fullmatch(
                    r"<13>(\w{3} [ \d]\d \d\d:\d\d:\d\d) installerctl\[\d+\]: "
                    rf"{arguments[0]} Acme Filters 2 1\.0: (.+)", line).groups()
                self.assertTrue(start)
                self.assertEqual(said, summary or said)

    def test_a_failed_run_says_so_in_one_line_too(self):
        write("/Library/Application Support/Acme", "a file where a folder must be")
        lines = self.logged("install", status=ITEMS_FAILED)
        # What root could not do is told by the privileged part, to the log of such things.
        own = [line for line in lines if "privileged-helper: " not in line]
        self.assertEqual(len(own), 1, lines)
        self.assertRegex(own[0], r"install Acme Filters 2 1\.0: \d of 5 items installed, \d failed$")


if __name__ == "__main__":
    unittest.main(verbosity=2)
