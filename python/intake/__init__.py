"""Rebuilds geographic datasets from interchange files, and reads what was rebuilt.

    import intake

    intake.import_file("roads.e00", "data/ROADS")
    with intake.open("data/ROADS") as roads:
        for arc in roads.arcs:
            print(arc.number, arc.vertices.shape)

Buffers are read-only memoryviews with a type and a shape; numpy.asarray takes them without a copy.
"""

from pathlib import Path

from ._calls import StaleError

from .datasets import (
    Coverage, Damaged, Dataset, Font, InfoTable, Map, NoDataset, PlotFile, RasterDataset, Stack,
    Surface, SymbolSet, TextFile, kinds_of, open,
)  # fmt: skip
from .dumping import dump
from .exporting import ExportFailed, export
from .importing import Imported, ImportFailed, Level, Message, import_file

_stated = Path(__file__).with_name("VERSION")
#: Written where the package is made.
__version__ = _stated.read_text().strip() if _stated.exists() else "0+sources"

__all__ = [
    "Coverage", "Damaged", "Dataset", "ExportFailed", "Font", "ImportFailed", "Imported",
    "InfoTable", "Level", "Map", "Message", "NoDataset", "PlotFile", "RasterDataset", "Stack",
    "StaleError", "Surface", "SymbolSet", "TextFile", "dump", "export", "import_file", "kinds_of",
    "open",
]  # fmt: skip
