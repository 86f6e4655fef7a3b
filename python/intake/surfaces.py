"""Triangulated surfaces: nodes, triangles, hull and mask. A member of a surface may be missing, or
shorter than the surface says: what is there is given."""

from __future__ import annotations

import ctypes
from collections.abc import Iterator
from contextlib import closing
from ctypes import c_double, c_float, c_int32, c_int64
from dataclasses import dataclass
from itertools import count, zip_longest
from typing import Any

from . import _libraries
from ._calls import Handle, view
from .features import Box, box_of
from .rasters import NO_DATA_REAL

Triple = tuple[int, int, int]


class _Environment(ctypes.Structure):
    _fields_ = [
        ("node_count", c_int32), ("triangle_count", c_int32), ("hull_count", c_int32),
        ("digit", c_int32), ("second_triangle_count", c_int32), ("second_node_count", c_int32),
        ("second_hull_count", c_int32), ("lowest_z", c_float), ("highest_z", c_float),
        ("reserved", c_float), ("box", c_double * 4), ("fifth_real", c_double),
        ("sixth_real", c_double), ("version", c_int32), ("spare", c_int32),
    ]  # fmt: skip


@dataclass(frozen=True, slots=True)
class Environment:
    """What a surface says of itself. Heights are in its own unit, the box in map units; digit and
    the reals are kept as they stood in the file; version is an integer such as 60100."""

    node_count: int
    triangle_count: int
    hull_count: int
    digit: int
    second_triangle_count: int
    second_node_count: int
    second_hull_count: int
    z_range: tuple[float, float]
    box: Box
    fifth_real: float
    sixth_real: float
    version: int


@dataclass(frozen=True, slots=True)
class Node:
    """A node by what is stored of it: None where a member is at its end. height is NO_DATA_REAL
    (intake.rasters) where it has none; identifier is the node's own number."""

    number: int
    place: tuple[float, float] | None
    height: float | None
    identifier: int | None

    @property
    def has_height(self) -> bool:
        return self.height is not None and self.height != NO_DATA_REAL


@dataclass(frozen=True, slots=True)
class Triangle:
    """A triangle: its corners, and the triangles beyond its edges; all count from 1, and beyond an
    edge of 0 or less is none. None where a member is at its end."""

    number: int
    nodes: Triple | None
    edges: Triple | None


# The members: file code, element, type code, elements in a record.
_PLACES: Any = (51, c_double, "d", (2,))
_HEIGHTS: Any = (52, c_float, "f", ())
_CORNERS: Any = (53, c_int32, "i", (3,))
_EDGES: Any = (54, c_int32, "i", (3,))
_HULL: Any = (55, c_int32, "i", ())
_IDENTIFIERS: Any = (56, c_int32, "i", ())
_MASK: Any = (74, c_int32, "i", ())


class Surface:
    """A surface at a path. Members come one by one, or each as a whole in a buffer."""

    def __init__(self, path: bytes) -> None:
        self._path = path

    def _opened(self) -> Handle:
        return Handle("tinopn_", "tincls_", self._path)

    @property
    def exists(self) -> bool:
        with self._opened() as handle:
            return bool(handle)

    @property
    def environment(self) -> Environment | None:
        """Counts, heights and box as the surface says them; None where they are not there."""
        found, status = _Environment(), c_int32(1)
        with self._opened() as handle:
            if handle:
                handle.call("tinenv_", found, status)
        if status.value != 0:
            return None
        version = _libraries.base.tinver_(ctypes.byref(c_int32(found.version)))
        return Environment(
            found.node_count, found.triangle_count, found.hull_count, found.digit,
            found.second_triangle_count, found.second_node_count, found.second_hull_count,
            (found.lowest_z, found.highest_z), box_of(found.box), found.fifth_real,
            found.sixth_real, version,
        )  # fmt: skip

    def _blocks(self, member: Any) -> Iterator[memoryview]:
        code, element, letter, shape = member
        at_once = 1024
        room = (element * (at_once * (shape[0] if shape else 1)))()
        first, got = c_int64(1), c_int32()
        with closing(self._opened()) as handle:
            if not handle:
                return
            read = handle.bound("tinget_", code, first, at_once, room, got)
            while True:
                read()
                if got.value > 0:
                    yield view(room, got.value, letter, *shape)
                if got.value != at_once:
                    return
                first.value += at_once

    def _whole(self, member: Any) -> memoryview:
        code, _, letter, shape = member
        data = b"".join(bytes(each) for each in self._blocks(member))
        records = len(data) // (memoryview(bytes(8)).cast(letter).itemsize * (shape or (1,))[0])
        return view((ctypes.c_char * len(data)).from_buffer_copy(data), records, letter, *shape)

    def places(self) -> memoryview:
        """float64, shape (n, 2): x, y of each node in map units."""
        return self._whole(_PLACES)

    def heights(self) -> memoryview:
        """float32, shape (n,): NO_DATA_REAL (intake.rasters) where a node has none."""
        return self._whole(_HEIGHTS)

    def corners(self) -> memoryview:
        """int32, shape (n, 3): the nodes of each triangle, from 1."""
        return self._whole(_CORNERS)

    def neighbours(self) -> memoryview:
        """int32, shape (n, 3): the triangles beyond the edges of each, from 1."""
        return self._whole(_EDGES)

    def hull(self) -> memoryview:
        """int32, shape (n,): the hull's numbers in their order."""
        return self._whole(_HULL)

    def mask(self) -> memoryview:
        """int32, shape (n,): a bit a triangle, the highest of each word first; zeros may follow the
        last."""
        return self._whole(_MASK)

    def _records(self, member: Any) -> Iterator[Any]:
        for block in self._blocks(member):
            listed: list[Any] = block.tolist()
            for each in listed:
                yield tuple(each) if isinstance(each, list) else each

    def nodes(self) -> Iterator[Node]:
        members = (self._records(each) for each in (_PLACES, _HEIGHTS, _IDENTIFIERS))
        for number, (place, height, identifier) in zip(count(1), zip_longest(*members)):
            yield Node(number, place, height, identifier)

    def triangles(self) -> Iterator[Triangle]:
        members = (self._records(each) for each in (_CORNERS, _EDGES))
        for number, (nodes, edges) in zip(count(1), zip_longest(*members)):
            yield Triangle(number, nodes, edges)
