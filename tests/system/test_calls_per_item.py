"""How many system calls one more item costs: the same on a slow machine as on a fast one.

An installation of thousands of items is as fast as the calls of one item. A folder that is walked
again for each item, or a path that is followed from the root, is hardly felt in a test with a few
items, and doubles the time of a large product.
"""

import contextlib
import os
import subprocess
import unittest

from harness import ON_PRIVATE_MACHINE, Disk, Product, SystemTest, write
from traced import ROOT, make_ordinary_user, run_traced

FOLDERS = 10
ITEMS = 100

# As root an item costs 20 calls. Reading the payload: a look at the entry. Filling the copy: a look
# at the source, its opening and a look at what was opened; a file without a name, its bytes, two
# lists of attributes, owner, mode and times; the source is closed. Publishing: a line of the system
# log; looks at the destination, at the source and at the folder; the new name; a look at the new
# entry by its descriptor and one by its name; the copy is closed.
MOST_AS_ROOT = 21
# A user's installer leaves owner and group to the helper, and its two commands make the difference:
# the helper walks to the item, changes it, and looks for signals, once for the owner and once for the
# mode. In all these are 28 calls, and a few more on kernels that cannot change a link's mode.
MOST_AS_USER = 32

# Calls by which a thread or a process waits for another. How many there are depends on which of
# them is faster, so they say nothing about the work.
WAITING = ("futex", "poll", "ppoll", "read", "recvfrom", "recvmsg", "sendto", "wait4", "waitid",
           "restart_syscall", "sched_yield", "rt_sigprocmask", "clock_nanosleep")


class CallsPerItem(SystemTest):
    @classmethod
    def setUpClass(cls):
        assert ON_PRIVATE_MACHINE, "this test would make an account on the real system"
        cls.user = make_ordinary_user()

    def test_as_root_a_further_item_costs_few_system_calls(self):
        self.assertLessEqual(self.calls_for_a_further_item(ROOT), MOST_AS_ROOT)

    def test_as_an_ordinary_user_a_further_item_costs_few_system_calls(self):
        self.assertLessEqual(self.calls_for_a_further_item(self.user), MOST_AS_USER)

    def calls_for_a_further_item(self, account):
        few, many = (self.calls(account, ITEMS * times) for times in (1, 2))
        further = {name: (many[name] - few.get(name, 0)) / ITEMS for name in many}
        print("\n" + account.name + ": " + ", ".join(
            f"{name} {count:.2f}" for name, count in sorted(further.items()) if count >= 0.05))
        return sum(further.values())

    def calls(self, account, items):
        """The calls of the installer with all that it starts, by name."""
        with self.memory() as folder:
            product = Product(folder)
            for number in range(items):
                product.add(f"PHOTOSHOP_PLUGINS/{number % FOLDERS}/{number}.dat", "x" * 5000)
            root = folder / "volume"
            disk = Disk(root, root / "Users" / account.name)
            photoshop = disk.add_photoshop("Adobe Photoshop CS6")
            for entry in (root, *root.rglob("*")):
                os.chown(entry, account.number, account.number)
            counts = write(folder / "counts", "", 0o666)
            counts.chmod(0o666)
            ended = run_traced(product, account,
                               {"HOME": str(folder), "INSTALLER_TARGET_VOLUME": str(root)},
                               "installer", ["-f", "-c", "-e", "trace=!" + ",".join(WAITING)],
                               counts)
            self.assertEqual(ended.status, 0, ended.messages)
            installed = sum(len(files) for _, _, files in os.walk(photoshop / "Plug-Ins"))
            self.assertEqual(installed, items, ended.messages)
            return counted(counts.read_text())

    @contextlib.contextmanager
    def memory(self):
        """A file system for payload and volume: other kinds need other calls."""
        folder = self.scratch / "memory"
        folder.mkdir(exist_ok=True)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=0755", "memory", folder], check=True)
        try:
            yield folder
        finally:
            subprocess.run(["umount", "--lazy", folder], check=True)


def counted(table):
    """The number of calls by name, from the tracer's table: its last column names the call, the
    fourth has their number."""
    lines = [line.split() for line in table.splitlines()]
    return {cells[-1]: int(cells[3]) for cells in lines
            if len(cells) >= 5 and cells[3].isdigit() and cells[-1] != "total"}


if __name__ == "__main__":
    unittest.main()
