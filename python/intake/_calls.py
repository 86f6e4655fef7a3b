"""The one way that this package calls an operation of the companions.

    call("arcopn_", handle, dataset, status)

Numbers and records go by address, texts as pointer with their lengths gathered at the end, in
order. Results come back in ctypes objects: numbers in c_int32 and its kin, texts in a Text.

The companions keep one state for the whole process, and an import closes whatever is open in it.
Every call takes LOCK, which an import holds from its start to its end."""

from __future__ import annotations

import ctypes
import threading
import weakref
from collections.abc import Callable
from ctypes import byref, c_int32
from types import TracebackType
from typing import Any

from . import _libraries
from ._texts import stored_text

LOCK = threading.RLock()

NAME_LENGTH = 1024  # characters of a path


class Text:
    """A buffer of blanks for a text that comes back."""

    def __init__(self, length: int) -> None:
        self.length = length
        self.buffer = ctypes.create_string_buffer(b" " * length, length)

    @property
    def bytes(self) -> bytes:
        """The characters without trailing blanks."""
        return self.buffer.raw.rstrip(b" ")

    def __str__(self) -> str:
        return stored_text(self.bytes)


def bound(name: str, *arguments: Any) -> Callable[[], Any]:
    """A call that is made ready once, to be made again and again: its arguments keep their
    addresses."""
    operation = _libraries.operation(name)
    converted: list[Any] = []
    lengths: list[c_int32] = []
    kept: list[Any] = []
    for argument in arguments:
        if isinstance(argument, bytes):
            converted.append(argument)
            lengths.append(c_int32(len(argument)))
        elif isinstance(argument, Text):
            converted.append(argument.buffer)
            lengths.append(c_int32(argument.length))
        elif isinstance(argument, ctypes.Array):
            converted.append(argument)
        else:
            value = c_int32(argument) if isinstance(argument, int) else argument
            kept.append(value)
            converted.append(byref(value))
    converted += lengths

    def invoke() -> Any:
        with LOCK:
            return operation(*converted)

    return invoke


def call(name: str, *arguments: Any) -> Any:
    """Calls an operation once."""
    return bound(name, *arguments)()


class _Epoch:
    """Grows whenever an import closes what is open."""

    number = 0


class StaleError(RuntimeError):
    """What was being read was closed by an import in this process. Open it again."""


_open: weakref.WeakSet[Handle] = weakref.WeakSet()


def new_epoch() -> None:
    """Says that nothing is open any more. LOCK is held."""
    _Epoch.number += 1


def any_open() -> bool:
    """Whether a handle of this epoch is open."""
    return any(each for each in _open)


class Handle:
    """The one owner of what an operation opened; false where it opened nothing.

    Opens with opening(number, arguments..., status), or with a function of number and status."""

    def __init__(
        self, opening: str | Callable[[c_int32, c_int32], Any], closing: str, *arguments: Any
    ) -> None:
        self.number = c_int32()
        self.known = 0  # records, where the operation that opens tells
        self._closing = closing
        with LOCK:
            self._epoch = _Epoch.number
            status = c_int32()
            if isinstance(opening, str):
                call(opening, self.number, *arguments, status)
            else:
                opening(self.number, status)
            if status.value != 0:
                self.number.value = 0
            _open.add(self)

    def __bool__(self) -> bool:
        return self.number.value != 0 and self._epoch == _Epoch.number

    def bound(self, name: str, *arguments: Any) -> Callable[[], Any]:
        """A call with this handle as its first argument."""
        inner = bound(name, self.number, *arguments)

        def invoke() -> Any:
            with LOCK:
                if self._epoch != _Epoch.number:
                    raise StaleError("an import has closed what was open; open it again")
                return inner()

        return invoke

    def call(self, name: str, *arguments: Any) -> Any:
        """Calls an operation once, with this handle as its first argument."""
        return self.bound(name, *arguments)()

    def close(self) -> None:
        """Closes it, where that has not been done."""
        with LOCK:
            if self:
                call(self._closing, self.number)
            self.number.value = 0

    def __enter__(self) -> Handle:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def __del__(self) -> None:
        # A program that ends may have taken its modules apart.
        if getattr(self, "number", None) is not None and LOCK is not None:
            self.close()


def view(room: Any, count: int, code: str, *shape: int) -> memoryview:
    """What an operation put into room, as a buffer of its own: count elements of a type (array's
    letters), each of the shape."""
    width = 1
    for side in shape:
        width *= side
    size = {"d": 8, "f": 4, "i": 4, "q": 8}[code]
    if count == 0:
        # A buffer cannot be cast to sides of 0, only cut to them.
        return memoryview(bytes(width * size)).cast(code, [1, *shape])[0:0]
    data = ctypes.string_at(ctypes.addressof(room), count * width * size)
    return memoryview(data).cast(code, [count, *shape])
