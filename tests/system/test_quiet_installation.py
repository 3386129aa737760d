"""A whole quiet installation on the throw-away machine's own disk, seen entry by entry."""

import os
import stat
import unittest

from harness import Product, SystemTest, entry, no_leftovers, run, tree, write

ROOTS = ("/Library", "/Applications")


class QuietInstallation(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_machine()
        self.product = self.make_product("maker")

    def make_product(self, folder, company="Acme", name="Filters 2"):
        product = Product(self.scratch / folder, company, name)
        support = f"HD/Library/Application Support/{company}"
        product.add_package("HD/Applications/Tool.app", {"Contents/Resources/tool.txt": "tool"},
                            executable="Tool")
        product.add(f"{support}/{name}/readme.txt", "read me", 0o604)
        product.add(f"{support}/{name}/Presets/Warm.xml", "<warm/>")
        product.add(f"{support}/{name}/Presets/Portrait/Soft.xml", "<soft/>")
        product.add_package(f"{support}/{name}/Helper.app", {"Contents/helper.txt": "helper"})
        product.add("PHOTOSHOP/Presets/Scripts/run.jsx", "alert();")
        product.add_package(f"PHOTOSHOP_PLUGINS/{company}/Filter.plugin", {"Contents/code": "code"})
        product.add("PHOTOSHOP_PLUGINS/loose.8bf", "loose")
        product.add("LIGHTROOM/External Editor Presets/preset.lrtemplate", "never without a host")
        os.utime(product.files / support / name / "readme.txt", ns=(10**18, 10**18 + 123456789))
        return product

    def install(self, product=None):
        outcome = run(product or self.product, environment=self.environment)
        self.assertEqual(outcome.status, 0, outcome.messages)
        return outcome

    def test_everything_lies_where_the_rules_say_with_owner_group_and_mode(self):
        photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")
        before = set(tree(*ROOTS))
        self.install()

        support = "/Library/Application Support/Acme"
        expected_files = {
            "/Applications/Tool.app/Contents/Resources/tool.txt": "tool",
            "/Applications/Tool.app/Contents/MacOS/Tool": "#!/bin/sh\necho started\n",
            f"{support}/Filters 2/readme.txt": "read me",
            f"{support}/Filters 2/Presets/Warm.xml": "<warm/>",
            f"{support}/Filters 2/Presets/Portrait/Soft.xml": "<soft/>",
            f"{support}/Filters 2/Helper.app/Contents/helper.txt": "helper",
            f"{photoshop}/Presets/Scripts/run.jsx": "alert();",
            f"{photoshop}/Plug-Ins/Acme/Filter.plugin/Contents/code": "code",
            f"{photoshop}/Plug-Ins/loose.8bf": "loose",
        }
        for path, content in expected_files.items():
            self.assertInstalled(path, content)
        made = set(tree(*ROOTS)) - before
        files = {path for path in made if stat.S_ISREG(os.lstat(path).st_mode)}
        information = {f"{package}/Contents/Info.plist" for package in (
            "/Applications/Tool.app", f"{support}/Filters 2/Helper.app",
            f"{photoshop}/Plug-Ins/Acme/Filter.plugin")}
        lists = {f"{support}/Filters 2 Installer.log"}
        self.assertEqual(files - information - lists, set(expected_files))

    def test_folders_inside_items_and_folders_made_for_them_get_owner_group_and_mode(self):
        photoshop = self.disk.add_photoshop("Adobe Photoshop CS6")
        self.install()
        for folder in ("/Applications/Tool.app/Contents/Resources",
                       "/Library/Application Support/Acme",
                       "/Library/Application Support/Acme/Filters 2",
                       "/Library/Application Support/Acme/Filters 2/Presets/Portrait",
                       f"{photoshop}/Presets", f"{photoshop}/Presets/Scripts",
                       f"{photoshop}/Plug-Ins", f"{photoshop}/Plug-Ins/Acme"):
            self.assertInstalled(folder)

    def test_times_of_files_and_of_folders_in_packages_are_the_payloads(self):
        self.install()
        source = self.product.files / "HD"
        for path in ("Library/Application Support/Acme/Filters 2/readme.txt",
                     "Applications/Tool.app/Contents/Info.plist",
                     "Applications/Tool.app/Contents", "Applications/Tool.app"):
            self.assertEqual(os.lstat("/" + path).st_mtime_ns, os.lstat(source / path).st_mtime_ns,
                             path)
        readme = os.lstat("/Library/Application Support/Acme/Filters 2/readme.txt")
        self.assertEqual(readme.st_mtime_ns, 10**18 + 123456789)

    def test_the_log_lists_every_item_and_nothing_else(self):
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.install()
        support = "/Library/Application Support/Acme"
        photoshop = "/Applications/Adobe Photoshop CS6"
        # Which of two siblings comes first is the file system's choice, so the lines are compared
        # as a set; that the hosts come after the mirror is not.
        lines = self.disk.logged_paths(self.product)
        mirror = {"/Applications/Tool.app", f"{support}/Filters 2/Helper.app",
                  f"{support}/Filters 2/readme.txt", f"{support}/Filters 2/Presets"}
        host = {f"{photoshop}/Presets/Scripts/run.jsx", f"{photoshop}/Plug-Ins/Acme/Filter.plugin",
                f"{photoshop}/Plug-Ins/loose.8bf"}
        self.assertEqual(set(lines[:4]), mirror)
        self.assertEqual(set(lines[4:]), host)
        self.assertEqual(len(lines), len(set(lines)))
        log = entry(self.disk.installer_log(self.product))
        self.assertEqual(oct(log["mode"]), oct(0o644))
        self.assertInstalled(self.disk.installer_log(self.product), mode=0o644)

    def test_items_of_every_host_follow_in_the_order_of_the_list(self):
        self.disk.add_photoshop("Adobe Photoshop CC 2015", plug_ins="/Applications/Adobe "
                                "Photoshop CC 2015/Plug-ins")
        self.disk.add_photoshop("Adobe Photoshop CC 2019", paths_file=False, settings=True)
        self.disk.add_photoshop("Adobe Photoshop CC")
        self.disk.add_photoshop("Adobe Photoshop Elements 2018")
        self.disk.add_photoshop("Adobe Photoshop CS5")
        self.install()
        scripts = [line for line in self.disk.logged_paths(self.product) if "run.jsx" in line]
        self.assertEqual(scripts, [
            "/Applications/Adobe Photoshop CC/Presets/Scripts/run.jsx",
            "/Applications/Adobe Photoshop CC 2019/Presets/Scripts/run.jsx",
            "/Applications/Adobe Photoshop CC 2015/Presets/Scripts/run.jsx"])
        plug_ins = {line for line in self.disk.logged_paths(self.product) if "loose" in line}
        self.assertEqual(plug_ins, {
            "/Applications/Adobe Photoshop CC/Plug-Ins/loose.8bf",
            "/Applications/Adobe Photoshop CC 2015/Plug-ins/loose.8bf",
            "/Library/Application Support/Adobe/Plug-Ins/CC/loose.8bf"})

    def test_a_folder_shared_by_two_hosts_is_logged_twice(self):
        for name in ("Adobe Photoshop CC 2018", "Adobe Photoshop CC 2017"):
            self.disk.add_photoshop(name)
        self.install()
        shared = "/Library/Application Support/Adobe/Plug-Ins/CC/loose.8bf"
        self.assertEqual(self.disk.logged_paths(self.product).count(shared), 2)

    def test_what_the_rules_leave_out_is_warned_of_and_not_installed(self):
        self.product.add("HD/usr/local/lib/x", "x")
        self.product.add("HD/Library/Application Support/Acme/direct.txt", "direct")
        outcome = self.install()
        self.assertFalse(os.path.lexists("/usr/local/lib/x"))
        self.assertFalse(os.path.lexists("/Library/Application Support/Acme/direct.txt"))
        for left_out in ("HD/usr/local/lib/x", "HD/Library/Application Support/Acme/direct.txt"):
            self.assertIn(left_out, outcome.messages)
            self.assertNotIn(left_out, self.disk.installer_log(self.product).read_text())

    def test_a_second_run_replaces_everything_and_gives_the_same_tree(self):
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.install()
        log = self.disk.installer_log(self.product)
        first = tree(*ROOTS)
        write("/Applications/Tool.app/Contents/Resources/stale.txt", "of an older version")
        write("/Library/Application Support/Acme/Filters 2/Presets/Warm.xml", "changed")
        write("/Library/Application Support/Acme/Filters 2/users own.txt", "kept")
        self.install()
        second = tree(*ROOTS)
        self.assertEqual(second.pop("/Library/Application Support/Acme/Filters 2/users own.txt")[
            "content"], b"kept")
        for seen in (first, second):
            seen[str(log)].pop("modified")
        self.assertEqual(second, first)

    def test_two_products_do_not_disturb_each_other(self):
        self.disk.add_photoshop("Adobe Photoshop CS6")
        other = self.make_product("other maker", "Other Maker", "Grain")
        shared = {"/Applications/Tool.app", "/Applications/Adobe Photoshop CS6/Plug-Ins/loose.8bf",
                  "/Applications/Adobe Photoshop CS6/Presets/Scripts/run.jsx"}
        self.install()
        first = tree(*ROOTS)
        self.install(other)
        second = tree(*ROOTS)
        for path, seen in first.items():
            if not any(path == item or path.startswith(item + "/") for item in shared):
                self.assertEqual(second[path], seen, path)
        self.assertInstalled("/Library/Application Support/Other Maker/Grain/readme.txt", "read me")
        self.assertInstalled("/Applications/Adobe Photoshop CS6/Plug-Ins/Other Maker/Filter.plugin/"
                             "Contents/code", "code")
        self.assertTrue(self.disk.installer_log(self.product).exists())
        self.assertTrue(self.disk.installer_log(other).exists())

    def test_links_and_hard_links_inside_an_item_are_kept(self):
        package = self.product.files / "HD/Applications/Tool.app"
        os.symlink("Resources/tool.txt", package / "Contents/link")
        os.symlink("/nowhere/at all", package / "Contents/dangling")
        os.link(package / "Contents/Resources/tool.txt", package / "Contents/twin.txt")
        self.install()
        self.assertEqual(os.readlink("/Applications/Tool.app/Contents/link"), "Resources/tool.txt")
        self.assertEqual(os.readlink("/Applications/Tool.app/Contents/dangling"), "/nowhere/at all")
        twin = os.lstat("/Applications/Tool.app/Contents/twin.txt")
        self.assertEqual(twin.st_ino,
                         os.lstat("/Applications/Tool.app/Contents/Resources/tool.txt").st_ino)

    def test_the_mirrors_packages_lose_the_quarantine_attribute_and_nothing_else_does(self):
        tool = self.product.files / "HD/Applications/Tool.app/Contents/Resources/tool.txt"
        readme = self.product.files / "HD/Library/Application Support/Acme/Filters 2/readme.txt"
        for file in (tool, readme):
            os.setxattr(file, "user.com.apple.quarantine", b"0081;")
            os.setxattr(file, "user.keep", b"kept")
        self.install()
        installed = "/Applications/Tool.app/Contents/Resources/tool.txt"
        self.assertEqual(os.listxattr(installed), ["user.keep"])
        self.assertEqual(sorted(os.listxattr("/Library/Application Support/Acme/Filters 2/readme.txt")),
                         ["user.com.apple.quarantine", "user.keep"])

    def test_an_application_that_can_start_is_registered_with_the_desktop(self):
        self.install()
        entries = list((self.disk.home / ".local/share/applications").glob("*.desktop"))
        self.assertEqual(len(entries), 1, entries)
        self.assertIn("/Applications/Tool.app/Contents/MacOS/Tool", entries[0].read_text())

    def test_stale_manifests_of_the_maker_go_and_those_of_others_stay(self):
        support = self.disk.home / "Library/Application Support"
        stale = write(support / "Acme/Filters 1/deep/manifest.xml", "old")
        packaged = write(support / "Acme/Kept.bundle/manifest.xml", "kept")
        others = write(support / "Somebody Else/manifest.xml", "kept")
        self.install()
        self.assertFalse(stale.exists())
        self.assertTrue(packaged.exists())
        self.assertTrue(others.exists())

    def test_sibling_editors_are_listed_for_the_photo_editor(self):
        os.makedirs("/Applications/Quarrytone Inkvale 4.app")
        self.install()
        editors = "/Library/Application Support/Acme/Prismor X/ExternalEditors.csv"
        self.assertEqual(open(editors, encoding="utf-8").read(),
                         "/Applications/Quarrytone Inkvale 4.app,Inkvale 4,4,2,1003,100,ORIGINAL, \n")
        self.assertIn(editors, self.disk.logged_paths(self.product))

    def test_without_a_sibling_the_old_editor_list_goes_and_its_folder_stays(self):
        editors = write("/Library/Application Support/Acme/Prismor X/ExternalEditors.csv", "old")
        self.install()
        self.assertFalse(editors.exists())
        self.assertTrue(editors.parent.is_dir())

    def test_no_temporary_is_left(self):
        self.disk.add_photoshop("Adobe Photoshop CS6")
        self.install()
        self.install()
        self.assertEqual(no_leftovers(*ROOTS), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
