"""installerctl plan, status and verify without a receipt: they look, and write nothing."""

import os
import pathlib
import pty
import shutil
import subprocess
import unittest

from ctl import (BUNDLE_UNUSABLE, DIFFERENCES, DONE, NOT_INSTALLED, WRONG_USE, ctl, program, run_text,
                 small_product)
from harness import SystemTest, run, tree, write


class Scene(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_volume()
        self.product = small_product(self.scratch / "maker")
        self.photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")

    def ctl(self, *arguments, **environment):
        return ctl(self.product, *arguments, environment=self.environment | environment)

    def install(self):
        self.assertEqual(run(self.product, environment=self.environment).status, 0)


class InstallerctlPlan(Scene):
    def test_a_plan_names_each_item_with_its_source_rule_and_host_in_the_order_of_the_run(self):
        answer = self.ctl("plan")
        self.assertEqual((answer.status, answer.changed, answer.receipt), (DIFFERENCES, True, "new"))
        seen = [(item["source"], item["rule"], item["host"], item["action"])
                for item in answer.json["items"]]
        support = "HD/Library/Application Support/Acme/Filters 2"
        self.assertCountEqual(seen, [
            ("HD/Applications/Tool.app", "mirrorPackage", "", "new"),
            (f"{support}/readme.txt", "productFolder", "", "new"),
            (f"{support}/Presets", "productFolder", "", "new"),
            ("PHOTOSHOP/Presets/Scripts/run.jsx", "hostApplication", "Adobe Photoshop CS6", "new"),
            ("PHOTOSHOP_PLUGINS/Filter.plugin", "hostPlugIns", "Adobe Photoshop CS6", "new")])
        self.install()
        self.assertEqual([item["destination"] for item in answer.json["items"]],
                         self.disk.logged_paths(self.product))

    def test_a_plan_changes_nothing_and_asks_for_nothing(self):
        before = tree(self.disk.root, self.product.bundle)
        self.ctl("plan")
        self.assertEqual(tree(self.disk.root, self.product.bundle), before)

    def test_what_is_installed_is_the_same_and_each_kind_of_change_is_found(self):
        self.install()
        self.assertEqual(set(self.ctl("plan").results("action").values()), {"same"})
        presets = self.disk.support("Acme/Filters 2/Presets")
        tool = self.disk.at("/Applications/Tool.app")
        plug_in = self.photoshop / "Plug-Ins/Filter.plugin"
        write(tool / "Contents/tool.txt", "of mine")
        (plug_in / "Contents/code").chmod(0o600)
        (presets / "first").unlink()
        os.symlink("elsewhere", presets / "first")
        answer = self.ctl("plan")
        actions = answer.results("action")
        changed = {str(path) for path in (tool, plug_in, presets)}
        self.assertEqual({path for path, action in actions.items() if action == "replace"}, changed)
        self.assertEqual(answer.item(tool)["differences"],
                         [{"path": str(tool / "Contents/tool.txt"), "reason": "has other contents"}])
        self.assertEqual(answer.item(plug_in)["differences"],
                         [{"path": str(plug_in / "Contents/code"), "reason": "has another mode"}])
        self.assertEqual(answer.item(presets)["differences"],
                         [{"path": str(presets / "first"), "reason": "leads elsewhere"}])

    def test_a_file_that_a_user_put_into_a_folder_is_named_as_lost(self):
        self.install()
        own = write(self.disk.support("Acme/Filters 2/Presets/mine/own.preset"), "mine")
        item = self.ctl("plan").item(self.disk.support("Acme/Filters 2/Presets"))
        self.assertEqual((item["action"], item["lost"]), ("replace", [str(own.parent)]))

    def test_hosts_that_are_refused_are_named_with_the_reason(self):
        self.disk.add_photoshop("Adobe Photoshop CS5")
        self.disk.add_photoshop("Adobe Photoshop Elements 15")
        shutil.rmtree(self.disk.add_photoshop("Adobe Photoshop CC 2015"))
        refused = {host["name"]: host["refused"] for host in self.ctl("plan").hosts}
        gone = self.disk.at("/Applications/Adobe Photoshop CC 2015")
        self.assertEqual(refused, {
            "Adobe Photoshop CS6": None,
            "Adobe Photoshop CS5": "it is too old",
            "Adobe Photoshop Elements 15": "Photoshop Elements is not supported",
            "Adobe Photoshop CC 2015": f"there is no application in {gone}"})

    def test_what_no_rule_takes_is_named_with_the_reason(self):
        self.product.add("HD/loose.txt", "loose")
        self.product.add("PHOTOSHOP/.hidden", "hidden")
        left_out = {note["path"]: note["reason"] for note in self.ctl("plan").leftOut}
        self.assertEqual(set(left_out), {"HD/loose.txt", "PHOTOSHOP/.hidden"})
        self.assertIn("begins with a dot", left_out["PHOTOSHOP/.hidden"])

    def test_an_item_for_a_folder_of_the_system_is_refused(self):
        self.product.add_package("HD/etc/Evil.app")
        answer = self.ctl("plan")
        self.assertEqual([note["path"] for note in answer.failed], [str(self.disk.at("/etc/Evil.app"))])

    def test_the_bytes_that_are_needed_are_those_of_the_items(self):
        space, = self.ctl("plan").space
        files = [path for path in self.product.files.rglob("*")
                 if path.is_file() and not path.is_symlink()]
        self.assertEqual(space["needed"], sum(path.stat().st_size for path in files))
        status = os.statvfs(self.disk.root)
        self.assertAlmostEqual(space["available"] / (status.f_bavail * status.f_frsize), 1, places=1)

    def test_the_users_of_a_target_volume_have_hosts_of_their_own(self):
        for login in ("ann", "bob"):
            home = self.disk.root / "Users" / login
            shutil.copytree(self.disk.home, home)
            write(home / f"Library/Preferences/Adobe Photoshop CC 201{len(home.name)} Paths",
                  f"/Applications/{login}\0")
            (self.disk.at(f"/Applications/{login}") / f"{login}.app").mkdir(parents=True)
        answer = self.ctl("plan", "--user", "ann", "--user", "bob")
        self.assertEqual(answer.users, ["ann", "bob"])
        hosts = [(host["name"], host["user"]) for host in answer.hosts]
        self.assertCountEqual(hosts, [("Adobe Photoshop CS6", "ann"), ("Adobe Photoshop CC 2013", "ann"),
                                      ("Adobe Photoshop CS6", "bob"), ("Adobe Photoshop CC 2013", "bob")])
        # What both find is installed once.
        scripts = [item["destination"] for item in answer.json["items"]
                   if item["destination"].endswith("run.jsx")]
        self.assertCountEqual(scripts, [str(self.disk.at(f"/Applications/{name}/Presets/Scripts/run.jsx"))
                                        for name in ("Adobe Photoshop CS6", "ann", "bob")])
        everybody = self.ctl("plan", "--all-users").users
        self.assertEqual(everybody, sorted({"ann", "bob", self.disk.home.name}))

    def test_a_target_on_the_command_line_means_the_same_as_in_the_environment(self):
        by_option = ctl(self.product, "plan", "--target", self.disk.root,
                        environment={"HOME": self.environment["HOME"]})
        self.assertEqual(by_option.json["items"], self.ctl("plan").json["items"])

    def test_wrong_use_and_an_unusable_bundle_have_statuses_of_their_own(self):
        self.assertEqual(run_text(self.product, "plan", "--nonsense").returncode, WRONG_USE)
        self.assertEqual(run_text(self.product).returncode, WRONG_USE)
        self.assertEqual(self.ctl("plan", "--target", "/nowhere/at/all").status, WRONG_USE)
        shutil.rmtree(self.product.files)
        self.assertEqual(self.ctl("plan").status, BUNDLE_UNUSABLE)
        alone = shutil.copy2(program(self.product), self.scratch / "installerctl")
        self.assertEqual(subprocess.run([alone, "plan"], capture_output=True, check=False).returncode,
                         BUNDLE_UNUSABLE)


class InstallerctlPlanVerify(Scene):
    """Without a receipt: by the log and the payload, else by the log alone."""

    def test_without_receipt_and_log_it_is_not_installed(self):
        for verb in ("verify", "status"):
            self.assertEqual(self.ctl(verb).status, NOT_INSTALLED)

    def test_damage_is_found_to_the_file_by_log_and_payload(self):
        self.install()
        self.assertEqual((self.ctl("verify").status, self.ctl("verify").basis), (DONE, "log and payload"))
        damaged = write(self.disk.at("/Applications/Tool.app/Contents/tool.txt"), "damaged")
        answer = self.ctl("verify")
        self.assertEqual(answer.status, DIFFERENCES)
        results = answer.results()
        self.assertEqual([path for path, result in results.items() if result != "ok"],
                         [str(self.disk.at("/Applications/Tool.app"))])
        self.assertEqual(answer.item(self.disk.at("/Applications/Tool.app"))["differences"],
                         [{"path": str(damaged), "reason": "has other contents"}])

    def test_the_log_alone_tells_only_what_is_there(self):
        self.install()
        shutil.rmtree(self.product.files)
        write(self.disk.at("/Applications/Tool.app/Contents/tool.txt"), "damaged")
        answer = self.ctl("verify")
        self.assertEqual((answer.status, answer.basis), (DONE, "log"))
        shutil.rmtree(self.disk.at("/Applications/Tool.app"))
        self.assertEqual(self.ctl("verify").results()[str(self.disk.at("/Applications/Tool.app"))],
                         "missing")


class InstallerctlPlanOutput(Scene):
    def on_terminal(self, **environment):
        leader, follower = pty.openpty()
        with subprocess.Popen([program(self.product), "plan"], stdout=follower,
                              stderr=subprocess.DEVNULL,
                              env=self.environment | {"TERM": "xterm"} | environment) as process:
            os.close(follower)
            text = b""
            while True:
                try:
                    part = os.read(leader, 65536)
                except OSError:
                    break
                text += part
            process.wait()
        os.close(leader)
        return text.decode()

    def test_columns_and_colours_are_for_terminals_that_want_them(self):
        piped = run_text(self.product, "plan", environment=self.environment).stdout
        tool = str(self.disk.at("/Applications/Tool.app"))
        self.assertIn(f"\nnew\t{tool}  from HD/Applications/Tool.app\n", piped)
        self.assertNotIn("\033", piped)
        self.assertIn(f"\033[33mnew\033[0m      {tool}", self.on_terminal())
        plain = self.on_terminal(NO_COLOR="1")
        self.assertNotIn("\033", plain)
        self.assertIn(f"  new      {tool}", plain)

    def test_help_and_version_are_there(self):
        self.assertRegex(run_text(self.product, "--version").stdout, r"^installerctl \d+\.\d+\.\d+\n$")
        for arguments in (["--help"], ["help"], ["help", "plan"], ["plan", "--help"]):
            answer = run_text(self.product, *arguments)
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            self.assertIn("installerctl", answer.stdout)
        self.assertEqual(run_text(self.product, "help", "nonsense").returncode, WRONG_USE)


class InstallerctlPlanManual(unittest.TestCase):
    """What is written for people names every verb and option that there is."""

    def test_manual_and_completion_know_every_verb_and_option(self):
        build = pathlib.Path(os.environ["INSTALLER_BUNDLE"]).parent
        manual = (build / "installerctl.1").read_text().replace("\\-", "-")
        completion = (build / "installerctl.bash").read_text()
        program_file = build / "Quarrytone Tonewright 2 Installer.app/Contents/MacOS/installerctl"

        def help_of(*arguments):
            return subprocess.run([program_file, *arguments], capture_output=True, text=True,
                                  check=True).stdout

        listed = help_of("--help").split("Subcommands:")[1]
        verbs = [line.split()[0] for line in listed.splitlines() if line.startswith("  ")]
        self.assertIn("plan", verbs)
        for verb in verbs:
            self.assertIn(verb, manual)
            self.assertIn(verb, completion)
            for word in help_of("help", verb).replace(",", " ").split():
                if word.startswith("--") and word != "--help":
                    self.assertIn(word, manual)
                    self.assertIn(word, completion)


if __name__ == "__main__":
    unittest.main(verbosity=2)
