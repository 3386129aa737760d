"""Throw-away machines that are reached over ssh, and plays on all of them."""

import ctypes
import json
import os
import pathlib
import subprocess
import time

HERE = pathlib.Path(__file__).resolve().parent
ROLES = HERE.parents[2] / "fleet/ansible/roles"
TIME_LIMIT = 600
PAUSE = 0.05
CLONE_NEWNET = 0x40000000


def command(*words, **options):
    return subprocess.run(words, check=True, capture_output=True, text=True, **options).stdout


def enter_network_of_its_own(count):
    """From now on this process and its children are alone on a network with so many addresses."""
    if ctypes.CDLL(None, use_errno=True).unshare(CLONE_NEWNET) != 0:
        raise OSError(ctypes.get_errno(), "no network namespace can be made")
    command("ip", "link", "set", "lo", "up")
    for number in range(1, count + 1):
        command("ip", "address", "add", f"10.77.0.{number}/24", "dev", "lo")


class Machine:
    def __init__(self, lab, number, setup):
        self.name, self.address = f"m{number}", f"10.77.0.{number}"
        self.scratch = lab.folder / self.name
        self.scratch.mkdir()
        (self.scratch / "setup").write_text(setup)
        self.log = open(self.scratch / "log", "wb")
        self.process = subprocess.Popen(
            [HERE / "machine", self.scratch, self.address, lab.keys, self.scratch / "setup"],
            stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log, start_new_session=True)

    def wait_until_ready(self):
        end = time.monotonic() + TIME_LIMIT
        while not (self.scratch / "ready").exists():
            if self.process.poll() is not None or time.monotonic() > end:
                raise AssertionError((self.scratch / "log").read_text(errors="replace"))
            time.sleep(PAUSE)
        # The first process of the machine's own is the child of the one that was started.
        children = pathlib.Path(f"/proc/{self.process.pid}/task/{self.process.pid}/children")
        self.first = int(children.read_text().split()[0])

    @property
    def root(self):
        """The machine's disk, seen from here."""
        return pathlib.Path(f"/proc/{self.first}/root{self.scratch}/overlay/root")

    def at(self, path):
        return self.root / str(path).lstrip("/")

    def end(self):
        self.process.kill()
        self.process.wait()
        self.log.close()


class Lab:
    """Machines with numbers from 1, each made by its own script."""

    def __init__(self, folder, setups):
        self.folder = pathlib.Path(folder)
        self.keys = self.folder / "keys"
        self.keys.mkdir()
        for name in ("user", "host"):
            command("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.keys / name)
        self.machines = [Machine(self, number, setup)
                         for number, setup in enumerate(setups, start=1)]
        for machine in self.machines:
            machine.wait_until_ready()

    def end(self):
        for machine in self.machines:
            machine.end()

    def play(self, variables, check=False, machines=None):
        """Plays the role on the machines; gives the last task's result of each by its name."""
        inventory = self.folder / "inventory"
        options = (f"ansible_user=root ansible_ssh_private_key_file={self.keys / 'user'} "
                   "ansible_python_interpreter=/usr/bin/python3")
        inventory.write_text("[lab]\n" + "".join(
            f"{machine.name} ansible_host={machine.address} {options}\n"
            for machine in machines or self.machines))
        book = self.folder / "play.yml"
        book.write_text(json.dumps([{"hosts": "lab", "gather_facts": False, "strategy": "free",
                                     "roles": [{"role": "plugin_installer", **variables}]}]))
        results = self.folder / "results"
        results.write_text("")
        environment = os.environ | {
            "HOME": str(self.folder), "RESULTS": str(results), "ANSIBLE_ROLES_PATH": str(ROLES),
            "ANSIBLE_CALLBACK_PLUGINS": str(HERE / "callback"), "ANSIBLE_CALLBACKS_ENABLED": "lines",
            "ANSIBLE_HOST_KEY_CHECKING": "False", "ANSIBLE_PIPELINING": "True",
            "ANSIBLE_FORKS": "16", "ANSIBLE_NOCOLOR": "1", "ANSIBLE_LOCALHOST_WARNING": "False",
            "ANSIBLE_LOCAL_TEMP": str(self.folder / "local"),
            "ANSIBLE_SSH_CONTROL_PATH_DIR": str(self.folder / "cp"), "LC_ALL": "C.UTF-8"}
        played = subprocess.run(
            ["ansible-playbook", "-i", inventory, *(["--check", "--diff"] if check else []), book],
            env=environment, capture_output=True, text=True, check=False, timeout=TIME_LIMIT)
        last = {}
        for line in results.read_text().splitlines():
            note = json.loads(line)
            if note["how"] != "skipped":
                last[note["host"]] = note
        expected = {machine.name for machine in machines or self.machines}
        assert set(last) == expected, played.stdout + played.stderr
        self.output = played.stdout
        return last
