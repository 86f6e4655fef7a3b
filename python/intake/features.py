"""The features of a coverage.

Coordinates are in coverage units; in a coverage of single precision they are 32-bit reals, widened.
A box is xmin, ymin, xmax, ymax. number is the number of the record in its file, from 1, where
nothing else is said. Buffers are read-only; numpy.asarray takes them without a copy."""

from __future__ import annotations

import ctypes
from ctypes import c_char, c_double, c_float, c_int16, c_int32
from dataclasses import dataclass
from typing import Any

from ._calls import NAME_LENGTH, Handle, Text, call, view
from ._records import Next, Records, with_list
from ._texts import stored_text

Box = tuple[float, float, float, float]
Point = tuple[float, float]


@dataclass(frozen=True, slots=True)
class Arc:
    """A line from node to node.

    number    that it was stored with
    vertices  float64, shape (n, 2): x, y"""

    number: int
    user_id: int
    from_node: int
    to_node: int
    left_polygon: int
    right_polygon: int
    vertices: memoryview


@dataclass(frozen=True, slots=True)
class Label:
    """A point, or the label of a polygon. box is as it was stored; no meaning is attached to it."""

    number: int
    user_id: int
    polygon: int
    x: float
    y: float
    box: Box


@dataclass(frozen=True, slots=True)
class Centroid:
    """A polygon's centre.

    labels  int32, shape (n,): record numbers of the labels in the polygon"""

    number: int
    x: float
    y: float
    labels: memoryview


@dataclass(frozen=True, slots=True)
class Polygon:
    """A polygon of a coverage or a region.

    arc_count  as it was stored: for a file of boxes alone it may be any number
    arcs       int32, shape (n, 3): an arc's number, negative where it is gone along backwards and 0
               where a ring ends and the next begins; the node it begins at; the polygon on its
               other side"""

    number: int
    box: Box
    arc_count: int
    arcs: memoryview


@dataclass(frozen=True, slots=True)
class Link:
    """A pair of points, start and end: x, y each."""

    number: int
    start: Point
    end: Point


@dataclass(frozen=True, slots=True)
class RegionPair:
    """A pair of integers of a subclass of regions. number is the one it was stored with."""

    number: int
    pair: tuple[int, int]


@dataclass(frozen=True, slots=True)
class Annotation:
    """A text on the map.

    text_height    in coverage units
    line_start     number of each line's first point, from 1, negative where it is not placed
    line_table_b   number of each line's first character, from 1
    text           its text_length characters
    stored_text    all characters that were stored
    leader_points  five places, of which the absolute value of leader_count count
    points         float64, shape (point_count, 2): x, y, the places of the text"""

    number: int
    user_id: int
    group_code: int
    symbol_size: float
    text_symbol: int
    point_count: int
    line_count: int
    text_length: int
    leader_count: int
    line_start: tuple[int, ...]
    line_table_b: tuple[int, ...]
    text_height: float
    extra_values: tuple[float, float]
    text: str
    stored_text: str
    leader_points: tuple[Point, ...]
    extra_words: tuple[int, int]
    points: memoryview


class _Arc(ctypes.Structure):
    _fields_ = [(name, c_int32) for name in ("id", "from_", "to", "left", "right", "count")]


class _Label(ctypes.Structure):
    _fields_ = [
        ("id", c_int32), ("polygon", c_int32), ("x", c_double), ("y", c_double),
        ("box", c_double * 4),
    ]  # fmt: skip


class _Centroid(ctypes.Structure):
    _pack_ = 4
    _fields_ = [("x", c_double), ("y", c_double), ("count", c_int32)]


class _Polygon(ctypes.Structure):
    _pack_ = 4
    _fields_ = [("box", c_double * 4), ("count", c_int32)]


class _Annotation(ctypes.Structure):
    _fields_ = [
        ("id", c_int32), ("group", c_int32), ("size", c_float), ("symbol", c_int32),
        ("points", c_int32), ("lines", c_int32), ("length", c_int32), ("leaders", c_int32),
        ("starts", c_int16 * 20), ("table_b", c_int16 * 20), ("height", c_double),
        ("extra", c_double * 2), ("text", c_char * 320), ("leader", c_double * 10),
        ("word1", c_int32), ("word2", c_int32),
    ]  # fmt: skip


def box_of(reals: Any) -> Box:
    """Four reals as a box."""
    xmin, ymin, xmax, ymax = reals
    return xmin, ymin, xmax, ymax


def _arcs(file: Handle) -> Next[Arc]:
    number, record = c_int32(), _Arc()
    vertices = with_list(
        file, "arcrd_", (number, record), c_double, "d", (2,), lambda: int(record.count)
    )

    def following() -> Arc | None:
        points = vertices()
        if points is None:
            return None
        return Arc(
            number.value, record.id, record.from_, record.to, record.left, record.right, points
        )

    return following


def _labels(file: Handle) -> Next[Label]:
    number, record, status = c_int32(), _Label(), c_int32()
    read = file.bound("labrd_", number, record, status)

    def following() -> Label | None:
        read()
        if status.value != 0:
            return None
        box = box_of(record.box)
        return Label(number.value, record.id, record.polygon, record.x, record.y, box)

    return following


def _centroids(file: Handle) -> Next[Centroid]:
    number, record = c_int32(), _Centroid()
    labels = with_list(
        file, "cntrd_", (number, record), c_int32, "i", (), lambda: int(record.count)
    )

    def following() -> Centroid | None:
        inside = labels()
        return None if inside is None else Centroid(number.value, record.x, record.y, inside)

    return following


def _polygons(file: Handle) -> Next[Polygon]:
    number, record, status, count = c_int32(), _Polygon(), c_int32(), c_int32()
    at_once = 1000
    room = (c_int32 * (at_once * 3))()
    # Without room for arcs the record is read alone; they follow in as many pieces as it takes, for
    # the count of a file of boxes says nothing of them.
    read = file.bound("palrd_", number, record, (c_int32 * 3)(), 0, status)
    more = file.bound("palrdm_", room, at_once, count)

    def following() -> Polygon | None:
        read()
        if status.value != 0:
            return None
        pieces = bytearray()
        while True:
            more()
            if count.value == 0:
                break
            pieces += view(room, count.value, "i", 3)
        whole = (c_int32 * (len(pieces) // 4)).from_buffer(pieces)
        arcs = view(whole, len(pieces) // 12, "i", 3)
        return Polygon(number.value, box_of(record.box), record.count, arcs)

    return following


def _links(file: Handle) -> Next[Link]:
    number, ends, status = c_int32(), (c_double * 4)(), c_int32()
    read = file.bound("lnkrd_", number, ends, status)

    def following() -> Link | None:
        read()
        if status.value != 0:
            return None
        return Link(number.value, (ends[0], ends[1]), (ends[2], ends[3]))

    return following


def _region_pairs(file: Handle) -> Next[RegionPair]:
    number, pair, status = c_int32(), (c_int32 * 2)(), c_int32()
    read = file.bound("rxprd_", number, pair, status)

    def following() -> RegionPair | None:
        read()
        return RegionPair(number.value, (pair[0], pair[1])) if status.value == 0 else None

    return following


def _annotations(file: Handle) -> Next[Annotation]:
    record = _Annotation()
    text = _Annotation.text.offset
    places = with_list(file, "annrd_", (record,), c_double, "d", (2,), lambda: int(record.points))
    number = 0

    def following() -> Annotation | None:
        nonlocal number
        points = places()
        if points is None:
            return None
        number += 1
        # The bytes themselves: the field would end at a zero.
        characters = bytes(record)[text : text + 320]
        leaders = tuple((record.leader[2 * at], record.leader[2 * at + 1]) for at in range(5))
        return Annotation(
            number, record.id, record.group, record.size, record.symbol, record.points,
            record.lines, record.length, record.leaders, tuple(record.starts),
            tuple(record.table_b), record.height, (record.extra[0], record.extra[1]),
            stored_text(characters[: max(record.length, 0)]), stored_text(characters), leaders,
            (record.word1, record.word2), points,
        )  # fmt: skip

    return following


def _file(prefix: str, *arguments: Any) -> Any:
    """What opens a file of features: the operations on it share a prefix."""
    return lambda: Handle(prefix + "opn_", prefix + "cls_", *arguments)


def arcs(coverage: bytes) -> Records[Arc]:
    return Records(_file("arc", coverage), "arcrec_", _arcs)


def labels(coverage: bytes) -> Records[Label]:
    return Records(_file("lab", coverage), "labrec_", _labels)


def centroids(coverage: bytes) -> Records[Centroid]:
    return Records(_file("cnt", coverage), "cntrec_", _centroids)


def links(coverage: bytes) -> Records[Link]:
    return Records(_file("lnk", coverage), "lnkrec_", _links)


#: The polygon files of a coverage: with arcs, and boxes alone.
POLYGON_SOURCES = {"PAL": 1, "PFF": 2}


def polygons(coverage: bytes, source: str) -> Records[Polygon]:
    return Records(_file("pal", coverage, 1, POLYGON_SOURCES[source]), "palrec_", _polygons)


def regions(coverage: bytes, subclass: bytes) -> Records[Polygon]:
    path = Text(NAME_LENGTH)
    call("fname_", coverage, subclass, path, 90)
    return Records(_file("pal", path.bytes, 1, 3), "palrec_", _polygons)


def region_pairs(coverage: bytes, subclass: bytes) -> Records[RegionPair]:
    return Records(_file("rxp", coverage, subclass), "rxprec_", _region_pairs)


def annotations_of(coverage: bytes, subclass: bytes) -> Records[Annotation]:
    return Records(_file("ann", coverage, subclass), "annrec_", _annotations)
