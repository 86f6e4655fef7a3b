"""The form of every sequence of records: opened, read forwards and closed by an iteration."""

from __future__ import annotations

from collections.abc import Callable, Iterator
from contextlib import closing
from ctypes import c_int32
from typing import Any, Generic, TypeVar

from ._calls import Handle, view

T = TypeVar("T")
#: Gives the next record; None behind the last.
Next = Callable[[], T | None]


class Records(Generic[T]):
    """The records of one stored file.

    Each iteration opens the file, reads it once, forwards, and closes it at its end. What it gives
    stays valid. len() is how many records the file says it has, 0 where there is none."""

    def __init__(
        self,
        opened: Callable[[], Handle],
        counting: str | None,
        reading: Callable[[Handle], Next[T]],
    ) -> None:
        # Without an operation that counts, the opening one has told.
        self._opened = opened
        self._counting = counting
        self._reading = reading

    @property
    def exists(self) -> bool:
        """Whether there is such a file, which may hold no record."""
        with self._opened() as handle:
            return bool(handle)

    def __len__(self) -> int:
        count = c_int32()
        with self._opened() as handle:
            if handle and self._counting:
                handle.call(self._counting, count)
            elif handle:
                count.value = handle.known
        return max(count.value, 0)

    def __bool__(self) -> bool:
        return len(self) > 0

    def __iter__(self) -> Iterator[T]:
        with closing(self._opened()) as handle:
            if not handle:
                return
            following = self._reading(handle)
            while (record := following()) is not None:
                yield record


def with_list(
    file: Handle,
    operation: str,
    before: tuple[Any, ...],
    element: Any,
    code: str,
    shape: tuple[int, ...],
    wanted: Callable[[], int],
) -> Next[memoryview]:
    """Reads records that have a list: operation(file, before..., room, capacity, status), again
    with more room where there was too little, for as many as wanted() says then. The list comes as
    elements of a type code and a shape."""
    status = c_int32()
    width = shape[0] if shape else 1

    def with_room(capacity: int) -> tuple[Any, Callable[[], Any]]:
        room = (element * (capacity * width))()
        return room, file.bound(operation, *before, room, capacity, status)

    room, read = with_room(500)

    def following() -> memoryview | None:
        nonlocal room, read
        while True:
            read()
            if status.value <= 0:
                break
            room, read = with_room(wanted())
        return view(room, wanted(), code, *shape) if status.value == 0 else None

    return following
