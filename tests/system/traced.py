"""Runs of the installer as root or as an ordinary user, and with a system call made to fail or to kill.

A tracer looks at the installer alone, or at its privileged helper alone: for the latter a script
takes the helper's place in the bundle for one run.
"""

import contextlib
import dataclasses
import os
import pathlib
import re
import subprocess
import time

from harness import TIME_LIMIT, administrators_group, write

STRACE = "/usr/bin/strace"
HELPER = "privileged-helper"
LOGIN = "installing-user"


@dataclasses.dataclass
class Account:
    """Who installs: root, who needs no helper, or a user, whose helper is started by sudo."""

    name: str
    number: int
    options: dict

    @property
    def programs(self):
        return ("installer",) if self.number == 0 else ("installer", "helper")


ROOT = Account("root", 0, {})


def make_ordinary_user():
    """An administrator on the throw-away machine whom sudo asks nothing; vanishes with it."""
    subprocess.run(["useradd", "--create-home", "--groups", str(administrators_group()), LOGIN],
                   check=True, capture_output=True)
    write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)
    status = os.lstat(f"/home/{LOGIN}")
    return Account(LOGIN, status.st_uid,
                   {"user": status.st_uid, "group": status.st_gid,
                    "extra_groups": [administrators_group()]})


@dataclasses.dataclass
class Ended:
    status: int
    messages: str

    @property
    def last_line(self):
        lines = [line for line in self.messages.splitlines() if not line.startswith(HELPER + ":")]
        return lines[-1] if lines else ""


class Installation:
    """A run that goes on until nobody holds its standard error any more: its helper may outlive it."""

    def __init__(self, product, account, environment, tracer=()):
        options = account.options
        if tracer and options:
            # The installer closes itself to other processes of its user while it has a helper: only
            # root's tracer can then say which file a descriptor belongs to.
            tracer, options = [*tracer, "-u", account.name], {}
        self.process = subprocess.Popen(
            [*tracer, str(product.executable), "-quiet"], env=environment, cwd="/",
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
            start_new_session=True, **options)

    def helper(self):
        """The helper's process id; none before it was started and after it ended."""
        return next((process for process in descendants(self.process.pid)
                     if name_of(process) == HELPER[:15]), None)

    def await_helper(self):
        """The helper's process id as soon as there is one; none when the run ends without."""
        while self.process.poll() is None:
            if helper := self.helper():
                return helper
        return None

    def finish(self):
        try:
            messages = self.process.communicate(timeout=TIME_LIMIT)[1]
        except subprocess.TimeoutExpired as expired:
            raise AssertionError(f"the run hangs: {expired.stderr or b''}") from expired
        return Ended(self.process.returncode, messages.decode(errors="backslashreplace"))


def descendants(process):
    try:
        children = pathlib.Path(f"/proc/{process}/task/{process}/children").read_text().split()
    except OSError:
        return
    for child in map(int, children):
        yield child
        yield from descendants(child)


def name_of(process):
    try:
        return pathlib.Path(f"/proc/{process}/comm").read_text().rstrip("\n")
    except OSError:
        return ""


def install(product, account, environment):
    return Installation(product, account, environment).finish()


# A leak checker cannot work in a program that is being traced.
NO_LEAK_CHECK = "ASAN_OPTIONS=detect_leaks=0"


def tracer(options, output="/dev/null"):
    return [STRACE, "-E", NO_LEAK_CHECK, "-o", str(output), *options]


@contextlib.contextmanager
def traced(product, who, options, output="/dev/null"):
    """Gives the tracer's command line for the installer; it is empty when the helper is traced."""
    if who == "installer":
        yield tracer(options, output)
        return
    helper = product.contents / "MacOS" / HELPER
    real = helper.with_name("real-helper")
    helper.rename(real)
    quoted = " ".join(f"'{word}'" for word in [*tracer(options, output), str(real)])
    write(helper, f"#!/bin/sh\nexec {quoted} \"$@\"\n", 0o755)
    try:
        yield []
    finally:
        real.rename(helper)


def run_traced(product, account, environment, who, options, output="/dev/null"):
    with traced(product, who, options, output) as command:
        return Installation(product, account, environment, command).finish()


CALL = re.compile(r"^(\w+)\((.*)")


def calls_of(product, account, environment, who, names, output):
    """The calls that a run makes, in their order: name and arguments, each descriptor with its path."""
    write(output, "", 0o666).chmod(0o666)
    run_traced(product, account, environment, who, ["-y", "-e", "trace=" + ",".join(names)],
               output)
    lines = output.read_text(errors="replace").splitlines()
    found = [match.groups() for line in lines if (match := CALL.match(line))]
    # Calls that are younger than the tracer have no name by which it could be told of them.
    return [call for call in found if not call[0].startswith("syscall_")]


def measured(product, account, environment):
    """How long a run takes, and how long its helper lives."""
    start = time.monotonic()
    run = Installation(product, account, environment)
    run.await_helper()
    helper_start = time.monotonic()
    run.finish()
    end = time.monotonic()
    return end - start, end - helper_start
