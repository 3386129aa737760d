"""Bad payloads, bad texts and bad files that Photoshop left: each has a clear outcome."""

import os
import pwd
import shutil
import stat
import unittest

from harness import Product, SystemTest, run, write

NAMES = {
    "spaces": "  two  blanks ",
    "quotes": "\"double\" and 'single' and `back`",
    "a newline": "line one\nline two",
    "percent signs": "%@ %s %n %1$@ 100%",
    "leading dashes": "-rf --no-preserve-root",
    "a dollar and a backslash": "$HOME \\n $(touch x)",
    "255 bytes": "n" * 251 + ".txt",
    "Greek, Arabic, Japanese and an emoji": "αβγ سلام 日本語 🙂",
    "bytes that are not UTF-8": os.fsdecode(b"caf\xe9 \xff\xfe"),
}


class HostileInput(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_volume()
        self.product = Product(self.scratch / "maker")
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "read me")
        self.preferences = self.disk.home / "Library/Preferences"
        self.preferences.mkdir(parents=True)

    def install(self):
        outcome = run(self.product, environment=self.environment)
        self.assertEqual(outcome.status, 0, outcome.messages)
        self.assertNotIn("Sanitizer", outcome.messages)
        return outcome

    def assertReadmeInstalled(self):
        self.assertInstalled(self.disk.support("Acme/Filters 2/readme.txt"), "read me")

    def test_names_of_every_kind_are_installed_and_logged_as_they_are(self):
        for row, name in NAMES.items():
            self.product.add(os.path.join("HD/Library/Application Support/Acme/Names", name), row)
            if len(os.fsencode(name)) < 240:
                self.product.add_package(os.path.join("HD/Applications", name + ".app"))
        self.install()
        log = self.disk.installer_log(self.product).read_bytes()
        for row, name in NAMES.items():
            with self.subTest(row):
                path = os.path.join(self.disk.support("Acme/Names"), name)
                self.assertInstalled(path, row)
                self.assertIn(os.fsencode(path) + b"\n", log)
                if len(os.fsencode(name)) < 240:
                    self.assertInstalled(self.disk.at("/Applications/" + name + ".app"))

    def test_a_paths_file_that_is_no_file_cannot_be_opened_three_times_and_ends_the_matter(self):
        rows = {"a folder": lambda path: path.mkdir(), "a FIFO": os.mkfifo}
        for row, make in rows.items():
            with self.subTest(row):
                path = self.preferences / f"Adobe Photoshop CS6 {row} Paths"
                make(path)
                outcome = self.install()
                self.assertEqual(outcome.messages.count("Could not open paths file: "), 3)
                self.assertReadmeInstalled()
                path.rmdir() if path.is_dir() else path.unlink()

    def test_a_paths_file_that_the_user_may_not_read_cannot_be_opened_either(self):
        preferences = self.disk.at(f"/Users/{pwd.getpwuid(65534).pw_name}/Library/Preferences")
        path = write(preferences / "Adobe Photoshop CS6 Paths", "/Applications/CS6\0", 0o000)
        outcome = run(self.product, environment=self.environment, user=65534, group=65534,
                      extra_groups=[])
        self.assertEqual(outcome.status, 0)
        self.assertEqual(outcome.messages.count(f"Could not open paths file: {path}"), 3)

    def test_a_huge_paths_file_is_read_no_further_than_it_matters(self):
        path = write(self.preferences / "Adobe Photoshop CS6 Paths", "/Applications/CS6\0")
        os.truncate(path, 2**40)
        (self.disk.at("/Applications/CS6") / "Photoshop.app").mkdir(parents=True)
        self.product.add("PHOTOSHOP/run.jsx", "alert();")
        self.install()
        self.assertInstalled(self.disk.at("/Applications/CS6/run.jsx"), "alert();")

    def test_paths_files_that_say_nothing_useful_offer_no_host(self):
        rows = {
            "empty": b"", "seven bytes": b"/A/BCD\0", "only NULs": b"\0" * 64,
            "not UTF-8": b"/Applications/\xff\xfe\0",
            "a path with a NUL inside": b"\0/Applications/CS6\0",
        }
        (self.disk.at("/Applications/CS6") / "Photoshop.app").mkdir(parents=True)
        self.product.add("PHOTOSHOP/run.jsx", "alert();")
        for row, content in rows.items():
            with self.subTest(row):
                path = write(self.preferences / "Adobe Photoshop CS6 Paths", content)
                self.install()
                self.assertFalse(self.disk.at("/Applications/CS6/run.jsx").exists())
                self.assertReadmeInstalled()
                path.unlink()

    def test_a_syntax_error_in_a_table_is_reported_with_file_and_line_and_the_rest_is_read(self):
        table = self.product.resources / "en.lproj/Localizable.strings"
        table.write_text('"a" = "b";\n"broken = ;\n"installing_file" = "Now: ";\n')
        outcome = self.install()
        self.assertIn("Localizable.strings:2:", outcome.messages)
        self.assertIn("Now: readme.txt", outcome.messages)

    def test_a_bundle_without_payload_installs_nothing_and_keeps_the_old_log(self):
        self.install()
        before = self.disk.installer_log(self.product).read_bytes()
        shutil.rmtree(self.product.files)
        outcome = self.install()
        self.assertEqual(self.disk.installer_log(self.product).read_bytes(), before)
        self.assertIn(str(self.product.files), outcome.messages)

    def test_a_bundle_without_texts_installs_under_the_keys_own_names(self):
        shutil.rmtree(self.product.resources / "en.lproj")
        self.product.add("HD/Library/Application Support/company_name/product_name/x.txt", "x")
        self.install()
        self.assertInstalled(self.disk.support("company_name/product_name/x.txt"), "x")
        self.assertTrue(self.disk.support("company_name/product_name Installer.log").exists())

    def test_an_empty_company_name_never_widens_the_search_for_manifests(self):
        self.product.write_texts({}, {"company_name": "", "product_name": "Filters 2"})
        others = write(self.disk.home / "Library/Application Support/Others/manifest.xml", "kept")
        self.install()
        self.assertTrue(others.exists())

    def test_a_broken_property_list_in_the_payload_is_copied_like_any_file(self):
        package = self.product.add_package("HD/Applications/Tool.app")
        write(package / "Contents/Info.plist", b"bplist00\xff\xff\xff broken")
        self.install()
        self.assertInstalled(self.disk.at("/Applications/Tool.app/Contents/Info.plist"))

    def test_a_socket_inside_an_item_is_an_error_for_that_item_alone(self):
        package = self.product.add_package("HD/Applications/Tool.app")
        os.mknod(package / "s", stat.S_IFSOCK | 0o644)
        outcome = self.install()
        self.assertIn("Could not install file: ", outcome.messages)
        self.assertFalse(self.disk.at("/Applications/Tool.app").exists())
        self.assertReadmeInstalled()

    def test_a_file_where_a_folder_is_needed_fails_that_item_and_says_so(self):
        write(self.disk.at("/Applications/CS6/Photoshop.app/x"), "")
        write(self.preferences / "Adobe Photoshop CS6 Paths", "/Applications/CS6\0")
        write(self.disk.at("/Applications/CS6/Presets"), "a file, not a folder")
        self.product.add("PHOTOSHOP/Presets/Scripts/run.jsx", "alert();")
        outcome = self.install()
        self.assertIn("Could not install file: ", outcome.messages)
        self.assertEqual(self.disk.at("/Applications/CS6/Presets").read_text(),
                         "a file, not a folder")


if __name__ == "__main__":
    unittest.main(verbosity=2)
