"""The payloads and disks of the benchmarks."""

import os
import plistlib
import random
import shutil


def write(path, content):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


class Payload:
    """A product whose payload is what one contender after the other puts onto a disk."""

    def __init__(self, folder, installer_bundle, name):
        self.name = name
        self.bundle = folder / f"{name}.app"
        self.hosts = 1
        shutil.copytree(installer_bundle / "Contents/MacOS", self.bundle / "Contents/MacOS")
        self.resources = self.bundle / "Contents/Resources"
        self.files = self.resources / "files"
        self.files.mkdir(parents=True)
        write(self.resources / "en.lproj/installer.strings",
              b'"company_name" = "Acme";\n"product_name" = "Bench";\n')
        self.random = random.Random(name)  # the same bytes in every run

    @property
    def executable(self):
        return self.bundle / "Contents/MacOS/Installer"

    def add_file(self, path, size):
        write(self.files / path, self.random.randbytes(size))

    def add_package(self, path, count, size):
        information = plistlib.dumps({"CFBundleName": path, "CFBundleVersion": "1.0"})
        write(self.files / path / "Contents/Info.plist", information)
        for number in range(count):
            self.add_file(f"{path}/Contents/{number // 50}/{number}", size // count)

    def wanted(self):
        """How many files an installation puts onto a disk."""
        per_host = count_files(self.files / "PHOTOSHOP_PLUGINS")
        return count_files(self.files / "HD") + self.hosts * per_host


def count_files(folder):
    return sum(len(files) for _, _, files in os.walk(folder))


def start(_):
    """Nothing at all."""


def small(payload):
    payload.add_package("HD/Applications/Small.app", 200, 20 * 2**20)


def many(payload):
    for number in range(5000):
        size = payload.random.randrange(4 * 2**10, 16 * 2**10)
        payload.add_file(f"PHOTOSHOP_PLUGINS/{number // 25}/{number}.dat", size)
    for number in range(20):
        payload.add_package(f"HD/Applications/{number}.app", 10, 100 * 2**10)


def big(payload):
    for number in range(3):
        payload.add_package(f"HD/Applications/{number}.app", 20, 700 * 2**20 // 3)


def items(payload):
    for number in range(100_000):
        payload.add_file(f"PHOTOSHOP_PLUGINS/{number // 250}/{number}.dat", 100)


def hosts(payload):
    payload.hosts = 1000
    for number in range(100):
        payload.add_file(f"PHOTOSHOP_PLUGINS/{number}.dat", 100)


def deep(payload):
    for number in range(5000):
        folders = "/".join(str((number // 50 + level) % 7) for level in range(40))
        payload.add_file(f"PHOTOSHOP_PLUGINS/{number // 50}/{folders}/{number}.dat", 100)


def new_disk(folder, login, hosts=1):
    """An empty target disk with Photoshops on it."""
    disk = folder / "disk"
    (disk / "Library").mkdir(parents=True)
    preferences = disk / "Users" / login / "Library/Preferences"
    for number in range(hosts):
        # Each has a plug-in folder of its own, which later releases share.
        name = f"Adobe Photoshop CS6 {number}" if hosts > 1 else "Adobe Photoshop CS6"
        (disk / "Applications" / name / "Photoshop.app").mkdir(parents=True)
        write(preferences / f"{name} Paths", f"/Applications/{name}\0".encode())
    return disk
