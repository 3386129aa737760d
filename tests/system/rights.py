"""Who may become the administrator, and how they are asked: accounts, polkit, agents, terminals.

All of it is real and lives on the throw-away machine only.
"""

import atexit
import json
import os
import pathlib
import pwd
import re
import select
import signal
import subprocess
import termios
import time

from harness import TIME_LIMIT, administrators_group, write

AGENT = pathlib.Path(__file__).with_name("polkit_agent.py")
# The bindings to the bus belong to the system's own interpreter.
PYTHON = "/usr/bin/python3"
BUS = pathlib.Path("/run/dbus/system_bus_socket")
PASSWORD_RULES = pathlib.Path("/etc/pam.d/common-auth")
PAUSE_BETWEEN_LOOKS = 0.002
# Starts as a stopped process, which can be made known to others before it goes on as the program.
STOPPED = ["/bin/sh", "-c", 'kill -STOP $$; exec "$@"', "sh"]
TWICE = ["/bin/sh", "-c", '"$@"; "$@"', "sh"]


def wait_until(condition, what, limit=TIME_LIMIT):
    end = time.monotonic() + limit
    while not (answer := condition()):
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(PAUSE_BETWEEN_LOOKS)
    return answer


def processes(program):
    """The living processes that were started as that program."""
    found = []
    for process in filter(str.isdigit, os.listdir("/proc")):
        try:
            arguments = pathlib.Path(f"/proc/{process}/cmdline").read_bytes().split(b"\0")
        except OSError:
            continue
        # A process that has ended, and is only waited for, has no arguments any more.
        if arguments[0] == os.fsencode(program):
            found.append(int(process))
    return found


def is_asleep(process):
    return "S" in pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2][:3]


class Account:
    """A new account. An administrator may become root, after a question."""

    def __init__(self, login, administrator=True):
        self.login, self.password = login, f"the password of {login}"
        subprocess.run(["useradd", "--create-home", login], check=True, capture_output=True)
        subprocess.run(["chpasswd"], input=f"{login}:{self.password}\n".encode(), check=True)
        if administrator:
            subprocess.run(["usermod", "--append", "--groups", str(administrators_group()), login],
                           check=True)
        self.user, self.group = pwd.getpwnam(login).pw_uid, pwd.getpwnam(login).pw_gid
        self.groups = [administrators_group()] if administrator else []
        # A wrong password is otherwise told only after seconds.
        rules = PASSWORD_RULES.read_text()
        if "nodelay" not in rules:
            PASSWORD_RULES.write_text(rules.replace("pam_unix.so", "pam_unix.so nodelay"))

    @property
    def options(self):
        """Of a process that this user starts."""
        return {"user": self.user, "group": self.group, "extra_groups": self.groups, "cwd": "/"}

    def own(self, *folders):
        subprocess.run(["chown", "-R", f"{self.user}:{self.group}", *folders], check=True)


def start_polkit(rules=""):
    """Starts the system's bus and polkit; returns when polkit answers. polkit ends with its bus."""
    write("/etc/polkit-1/rules.d/00-test.rules", rules, 0o644)
    BUS.parent.mkdir(exist_ok=True)
    read_end, write_end = os.pipe()
    command = ["dbus-daemon", "--system", "--nofork", "--nopidfile",
               f"--print-address={write_end}"]
    with os.fdopen(read_end) as address, open("/run/bus.log", "ab") as log:
        bus = subprocess.Popen(
            command, pass_fds=[write_end], stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        atexit.register(bus.wait)
        atexit.register(bus.terminate)
        os.close(write_end)
        assert address.readline(), pathlib.Path("/run/bus.log").read_text()
    # The bus answers when the service has its name.
    subprocess.run(
        ["dbus-send", "--system", "--print-reply", "--dest=org.freedesktop.DBus", "/",
         "org.freedesktop.DBus.StartServiceByName", "string:org.freedesktop.PolicyKit1",
         "uint32:0"], check=True, stdout=subprocess.DEVNULL, timeout=TIME_LIMIT)


class Agent:
    """Whom polkit asks when that process wants to become root: answers as it was told to."""

    def __init__(self, process, account, answer, password=""):
        # Given as a text: the user may not be able to look into the folder that the file lies in.
        program = AGENT.read_text(encoding="utf-8")
        self.process = subprocess.Popen(
            [PYTHON, "-B", "-c", program, str(process), answer, password], env={}, bufsize=0,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, start_new_session=True,
            **account.options)
        self.questions = []
        assert self._line() == b"ready\n", "the agent did not start"

    def _line(self):
        assert select.select([self.process.stdout], [], [], TIME_LIMIT)[0], "the agent says nothing"
        return self.process.stdout.readline()

    def wait_for_question(self):
        self.questions.append(json.loads(self._line()))

    def kill(self):
        self.process.kill()

    def end(self):
        """Gives all that was asked."""
        rest, _ = self.process.communicate(timeout=TIME_LIMIT)
        self.questions += map(json.loads, rest.splitlines())
        return self.questions


class Installation:
    """A run of an account's installer, a quiet one unless told, with agents that answer for it or
    without any.
    """

    def __init__(self, test, product, account, environment=None, agent=None, arguments=("-quiet",)):
        self.product, self.account = product, account
        self.messages_file = test.scratch / f"messages {time.monotonic_ns()}"
        with open(self.messages_file, "wb") as messages:
            self.process = subprocess.Popen(
                [*STOPPED, str(product.executable), *arguments], env=environment or {},
                stdin=subprocess.DEVNULL, stdout=messages, stderr=messages, start_new_session=True,
                **account.options)
        test.addCleanup(self.end)
        os.waitid(os.P_PID, self.process.pid, os.WSTOPPED)
        self.agent = Agent(self.process.pid, account, *agent) if agent else None

    def go_on(self):
        os.kill(self.process.pid, signal.SIGCONT)
        return self

    def wait(self):
        """Waits for its end; afterwards `status`, `messages` and `questions` tell how it went."""
        self.status = self.process.wait(TIME_LIMIT)
        self.messages = self.messages_file.read_text(errors="backslashreplace")
        self.questions = self.agent.end() if self.agent else []
        return self

    def end(self):
        self.process.kill()
        self.process.wait()
        if self.agent:
            self.agent.kill()
            self.agent.process.communicate()

    @property
    def helper(self):
        return self.product.contents / "MacOS/privileged-helper"

    def wait_for_helper(self):
        return wait_until(lambda: processes(self.helper), "the privileged helper")[0]


class Terminal:
    """A quiet run on a terminal, on which somebody reads and types; or two, one after the other."""

    def __init__(self, test, product, account, environment=None, agent=None, twice=False):
        self.screen, terminal = os.openpty()
        self.seen = ""
        self.process = subprocess.Popen(
            ["/usr/bin/setsid", "--ctty", *STOPPED, *(TWICE if twice else []),
             str(product.executable), "-quiet"],
            env=environment or {}, stdin=terminal, stdout=terminal, stderr=terminal,
            **account.options)
        os.close(terminal)
        test.addCleanup(self.end)
        os.waitid(os.P_PID, self.process.pid, os.WSTOPPED)
        self.agent = Agent(self.process.pid, account, *agent) if agent else None
        os.kill(self.process.pid, signal.SIGCONT)

    def _read(self):
        """Reads what is new; false when nobody has the terminal any more."""
        assert select.select([self.screen], [], [], TIME_LIMIT)[0], f"nothing more:\n{self.seen}"
        try:
            new = os.read(self.screen, 65536)
        except OSError:
            return False
        self.seen += new.decode(errors="backslashreplace").replace("\r\n", "\n")
        return True

    @property
    def shows_what_is_typed(self):
        return termios.tcgetattr(self.screen)[3] & termios.ECHO != 0

    def wait_for_prompt(self, text, number=1):
        """Waits until the text was shown that often and a password can be typed. Whoever asks
        throws away what was typed before.
        """
        while self.seen.count(text) < number:
            assert self._read(), f"ended before it asked:\n{self.seen}"
        wait_until(lambda: not self.shows_what_is_typed, "the terminal to hide the password")

    def type(self, text):
        os.write(self.screen, text.encode())

    def interrupt(self, program):
        """Presses Ctrl-C while the program waits for a key. Just before it waits it would note the
        signal and wait all the same.
        """
        wait_until(lambda: is_asleep(processes(program)[0]), f"{program} to wait")
        self.type("\x03")

    def wait(self):
        while self._read():
            pass
        self.status = self.process.wait(TIME_LIMIT)
        self.messages = re.sub("\x1b\\[[0-9;]*m", "", self.seen)
        return self

    def end(self):
        self.process.kill()
        self.process.wait()
        os.close(self.screen)
        if self.agent:
            self.agent.kill()
            self.agent.process.communicate()


# Looks for descriptors, memory and files of another process, as a program of the same user would.
ROBBER = """
import ctypes, os, sys
victim, library, taken = int(sys.argv[1]), ctypes.CDLL(None, use_errno=True), []
PIDFD_OPEN, PIDFD_GETFD, PTRACE_SEIZE, PTRACE_DETACH = 434, 438, 0x4206, 17
process = library.syscall(PIDFD_OPEN, victim, 0)
for number in range(64):
    if library.syscall(PIDFD_GETFD, process, number, 0) >= 0:
        taken.append(f"descriptor {number}")
if library.ptrace(PTRACE_SEIZE, victim, None, None) == 0:
    taken.append("ptrace")
for name in ("mem", "environ"):
    try:
        open(f"/proc/{victim}/{name}", "rb").close()
        taken.append(name)
    except OSError:
        pass
try:
    taken.extend(f"link of {number}" for number in os.listdir(f"/proc/{victim}/fd"))
except OSError:
    pass
print(*taken, sep=", ", end="")
"""


def taken_from(process, account):
    """What another process of the account can take out of that process; empty if nothing."""
    return subprocess.run([PYTHON, "-B", "-c", ROBBER, str(process)], env={}, check=True,
                          capture_output=True, timeout=TIME_LIMIT, encoding="utf-8",
                          **account.options).stdout
