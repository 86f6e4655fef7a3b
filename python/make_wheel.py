#!/usr/bin/env python3
"""Makes the Python package ready to be installed, with the standard library alone.

    make_wheel.py wheel BUILD FOLDER   a wheel with the libraries, the program and its modules out of
                                       a build folder; prints its path
    make_wheel.py tree FOLDER          the package and its description, without any library: for
                                       systems that install those themselves

The same files give the same bytes. SOURCE_DATE_EPOCH is the date of the files in the wheel."""

import base64
import hashlib
import os
import re
import sys
import sysconfig
import time
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
PACKAGE = HERE / "intake"
LIBRARIES = ("intakedl", "qxbase", "qxfeat", "qxgridio")


def version():
    """The version of the whole project, which stands in one place."""
    text = (HERE.parent / "CMakeLists.txt").read_text()
    return re.search(r"^project\(intake VERSION ([0-9.]+)", text, re.M)[1]


def package_files():
    """The files of the package by their paths: bytes, and whether they are programs."""
    files = {
        f"intake/{each.name}": (each.read_bytes(), False)
        for each in PACKAGE.iterdir()
        if each.suffix == ".py" or each.name == "py.typed"
    }
    files["intake/VERSION"] = (f"{version()}\n".encode(), False)
    return files


def native_files(build):
    """Libraries, modules and program, laid out as they find one another."""
    files = {}
    for name in LIBRARIES:
        (library,) = build.glob(f"lib/lib{name}.so.[0-9]")
        files[f"lib/{library.name}"] = (library.read_bytes(), True)
    for module in build.glob("lib/intake/*.so"):
        files[f"lib/intake/{module.name}"] = (module.read_bytes(), True)
    files["bin/intake"] = ((build / "bin/intake").read_bytes(), True)
    return {f"intake/_native/{path}": content for path, content in files.items()}


def description(pure):
    """The files of the dist-info folder, RECORD excepted."""
    platform = sysconfig.get_platform().replace("-", "_").replace(".", "_")
    metadata = [
        "Metadata-Version: 2.1",
        "Name: intake",
        f"Version: {version()}",
        "Summary: Rebuilds geographic datasets from an 80-column interchange text file",
        "Requires-Python: >=3.10",
        "Description-Content-Type: text/markdown",
        "",
        (HERE.parent / "docs/python.md").read_text(),
    ]
    tag = "py3-none-any" if pure else f"py3-none-{platform}"
    wheel = [
        "Wheel-Version: 1.0",
        "Generator: make_wheel.py",
        f"Root-Is-Purelib: {str(pure).lower()}",
        f"Tag: {tag}",
        "",
    ]
    files = {"METADATA": "\n".join(metadata), "WHEEL": "\n".join(wheel)}
    if not pure:
        files["entry_points.txt"] = "[console_scripts]\nintake = intake.__main__:main\n"
    folder = f"intake-{version()}.dist-info"
    return {f"{folder}/{name}": (text.encode(), False) for name, text in files.items()}, tag


def record(files, path):
    lines = []
    for name, (data, _) in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
        lines.append(f"{name},sha256={digest},{len(data)}\n")
    return "".join([*lines, f"{path},,\n"]).encode()


def make_wheel(build, folder):
    described, tag = description(pure=False)
    files = dict(sorted((package_files() | native_files(build)).items())) | described
    path = f"intake-{version()}.dist-info/RECORD"
    files[path] = (record(files, path), False)
    # A zip file knows no time before 1980.
    epoch = max(int(os.environ.get("SOURCE_DATE_EPOCH", "0")), 315532800)
    date = time.gmtime(epoch)[:6]
    folder.mkdir(parents=True, exist_ok=True)
    wheel = folder / f"intake-{version()}-{tag}.whl"
    with zipfile.ZipFile(wheel, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as out:
        for name, (data, program) in files.items():
            entry = zipfile.ZipInfo(name, date)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = (0o100755 if program else 0o100644) << 16
            out.writestr(entry, data)
    print(wheel)


def make_tree(folder):
    described, _ = description(pure=True)
    for name, (data, _) in (package_files() | described).items():
        if name.endswith(("/WHEEL",)):
            continue
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def main(arguments):
    if len(arguments) == 3 and arguments[0] == "wheel":
        make_wheel(Path(arguments[1]), Path(arguments[2]))
    elif len(arguments) == 2 and arguments[0] == "tree":
        make_tree(Path(arguments[1]))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
