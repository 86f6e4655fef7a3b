"""Texts as they are stored."""

from __future__ import annotations

import os


def stored_text(data: bytes) -> str:
    """A stored text without its trailing blanks; what is not UTF-8 is taken as Latin-1."""
    trimmed = data.rstrip(b" ")
    try:
        return trimmed.decode("utf-8")
    except UnicodeDecodeError:
        return trimmed.decode("latin-1")


def path_bytes(path: str | bytes | os.PathLike[str] | os.PathLike[bytes]) -> bytes:
    """A path as the system has it."""
    return os.fsencode(path)
