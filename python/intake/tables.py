"""Attribute tables: their columns, and their records as rows."""

from __future__ import annotations

import array
import ctypes
import datetime
import enum
from collections.abc import Iterator
from contextlib import closing
from ctypes import c_double, c_int32, c_void_p
from dataclasses import dataclass
from typing import Any

from ._calls import NAME_LENGTH, Handle, Text, call
from ._texts import stored_text
from .texts import lines_of

_TABLE_NAME = 320  # characters of a table's or column's name


class ColumnType(enum.IntEnum):
    """How a column is kept. A damaged table may have others, whose values are texts."""

    DATE = 1  #: text: eight digits
    CHARACTERS = 2  #: text
    INTEGER_TEXT = 3  #: text: digits, to the right
    NUMBER_TEXT = 4  #: text: a number with its decimals, to the right
    INTEGER = 5  #: binary, 1, 2, 4 or 8 bytes
    REAL = 6  #: binary, 4 or 8 bytes


@dataclass(frozen=True, slots=True)
class Column:
    """A column of a table.

    type          one of ColumnType
    width         bytes in the record
    decimals      to be shown behind the point
    start         its first byte in the record, from 1
    output_width  characters when it is shown
    number        place among the definitions, from 1; -1 for a redefined one
    redefined     whether it names bytes of other columns once more
    kept          six integers of the interchange file's columns 20-21, 26, 37, 38-39, 40-43, 44-47
    """

    name: str
    alternate_name: str
    type: int
    width: int
    decimals: int
    start: int
    output_width: int
    number: int
    redefined: bool
    indexed: bool
    kept: tuple[int, ...]


#: What a column of a record says.
Value = None | int | float | str | datetime.date


@dataclass(frozen=True, slots=True)
class Row:
    """A record of a table; number counts from 1.

    stored  as the column is kept: an int for binary integers, a float for binary reals and for
            numbers kept as text (0 where the text is none), a str for all others
    raw     the bytes of each column, blanks included"""

    number: int
    stored: tuple[int | float | str, ...]
    raw: tuple[bytes, ...]
    columns: tuple[Column, ...]

    @property
    def values(self) -> tuple[Value, ...]:
        """What each column says: dates as datetime.date, digits kept as text as int, numbers kept
        as text as float. None where such a text is blank; its str where it is none of these."""
        return tuple(self._value(place) for place in range(len(self.columns)))

    def __getitem__(self, column: int | str) -> Value:
        """What a column says, by its place from 0 or its name; of several, the first."""
        if isinstance(column, str):
            names = [each.name for each in self.columns]
            if column not in names:
                raise KeyError(column)
            column = names.index(column)
        return self._value(column)

    def _value(self, place: int) -> Value:
        stored = self.stored[place]
        kind = self.columns[place].type
        if kind == ColumnType.NUMBER_TEXT and stored == 0:
            return _number(self.raw[place], float)
        if kind == ColumnType.INTEGER_TEXT:
            return _number(self.raw[place], int)
        if kind == ColumnType.DATE:
            return _date(self.raw[place])
        return stored


def _number(data: bytes, make: type[int] | type[float]) -> Value:
    text = data.strip(b" ")
    if not text:
        return None
    # Python takes more for a number than it is here: 1_000, and blanks of all kinds.
    plain = not text.strip(b"0123456789+-.eEdD")
    try:
        return make(text) if plain else stored_text(data)
    except ValueError:
        return stored_text(data)


def _date(data: bytes) -> Value:
    text = data.strip(b" ")
    if not text:
        return None
    try:
        if len(text) == 8 and text.isdigit():
            return datetime.date(int(text[:4]), int(text[4:6]), int(text[6:]))
    except ValueError:
        pass
    return stored_text(data)


class _Descriptor(ctypes.Structure):
    _fields_ = [(name, c_int32) for name in ("start", "width", "type", "decimals", "output")]


class _Item(ctypes.Structure):
    _fields_ = [
        ("descriptor", _Descriptor), ("number", c_int32), ("redefined", c_int32),
        ("indexed", c_int32), ("kept", c_int32 * 6),
    ]  # fmt: skip


def place_of(path: bytes) -> tuple[bytes, bytes]:
    """Where the table at a path is kept: the INFO directory of its workspace, and its name."""
    directory, prefix, name = Text(NAME_LENGTH), Text(8), Text(_TABLE_NAME)
    call("infpth_", path, directory, prefix, name)
    return directory.bytes, name.bytes


class Table:
    """An attribute table. Each iteration over its rows reads it anew, and closes it at its end."""

    name: str
    #: In the order of their definition, redefined ones included.
    columns: tuple[Column, ...]
    #: Bytes of a record.
    record_length: int
    #: Whether the records lie in a file of a dataset and not beside the definition.
    external: bool

    def __init__(self, directory: bytes, name: bytes) -> None:
        self._place = (directory, name)
        self.name = stored_text(name)
        with self._opened() as handle:
            self.exists = bool(handle)
            self._describe(handle)

    def _opened(self) -> Handle:
        directory, name = self._place
        self._count, self._length = count, length = c_int32(), c_int32()
        return Handle(
            lambda number, status: call(
                "infopn_", name, directory, b"", 1, number, count, length, status
            ),
            "infcls_",
        )

    def _describe(self, handle: Handle) -> None:
        items, external, status = c_int32(), c_int32(), c_int32()
        columns = []
        if handle:
            handle.call("infitc_", items, external)
        for place in range(1, items.value + 1):
            item, name, alternate = _Item(), Text(_TABLE_NAME), Text(_TABLE_NAME)
            handle.call("infitm_", place, item, name, alternate, status)
            shape = item.descriptor
            columns.append(
                Column(
                    str(name), str(alternate), shape.type, shape.width, shape.decimals, shape.start,
                    shape.output, item.number, item.redefined != 0, item.indexed != 0,
                    tuple(item.kept),
                )  # fmt: skip
            )
        self.columns = tuple(columns)
        self.record_length = self._length.value
        self.external = external.value != 0
        self._records = self._count.value if handle else 0
        path = Text(NAME_LENGTH)
        if handle:
            handle.call("infxml_nam_", path)
        self._metadata = path.bytes

    @property
    def metadata(self) -> list[str] | None:
        """The lines of the table's metadata; None where it has none."""
        return lines_of(self._metadata)

    def __len__(self) -> int:
        return self._records

    def __bool__(self) -> bool:
        return self.exists

    def __iter__(self) -> Iterator[Row]:
        with closing(self._opened()) as handle:
            if not handle:
                return
            number, status = c_int32(), c_int32()
            read = handle.bound("infrd_", number, status)
            cells = [_Cell(handle, place, column) for place, column in enumerate(self.columns, 1)]
            while True:
                read()
                if status.value != 0:
                    return
                raw = tuple(each.raw() for each in cells)
                stored = tuple(
                    each.number() if each.numeric else stored_text(data)
                    for each, data in zip(cells, raw)
                )
                yield Row(number.value, stored, raw, self.columns)

    def column(self, name: str) -> memoryview:
        """All values of a numeric column, by its name: float64 for reals and for numbers kept as
        text, int64 for binary integers, shape (records,)."""
        for place, column in enumerate(self.columns, 1):
            if column.name == name:
                break
        else:
            raise KeyError(name)
        if column.type not in _NUMERIC:
            raise TypeError(f"{name} holds texts")
        values: Any = array.array("q" if column.type == ColumnType.INTEGER else "d")
        with closing(self._opened()) as handle:
            number, status = c_int32(), c_int32(1)
            if handle:
                read = handle.bound("infrd_", number, status)
                cell = _Cell(handle, place, column)
                read()
            while status.value == 0:
                values.append(cell.number())
                read()
        return memoryview(values).toreadonly()


_NUMERIC = (ColumnType.NUMBER_TEXT, ColumnType.INTEGER, ColumnType.REAL)


class _Cell:
    """A column of the record that was read last."""

    def __init__(self, table: Handle, place: int, column: Column) -> None:
        self.numeric = column.type in _NUMERIC
        self._whole = column.type == ColumnType.INTEGER
        self._value, self._status = c_double(), c_int32()
        self._bytes, self._count = c_void_p(), c_int32()
        self._read = table.bound("infval_", place, self._value, Text(0), self._status)
        self._find = table.bound("infbyt_", place, self._bytes, self._count, self._status)

    def raw(self) -> bytes:
        self._find()
        return ctypes.string_at(self._bytes.value, self._count.value) if self._bytes.value else b""

    def number(self) -> int | float:
        self._read()
        return int(self._value.value) if self._whole else self._value.value


def _names(directory: bytes, owner: bytes) -> list[bytes]:
    count, name, status = c_int32(), Text(_TABLE_NAME), c_int32()
    names: list[bytes] = []
    opened = Handle(
        lambda number, status: call("inflst_", number, directory, owner, count), "infend_"
    )
    with opened as handle:
        following = handle.bound("infnxt_", name, status)
        while True:
            following()
            if status.value != 0:
                return names
            names.append(name.bytes)


def tables_of(dataset: bytes) -> Iterator[Table]:
    """The tables that belong to the coverage, grid or stack at a path."""
    directory, owner = place_of(dataset)
    for name in _names(directory, owner):
        table = Table(directory, name)
        if table.exists:
            yield table


def tables_in(workspace: bytes) -> Iterator[Table]:
    """All tables of a workspace."""
    path = Text(NAME_LENGTH)
    call("ejoin_", workspace, b"*", path)
    directory = place_of(path.bytes)[0]
    for name in _names(directory, b""):
        yield Table(directory, name)
