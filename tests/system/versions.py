"""A product in several versions of the same items, and which version of each a disk holds.

Every file of a version tells the version in its content, and each version has files that the others
lack, so a mixture of two versions is never taken for either.
"""

import os
import pathlib
import stat

from harness import Product, administrators_group

SUPPORT = "/Library/Application Support/Acme/Filters 2"
PHOTOSHOP = "/Applications/Adobe Photoshop CS6"
SIBLING = "/Applications/Quarrytone Inkvale 4.app"
EDITORS = "/Library/Application Support/Acme/Prismor X/ExternalEditors.csv"
TOOL = "/Applications/Tool.app"

# Where each item comes from. The list of editors is written by the installer itself.
SOURCES = {
    TOOL: "HD/Applications/Tool.app",
    f"{SUPPORT}/large.bin": "HD" + SUPPORT + "/large.bin",
    f"{SUPPORT}/readme.txt": "HD" + SUPPORT + "/readme.txt",
    f"{SUPPORT}/Presets": "HD" + SUPPORT + "/Presets",
    f"{PHOTOSHOP}/Presets/Scripts/run.jsx": "PHOTOSHOP/Presets/Scripts/run.jsx",
    f"{PHOTOSHOP}/Plug-Ins/Acme/Filter.plugin": "PHOTOSHOP_PLUGINS/Acme/Filter.plugin",
    f"{PHOTOSHOP}/Plug-Ins/loose.8bf": "PHOTOSHOP_PLUGINS/loose.8bf",
}
EDITOR_LIST = b"/Applications/Quarrytone Inkvale 4.app,Inkvale 4,4,2,1003,100,ORIGINAL, \n"

ABSENT = "absent"


class Mixture(AssertionError):
    """An item that is neither absent nor one version's whole item."""


def shape(path):
    """What is at the path, without what the installer gives it; none when nothing is."""
    try:
        status = os.lstat(path)
    except (FileNotFoundError, NotADirectoryError):
        return None
    if stat.S_ISLNK(status.st_mode):
        return {"": os.readlink(path)}
    if not stat.S_ISDIR(status.st_mode):
        return {"": pathlib.Path(path).read_bytes()}
    found = {"": "folder"}
    for entry in os.scandir(path):
        for below, content in shape(entry.path).items():
            found[f"/{entry.name}{below}"] = content
    return found


def make_version(folder, version, large, small):
    """The product in that version: `large` bytes in one file, `small` files in each folder."""
    product = Product(folder)
    def text(name):
        return f"version {version} of {name}\n" * 40
    def files(kind):
        names = [f"Contents/{kind}/{part}/{number}.txt" for part in ("en", "de")
                 for number in range(small)] + [f"Contents/only in {version}.txt"]
        return {name: text(name) for name in names}
    tool = product.add_package(SOURCES[TOOL], files("Resources"), executable="Tool")
    os.symlink(f"Resources/en/{version}.txt", tool / "Contents/link")
    os.link(tool / "Contents/Resources/en/0.txt", tool / "Contents/twin.txt")
    line = text("large.bin").encode()
    product.add(SOURCES[f"{SUPPORT}/large.bin"], line * (large // len(line) + version))
    product.add(SOURCES[f"{SUPPORT}/readme.txt"], text("readme"), 0o604)
    for number in range(small):
        product.add(f"{SOURCES[f'{SUPPORT}/Presets']}/{number}/preset.xml", text(f"preset {number}"))
    product.add(f"{SOURCES[f'{SUPPORT}/Presets']}/only in {version}/preset.xml", text("preset"))
    product.add(SOURCES[f"{PHOTOSHOP}/Presets/Scripts/run.jsx"], text("script"))
    product.add_package(SOURCES[f"{PHOTOSHOP}/Plug-Ins/Acme/Filter.plugin"], files("Code"))
    product.add(SOURCES[f"{PHOTOSHOP}/Plug-Ins/loose.8bf"], text("loose"))
    return product


class Versions:
    def __init__(self, folder, count, large, small):
        self.products = [make_version(pathlib.Path(folder) / str(version), version, large, small)
                         for version in range(count)]
        self.shapes = {item: [shape(product.files / source) for product in self.products]
                       for item, source in SOURCES.items()}
        self.shapes[EDITORS] = [{"": EDITOR_LIST}] * count
        self.items = list(self.shapes)

    def prepare(self, disk):
        """The hosts that the items are for."""
        disk.add_photoshop("Adobe Photoshop CS6")
        disk.at(SIBLING).mkdir()

    def state(self, item):
        """The versions whose whole item is there, as a list; ABSENT when nothing is."""
        seen = shape(item)
        if seen is None:
            return ABSENT
        whole = [version for version, known in enumerate(self.shapes[item]) if known == seen]
        if not whole:
            raise Mixture(f"{item} is a mixture: {describe(seen)}")
        return whole

    def states(self):
        return {item: self.state(item) for item in self.items}


def describe(seen):
    return {name: content if isinstance(content, str) else f"{len(content)} bytes, {content[:30]!r}"
            for name, content in sorted(seen.items())}


def wrongly_owned(item, user):
    """The entries of the item that lack the owner, the group or the mode of installed ones."""
    entries = [item]
    if os.path.isdir(item) and not os.path.islink(item):
        entries += [os.path.join(folder, name) for folder, folders, files in os.walk(item)
                    for name in folders + files]
    return [entry for entry in entries if not is_owned(os.lstat(entry), user)]


def is_owned(status, user):
    right_mode = stat.S_ISLNK(status.st_mode) or stat.S_IMODE(status.st_mode) == 0o775
    return right_mode and (status.st_uid, status.st_gid) == (user, administrators_group())


def temporaries(*roots):
    """Everything below the folders that bears the name of a temporary of ours."""
    return [os.path.join(folder, name) for root in roots for folder, folders, files in os.walk(root)
            for name in folders + files if name.startswith((".installing-", ".installer-"))]
