"""Importing an interchange file."""

from __future__ import annotations

import ctypes
import enum
import os
import signal
import threading
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from dataclasses import dataclass
from types import FrameType
from typing import Any

from . import _libraries
from ._calls import LOCK, call, new_epoch
from ._texts import path_bytes, stored_text

Path = str | os.PathLike[str]


class Level(enum.IntEnum):
    """How grave a message is. Errors up to NONFATAL do not end an import."""

    INFORM = 1
    WARN = 2
    NONFATAL = 3
    ERROR = 4
    FATAL = 5


@dataclass(frozen=True)
class Message:
    """What an import has said: its level, and its text with line feeds where it has lines."""

    level: Level
    text: str


@dataclass(frozen=True)
class Imported:
    """An import that ran to its end."""

    dataset: str
    #: What was made: "Coverage", "Grid", ...; "" where the file held nothing that decides it.
    kind: str
    messages: tuple[Message, ...]

    @property
    def whole(self) -> bool:
        """Whether nothing worse than a warning was said."""
        return all(each.level < Level.NONFATAL for each in self.messages)


class ImportFailed(Exception):
    """An import was ended by an error, or a write failed. What was read until then stays.

    messages has everything that was said; the text of the exception is that of the errors."""

    def __init__(self, messages: tuple[Message, ...]) -> None:
        self.messages = messages
        graver = [each.text for each in messages if each.level >= Level.NONFATAL]
        super().__init__("\n".join(graver) or "the import failed")


_SINK = ctypes.CFUNCTYPE(None, ctypes.c_int32, ctypes.c_char_p, ctypes.c_void_p)
_PROGRESS = ctypes.CFUNCTYPE(
    None, ctypes.c_int32, ctypes.c_char_p, ctypes.c_int64, ctypes.c_int64, ctypes.c_void_p
)
_KIND_DECIDED = 4


class _Ears:
    """What the library calls while it imports. An exception here asks the import to stop and is
    raised when it has."""

    def __init__(self, on_message: Callable[[Message], object] | None) -> None:
        self.messages: list[Message] = []
        self.kind = ""
        self.raised: BaseException | None = None
        self._on_message = on_message
        self.sink = _SINK(self._told)
        self.progress = _PROGRESS(self._went_on)

    def _told(self, level: int, text: bytes, user: int | None) -> None:
        try:
            message = Message(Level(level), stored_text(text))
            self.messages.append(message)
            if self._on_message and not self.raised:
                self._on_message(message)
        except BaseException as raised:
            self.stop(raised)

    def _went_on(self, event: int, code: bytes, lines: int, size: int, user: int | None) -> None:
        if event == _KIND_DECIDED:
            self.kind = stored_text(code)

    def stop(self, raised: BaseException) -> None:
        """Asks the import to stop, for an exception."""
        self.raised = self.raised or raised
        call("prgstp_", 1)

    @contextmanager
    def interrupts(self) -> Iterator[None]:
        """Ctrl-C stops the import. Python's own handler would raise its exception where the
        library calls, and what is raised there is lost."""
        usual: Any = signal.getsignal(signal.SIGINT)
        main = threading.current_thread() is threading.main_thread()
        if not main or not callable(usual):
            yield
            return

        def interrupted(number: int, frame: FrameType | None) -> None:
            try:
                usual(number, frame)
            except BaseException as raised:
                self.stop(raised)

        signal.signal(signal.SIGINT, interrupted)
        try:
            yield
        finally:
            signal.signal(signal.SIGINT, usual)


class _Running:
    import_runs = False


def import_file(
    path: Path, dataset: Path, on_message: Callable[[Message], object] | None = None
) -> Imported:
    """Reads an interchange file and rebuilds the dataset that it holds.

    path        the file, or its first volume where it was split
    dataset     what to make: a path in a workspace, whose last part is the dataset's name
    on_message  called with each message as it is given

    Raises ImportFailed with the messages if the import was ended by an error. An exception out of
    on_message, and KeyboardInterrupt, stop the import in order and are raised when it has ended.

    There is one import at a time in a process: another thread's call, of an import or of anything
    that reads a dataset, waits until it has ended. An import closes what was open before it; what
    reads from that raises StaleError. on_message must not import."""
    with LOCK:
        # The lock lets the thread in that has it already.
        if _Running.import_runs:
            raise RuntimeError("an import is running in this process")
        ears = _Ears(on_message)
        base = _libraries.base
        _Running.import_runs = True
        new_epoch()
        base.mesink_(ears.sink, None)
        base.prgset_(ears.progress, None)
        try:
            with ears.interrupts():
                result = _libraries.importer.ImportFile(
                    path_bytes(path), path_bytes(dataset), ctypes.c_int32(1)
                )
        finally:
            base.mesink_(None, None)
            base.prgset_(None, None)
            call("prgstp_", 0)
            new_epoch()
            _Running.import_runs = False
    messages = tuple(ears.messages)
    if ears.raised:
        raise ears.raised
    if result != 1:
        raise ImportFailed(messages)
    return Imported(os.fspath(dataset), ears.kind, messages)
