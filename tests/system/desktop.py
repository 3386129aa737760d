"""A desktop of the test's own: display, session bus, accessibility bus, browser, user's folders.

Nothing of it is seen by the person at this machine, by another test or by what is installed here:
the session bus starts no service but the accessibility bus. A process has at most one desktop,
since the library that reads the accessibility bus connects once.
"""

import ctypes
import os
import pathlib
import pwd
import shutil
import signal
import subprocess
import sys
import tempfile

PR_SET_CHILD_SUBREAPER = 36

BUS_CONFIGURATION = """<busconfig>
  <type>session</type>
  <listen>unix:path={folder}/bus</listen>
  <servicedir>{folder}/services</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

ACCESSIBILITY_SERVICE = "/usr/share/dbus-1/services/org.a11y.Bus.service"
PORTAL = pathlib.Path(__file__).with_name("settings_portal.py")


class Desktop:
    """Owned by the named user; root may look at it too. `close` ends every process of it."""

    def __init__(self, login="root", screen="1600x1200x24"):
        # What a service leaves behind when it ends becomes this process's child, to be ended too.
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self.account = pwd.getpwnam(login)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="installer-desktop-"))
        self.folder.chmod(0o755)
        self.portal = None
        self._services = []
        self.log = open(self.folder / "services.log", "ab")
        try:
            self._make_folders()
            self._make_browser()
            self._make_dialogue()
            self.display = ":" + self._start_and_read(
                ["Xvfb", "-displayfd", "{}", "-screen", "0", screen, "-nolisten", "tcp", "-noreset",
                 # The lock file names a process, which means nothing in another process namespace.
                 *(["-nolock"] if os.getuid() == 0 else [])], as_user=False)
            self.bus = self._start_and_read(
                ["dbus-daemon", "--nofork", "--nopidfile", f"--config-file={self.folder}/bus.conf",
                 "--print-address={}"])
        except BaseException:
            self.close()
            raise

    def _make_folders(self):
        (self.folder / "services").mkdir()
        shutil.copy(ACCESSIBILITY_SERVICE, self.folder / "services")
        (self.folder / "bus.conf").write_text(BUS_CONFIGURATION.format(folder=self.folder))
        self.runtime = self.folder / "run"
        self.runtime.mkdir(0o700)
        for path in (self.folder, self.runtime):
            os.chown(path, self.account.pw_uid, self.account.pw_gid)

    def _make_browser(self):
        """A browser that opens nothing and remembers what it was asked to open."""
        self._opened = self.folder / "opened"
        self._opened.touch()
        self._opened.chmod(0o666)
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        browser = self.programs / "xdg-open"
        browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >> "{self._opened}"\n'
                           f'test ! -e "{self.folder}/broken"\n')
        browser.chmod(0o755)

    def _make_dialogue(self):
        """A person who closes each dialogue at once; what it said is remembered."""
        self._said = self.folder / "said"
        self._said.touch()
        self._said.chmod(0o666)
        dialogue = self.programs / "kdialog"
        dialogue.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >> "{self._said}"\n')
        dialogue.chmod(0o755)

    def _start_and_read(self, command, as_user=True):
        """Starts a server that tells where it is on a descriptor; gives what it tells."""
        read_end, write_end = os.pipe()
        with os.fdopen(read_end) as answer:
            service = self.start([argument.format(write_end) for argument in command],
                                 as_user=as_user, pass_fds=[write_end])
            self._services.append(service)
            os.close(write_end)
            told = answer.readline().strip()
        if not told:
            raise RuntimeError(f"{command[0]} did not start:\n{self.services_log()}")
        return told

    def start(self, command, as_user=True, **options):
        """Starts a program of the desktop."""
        account = self.account
        if as_user and account.pw_uid != os.getuid():
            options |= {"user": account.pw_uid, "group": account.pw_gid, "extra_groups": []}
        options.setdefault("stdout", self.log)
        options.setdefault("stdin", subprocess.DEVNULL)
        return subprocess.Popen(
            command, stderr=self.log, env=self.environment(self.folder / "home"),
            start_new_session=True, cwd="/", **options)

    def environment(self, home):
        """What a program that the user starts on this desktop finds in its environment."""
        home = pathlib.Path(home)
        return {
            "HOME": str(home), "USER": self.account.pw_name, "LOGNAME": self.account.pw_name,
            "PATH": f"{self.programs}:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "SHELL": "/bin/sh", "LANG": "C.UTF-8",
            "XDG_RUNTIME_DIR": str(self.runtime), "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_DATA_HOME": str(home / ".local/share"), "XDG_CACHE_HOME": str(home / ".cache"),
            "DISPLAY": getattr(self, "display", ""),
            "DBUS_SESSION_BUS_ADDRESS": getattr(self, "bus", "disabled:"),
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }

    def enter(self):
        """Makes this process a program of the desktop, before it uses the accessibility bus."""
        os.environ.pop("AT_SPI_BUS_ADDRESS", None)
        for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"):
            os.environ[name] = self.environment("/")[name]

    def opened(self):
        """The addresses and files that the browser was asked to open."""
        return self._opened.read_text().splitlines()

    def said(self):
        """What the desktop's own dialogues have said in this desktop's life."""
        return self._said.read_text()

    def forget_opened(self):
        self._opened.write_text("")
        (self.folder / "broken").unlink(missing_ok=True)

    def break_browser(self):
        """From now on it ends with an error, until what was opened is forgotten."""
        (self.folder / "broken").touch()

    def prefer(self, appearance):
        """Lets the desktop tell programs that they should be "dark" or "light"; None: no word."""
        if self.portal is not None:
            self.portal.kill()
            self.portal.communicate()
            self.portal = None
        if appearance is not None:
            self.portal = self.start([sys.executable, "-B", str(PORTAL), appearance],
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE)
            if self.portal.stdout.readline() != b"ready\n":
                raise RuntimeError(f"the portal did not start:\n{self.services_log()}")

    def change_preference(self, appearance):
        """The same while programs run: the portal tells them."""
        self.portal.stdin.write(f"{appearance}\n".encode())
        self.portal.stdin.flush()

    def services_log(self):
        return (self.folder / "services.log").read_text(errors="replace")

    def close(self):
        for service in self._services + ([self.portal] if self.portal else []):
            service.kill()
            service.communicate()
        end_children()
        self.log.close()
        shutil.rmtree(self.folder, ignore_errors=True)


def end_children():
    """Ends every process that this one has started, and what those have started."""
    while children := own_children():
        for child in children:
            os.kill(child, signal.SIGKILL)
            try:
                os.waitpid(child, 0)
            except ChildProcessError:
                pass


def own_children():
    children = []
    for thread in os.listdir("/proc/self/task"):
        text = pathlib.Path(f"/proc/self/task/{thread}/children").read_text()
        children += [int(number) for number in text.split()]
    return children
