"""The small tables of a coverage that are no attribute tables: tolerances, and the texts and
integers of its addresses."""

from __future__ import annotations

from collections.abc import Iterator
from ctypes import c_double, c_int32
from dataclasses import dataclass

from ._calls import NAME_LENGTH, Handle, Text, call, view
from ._records import Next, Records
from ._texts import stored_text


@dataclass(frozen=True, slots=True)
class Tolerance:
    """A row of the tolerance table; row counts from 1."""

    row: int
    column1: int
    column2: int
    value: float


@dataclass(frozen=True, slots=True)
class AddressText:
    number: int
    text: str
    value: int


@dataclass(frozen=True, slots=True)
class AddressIntegers:
    """entries: int32, shape (n, 4)"""

    number: int
    entries: memoryview


class Tolerances:
    """The tolerance table. len() and exists are those of Records."""

    def __init__(self, coverage: bytes) -> None:
        self._coverage = coverage

    def _count(self) -> int:
        count, status = c_int32(), c_int32()
        call("tolrec_", self._coverage, count, status)
        return count.value if status.value == 0 else -1

    @property
    def exists(self) -> bool:
        return self._count() >= 0

    def __len__(self) -> int:
        return max(self._count(), 0)

    def __iter__(self) -> Iterator[Tolerance]:
        count, status = len(self), c_int32()
        column1, column2 = (c_int32 * count)(), (c_int32 * count)()
        values = (c_double * count)()
        if count:
            call("tolget_", self._coverage, count, column1, column2, values, status)
        # A table of which a part is damaged has no rows.
        for row in range(count if status.value == 0 else 0):
            yield Tolerance(row + 1, column1[row], column2[row], values[row])


def _word_file(coverage: bytes, code: int, record_words: int) -> Handle:
    path = Text(NAME_LENGTH)
    found, words, count = c_int32(), c_int32(), c_int32()
    call("aname_", coverage, path, code)
    handle = Handle("vopen_", "vclose_", path.bytes, found, words, count)
    if found.value != code or words.value != record_words:
        handle.close()
    handle.known = count.value if handle else 0
    return handle


class _Words:
    """The records of a file of words, read by number."""

    def __init__(self, file: Handle) -> None:
        self.number, self.count, self.status = c_int32(), c_int32(), c_int32()
        self._file = file
        self._make_room(4000)

    def _make_room(self, capacity: int) -> None:
        self.room = (c_int32 * capacity)()
        self._read = self._file.bound(
            "vread_", self.number, self.room, capacity, self.count, self.status
        )

    def following(self) -> bool:
        self.number.value += 1
        self._read()
        while self.status.value > 0 and self.count.value > len(self.room):
            self._make_room(self.count.value)
            self._read()
        return self.status.value == 0


def _texts(file: Handle) -> Next[AddressText]:
    words = _Words(file)

    def following() -> AddressText | None:
        if not words.following():
            return None
        # The integer leads in the first record and follows in the others.
        leads = words.number.value == 1
        data = bytes(words.room)[:12]
        value, text = (data[:4], data[4:]) if leads else (data[8:], data[:8])
        return AddressText(
            words.number.value, stored_text(text), int.from_bytes(value, "big", signed=True)
        )

    return following


def _integers(file: Handle) -> Next[AddressIntegers]:
    words = _Words(file)

    def following() -> AddressIntegers | None:
        if not words.following():
            return None
        call("swi4bn_", words.room, words.count.value)
        entries = view(words.room, words.count.value // 4, "i", 4)
        return AddressIntegers(words.number.value, entries)

    return following


def address_texts(coverage: bytes) -> Records[AddressText]:
    return Records(lambda: _word_file(coverage, 42, 3), None, _texts)


def address_integers(coverage: bytes) -> Records[AddressIntegers]:
    return Records(lambda: _word_file(coverage, 44, 0), None, _integers)
