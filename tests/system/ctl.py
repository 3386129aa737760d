"""What the tests of installerctl share: running it, and its output against the schema."""

import json
import os
import pathlib
import plistlib
import subprocess

import jsonschema

from harness import TIME_LIMIT, Product, write

SOURCES = pathlib.Path(__file__).resolve().parents[2]
SCHEMA = json.loads((SOURCES / "docs/installerctl.schema.json").read_text())
jsonschema.Draft202012Validator.check_schema(SCHEMA)

(DONE, ITEMS_FAILED, WRONG_USE, DIFFERENCES, RIGHTS_REFUSED, LOCKED, HOST_RUNS, NO_HOST, NOT_INSTALLED,
 BUNDLE_UNUSABLE, DOWNGRADE) = range(11)


class Answer:
    """How a verb ended, and what it printed as JSON."""

    def __init__(self, finished):
        self.status = finished.returncode
        self.messages = finished.stderr
        self.json = json.loads(finished.stdout)
        jsonschema.validate(self.json, SCHEMA, jsonschema.Draft202012Validator)
        assert self.json["exitStatus"] == self.status, finished

    def __getattr__(self, name):
        return self.json[name]

    def results(self, field="result"):
        """Of each item, by its destination; the last of several counts."""
        return {item["destination"]: item[field] for item in self.json["items"]}

    def item(self, destination):
        return [item for item in self.json["items"] if item["destination"] == str(destination)][-1]

    def __repr__(self):
        return f"{self.status}: {json.dumps(self.json, indent=1)}\n{self.messages}"


def program(product):
    return product.contents / "MacOS/installerctl"


def run_text(product, *arguments, environment=None, **options):
    options.setdefault("stdin", subprocess.DEVNULL)
    return subprocess.run(
        [program(product), *map(str, arguments)], env=environment or {}, capture_output=True,
        timeout=TIME_LIMIT, check=False, encoding="utf-8", errors="backslashreplace", **options)


def ctl(product, *arguments, environment=None, **options):
    return Answer(run_text(product, *arguments, "--json", environment=environment, **options))


def versioned(product, version, identifier="com.example.filters"):
    """Gives a product an identifier and a version."""
    write(product.contents / "Info.plist", plistlib.dumps(
        {"CFBundleName": "Installer", "CFBundleIdentifier": identifier,
         "CFBundleShortVersionString": version, "CFBundleVersion": version}))
    return product


def small_product(folder, version="1.0", **names):
    """One item of each kind."""
    product = versioned(Product(folder, **names), version)
    product.add_package("HD/Applications/Tool.app", {"Contents/tool.txt": f"tool {version}"})
    company = f"HD/Library/Application Support/{product.company}/{product.name}"
    product.add(f"{company}/readme.txt", f"read me {version}")
    product.add(f"{company}/Presets/one.preset", "one")
    os.symlink("one.preset", product.files / company / "Presets/first")
    product.add_package("PHOTOSHOP_PLUGINS/Filter.plugin", {"Contents/code": f"code {version}"})
    product.add("PHOTOSHOP/Presets/Scripts/run.jsx", "alert();")
    return product
