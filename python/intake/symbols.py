"""Symbol sets and fonts: files of records alone that do not say what they are."""

from __future__ import annotations

import struct
from collections.abc import Callable, Iterator
from contextlib import closing
from ctypes import c_char, c_int32, c_int64
from dataclasses import dataclass

from ._calls import NAME_LENGTH, Handle, Text, call
from ._texts import stored_text
from .plots import joined

#: Symbols are numbered from 1 to here.
HIGHEST_SYMBOL = 1060

# Kind, record length in bytes, and its words: integers, reals, or n, the four words of the name.
# Where nothing is known of the words they all count as integers. In the order of the trial.
_LENGTHS = (
    ("Lineset File", 52, "4i4f1n1i"),
    ("Lineset File", 60, ""),
    ("Lineset File", 68, ""),
    ("Lineset File", 80, "6i4f1n1i3f2i"),
    ("Lineset File", 92, "6i4f1n1i3f2i3f"),
    ("Markerset File", 28, "5i2f"),
    ("Markerset File", 36, ""),
    ("Markerset File", 44, ""),
    ("Markerset File", 56, "7i5f2i"),
    ("Markerset File", 60, ""),
    ("Markerset File", 80, "7i6f3i1f3i"),
    ("Shadeset File", 52, "6i7f"),
    ("Shadeset File", 68, "9i8f"),
    ("Shadeset File", 76, "9i10f"),
    ("Shadeset File", 88, "9i11f2i"),
    ("Shadeset File", 116, "9i11f5i1n"),
    ("Textset File", 44, "5i6f"),
    ("Textset File", 52, "7i6f"),
    ("Textset File", 64, "7i7f2i"),
    ("Textset File", 84, "7i7f3i1f3i"),
    ("Textset File", 88, "7i7f3i1f4i"),
)
_TRIAL_RECORDS = 10
_FONT_REALS = 20


@dataclass(frozen=True, slots=True)
class Symbol:
    """A symbol: its words in their order, ints and floats by the layout of its set, the first being
    its number in the set; and its name, None where the layout has none. number is that of the
    record, from 1."""

    number: int
    words: tuple[int | float, ...]
    name: str | None


@dataclass(frozen=True, slots=True)
class FontRecord:
    """Twenty reals of a font; number is that of the record, from 1."""

    number: int
    reals: tuple[float, ...]


class _Plain:
    """A file of records of one length. Each iteration reads it anew."""

    def __init__(self, path: bytes, record_bytes: int) -> None:
        self._path, self._bytes = path, record_bytes
        count, size = c_int32(), c_int64()
        with self._opened() as handle:
            self.exists = bool(handle)
            if handle:
                handle.call("icount_", count)
                handle.call("isize_", size)
        self.count, self.file_bytes = count.value, size.value

    def _opened(self) -> Handle:
        return Handle("iopen_", "iclose_", self._path, self._bytes, 1)

    def __iter__(self) -> Iterator[bytes]:
        room, number, status = (c_char * self._bytes)(), c_int32(), c_int32()
        with closing(self._opened()) as handle:
            read = handle.bound("iread_", room, self._bytes, number, status) if handle else None
            while read:
                number.value += 1
                read()
                if status.value != 0:
                    return
                yield room.raw


def _first_records(path: bytes, record_bytes: int, passes: Callable[[bytes], bool]) -> bool:
    """Whether the first ten records of a length all pass; not if the file ends inside one."""
    records = _Plain(path, record_bytes)
    count = min(records.count, _TRIAL_RECORDS)
    if not records.exists:
        return False
    if count < _TRIAL_RECORDS and records.file_bytes != records.count * record_bytes:
        return False
    first = [record for _, record in zip(range(count), records)]
    return len(first) == count and all(passes(record) for record in first)


def _begins_with_symbol(record: bytes) -> bool:
    return 1 <= int.from_bytes(record[:4], "big", signed=True) <= HIGHEST_SYMBOL


def record_bytes(path: bytes, kind: str) -> int:
    """The record length of a set of a kind, found by trial; 0 if none fits."""
    for each, length, _ in _LENGTHS:
        if each == kind and _first_records(path, length, _begins_with_symbol):
            return length
    return 0


def record_bytes_of_named(path: bytes, kind: str) -> int:
    """The same for a file that is said to be of the kind: where none fits, the length that divides
    the file with the most symbol numbers."""
    found = record_bytes(path, kind)
    best, most = found, -1
    for each, length, _ in _LENGTHS if found == 0 else ():
        records = _Plain(path, length)
        if each != kind or not records.exists or records.file_bytes % length != 0:
            continue
        first = [record for _, record in zip(range(_TRIAL_RECORDS), records)]
        numbers = sum(_begins_with_symbol(record) for record in first)
        if len(first) == min(records.count, _TRIAL_RECORDS) and numbers > most:
            best, most = length, numbers
    return best


class SymbolSet:
    """A set of symbols, taken for a kind. Each iteration reads it anew."""

    def __init__(self, path: bytes, kind: str) -> None:
        self.record_bytes = record_bytes_of_named(path, kind)
        layouts = {(each, length): words for each, length, words in _LENGTHS}
        words = layouts.get((kind, self.record_bytes), "")
        # The name's words are sixteen characters in their place.
        self._layout = struct.Struct(
            ">" + (words.replace("1n", "16s") or f"{self.record_bytes // 4}i")
        )
        self._named = "n" in words
        self._records = _Plain(path, self.record_bytes)
        self.exists = self._records.exists

    def __len__(self) -> int:
        return self._records.count

    def __iter__(self) -> Iterator[Symbol]:
        for number, record in enumerate(self._records, 1):
            words = self._layout.unpack(record)
            name = next((each for each in words if isinstance(each, bytes)), None)
            yield Symbol(
                number,
                tuple(each for each in words if not isinstance(each, bytes)),
                None if name is None else stored_text(name),
            )


class FontRecords:
    """The records of a font's file."""

    def __init__(self, path: bytes) -> None:
        self._records = _Plain(path, _FONT_REALS * 4)
        self.exists = self._records.exists

    def __len__(self) -> int:
        return self._records.count

    def __iter__(self) -> Iterator[FontRecord]:
        for number, record in enumerate(self._records, 1):
            yield FontRecord(number, struct.unpack(f">{_FONT_REALS}f", record))


def font_file(path: bytes) -> bytes:
    """The file of a font, whose name is in lower case; b"" if there is none."""
    directory, name, status = Text(NAME_LENGTH), Text(NAME_LENGTH), c_int32()
    call("edir_", path, directory)
    call("ename_", path, name)
    for each in (path, joined(directory.bytes, name.bytes.lower())):
        call("iexist_", each, status)
        if status.value == 0:
            return each
    return b""


def looks_like_font(path: bytes) -> bool:
    """Whether the file's first records are twenty reals of drawing size each."""

    def passes(record: bytes) -> bool:
        # Held against the limits in single precision.
        low, high = struct.unpack("<2f", struct.pack("<2f", 1e-6, 1e7))
        reals = struct.unpack(f">{_FONT_REALS}f", record)
        return all(real == 0 or low < abs(real) < high for real in reals)

    return len(FontRecords(path)) > 0 and _first_records(path, _FONT_REALS * 4, passes)
