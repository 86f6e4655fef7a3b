"""Finds and loads the libraries: those of a wheel, of a build, or of the system.

The folder in INTAKE_LIBRARIES comes first, then the one inside this package, then wherever the
system looks."""

from __future__ import annotations

import ctypes
import os
import shutil
from pathlib import Path

_NATIVE = Path(__file__).parent / "_native"


def _folder() -> Path | None:
    named = os.environ.get("INTAKE_LIBRARIES")
    if named:
        return Path(named)
    inside = _NATIVE / "lib"
    return inside if inside.is_dir() else None


def _load(name: str) -> ctypes.CDLL:
    folder = _folder()
    file = f"{name}.so.0"
    return ctypes.CDLL(str(folder / file) if folder else file)


base = _load("libqxbase")
feat = _load("libqxfeat")
gridio = _load("libqxgridio")
importer = _load("libintakedl")


def operation(name: str) -> ctypes._NamedFuncPointer:
    """The operation of that name of whichever companion has it."""
    for library in (base, feat, gridio):
        try:
            found: ctypes._NamedFuncPointer = getattr(library, name)
            return found
        except AttributeError:
            continue
    raise AttributeError(f"the companion libraries have no {name}")


def program() -> str | None:
    """The program intake: the one in INTAKE_PROGRAM, beside the libraries, or in the PATH."""
    named = os.environ.get("INTAKE_PROGRAM")
    if named:
        return named
    folder = _folder()
    if folder:
        beside = folder.parent / "bin" / "intake"
        if beside.exists():
            return str(beside)
    return shutil.which("intake")
