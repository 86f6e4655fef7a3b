"""Plots, recorded drawings, and maps, which are folders of them."""

from __future__ import annotations

from ctypes import c_float, c_int32
from dataclasses import dataclass

from ._calls import NAME_LENGTH, Handle, Text, call
from ._records import Next, Records
from ._texts import stored_text
from .features import Box, box_of


@dataclass(frozen=True, slots=True)
class PlotRecord:
    """A record of a plot: its code, two reals in plot units, two integers and a text."""

    number: int
    code: int
    reals: tuple[float, float]
    integers: tuple[int, int]
    text: str


def _read(plot: Handle) -> Next[PlotRecord]:
    code, reals, integers = c_int32(), (c_float * 2)(), (c_int32 * 2)()
    text, status, number = Text(8), c_int32(), 0
    read = plot.bound("ptread_", code, reals, integers, text, status)

    def following() -> PlotRecord | None:
        nonlocal number
        read()
        if status.value != 0:
            return None
        number += 1
        pair = (integers[0], integers[1])
        return PlotRecord(number, code.value, (reals[0], reals[1]), pair, str(text))

    return following


@dataclass(frozen=True, slots=True)
class Plot:
    """A plot: its title, and its bounds in plot units as they are stored, 9.0E27 and -9.0E27 where
    no record set them. element is the name of its file in a map, "" for a plot of its own."""

    path: bytes
    element: str
    title: str
    bounds: Box

    @property
    def records(self) -> Records[PlotRecord]:
        return Records(lambda: Handle("ptopen_", "ptclos_", self.path), "ptrec_", _read)


def is_plot(path: bytes) -> bool:
    with Handle("ptopen_", "ptclos_", path) as handle:
        return bool(handle)


def plot(path: bytes, element: str = "") -> Plot:
    """The plot at a path; zeros and blanks where its head cannot be read."""
    title, status = Text(136), c_int32()
    bounds = tuple(c_float() for _ in range(4))
    call("pthdrr_", path, title, status)
    call("ptbndr_", path, *bounds, status)
    return Plot(path, element, str(title), box_of(each.value for each in bounds))


def joined(folder: bytes, name: bytes) -> bytes:
    path = Text(NAME_LENGTH)
    call("ejoin_", folder, name, path)
    return path.bytes


def names_in(folder: bytes) -> list[bytes] | None:
    """The names in a folder by their bytes; None for a path that is none."""
    name, status = Text(NAME_LENGTH), c_int32()
    names: list[bytes] = []
    with Handle("dopen_", "dclose_", folder) as handle:
        if not handle:
            return None
        while True:
            handle.call("dread_", name, status)
            if status.value != 0:
                return names
            names.append(name.bytes)


def is_map(path: bytes) -> bool:
    """Whether a path is a folder that holds plots and nothing else."""
    names = names_in(path)
    return names is not None and all(is_plot(joined(path, each)) for each in names)


def elements(path: bytes) -> list[Plot]:
    """The elements of a map in their order."""
    order, status, found = c_int32(), c_int32(), []
    for name in names_in(path) or []:
        order.value = 0
        call("ptord_", joined(path, name), order, status)
        found.append((order.value, name))
    return [plot(joined(path, name), stored_text(name)) for _, name in sorted(found)]
