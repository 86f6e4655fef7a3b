"""Lattices and grids: rows of cells from the top one down."""

from __future__ import annotations

import ctypes
from collections.abc import Iterator
from contextlib import closing
from ctypes import c_double, c_float, c_int32
from dataclasses import dataclass
from typing import Any

from ._calls import Handle, view
from .features import Box, Point

#: A cell without data: of a raster of integers, and of one of reals.
NO_DATA_INTEGER = -2147483647
NO_DATA_REAL = -3.4028234663852886e38

_KINDS = {"Lattice": 1, "Grid": 2}


class _Shape(ctypes.Structure):
    _fields_ = [
        ("columns", c_int32), ("rows", c_int32), ("rows_written", c_int32), ("cell_type", c_int32),
        ("lower_left", c_double * 2), ("upper_right", c_double * 2), ("cell_size", c_double * 2),
        ("range", c_double * 2),
    ]  # fmt: skip


@dataclass(frozen=True, slots=True)
class Raster:
    """A lattice, whose values hold at its mesh points, or a grid, whose values hold in its cells.

    columns, rows    may be 0 or negative in a lattice; a damaged file may claim far more than is
                     stored
    rows_written     from the top; the rows below have no data
    integer          whether cells are integers; else they are reals of single precision
    no_data          the value of a cell without data
    lower_left       x, y in map units: of a lattice its first mesh point, of a grid a corner
    upper_right      of a lattice its last mesh point
    cell_size        in x, in y: of a lattice its spacing
    range            the lowest and the highest value"""

    path: bytes
    kind: str
    columns: int
    rows: int
    rows_written: int
    integer: bool
    lower_left: Point
    upper_right: Point
    cell_size: Point
    range: Point

    @property
    def box(self) -> Box:
        """xmin, ymin, xmax, ymax: from the first mesh point to the last, or the edges of all
        cells."""
        return (*self.lower_left, *self.upper_right)

    @property
    def no_data(self) -> int | float:
        return NO_DATA_INTEGER if self.integer else NO_DATA_REAL

    def window(
        self, row: int = 0, column: int = 0, rows: int | None = None, columns: int | None = None
    ) -> memoryview:
        """Cells of a window, all of the raster if nothing is said: int32 or float32, shape
        (rows, columns), the top row first. Cells that were not written have no data. IndexError
        for a window that is not inside the raster."""
        height = self.rows - row if rows is None else rows
        width = self.columns - column if columns is None else columns
        element, code = self._cells()
        if row < 0 or column < 0 or height < 0 or width < 0:
            raise IndexError("the window is not inside the raster")
        if row + height > self.rows or column + width > self.columns:
            raise IndexError("the window is not inside the raster")
        if height == 0 or width == 0:
            return view(None, 0, code, max(width, 1))
        cells = (element * (height * width))()
        status, place = c_int32(), c_int32()
        with closing(self._opened()) as handle:
            for each in range(height):
                place.value = row + each
                start = (element * width).from_buffer(cells, each * width * 4)
                handle.call("rasrd_", place, column, width, start, status)
                if status.value != 0:
                    raise IndexError("the window is not inside the raster")
        return memoryview(cells).cast("B").cast(code, [height, width]).toreadonly()

    def __iter__(self) -> Iterator[memoryview]:
        """The rows that were written, from the top: int32 or float32, shape (columns,)."""
        width = max(self.columns, 0)
        element, code = self._cells()
        with closing(self._opened()) as handle:
            room, row, status = (element * width)(), c_int32(), c_int32()
            read = handle.bound("rasrd_", row, 0, width, room, status)
            for number in range(self.rows_written if handle else 0):
                row.value = number
                if width:
                    read()
                yield view(room, width, code)

    def place(self, column: int, row: int) -> Point:
        """Where the value of a cell holds, counted from 0 at the top left: the mesh point of a
        lattice, the centre of a grid's cell."""
        half = 0.5 if self.kind == "Grid" else 0.0
        x = self.lower_left[0] + (column + half) * self.cell_size[0]
        return x, self.upper_right[1] - (row + half) * self.cell_size[1]

    def _cells(self) -> tuple[Any, str]:
        return (c_int32, "i") if self.integer else (c_float, "f")

    def _opened(self) -> Handle:
        return Handle("rasopn_", "rascls_", self.path, _KINDS[self.kind])


def raster(path: bytes, kind: str) -> Raster | None:
    """The raster of a kind at a path; None where there is none."""
    shape, status = _Shape(), c_int32()
    with Handle("rasopn_", "rascls_", path, _KINDS[kind]) as handle:
        if not handle:
            return None
        handle.call("rasdes_", shape, status)
    pairs = [(each[0], each[1]) for each in (shape.lower_left, shape.upper_right,
                                             shape.cell_size, shape.range)]  # fmt: skip
    return Raster(
        path, kind, shape.columns, shape.rows, shape.rows_written, shape.cell_type == 1, *pairs
    )
