"""A machine with nothing on it but this system's base: the packages without which no system of its
kind is, copied from this one into a folder. There is no window toolkit, no libplist, no polkit.
"""

import os
import pathlib
import re
import subprocess
import tempfile

MOUNTS = ('mount -t proc proc "$0/proc" && mount --bind /dev "$0/dev" && '
          'exec chroot "$0" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root "$@"')


def lines_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()


def needs(package):
    """The names that a package says it needs; of alternatives, those that are installed."""
    said = lines_of("dpkg-query", "--show", "--showformat", "${Pre-Depends},${Depends}", package)
    return re.findall(r"[a-z0-9][a-z0-9+.-]+(?=[ ,:|(]|$)", re.sub(r"\([^)]*\)", " ", "".join(said)))


def base_packages():
    """The essential packages and all that they need."""
    installed = {}
    for line in lines_of("dpkg-query", "--show", "--showformat",
                         "${Package} ${binary:Package} ${Essential} ${db:Status-Status}\n"):
        name, full_name, essential, status = line.split(" ")
        if status == "installed" or status.startswith("triggers-"):
            installed[name] = (full_name, essential == "yes")
    base, found = [name for name, (_, essential) in installed.items() if essential], set()
    while base:
        name = base.pop()
        if name in installed and name not in found:
            found.add(name)
            base += needs(installed[name][0])
    return [installed[name][0] for name in sorted(found)]


class MinimalRoot:
    def __init__(self, folder):
        self.root = pathlib.Path(folder)
        self.root.mkdir(parents=True)
        packages = base_packages()
        # By their real folders: in this kind of system /bin and its like are links.
        files = [os.path.join(os.path.realpath(os.path.dirname(path)), os.path.basename(path))
                 for path in lines_of("dpkg-query", "--listfiles", *packages)
                 if path.startswith("/") and os.path.lexists(path)
                 and (not os.path.isdir(path) or os.path.islink(path))]
        links = ["/bin", "/sbin", "/lib", "/lib64"]
        self._copy([path for path in links if os.path.islink(path)] + files)
        # What the packages' own scripts make.
        self._copy(["/etc/passwd", "/etc/group", "/etc/ld.so.cache", "/usr/bin/awk",
                    "/etc/alternatives/awk"])
        for name in ("proc", "dev", "tmp", "Library", "Applications", "root", "var/lib/dpkg/info",
                     "var/lib/dpkg/updates", "var/tmp"):
            (self.root / name).mkdir(parents=True, exist_ok=True)
        for name in ("tmp", "var/tmp"):
            (self.root / name).chmod(0o1777)
        status = subprocess.run(["dpkg-query", "--status", *packages], check=True,
                                capture_output=True).stdout
        (self.root / "var/lib/dpkg/status").write_bytes(status)
        for package in packages:
            (self.root / f"var/lib/dpkg/info/{package}.list").touch()

    def _copy(self, paths):
        with tempfile.NamedTemporaryFile() as names:
            names.write(b"\0".join(os.fsencode(path.lstrip("/")) for path in paths) + b"\0")
            names.flush()
            subprocess.run(["sh", "-euc", 'tar --create --file=- --directory=/ --null '
                            '--no-recursion --files-from="$1" | tar --extract --file=- '
                            '--keep-directory-symlink --directory="$2"', "sh", names.name,
                            str(self.root)], check=True)

    def start(self, *command):
        """In namespaces and a process group of its own, so that nothing of it stays."""
        return subprocess.Popen(
            ["unshare", "--mount", "--pid", "--fork", "--kill-child", "sh", "-c", MOUNTS,
             str(self.root), *map(str, command)], stdin=subprocess.DEVNULL, text=True,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True)

    def run(self, *command):
        """Gives how it ended."""
        process = self.start(*command)
        output, messages = process.communicate(timeout=120)
        return subprocess.CompletedProcess(command, process.returncode, output, messages)
