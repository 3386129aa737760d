"""The examples of docs/installerctl.md, run as they stand; and the tables of exit statuses agree. The
drawing of what is installed where is what the plan says.
"""

import os
import pathlib
import re
import subprocess
import unittest

from ctl import DONE, SOURCES, ctl
from harness import SAMPLE_BUNDLE, TIME_LIMIT, Product, SystemTest

PAGE = (SOURCES / "docs/installerctl.md").read_text()


def examples():
    """The commands of the page, each with what it prints."""
    found = []
    for block in re.findall(r"```console\n(.*?)```", PAGE, re.DOTALL):
        for line in block.splitlines():
            if line.startswith("$ "):
                found.append((line[2:], []))
            else:
                found[-1][1].append(line)
    return [(command, "".join(f"{line}\n" for line in lines)) for command, lines in found]


class InstallerctlExamples(SystemTest):
    def test_each_command_prints_what_the_page_says(self):
        disk = self.scratch / "disk"
        subprocess.run([SOURCES / "scripts/make-sample-disk", disk], check=True, capture_output=True)
        work = self.scratch / "work"
        work.mkdir()
        environment = {"PATH": f"{SAMPLE_BUNDLE / 'Contents/MacOS'}:{os.environ['PATH']}",
                       "DISK": str(disk), "HOME": str(self.scratch)}
        self.assertGreater(len(examples()), 10)
        for command, expected in examples():
            with self.subTest(command=command):
                done = subprocess.run(["bash", "-c", command], env=environment, cwd=work, text=True,
                                      stdout=subprocess.PIPE, timeout=TIME_LIMIT, check=False)
                self.assertEqual(done.stdout, expected)


def drawn_items():
    """The items of the drawing: each path below the payload with the place to which its arrow leads."""
    page = (SOURCES / "docs/making-an-installer.md").read_text()
    above, items = [], {}
    for indent, name, arrow in re.findall(r"^    ([│ ]*)[├└]── (.+?)(?: ─+▶ (.+)|  .+)?$", page, re.MULTILINE):
        above[len(indent) // 4:] = [name]
        if arrow:
            items["/".join(above)] = arrow
    return items


class InstallerctlExamplesDrawing(SystemTest):
    def test_each_arrow_leads_where_the_item_is_installed(self):
        disk, environment = self.new_machine()
        disk.add_photoshop("Adobe Photoshop CS6")
        product = Product(self.scratch / "maker")
        items = drawn_items()
        self.assertEqual({path.split("/")[0] for path in items},
                         {"HD", "PHOTOSHOP", "PHOTOSHOP_PLUGINS"})
        for path in items:
            if path.endswith((".app", ".plugin")):
                product.add_package(path)
            else:
                product.add(path if "." in path else f"{path}/one.preset")
        answer = ctl(product, "install", environment=environment)
        self.assertEqual(answer.status, DONE, answer)
        self.assertEqual({item["source"]: item["destination"] for item in answer.items}, items)
        for destination in items.values():
            self.assertTrue(os.path.exists(destination), destination)


class InstallerctlExamplesStatuses(unittest.TestCase):
    def test_every_page_has_the_statuses_of_the_program(self):
        header = (SOURCES / "src/tools/installerctl/operations/ExitStatus.h").read_text()
        statuses = set(re.findall(r"= (\d+),", header))
        self.assertEqual(len(statuses), 11)
        self.assertEqual(set(re.findall(r"^\| (\d+) \|", PAGE, re.MULTILINE)), statuses)
        readme = (SOURCES / "README.md").read_text()
        part = readme[readme.index("### installerctl"):readme.index("## You ship a product")]
        self.assertEqual(set(re.findall(r"^\| (\d+) \|", part, re.MULTILINE)), statuses)
        manual = (SOURCES / "docs/installerctl.1.scd").read_text()
        self.assertEqual(set(re.findall(r"^[|\[ ]+\*(\d+)\*$", manual, re.MULTILINE)), statuses)


if __name__ == "__main__":
    unittest.main(verbosity=2)
