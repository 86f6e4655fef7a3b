"""What stands behind a path: opening a dataset, and the datasets themselves."""

from __future__ import annotations

import ctypes
import os
from collections.abc import Callable, Iterator
from ctypes import c_double, c_int32
from itertools import islice
from types import TracebackType
from typing import TypeVar

from . import _libraries, features, plots, rasters, small_tables, symbols, texts
from ._calls import LOCK, NAME_LENGTH, Handle, Text, any_open, call, new_epoch
from ._records import Records
from ._texts import path_bytes, stored_text
from .features import Box
from .indexes import Index
from .surfaces import Surface as StoredSurface
from .tables import Table, place_of, tables_of

D = TypeVar("D", bound="Dataset")
Path = str | os.PathLike[str]


class NoDataset(Exception):
    """There is no dataset at a path, none of the kind that was said, or it may be of several."""


class Damaged(Exception):
    """A stored file could not be read to its end: what was given is not all of it.

    messages says which, and why."""

    def __init__(self, messages: tuple[str, ...]) -> None:
        self.messages = messages
        super().__init__("\n".join(messages))


class Dataset:
    """An open dataset; the class says what more it has.

    Used as a context manager, or closed by close(). Its end raises Damaged where a stored file
    could not be read whole; of several that are open at once the last one that closes tells it."""

    #: How many are open in this process, and in which of its epochs the files were read.
    _open_count = 0

    def __init__(self, path: bytes, name: str, kind: str) -> None:
        self._path = path
        self.path = os.fsdecode(path)
        #: The last part of the path.
        self.name = name
        #: "Coverage", "Grid", ... as `intake dump` names it.
        self.kind = kind
        self._is_open = True
        with LOCK:
            Dataset._open_count += 1

    def _text(self, which: str) -> list[str] | None:
        return texts.side_text(self._path, which)

    @property
    def log(self) -> list[str] | None:
        """The lines of the dataset's log; None where it has none."""
        return self._text("log")

    @property
    def projection(self) -> list[str] | None:
        """The lines that name the reference system; None where it has none."""
        return self._text("projection")

    @property
    def metadata(self) -> list[str] | None:
        """The lines of the dataset's metadata; None where it has none."""
        return self._text("metadata")

    def tables(self) -> Iterator[Table]:
        """The attribute tables that belong to the dataset, in the order of their definition."""
        return tables_of(self._path)

    def table(self, suffix: str) -> Table:
        """The table of a suffix, such as "AAT". KeyError if there is none."""
        directory, name = place_of(self._path + b"." + suffix.encode())
        table = Table(directory, name)
        if not table.exists:
            raise KeyError(suffix)
        return table

    def close(self) -> None:
        """Ends the reading. Raises Damaged where a stored file could not be read to its end."""
        with LOCK:
            if not self._is_open:
                return
            self._is_open = False
            Dataset._open_count -= 1
            if Dataset._open_count == 0 and not any_open():
                _tell_damage()

    def __enter__(self: D) -> D:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        try:
            self.close()
        except Damaged:
            if error is None:
                raise

    def __repr__(self) -> str:
        return f"<{self.kind} {self.path}>"


_SINK = ctypes.CFUNCTYPE(None, ctypes.c_int32, ctypes.c_char_p, ctypes.c_void_p)


def _tell_damage() -> None:
    """Has the library tell what could not be read, which it does where all is closed."""
    told: list[str] = []
    sink = _SINK(lambda level, text, user: told.append(stored_text(text)))
    _libraries.base.mesink_(sink, None)
    try:
        _libraries.base.baseendC()
    finally:
        _libraries.base.mesink_(None, None)
        new_epoch()
    if told:
        raise Damaged(tuple(told))


class Coverage(Dataset):
    """Features with their tables. Annotation and regions are kept apart by subclass."""

    @property
    def precision(self) -> str:
        """ "double" or "single": in how many digits coordinates are kept."""
        kind = c_int32()
        call("ctype_", self._path, kind)
        return "double" if kind.value == 2 else "single"

    @property
    def extent(self) -> Box | None:
        """Where the coverage lies, in coverage units; None if it has no features."""
        box, status = (c_double * 4)(), c_int32()
        call("boxget_", self._path, box, status)
        return features.box_of(box) if status.value == 0 else None

    @property
    def arcs(self) -> Records[features.Arc]:
        return features.arcs(self._path)

    @property
    def labels(self) -> Records[features.Label]:
        return features.labels(self._path)

    @property
    def centroids(self) -> Records[features.Centroid]:
        return features.centroids(self._path)

    @property
    def links(self) -> Records[features.Link]:
        return features.links(self._path)

    def polygons(self, source: str = "PAL") -> Records[features.Polygon]:
        """The polygons: "PAL", those with arcs, or "PFF", the file of boxes alone."""
        return features.polygons(self._path, source)

    def regions(self, subclass: str) -> Records[features.Polygon]:
        return features.regions(self._path, self._stored(subclass, self._region_names()))

    def region_pairs(self, subclass: str) -> Records[features.RegionPair]:
        return features.region_pairs(self._path, self._stored(subclass, self._subclasses(89)))

    def annotations(self, subclass: str = "") -> Records[features.Annotation]:
        names = self._annotation_names()
        return features.annotations_of(self._path, self._stored(subclass, names))

    @property
    def region_subclasses(self) -> list[str]:
        return [stored_text(each) for each in self._region_names()]

    @property
    def region_pair_subclasses(self) -> list[str]:
        return [stored_text(each) for each in self._subclasses(89)]

    @property
    def annotation_subclasses(self) -> list[str]:
        """The subclasses of annotation, "" for the part without a name."""
        return [stored_text(each) for each in self._annotation_names()]

    @property
    def tolerances(self) -> small_tables.Tolerances:
        return small_tables.Tolerances(self._path)

    @property
    def address_texts(self) -> Records[small_tables.AddressText]:
        return small_tables.address_texts(self._path)

    @property
    def address_integers(self) -> Records[small_tables.AddressIntegers]:
        return small_tables.address_integers(self._path)

    def index(self, kind: str, subclass: str = "") -> Index:
        """The spatial index of "POINTS", "ARCS", "POLYGONS", "ANNOTATIONS" or "REGIONS"; the last
        two have one for each subclass."""
        names = self._region_names() if kind == "REGIONS" else self._annotation_names()
        return Index(self._path, kind, self._stored(subclass, names))

    def _region_names(self) -> list[bytes]:
        return self._subclasses(90)

    def _annotation_names(self) -> list[bytes]:
        return self._subclasses(16)

    def _subclasses(self, code: int) -> list[bytes]:
        name, count, names = Text(32), c_int32(), []
        with Handle("copen_", "cclose_", self._path, code, code) as walk:
            while walk:
                walk.call("centry_", name, count)
                if count.value == 0:
                    break
                names.append(name.bytes)
        return names

    @staticmethod
    def _stored(subclass: str, names: list[bytes]) -> bytes:
        """The bytes of a subclass's name, which need not be UTF-8."""
        return next((each for each in names if stored_text(each) == subclass), subclass.encode())


class RasterDataset(Dataset):
    """A lattice or a grid."""

    @property
    def raster(self) -> rasters.Raster:
        found = rasters.raster(self._path, self.kind)
        if found is None:
            raise NoDataset(f"{self.path}: no {self.kind}")
        return found


class Stack(Dataset):
    """The names of grids that belong together, and those of them that are there."""

    @property
    def members(self) -> list[str]:
        """The names in their order, whether or not there are grids of these names."""
        return [stored_text(each) for each in self._members()]

    def grids(self) -> Iterator[RasterDataset]:
        """The member grids that exist beside the stack."""
        directory, path, is_grid = Text(NAME_LENGTH), Text(NAME_LENGTH), c_int32()
        call("edirs_", self._path, directory)
        for name in self._members():
            # A name that leads elsewhere is no member's.
            if name in (b"", b".", b"..") or b"/" in name:
                continue
            call("ejoins_", directory.bytes, name, path)
            call("grdexi_", path.bytes, is_grid)
            if is_grid.value & 1:
                yield RasterDataset(path.bytes, stored_text(name), "Grid")

    def _members(self) -> list[bytes]:
        count, status, name, members = c_int32(), c_int32(), Text(80), []
        call("saknly_", self._path, count, status)
        for number in range(1, count.value + 1 if status.value == 0 else 0):
            call("stkgnm_", self._path, number, name, status)
            if status.value != 0:
                break
            members.append(name.bytes)
        return members


class Surface(Dataset):
    """A triangulated surface."""

    @property
    def surface(self) -> StoredSurface:
        return StoredSurface(self._path)


class SymbolSet(Dataset):
    """Line, marker, shade or text symbols."""

    @property
    def symbols(self) -> symbols.SymbolSet:
        return symbols.SymbolSet(self._path, self.kind)


class Font(Dataset):
    @property
    def records(self) -> symbols.FontRecords:
        return symbols.FontRecords(symbols.font_file(self._path))


class PlotFile(Dataset):
    """A recorded drawing."""

    @property
    def plot(self) -> plots.Plot:
        return plots.plot(self._path)


class Map(Dataset):
    """A map composition: plots in their order."""

    @property
    def elements(self) -> list[plots.Plot]:
        return plots.elements(self._path)


class InfoTable(Dataset):
    """An attribute table that stands alone."""

    def rows(self) -> Table:
        return Table(*place_of(self._path))


class TextFile(Dataset):
    @property
    def lines(self) -> list[str]:
        return texts.lines_of(self._path) or []


def _is_coverage(path: bytes) -> bool:
    kind = c_int32()
    call("ctype_", path, kind)
    return kind.value in (1, 2)


def _is_stack(path: bytes) -> bool:
    count, status = c_int32(), c_int32()
    call("saknly_", path, count, status)
    return status.value == 0


def _stands(path: bytes) -> bool:
    status = c_int32()
    call("aexist_", path, status)
    return status.value == 0


def _is_table(path: bytes) -> bool:
    # A table has no file of its own name.
    return not _stands(path) and Table(*place_of(path)).exists


def _looks_like_text(path: bytes) -> bool:
    """Whether the front of a file is lines of text, in whatever encoding, or nothing at all."""
    if not texts.file_opens(path):
        return False
    fronts = (line[:300] for line in islice(texts.raw_lines(path), 100))
    return not any(code < 32 and code not in b"\t\r\f" for line in fronts for code in line)


def _is_font(path: bytes) -> bool:
    file = symbols.font_file(path)
    return bool(file) and not _looks_like_text(file) and symbols.looks_like_font(file)


# Kinds that say what they are: the first of those that fits decides.
_CERTAIN: tuple[tuple[str, type[Dataset], Callable[[bytes], bool]], ...] = (
    ("Coverage", Coverage, _is_coverage),
    ("TIN", Surface, lambda path: StoredSurface(path).exists),
    ("Lattice", RasterDataset, lambda path: rasters.raster(path, "Lattice") is not None),
    ("Grid", RasterDataset, lambda path: rasters.raster(path, "Grid") is not None),
    ("Stack", Stack, _is_stack),
    ("Info Datafile", InfoTable, _is_table),
    ("Plot File", PlotFile, plots.is_plot),
    ("Map", Map, plots.is_map),
)
_SETS = ("Lineset File", "Markerset File", "Shadeset File", "Textset File")

# Files that do not say what they are. Each may fit several; one that is named has a wider test than
# one that is guessed.
_GUESSES: tuple[
    tuple[str, type[Dataset], Callable[[bytes], bool], Callable[[bytes], bool]], ...
] = (
    *(
        (
            kind,
            SymbolSet,
            lambda path, kind=kind: symbols.record_bytes(path, kind) != 0,
            lambda path, kind=kind: symbols.record_bytes_of_named(path, kind) != 0,
        )
        for kind in _SETS
    ),
    ("Font File", Font, _is_font, lambda path: symbols.font_file(path) != b""),
    ("Text File", TextFile, _looks_like_text, texts.file_opens),
)

_CLASSES: dict[str, type[Dataset]] = {kind: made for kind, made, _ in _CERTAIN} | {
    kind: made for kind, made, _, _ in _GUESSES
}


def kinds_of(path: Path) -> list[str]:
    """Every kind that fits what is stored at a path. A symbol set, a font or a text file does not
    say what it is, so there may be several; none if nothing is there."""
    stored = path_bytes(path)
    if not _stands(stored):
        # A table has nothing under its own name, nor has a font.
        if _is_table(stored):
            return ["Info Datafile"]
        return ["Font File"] if _is_font(stored) else []
    for kind, _, fits in _CERTAIN:
        if fits(stored):
            return [kind]
    return [kind for kind, _, fits, _ in _GUESSES if fits(stored)]


def open(dataset: Path, kind: str | None = None) -> Dataset:
    """Opens the dataset at a path that was imported to: a Coverage, RasterDataset, Stack, Surface,
    SymbolSet, Font, PlotFile, Map, InfoTable or TextFile.

    kind says what to take it for, where its bytes leave that open: a label such as "Lineset File".
    Raises NoDataset where there is none, or more than one kind fits and none was said."""
    stored = path_bytes(dataset)
    last = Text(NAME_LENGTH)
    call("ename_", stored, last)
    for each, make, _, may_be in _GUESSES:
        if kind == each and may_be(stored):
            return make(stored, str(last), each)
    kinds = kinds_of(dataset)
    if not kinds:
        raise NoDataset(f"{os.fspath(dataset)}: no dataset of this name")
    if kind is not None and kind not in kinds:
        raise NoDataset(f"{os.fspath(dataset)}: no {kind}")
    if kind is None and len(kinds) > 1:
        raise NoDataset(f"{os.fspath(dataset)}: may be a {', '.join(kinds)}; say which with kind")
    found = kind or kinds[0]
    return _CLASSES[found](stored, str(last), found)
