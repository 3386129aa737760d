"""Quiet installations onto a target volume; they need no throw-away machine."""

import os
import unittest

from harness import Product, SystemTest, run, tree, write


class TargetVolume(SystemTest):
    def setUp(self):
        super().setUp()
        self.disk, self.environment = self.new_volume("other disk ü")
        self.product = Product(self.scratch / "maker's \"own\" folder ß")
        self.product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": "tool"},
                                 executable="Tool")
        self.product.add("HD/Library/Application Support/Acme/Filters 2/readme.txt", "read me")
        self.product.add("PHOTOSHOP/run.jsx", "alert();")
        self.product.add("PHOTOSHOP_PLUGINS/filter.8bf", "filter")

    def install(self):
        outcome = run(self.product, environment=self.environment)
        self.assertEqual(outcome.status, 0, outcome.messages)
        return outcome

    def test_every_fixed_path_lies_on_the_volume_and_the_log_shows_real_paths(self):
        self.disk.add_photoshop("Adobe Photoshop CS6",
                                plug_ins="/Library/Shared Plug-ins/CS6")
        self.install()
        expected = {
            self.disk.at("/Applications/Tool.app"),
            self.disk.support("Acme/Filters 2/readme.txt"),
            self.disk.at("/Applications/Adobe Photoshop CS6/run.jsx"),
            self.disk.at("/Library/Shared Plug-ins/CS6/filter.8bf"),
        }
        self.assertEqual(set(self.disk.logged_paths(self.product)), {str(p) for p in expected})
        for path in expected:
            self.assertInstalled(path)

    def test_nothing_is_written_beside_the_volume(self):
        before = tree(self.scratch / "maker's \"own\" folder ß")
        outside = set(os.listdir(self.scratch))
        self.install()
        self.assertEqual(tree(self.scratch / "maker's \"own\" folder ß"), before)
        self.assertEqual(set(os.listdir(self.scratch)), outside)

    def test_applications_on_another_volume_are_registered_there_as_its_own_system_sees_them(self):
        self.install()
        self.assertFalse((self.scratch / ".local").exists())
        entries = list((self.disk.home / ".local/share/applications").iterdir())
        self.assertEqual(len(entries), 1)
        self.assertIn("/Applications/Tool.app/Contents/MacOS/Tool", entries[0].read_text())
        self.assertNotIn(str(self.disk.root), entries[0].read_text())

    def test_a_paths_file_cannot_lead_out_of_the_volume(self):
        outside = self.scratch / "outside"
        (outside / "Photoshop.app").mkdir(parents=True)
        write(self.disk.home / "Library/Preferences/Adobe Photoshop CS6 Paths",
              f"/../../../../../../../../../..{outside}\0")
        self.install()
        self.assertEqual(os.listdir(outside), ["Photoshop.app"])

    def test_the_editor_list_names_paths_as_the_volumes_own_system_sees_them(self):
        self.disk.at("/Applications/Quarrytone Inkvale 4.app").mkdir()
        self.install()
        rows = self.disk.support("Acme/Prismor X/ExternalEditors.csv").read_text()
        self.assertEqual(rows, "/Applications/Quarrytone Inkvale 4.app,Inkvale 4,4,2,1003,100,"
                               "ORIGINAL, \n")

    def test_a_volume_that_is_not_there_is_a_clear_message_and_no_installation(self):
        self.environment["INSTALLER_TARGET_VOLUME"] = str(self.scratch / "missing")
        outcome = run(self.product, environment=self.environment)
        self.assertEqual(outcome.status, 0)
        self.assertIn(str(self.scratch / "missing"), outcome.messages)
        self.assertFalse((self.scratch / "missing").exists())

    def test_a_failed_item_in_the_mirror_keeps_every_host_out_and_the_log_is_written(self):
        self.disk.add_photoshop("Adobe Photoshop CS6")
        os.mkfifo(self.product.files / "HD/Applications/Tool.app/Contents/pipe")
        outcome = self.install()
        self.assertFalse(self.disk.at("/Applications/Tool.app").exists())
        self.assertFalse(self.disk.at("/Applications/Adobe Photoshop CS6/run.jsx").exists())
        self.assertEqual(self.disk.logged_paths(self.product),
                         [str(self.disk.support("Acme/Filters 2/readme.txt"))])
        self.assertIn(f"Could not install file: {self.disk.at('/Applications/Tool.app')}",
                      outcome.messages)

    def test_another_language_is_spoken_when_the_bundle_has_it(self):
        names = {"company_name": "Acme", "product_name": "Filters 2"}
        self.product.write_texts({"installing_file": "Installing "}, names)
        self.product.write_texts({"installing_file": "Kopiere "}, names, language="de")
        self.assertIn("Installing Tool.app", self.install().messages)
        self.environment["LANG"] = "de_AT.UTF-8"
        self.assertIn("Kopiere Tool.app", self.install().messages)


if __name__ == "__main__":
    unittest.main(verbosity=2)
