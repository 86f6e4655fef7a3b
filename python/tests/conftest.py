"""The samples, the program, and a workspace for each test."""

import os
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


def write_large(file, size):
    """Writes an interchange file of about so many bytes: the arcs of a sample, many times."""
    lines = (SOURCE / "samples/wcr.e00").read_text("latin-1").splitlines(keepends=True)
    begin = next(at for at, line in enumerate(lines) if line.startswith("ARC  ")) + 1
    end = next(at for at in range(begin, len(lines)) if lines[at].split()[0] == "-1")
    arcs = "".join(lines[begin:end])
    with file.open("w", encoding="latin-1") as out:
        out.writelines(lines[:begin])
        out.write(arcs * round(size / len(arcs)))
        out.writelines(lines[end:])
    return file


@pytest.fixture
def large(tmp_path):
    """An interchange file that holds far more than is read between two looks at a wish to stop."""
    return write_large(tmp_path / "large.e00", 3e6)


@pytest.fixture
def program():
    return str(PROGRAM)
