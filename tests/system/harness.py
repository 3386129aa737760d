"""What the system tests share: a product of their own, a disk to install on, the installer's run.

The tests run the real executable with real files. Those that install onto the running system need
the throw-away machine of `run-private`; the others install onto a target volume.
"""

import os
import pathlib
import plistlib
import shutil
import stat
import subprocess
import tempfile
import unittest

SAMPLE_BUNDLE = pathlib.Path(os.environ["INSTALLER_BUNDLE"])
ON_PRIVATE_MACHINE = os.environ.get("INSTALLER_PRIVATE_MACHINE") == "1"

# Long enough for a loaded machine, short enough that a hang is told apart from work.
TIME_LIMIT = 120


def administrators_group():
    """The id of the group that stands for the administrators on this machine."""
    groups = {}
    for line in pathlib.Path("/etc/group").read_text().splitlines():
        name, _, number, *_ = line.split(":")
        groups.setdefault(name, int(number))
    for name in ("admin", "sudo", "wheel"):
        if name in groups:
            return groups[name]
    return 0


def write(path, content="", mode=None):
    """Makes a file and the folders above it; gives its path."""
    path = pathlib.Path(path)
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content if isinstance(content, bytes) else content.encode())
    if mode is not None:
        path.chmod(mode)
    return path


class Product:
    """A plug-in maker's product in a bundle of its own: the shipped executables, other files."""

    def __init__(self, folder, company="Acme", name="Filters 2"):
        self.company, self.name = company, name
        self.bundle = pathlib.Path(folder) / f"{company} {name} Installer.app"
        self.contents = self.bundle / "Contents"
        self.resources = self.contents / "Resources"
        self.files = self.resources / "files"
        shutil.copytree(SAMPLE_BUNDLE / "Contents/MacOS", self.contents / "MacOS", symlinks=True)
        write(self.contents / "Info.plist", plistlib.dumps({"CFBundleName": f"{name} Installer"}))
        self.write_texts({}, {"company_name": company, "product_name": name})

    def write_texts(self, texts, names, language="en"):
        folder = self.resources / f"{language}.lproj"
        for table, entries in (("Localizable", texts), ("installer", names)):
            lines = [f'"{key}" = "{value}";\n' for key, value in entries.items()]
            write(folder / f"{table}.strings", "".join(lines))

    def add(self, path, content="", mode=None):
        """A payload file, by its path below `files`."""
        return write(self.files / path, content, mode)

    def add_package(self, path, files=None, version="1.0", executable=None):
        """A payload package, by its path below `files`."""
        package = self.files / path
        name = os.fsencode(package.stem).decode(errors="replace").replace("\n", " ")
        information = {"CFBundleName": name, "CFBundleVersion": version,
                       "CFBundleIdentifier": "com.example." + name.replace(" ", "-")}
        if executable:
            information["CFBundleExecutable"] = executable
            write(package / "Contents/MacOS" / executable, "#!/bin/sh\necho started\n", 0o755)
        write(package / "Contents/Info.plist", plistlib.dumps(information))
        for name, content in (files or {}).items():
            write(package / name, content)
        return package

    @property
    def executable(self):
        return self.contents / "MacOS/Installer"


class Disk:
    """What is installed onto: the throw-away machine's own root, or a target volume."""

    def __init__(self, root, home):
        self.root, self.home = pathlib.Path(root), pathlib.Path(home)
        for folder in (self.root / "Library", self.root / "Applications", self.home):
            folder.mkdir(parents=True, exist_ok=True)

    def at(self, path):
        return self.root / str(path).lstrip("/")

    def support(self, *parts):
        return self.root.joinpath("Library/Application Support", *parts)

    def installer_log(self, product):
        return self.support(product.company, f"{product.name} Installer.log")

    def logged_paths(self, product):
        text = self.installer_log(product).read_bytes().decode()
        assert text.endswith("\n"), "the last line of the log is not ended"
        return text[:-1].split("\n")

    def add_photoshop(self, name, paths_file=True, plug_ins=None, settings=False):
        """An installed Photoshop with the files that it leaves behind; gives its folder."""
        folder = self.at(f"/Applications/{name}")
        (folder / f"{name}.app").mkdir(parents=True)
        preferences = self.home / "Library/Preferences"
        if paths_file:
            content = f"/Applications/{name}\0" + (f"{plug_ins}\0" if plug_ins else "")
            write(preferences / f"{name} Paths", content.ljust(8, "\0"))
        if settings:
            (preferences / f"{name} Settings").mkdir(parents=True)
        return folder


class Outcome:
    def __init__(self, finished):
        self.status = finished.returncode
        self.output = finished.stdout
        self.messages = finished.stderr


def run(product, arguments=("-quiet",), environment=None, **options):
    """Runs the product's installer with exactly that environment and no input."""
    options.setdefault("stdin", subprocess.DEVNULL)
    finished = subprocess.run(
        [str(product.executable), *arguments], env=environment or {}, capture_output=True,
        timeout=TIME_LIMIT, start_new_session=True, check=False, encoding="utf-8",
        errors="backslashreplace", **options)
    return Outcome(finished)


def tree(*roots, times=True):
    """Everything below the folders: what a person could see of it, by path."""
    found = {}
    for root in roots:
        for folder, folders, files in os.walk(root):
            for name in folders + files:
                path = os.path.join(folder, name)
                found[path] = entry(path, times)
    return found


def entry(path, times=True):
    status = os.lstat(path)
    kind = stat.S_IFMT(status.st_mode)
    seen = {"kind": kind, "owner": status.st_uid, "group": status.st_gid,
            "mode": stat.S_IMODE(status.st_mode)}
    if kind == stat.S_IFREG:
        seen["content"] = pathlib.Path(path).read_bytes()
        if times:
            seen["modified"] = status.st_mtime_ns
    if kind == stat.S_IFLNK:
        seen["target"] = os.readlink(path)
    return seen


def preloaded():
    """INSTALLER_PRELOAD names a library that every installer is started with."""
    library = os.environ.get("INSTALLER_PRELOAD")
    return {"LD_PRELOAD": library} if library else {}


class SystemTest(unittest.TestCase):
    """A test with a scratch folder of its own."""

    maxDiff = None

    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="installer-test-"))
        self.scratch.chmod(0o755)
        self.addCleanup(shutil.rmtree, self.scratch, ignore_errors=True)

    def new_volume(self, name="volume"):
        """A target volume and the environment that names it; needs no throw-away machine."""
        root = self.scratch / name
        user = os.environ.get("TEST_LOGIN", "root")
        disk = Disk(root, root / "Users" / user)
        return disk, {"HOME": str(self.scratch), "INSTALLER_TARGET_VOLUME": str(root),
                      **preloaded()}

    def new_machine(self):
        """The throw-away machine's own disk, emptied, with a private home."""
        self.assertTrue(ON_PRIVATE_MACHINE, "this test would install onto the real system")
        for folder in ("/Library", "/Applications"):
            for name in os.listdir(folder):
                path = pathlib.Path(folder) / name
                shutil.rmtree(path) if path.is_dir() and not path.is_symlink() else path.unlink()
        home = self.scratch / "home"
        return Disk("/", home), {"HOME": str(home), **preloaded()}

    def assertInstalled(self, path, content=None, owner=0, mode=0o775):
        seen = entry(path)
        self.assertEqual((seen["owner"], seen["group"], oct(seen["mode"])),
                         (owner, administrators_group(), oct(mode)), path)
        if content is not None:
            self.assertEqual(seen["content"], content.encode(), path)


def no_leftovers(*roots):
    """Names of our own temporaries that are still there."""
    return [path for path in tree(*roots) if os.path.basename(path).startswith(".installing-")]
