"""Reading: buffers, tables, rasters, damage, and exports."""

import datetime
import json
import subprocess
import sys

import pytest

import intake

numpy = pytest.importorskip("numpy")


def shares_memory(array, buffer):
    return (
        array.__array_interface__["data"][0]
        == numpy.frombuffer(buffer.cast("B"), "u1").__array_interface__["data"][0]
    )


def test_vertices_are_a_buffer_that_numpy_takes_without_a_copy(sample):
    with intake.open(sample("wcr")) as world:
        total = 0.0
        for arc in world.arcs:
            points = numpy.asarray(arc.vertices)
            assert points.dtype == float and points.shape == arc.vertices.shape
            assert shares_memory(points, arc.vertices) and not points.flags.writeable
            total += numpy.hypot(*numpy.diff(points, axis=0).T).sum()
        lengths = world.table("AAT").column("LENGTH")
        assert total == pytest.approx(numpy.asarray(lengths).sum(), rel=1e-4)
        xmin, ymin, xmax, ymax = world.extent
        assert xmin < xmax and ymin < ymax
        assert world.projection and world.log
        found = world.index("ARCS").ask((xmin, ymin, xmax, ymax))
        assert len(found) == len(world.arcs)


def test_columns_and_rows_of_a_table_agree(sample):
    with intake.open(sample("ctry")) as countries:
        table = countries.rows()
        rows = list(table)
        assert len(rows) == len(table) > 0
        numeric = [each.name for each in table.columns if each.type in (4, 5, 6)]
        assert numeric
        for name in numeric:
            at = [each.name for each in table.columns].index(name)
            assert table.column(name).tolist() == [row.stored[at] for row in rows]
        texts = [each.name for each in table.columns if each.type == 2]
        assert all(isinstance(row[texts[0]], str) for row in rows)
        with pytest.raises(TypeError):
            table.column(texts[0])
        with pytest.raises(KeyError):
            table.column("NO SUCH COLUMN")


def test_values_of_texts_are_what_they_say():
    from intake.tables import Column, Row

    def value(kind, raw, stored=None):
        column = Column("A", "", kind, len(raw), 0, 1, 8, 1, False, False, ())
        return Row(1, (raw.decode() if stored is None else stored,), (raw,), (column,))["A"]

    assert value(1, b"19991231") == datetime.date(1999, 12, 31)
    assert value(1, b"19991331") == "19991331" and value(1, b"        ") is None
    assert value(3, b"  42") == 42 and value(3, b" 4x ") == " 4x" and value(3, b"1_0") == "1_0"
    assert value(4, b"    ", 0.0) is None and value(4, b" 0.0", 0.0) == 0.0
    assert value(5, b"\0\0\0\7", 7) == 7


def test_a_raster_comes_whole_by_rows_and_by_windows(sample):
    with intake.open(sample("jkstk")) as stack:
        grids = list(stack.grids())
        assert [grid.name for grid in grids] == stack.members
        raster = grids[0].raster
        whole = numpy.asarray(raster.window())
        assert whole.shape == (raster.rows, raster.columns)
        assert (whole == numpy.vstack([numpy.asarray(row) for row in raster])).all()
        part = raster.window(row=2, column=1, rows=3, columns=4)
        assert (numpy.asarray(part) == whole[2:5, 1:5]).all()
        xmin, ymin, xmax, ymax = raster.box
        assert raster.place(0, 0)[0] == pytest.approx(xmin + raster.cell_size[0] / 2)
        for wrong in (
            {"row": -1},
            {"columns": raster.columns + 1},
            {"row": 1, "rows": raster.rows},
        ):
            with pytest.raises(IndexError):
                raster.window(**wrong)
        for grid in grids:
            grid.close()


def test_a_damaged_file_is_told_at_the_end(sample):
    dataset = sample("wcr")
    arcs = max(dataset.iterdir(), key=lambda file: file.stat().st_size)
    arcs.write_bytes(arcs.read_bytes()[: arcs.stat().st_size // 2])
    with pytest.raises(intake.Damaged, match="damaged"):
        with intake.open(dataset) as world:
            for records in (world.arcs, world.polygons(), world.labels):
                list(records)
            for table in world.tables():
                list(table)
    # An exception on the way is not hidden by it.
    with pytest.raises(LookupError):
        with intake.open(dataset) as world:
            list(world.arcs)
            raise LookupError


def test_what_is_no_dataset_says_so(tmp_path, sample):
    with pytest.raises(intake.NoDataset, match="no dataset"):
        intake.open(tmp_path / "NONE")
    symbols = sample("pcln")
    assert "Lineset File" in intake.kinds_of(symbols)
    with pytest.raises(intake.NoDataset, match="no Coverage"):
        intake.open(symbols, "Coverage")
    with intake.open(symbols, "Lineset File") as lines:
        assert len(list(lines.symbols)) == len(lines.symbols) == 19


def test_exports_go_through_the_program(tmp_path, sample):
    dataset, out = sample("wcr"), tmp_path / "world.geojson"
    told = intake.export(dataset, out, "--layer", "arcs", "--as-is")
    assert any("arcs" in line for line in told)
    with intake.open(dataset) as world:
        assert len(json.loads(out.read_text())["features"]) == len(world.arcs)
    with pytest.raises(intake.ExportFailed, match="no dataset"):
        intake.export(tmp_path / "NONE", tmp_path / "none.geojson")


def test_nothing_needs_numpy(sample):
    script = """
import sys
sys.modules["numpy"] = None
import intake
with intake.open(sys.argv[1]) as world:
    first = next(iter(world.arcs))
    print(first.vertices.format, first.vertices.shape[1], world.table("AAT").column("LENGTH")[0] > 0)
"""
    done = subprocess.run(
        [sys.executable, "-c", script, str(sample("wcr"))], capture_output=True, text=True
    )
    assert done.stdout.split() == ["d", "2", "True"], done.stderr
