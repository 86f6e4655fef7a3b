"""Text files, and the texts that stand beside a dataset of any kind."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import closing
from ctypes import c_int32

from ._calls import NAME_LENGTH, Handle, Text, call
from ._texts import stored_text

#: The texts beside a dataset, by the code of their file.
SIDE_TEXTS = {"log": 31, "projection": 28, "metadata": 104}


def raw_lines(path: bytes) -> Iterator[bytes]:
    """The lines of a file, of any length, without their line ends."""
    with closing(Handle("aopen_", "aclose_", path)) as channel:
        if not channel:
            return
        piece, count, more, status = Text(1024), c_int32(), c_int32(), c_int32()
        read = channel.bound("apiece_", piece, count, more, status)
        line = b""
        while True:
            read()
            if status.value != 0:
                return
            line += piece.buffer.raw[: count.value]
            if more.value == 0:
                yield line
                line = b""


def file_opens(path: bytes) -> bool:
    """Whether there is a text file at a path."""
    with Handle("aopen_", "aclose_", path) as channel:
        return bool(channel)


def lines_of(path: bytes) -> list[str] | None:
    """The lines of a file without their trailing blanks; None where there is none."""
    if not path or not file_opens(path):
        return None
    return [stored_text(line) for line in raw_lines(path)]


def side_text(dataset: bytes, which: str) -> list[str] | None:
    """The log, projection or metadata of a dataset; None where it has none."""
    path = Text(NAME_LENGTH)
    call("aname_", dataset, path, SIDE_TEXTS[which])
    return lines_of(path.bytes)
