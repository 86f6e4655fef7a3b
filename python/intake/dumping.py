"""Every record of a dataset as JSON Lines, as `intake dump` prints it (docs/dump-format.md)."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterator
from typing import Any, BinaryIO

from . import datasets, features, plots, rasters, symbols, tables
from ._json import Fields, object_of

#: A class and its fields, in their order.
Line = tuple[str, list[tuple[str, Any]]]


def _fields(record: Any, *names: str) -> list[tuple[str, Any]]:
    """Fields of a record under the dump's names: user_id is userId."""
    listed = []
    for name in names:
        head, *rest = name.split("_")
        listed.append((head + "".join(each.capitalize() for each in rest), getattr(record, name)))
    return listed


def _polygon(polygon: features.Polygon, source: str) -> list[tuple[str, Any]]:
    return _fields(polygon, "number", "box", "arc_count", "arcs") + [("source", source)]


def _annotation(each: features.Annotation) -> list[tuple[str, Any]]:
    words = zip(("extraWord1", "extraWord2"), each.extra_words)
    return [
        *_fields(
            each, "number", "user_id", "group_code", "symbol_size", "text_symbol", "point_count",
            "line_count", "text_length", "leader_count", "line_start",
        ),
        ("lineTableB", each.line_table_b),
        *_fields(each, "text_height", "extra_values"),
        ("text", each.stored_text),
        *_fields(each, "leader_points"),
        *words,
        *_fields(each, "points"),
    ]  # fmt: skip


_ARC = ("number", "user_id", "from_node", "to_node", "left_polygon", "right_polygon", "vertices")


def _parts(coverage: datasets.Coverage) -> Iterator[tuple[str, str, str | None, Any, Any]]:
    """The feature files: class, key of the counts, subclass if it has one, records, and what the
    fields of a record are."""
    simple: dict[str, tuple[Any, tuple[str, ...]]] = {
        "arc": (coverage.arcs, _ARC),
        "label": (coverage.labels, ("number", "user_id", "polygon", "x", "y", "box")),
        "centroid": (coverage.centroids, ("number", "x", "y", "labels")),
        "PAL": (coverage.polygons("PAL"), ()),
        "PFF": (coverage.polygons("PFF"), ()),
        "tolerance": (coverage.tolerances, ("row", "column1", "column2", "value")),
        "annotation": (None, ()),
        "link": (coverage.links, ()),
        "addressText": (coverage.address_texts, ("number", "text", "value")),
        "addressIntegers": (coverage.address_integers, ("number", "entries")),
    }
    for name, (records, keys) in simple.items():
        if name in features.POLYGON_SOURCES:
            yield "polygon", "polygon/" + name, None, records, _of_source(name)
        elif name == "annotation":
            for subclass in coverage.annotation_subclasses:
                found = coverage.annotations(subclass)
                yield name, f"{name}/{subclass}", subclass, found, _annotation
        elif name == "link":
            yield name, name, None, records, lambda each: [
                ("number", each.number), ("from", each.start), ("to", each.end)
            ]  # fmt: skip
        else:
            yield name, name, None, records, _with(keys)
    for subclass in coverage.region_pair_subclasses:
        pairs = coverage.region_pairs(subclass)
        yield "regionPair", f"regionPair/{subclass}", subclass, pairs, _with(("number", "pair"))
    for subclass in coverage.region_subclasses:
        found_regions = coverage.regions(subclass)
        keys = ("number", "box", "arcs")
        yield "region", f"region/{subclass}", subclass, found_regions, _with(keys)


def _with(keys: tuple[str, ...]) -> Callable[[Any], list[tuple[str, Any]]]:
    return lambda each: _fields(each, *keys)


def _of_source(source: str) -> Callable[[Any], list[tuple[str, Any]]]:
    return lambda each: _polygon(each, source)


def _head(dataset: datasets.Dataset) -> Line:
    return "dataset", [("kind", dataset.kind), ("name", dataset.name)]


def _side_texts(dataset: datasets.Dataset) -> Iterator[Line]:
    for name in ("log", "projection", "metadata"):
        lines = getattr(dataset, name)
        if lines is not None:
            yield name, [("lines", lines)]


def _table(table: tables.Table) -> Iterator[Line]:
    items = [
        Fields(
            _fields(
                each, "name", "alternate_name", "width", "start", "type", "decimals",
                "output_width", "redefined", "number", "indexed", "kept",
            )
        )
        for each in table.columns
    ]  # fmt: skip
    yield "table", [
        ("name", table.name), ("external", table.external), ("recordCount", len(table)),
        ("recordLength", table.record_length), ("items", items),
    ]  # fmt: skip
    names = [each.name for each in table.columns]
    for row in table:
        values = Fields(zip(names, row.stored))
        yield "record", [("table", table.name), ("number", row.number), ("values", values)]
    metadata = table.metadata
    if metadata is not None:
        yield "metadata", [("lines", metadata), ("table", table.name)]


def _tables(dataset: datasets.Dataset) -> Iterator[Line]:
    for table in dataset.tables():
        yield from _table(table)


def _indexes(coverage: datasets.Coverage) -> Iterator[Line]:
    subclasses = {
        "ANNOTATIONS": coverage.annotation_subclasses,
        "REGIONS": coverage.region_subclasses,
    }
    for kind in ("POINTS", "ARCS", "POLYGONS", "ANNOTATIONS", "REGIONS"):
        for subclass in subclasses.get(kind, [""]):
            index = coverage.index(kind, subclass)
            begin = [("kind", kind), ("subclass", subclass)]
            if not index.exists:
                continue
            yield "index", begin + _fields(index, "record_count", "extent", "nodes")
            for block in index:
                pairs: Any = block.entries.tolist()
                entries = [(box & 0xFFFFFFFF, record) for box, record in pairs]
                yield "indexBlock", [*begin, ("number", block.number), ("entries", entries)]


def _coverage(coverage: datasets.Coverage) -> Iterator[Line]:
    parts = list(_parts(coverage))
    counts = Fields((key, len(records)) for _, key, _, records, _ in parts if records.exists)
    name, fields = _head(coverage)
    yield name, [*fields, ("precision", coverage.precision), ("counts", counts)]
    for name, _, subclass, records, fields_of in parts:
        begin = [] if subclass is None else [("subclass", subclass)]
        for each in records:
            yield name, begin + fields_of(each)
    yield from _side_texts(coverage)
    yield from _indexes(coverage)
    yield from _tables(coverage)


def _raster(dataset: datasets.RasterDataset) -> Iterator[Line]:
    yield _head(dataset)
    raster = dataset.raster
    begin: list[tuple[str, Any]] = _fields(raster, "columns", "rows")
    if raster.kind == "Lattice":
        yield "lattice", [
            *begin, ("origin", raster.lower_left), ("spacing", raster.cell_size),
            ("range", raster.range),
        ]  # fmt: skip
    else:
        cell_type = "integer" if raster.integer else "float"
        yield "grid", [
            *begin, ("cellType", cell_type), ("cellSize", raster.cell_size), ("bounds", raster.box)
        ]  # fmt: skip
    missing = raster.no_data
    for number, cells in enumerate(raster):
        values = [None if cell == missing else cell for cell in cells.tolist()]
        yield "row", [("number", number), ("cells", values)]
    yield from _side_texts(dataset)
    if raster.kind == "Grid":
        yield from _tables(dataset)


def _stack(stack: datasets.Stack) -> Iterator[Line]:
    yield _head(stack)
    yield "stack", [("members", stack.members)]
    yield from _side_texts(stack)
    yield from _tables(stack)
    for grid in stack.grids():
        with grid:
            yield from _raster(grid)


def _surface(dataset: datasets.Surface) -> Iterator[Line]:
    yield _head(dataset)
    surface = dataset.surface
    environment = surface.environment
    if environment:
        yield "tin", _fields(
            environment, "node_count", "triangle_count", "hull_count", "digit",
            "second_triangle_count", "second_node_count", "second_hull_count", "z_range", "box",
            "fifth_real", "sixth_real", "version",
        )  # fmt: skip
    for node in surface.nodes():
        fields: list[tuple[str, Any]] = [("number", node.number)]
        if node.place:
            fields += zip("xy", node.place)
        if node.height is not None:
            fields.append(("z", None if node.height == rasters.NO_DATA_REAL else node.height))
        if node.identifier is not None:
            fields.append(("id", node.identifier))
        yield "tinNode", fields
    for triangle in surface.triangles():
        parts = _fields(triangle, "number", "nodes", "edges")
        yield "tinTriangle", [each for each in parts if each[1] is not None]
    for number, word in enumerate(surface.hull().tolist(), 1):
        yield "tinHull", [("number", number), ("value", word)]
    bits = "".join(f"{word & 0xFFFFFFFF:032b}" for word in surface.mask().tolist())
    if bits:
        yield "tinMask", [("bits", bits)]
    yield from _side_texts(dataset)
    yield from _tables(dataset)


def _symbol_set(dataset: datasets.SymbolSet) -> Iterator[Line]:
    yield _head(dataset)
    found: symbols.SymbolSet = dataset.symbols
    if not found.exists:
        return
    yield "symbolSet", [("recordBytes", found.record_bytes), ("recordCount", len(found))]
    for symbol in found:
        name = [] if symbol.name is None else [("name", symbol.name)]
        yield "symbol", [*_fields(symbol, "number", "words"), *name]


def _font(dataset: datasets.Font) -> Iterator[Line]:
    yield _head(dataset)
    records = dataset.records
    if not records.exists:
        return
    yield "font", [("recordCount", len(records))]
    for record in records:
        yield "fontRecord", _fields(record, "number", "reals")


def _one_plot(plot: plots.Plot) -> Iterator[Line]:
    element = [("element", plot.element)] if plot.element else []
    yield "plot", [*_fields(plot, "title", "bounds"), *element]
    for each in plot.records:
        fields = [("r", each.reals), ("i", each.integers), ("text", each.text), *element]
        yield "plotRecord", [*_fields(each, "number", "code"), *fields]


def _plot(dataset: datasets.PlotFile) -> Iterator[Line]:
    yield _head(dataset)
    yield from _one_plot(dataset.plot)


def _map(dataset: datasets.Map) -> Iterator[Line]:
    yield _head(dataset)
    elements = dataset.elements
    yield "map", [("elements", [each.element for each in elements])]
    for each in elements:
        yield from _one_plot(each)


def _info_table(dataset: datasets.InfoTable) -> Iterator[Line]:
    yield _head(dataset)
    table = dataset.rows()
    if table.exists:
        yield from _table(table)


def _text_file(dataset: datasets.TextFile) -> Iterator[Line]:
    yield _head(dataset)
    yield "textFile", [("lines", dataset.lines)]


_DUMPS: dict[type[datasets.Dataset], Callable[[Any], Iterator[Line]]] = {
    datasets.Coverage: _coverage,
    datasets.RasterDataset: _raster,
    datasets.Stack: _stack,
    datasets.Surface: _surface,
    datasets.SymbolSet: _symbol_set,
    datasets.Font: _font,
    datasets.PlotFile: _plot,
    datasets.Map: _map,
    datasets.InfoTable: _info_table,
    datasets.TextFile: _text_file,
}


def dump(dataset: str | os.PathLike[str], output: BinaryIO, kind: str | None = None) -> None:
    """Writes every record of the dataset at a path as JSON Lines, byte for byte as `intake dump`
    does. kind is that of open."""
    with datasets.open(dataset, kind) as opened:
        for name, fields in _DUMPS[type(opened)](opened):
            line = object_of([("class", name), *fields])
            output.write(line.encode("utf-8", "surrogateescape") + b"\n")
