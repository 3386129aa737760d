"""installerctl install: what is installed, recorded, refused and waited for. On the throw-away machine,
where nobody else's Photoshop runs."""

import fcntl
import json
import os
import pathlib
import shutil
import subprocess
import time
import unittest

from ctl import (DIFFERENCES, DONE, DOWNGRADE, HOST_RUNS, ITEMS_FAILED, LOCKED, NO_HOST, RIGHTS_REFUSED,
                 ctl, program, small_product, versioned)
from harness import ON_PRIVATE_MACHINE, SystemTest, entry, tree, write
from rights import Account, wait_until

LOGIN = "ctl-user"


def setUpModule():
    if not ON_PRIVATE_MACHINE:
        raise AssertionError("this test would make an account on the real system")
    Scene.account = Account(LOGIN)


def holds_open(process, path):
    try:
        return any(os.readlink(link) == path
                   for link in pathlib.Path(f"/proc/{process}/fd").iterdir())
    except FileNotFoundError:
        return False  # it has closed something else meanwhile


class Scene(SystemTest):
    account = None

    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = small_product(self.scratch / "maker")
        self.photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")
        self.receipt_file = pathlib.Path("/Library/Receipts/com.example.filters.json")

    def ctl(self, *arguments, product=None, **options):
        return ctl(product or self.product, *arguments, environment=self.environment, **options)

    def install(self, *arguments, status=DONE, **options):
        answer = self.ctl("install", *arguments, **options)
        self.assertEqual(answer.status, status, answer)
        return answer

    @property
    def receipt(self):
        return json.loads(self.receipt_file.read_text())


class InstallerctlInstall(Scene):
    def test_everything_is_installed_as_the_quiet_run_does_it_and_recorded(self):
        answer = self.install()
        self.assertTrue(answer.changed)
        self.assertEqual(set(answer.results().values()), {"installed"})
        self.assertEqual([item["destination"] for item in answer.json["items"]],
                         self.disk.logged_paths(self.product))
        for path in answer.results():
            self.assertInstalled(path)
        self.assertEqual((entry(self.receipt_file)["owner"], entry(self.receipt_file)["mode"]),
                         (0, 0o644))
        recorded = {file["path"] for file in self.receipt["files"]}
        for path in answer.results():
            self.assertTrue({path, *map(str, pathlib.Path(path).rglob("*"))} <= recorded, path)
        self.assertEqual((self.receipt["version"], self.receipt["complete"]), ("1.0", True))
        self.assertEqual(self.ctl("verify").status, DONE)

    def test_a_second_time_nothing_runs_and_nothing_changes(self):
        self.install()
        before = tree("/Library", "/Applications", self.disk.home)
        answer = self.install()
        self.assertFalse(answer.changed)
        self.assertEqual(tree("/Library", "/Applications", self.disk.home), before)
        self.assertEqual(self.ctl("plan").status, DONE)

    def test_what_a_quiet_run_has_installed_is_only_recorded(self):
        subprocess.run([self.product.executable, "-quiet"], env=self.environment, check=True,
                       capture_output=True)
        before = tree("/Applications")
        answer = self.install()
        self.assertTrue(answer.changed)
        self.assertEqual(tree("/Applications"), before)
        self.assertFalse(self.install().changed)

    def test_damage_is_repaired(self):
        self.install()
        tool = write("/Applications/Tool.app/Contents/tool.txt", "damaged")
        answer = self.install()
        self.assertTrue(answer.changed)
        self.assertEqual(tool.read_text(), "tool 1.0")

    def test_an_upgrade_removes_what_only_the_last_receipt_knows(self):
        self.product.add_package("PHOTOSHOP_PLUGINS/Old Filter.plugin", {"Contents/code": "old"})
        self.install()
        own = write(self.photoshop / "Plug-Ins/Mine.plugin/code", "mine")
        newer = small_product(self.scratch / "newer", "2.0")
        answer = self.install(product=newer)
        old = self.photoshop / "Plug-Ins/Old Filter.plugin"
        self.assertEqual(answer.results()[str(old)], "removed")
        self.assertFalse(old.exists())
        self.assertEqual(own.read_text(), "mine")
        self.assertEqual(self.receipt["version"], "2.0")
        self.assertEqual(self.ctl("verify", product=newer).status, DONE)

    def test_an_old_item_that_was_changed_since_stays(self):
        old = self.product.add("PHOTOSHOP/old.jsx", "old")
        self.install()
        write(self.photoshop / "old.jsx", "changed")
        old.unlink()
        answer = self.install()
        self.assertEqual((self.photoshop / "old.jsx").read_text(), "changed")
        self.assertNotIn(str(self.photoshop / "old.jsx"), answer.results())

    def test_an_older_product_over_a_newer_one_is_refused_unless_it_is_allowed(self):
        self.install(product=small_product(self.scratch / "newer", "1.10"))
        older = small_product(self.scratch / "older", "1.9")
        before = tree("/Library", "/Applications")
        self.install(product=older, status=DOWNGRADE)
        self.assertEqual(tree("/Library", "/Applications"), before)
        self.install("--allow-downgrade", product=older)
        self.assertEqual(self.receipt["version"], "1.9")

    def test_without_a_host_only_who_requires_one_is_refused(self):
        shutil.rmtree(self.photoshop)
        self.install("--require-host", status=NO_HOST)
        self.assertFalse(self.receipt_file.exists())
        self.install()

    def test_what_cannot_be_installed_is_named_and_the_status_says_so(self):
        write("/Library/Application Support/Acme", "a file where a folder must be")
        answer = self.install(status=ITEMS_FAILED)
        failed = {note["path"] for note in answer.failed}
        support = self.disk.support("Acme/Filters 2")
        self.assertTrue({str(support / "readme.txt"), str(support / "Presets")} <= failed)
        self.assertTrue(all(note["reason"] for note in answer.failed))
        # The receipt knows that the run did not get to its end.
        self.assertEqual(self.ctl("status").status, ITEMS_FAILED)
        pathlib.Path("/Library/Application Support/Acme").unlink()
        self.install()
        self.assertEqual(self.ctl("verify").status, DONE)

    def test_a_second_run_at_the_same_time_is_refused_or_waits(self):
        root = os.open("/", os.O_RDONLY)
        fcntl.flock(root, fcntl.LOCK_EX)
        self.install(status=LOCKED)
        self.assertEqual(self.ctl("remove").status, LOCKED)
        waiting = subprocess.Popen([program(self.product), "install", "--wait", "60"],
                                   env=self.environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        wait_until(lambda: holds_open(waiting.pid, "/"), "the second run")
        os.close(root)
        self.assertEqual(waiting.wait(120), DONE)

    def test_a_running_host_is_waited_for_as_long_as_allowed(self):
        host = self.scratch / "Photoshop"
        shutil.copy2("/bin/sleep", host)
        running = subprocess.Popen([host, "1000"])
        self.addCleanup(running.wait)
        self.addCleanup(running.kill)
        wait_until(lambda: pathlib.Path(f"/proc/{running.pid}/comm").read_text() == "Photoshop\n",
                   "the host")
        before = tree("/Library", "/Applications")
        self.assertIn("Photoshop is running", self.install(status=HOST_RUNS).summary)
        self.assertEqual(tree("/Library", "/Applications"), before)
        start = time.monotonic()
        self.install("--wait", "1", status=HOST_RUNS)
        self.assertGreaterEqual(time.monotonic() - start, 1)
        waiting = subprocess.Popen([program(self.product), "install", "--wait", "60"],
                                   env=self.environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        running.kill()
        running.wait()
        self.assertEqual(waiting.wait(120), DONE)


class InstallerctlInstallUserFiles(Scene):
    def setUp(self):
        super().setUp()
        self.presets = self.disk.support("Acme/Filters 2/Presets")

    def upgrade(self, *arguments):
        newer = small_product(self.scratch / "newer", "2.0")
        newer.add("HD/Library/Application Support/Acme/Filters 2/Presets/two.preset", "two")
        return self.install(*arguments, product=newer)

    def test_what_a_user_put_into_a_folder_is_kept_if_asked_for(self):
        self.install()
        write(self.presets / "mine/own.preset", "mine", 0o640)
        write(self.presets / "100% own", "mine, too")
        os.chown(self.presets / "mine/own.preset", 4711, 4712)
        before = entry(self.presets / "mine/own.preset")
        answer = self.upgrade("--keep-user-files")
        self.assertEqual((self.presets / "two.preset").read_text(), "two")
        self.assertEqual((self.presets / "100% own").read_text(), "mine, too")
        self.assertEqual(entry(self.presets / "mine/own.preset"), before)
        self.assertEqual(answer.kept, [])
        self.assertEqual([name for name in os.listdir(self.presets.parent) if name.startswith(".")], [])

    def test_what_a_user_adds_is_named_and_is_no_difference(self):
        self.install()
        own = write(self.presets / "own.preset", "mine")
        answer = self.ctl("verify")
        self.assertEqual((answer.status, answer.results()[str(self.presets)]), (DONE, "extra"))
        self.assertEqual(answer.item(self.presets)["differences"],
                         [{"path": str(own), "reason": "was not installed"}])
        self.assertFalse(self.install().changed)
        self.assertEqual(own.read_text(), "mine")

    def test_else_it_is_lost_and_named(self):
        self.install()
        write(self.presets / "own.preset", "mine")
        answer = self.upgrade()
        self.assertFalse((self.presets / "own.preset").exists())
        self.assertEqual(answer.item(self.presets)["lost"], [str(self.presets / "own.preset")])

    def test_what_a_dead_run_had_set_aside_comes_back_with_the_next(self):
        self.install()
        write(self.presets / "own.preset", "mine")
        newer = small_product(self.scratch / "newer", "2.0")
        # Its first such call sets the user's file aside; at the second one it dies.
        tracer = ["strace", "-f", "-o", "/dev/null", "-e", "trace=renameat2",
                  "-e", "inject=renameat2:signal=SIGKILL:when=2"]
        subprocess.run([*tracer, program(newer), "install", "--keep-user-files"],
                       env=self.environment, check=False, capture_output=True)
        self.assertFalse((self.presets / "own.preset").exists())
        self.install(product=newer)
        self.assertEqual((self.presets / "own.preset").read_text(), "mine")


class InstallerctlInstallUsers(Scene):
    def setUp(self):
        super().setUp()
        self.second = self.disk.add_photoshop("Adobe Photoshop CC 2015", paths_file=False)
        self.home = pathlib.Path("/home") / LOGIN
        shutil.rmtree(self.home / "Library", ignore_errors=True)
        shutil.rmtree(self.home / ".local", ignore_errors=True)
        for name in ("Adobe Photoshop CC 2015", "Adobe Photoshop CS6"):
            write(self.home / f"Library/Preferences/{name} Paths", f"/Applications/{name}\0")
        self.account.own(self.home)
        self.product.add_package("HD/Applications/Menu.app", executable="menu")

    def test_root_installs_for_each_user_asked_for_and_what_both_find_once(self):
        answer = self.install("--user", "root", "--user", LOGIN)
        scripts = [item for item in answer.json["items"] if item["destination"].endswith("run.jsx")]
        self.assertCountEqual(
            [(item["host"], item["user"]) for item in scripts],
            [("Adobe Photoshop CS6", "root"), ("Adobe Photoshop CC 2015", LOGIN)])
        self.assertTrue((self.second / "Presets/Scripts/run.jsx").exists())
        self.assertEqual([item["destination"] for item in answer.json["items"]],
                         self.disk.logged_paths(self.product))
        # Both have the application in their menus, and the user's entry is the user's own.
        entries = [file["path"] for file in self.receipt["menuEntries"]]
        self.assertEqual(len(entries), 2)
        own, = [path for path in entries if path.startswith(str(self.home))]
        self.assertEqual(entry(own)["owner"], self.account.user)
        self.assertFalse(self.install("--user", "root", "--user", LOGIN).changed)

    def test_a_home_behind_a_link_of_roots_is_used_and_left_as_it_was(self):
        linked = Account("ctl-linked")
        home = pathlib.Path("/home") / linked.login
        real = home.rename("/home/ctl-linked-elsewhere")
        home.symlink_to(real)
        write(home / "Library/Preferences/Adobe Photoshop CS6 Paths", "/Applications/Adobe Photoshop CS6\0")
        linked.own(real)
        before = tree(real, times=False)
        self.install("--user", linked.login)
        menu, = self.receipt["menuEntries"]
        self.assertEqual(entry(real / pathlib.Path(menu["path"]).relative_to(home))["owner"], linked.user)
        self.assertEqual(self.ctl("verify").status, DONE)
        self.assertEqual(self.ctl("remove").status, DONE)
        self.assertEqual(tree(real, times=False), before)
        self.assertTrue(home.is_symlink())

    def test_a_link_in_a_users_home_leads_root_into_no_folder_of_others(self):
        linking = Account("ctl-linking")
        home = pathlib.Path("/home") / linking.login
        elsewhere = self.scratch / "elsewhere"
        elsewhere.mkdir()
        write(home / "Library/Preferences/Adobe Photoshop CS6 Paths", "/Applications/Adobe Photoshop CS6\0")
        linking.own(home)
        (home / ".local").symlink_to(elsewhere)
        os.lchown(home / ".local", linking.user, linking.group)
        self.ctl("install", "--user", linking.login)
        self.assertEqual(os.listdir(elsewhere), [])

    def test_what_was_installed_for_others_stays_when_only_one_is_asked_for(self):
        self.install("--user", LOGIN)
        answer = self.install("--user", "root")
        self.assertNotIn("remove", answer.results("action").values())
        self.assertEqual({user["login"] for user in self.receipt["users"]}, {"root", LOGIN})
        self.assertEqual(self.ctl("verify").status, DONE)
        self.assertFalse(self.install("--user", "root").changed)
        self.assertFalse(self.install("--user", LOGIN).changed)

    def test_all_users_are_the_people_of_the_machine(self):
        self.assertIn(LOGIN, self.install("--all-users").users)

    def test_an_ordinary_user_cannot_act_for_another(self):
        for arguments in (["--user", "root"], ["--all-users", "--user", "root"]):
            answer = self.ctl("plan", *arguments, **self.account.options)
            self.assertEqual(answer.status, RIGHTS_REFUSED)


class InstallerctlInstallOrdinaryUser(Scene):
    """Through sudo, which may or may not grant the rights."""

    def setUp(self):
        super().setUp()
        self.account.own(self.disk.home)

    def as_user(self, *arguments):
        return self.ctl(*arguments, **self.account.options)

    def allow(self):
        rule = write(f"/etc/sudoers.d/{LOGIN}", f"{LOGIN} ALL=(root) NOPASSWD: ALL\n", 0o440)
        self.addCleanup(rule.unlink)

    def test_with_rights_everything_is_installed_and_removed_and_the_receipt_is_roots(self):
        before = set(tree("/Library", "/Applications", self.disk.home))
        self.allow()
        answer = self.as_user("install")
        self.assertEqual(answer.status, DONE, answer)
        self.assertInstalled("/Applications/Tool.app/Contents/tool.txt", "tool 1.0",
                             owner=self.account.user)
        self.assertEqual((entry(self.receipt_file)["owner"], entry(self.receipt_file)["mode"]),
                         (0, 0o644))
        self.assertFalse(self.as_user("install").changed)
        answer = self.as_user("remove")
        self.assertEqual(answer.status, DONE, answer)
        self.assertEqual(set(tree("/Library", "/Applications", self.disk.home)), before)

    def test_without_rights_nothing_is_changed(self):
        before = tree("/Library", "/Applications", self.disk.home)
        self.assertEqual(self.as_user("install").status, RIGHTS_REFUSED)
        self.assertEqual(tree("/Library", "/Applications", self.disk.home), before)
        self.assertEqual(self.as_user("plan").status, DIFFERENCES)


class InstallerctlInstallReceipts(Scene):
    """A receipt that is damaged, or that somebody else could have written, is never acted on."""

    def setUp(self):
        super().setUp()
        self.install()
        self.good = self.receipt_file.read_text()

    def assertRefused(self, reason):
        before = tree("/Library", "/Applications")
        for verb in ("install", "verify", "remove", "status", "plan"):
            answer = self.ctl(verb)
            self.assertEqual(answer.status, ITEMS_FAILED, answer)
            self.assertIn(str(self.receipt_file), answer.messages)
            self.assertIn(reason, answer.failed[0]["reason"])
        self.assertEqual(tree("/Library", "/Applications"), before)

    def rewrite(self, **changes):
        self.receipt_file.write_text(json.dumps(json.loads(self.good) | changes))

    def test_half_a_receipt_is_none(self):
        self.receipt_file.write_text(self.good[:len(self.good) // 2])
        self.assertRefused("no JSON")

    def test_a_receipt_that_names_a_folder_of_the_system_is_refused(self):
        file = {"path": "/etc/passwd", "type": "file", "mode": 420, "size": 1, "sha256": "0" * 64}
        self.rewrite(files=[file])
        self.assertRefused("/etc/passwd")

    def test_a_receipt_whose_paths_lead_elsewhere_is_refused(self):
        for path in ("/Library/../etc/passwd", "Library/x", "/Library//x", "/"):
            self.rewrite(folders=[{"path": path}])
            self.assertRefused("a path that is none")

    def test_a_receipt_with_a_home_that_is_none_is_refused(self):
        self.rewrite(users=[{"login": "root", "home": "/etc"}], folders=[{"path": "/etc/cron.d"}])
        self.assertRefused("/etc/cron.d")

    def test_a_receipt_with_a_field_of_another_type_is_refused(self):
        for field, value in (("files", {}), ("schema", 2), ("complete", "yes"), ("users", [[]]),
                             ("version", None), ("identifier", "../x")):
            self.rewrite(**{field: value})
            self.assertRefused("")

    def test_a_receipt_of_somebody_else_is_refused(self):
        os.chown(self.receipt_file, self.account.user, 0)
        self.assertRefused("other users can change it")

    def test_a_receipt_that_others_can_write_to_is_refused(self):
        self.receipt_file.chmod(0o666)
        self.assertRefused("other users can change it")

    def test_a_receipt_in_a_folder_of_somebody_else_is_refused(self):
        os.chown(self.receipt_file.parent, self.account.user, 0)
        self.assertRefused("other users can change its folder")

    def test_a_link_is_no_receipt(self):
        self.receipt_file.unlink()
        write("/Library/elsewhere.json", self.good, 0o644)
        os.symlink("/Library/elsewhere.json", self.receipt_file)
        self.assertRefused("")

    def test_another_products_receipt_is_refused(self):
        self.rewrite(identifier="com.example.other")
        self.assertRefused("another product")


if __name__ == "__main__":
    unittest.main(verbosity=2)
