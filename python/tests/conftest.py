"""The samples, the program, and a workspace for each test."""

import os
import shutil
from pathlib import Path

import pytest

SOURCE = Path(__file__).resolve().parents[2]
LIBRARIES = Path(os.environ.setdefault("INTAKE_LIBRARIES", str(SOURCE / "build/release/lib")))
PROGRAM = LIBRARIES.parent / "bin/intake"

import intake  # noqa: E402  finds the libraries by the variable above

_FOLDERS = [SOURCE / "samples", *map(Path, filter(None, [os.environ.get("INTAKE_SAMPLES")]))]
SAMPLES = sorted({file.name: file for folder in _FOLDERS for file in folder.glob("*.e00")}.items())


@pytest.fixture
def sample(tmp_path):
    """sample(NAME) imports one of the samples and gives the path of its dataset."""

    def imported(name):
        dataset = tmp_path / name.upper()
        intake.import_file(dict(SAMPLES)[name + ".e00"], dataset)
        return dataset

    return imported


@pytest.fixture
def large(tmp_path):
    """An interchange file whose import takes some seconds."""
    lines = (SOURCE / "samples/wcr.e00").read_text("latin-1").splitlines(keepends=True)
    begin = (
        lines.index("ARC  3\n")
        if "ARC  3\n" in lines
        else next(at for at, line in enumerate(lines) if line.startswith("ARC  "))
    )
    end = next(at for at in range(begin, len(lines)) if lines[at].split()[0] == "-1")
    file = tmp_path / "large.e00"
    with file.open("w", encoding="latin-1") as out:
        out.writelines(lines[: begin + 1])
        for _ in range(300):
            out.writelines(lines[begin + 1 : end])
        out.writelines(lines[end:])
    return file


@pytest.fixture
def program():
    assert PROGRAM.exists() or shutil.which("intake")
    return str(PROGRAM)
