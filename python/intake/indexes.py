"""The spatial indexes of a coverage."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import closing
from ctypes import c_double, c_int32
from dataclasses import dataclass

from ._calls import Handle, view
from .features import Box, box_of

_ENTRIES = 100  # of a block

#: Kinds of features that have an index, by the operation's number for them.
INDEXED = {"POINTS": 1, "ARCS": 2, "POLYGONS": 3, "ANNOTATIONS": 4, "REGIONS": 5}


@dataclass(frozen=True, slots=True)
class IndexBlock:
    """A block of entries by its number in the file, from 2.

    entries  int32, shape (n, 2): the packed box, one byte a side (xmin, the highest, ymin, xmax and
             ymax, in 256ths of the extent), and the number of a record, from 1"""

    number: int
    entries: memoryview


class Index:
    """A spatial index as it is stored; exists is false where there is none that can be read.

    record_count  of the features that it speaks of
    extent        that it was built for
    nodes         of each node its first block and how many entries it has, zeros for an empty one
    """

    def __init__(self, coverage: bytes, kind: str, subclass: bytes = b"") -> None:
        self.kind = kind
        self._arguments = (coverage, subclass, INDEXED[kind])
        records, extent, nodes, blocks = c_int32(), (c_double * 4)(), c_int32(), c_int32()
        self.nodes: list[tuple[int, int]] = []
        with self._opened() as handle:
            self.exists = bool(handle)
            if handle:
                handle.call("spxhdr_", records, extent, nodes, blocks)
            first, entries = c_int32(), c_int32()
            for node in range(1, nodes.value + 1):
                handle.call("spxnod_", node, first, entries)
                self.nodes.append((first.value, entries.value))
        self.record_count = records.value
        self.extent: Box = box_of(extent)
        self._blocks = blocks.value

    def _opened(self) -> Handle:
        return Handle("spxopn_", "spxcls_", *self._arguments)

    def __iter__(self) -> Iterator[IndexBlock]:
        entries, count, status = (c_int32 * (2 * _ENTRIES))(), c_int32(), c_int32()
        with closing(self._opened()) as handle:
            for block in range(2, self._blocks + 2 if handle else 0):
                handle.call("spxblk_", block, entries, count, status)
                if status.value != 0:
                    return
                yield IndexBlock(block, view(entries, count.value, "i", 2))

    def ask(self, box: Box) -> list[int] | None:
        """The records whose boxes may meet a rectangle, the lowest first; none of those that do is
        missing. None where a part of the index could not be read."""
        rectangle, count, status, record = (c_double * 4)(*box), c_int32(), c_int32(), c_int32()
        found = []
        with self._opened() as handle:
            if not handle:
                return None
            handle.call("spxask_", rectangle, count, status)
            if status.value != 0:
                return None
            following = handle.bound("spxnxt_", record, status)
            following()
            while status.value == 0:
                found.append(record.value)
                following()
        return found
