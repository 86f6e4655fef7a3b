"""Writing a dataset in a format that others open, by the program and its modules."""

from __future__ import annotations

import os
import subprocess

from . import _libraries

Path = str | os.PathLike[str]


class ExportFailed(Exception):
    """An export made nothing. messages has the lines that the program said."""

    def __init__(self, messages: tuple[str, ...]) -> None:
        self.messages = messages
        super().__init__("\n".join(messages) or "the export failed")


def _plain(path: Path) -> str:
    """A path that is no option, whatever it begins with."""
    text = os.fspath(path)
    return os.path.join(".", text) if text.startswith("-") else text


def export(dataset: Path, out: Path, *options: str) -> tuple[str, ...]:
    """Writes a dataset to out, by whose ending the format is known, as `intake export` does.

    options are those of the program, such as "--force", "--layer", "arcs". Gives the lines that it
    said: a line a layer, and what could not be kept. Raises ExportFailed with them where nothing
    was made, and FileNotFoundError where there is no program: the package intake has it, and a wheel
    its own."""
    program = _libraries.program()
    if program is None:
        raise FileNotFoundError("there is no program intake to export with")
    done = subprocess.run(
        [program, "export", *options, "--", _plain(dataset), _plain(out)],
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        check=False,
    )
    messages = tuple(done.stdout.decode("utf-8", "replace").splitlines())
    # 3: it was done, and something was left out.
    if done.returncode not in (0, 3):
        raise ExportFailed(messages)
    return messages
