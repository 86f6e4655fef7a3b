#!/usr/bin/python3
"""Exports every grid, lattice and stack among the samples, and some that are made here, and has
the GeoTIFFs read by programs of others.

    rasters.py INTAKE NODE_MODULES SAMPLES_FOLDER...
"""

import json
import math
import os
import subprocess
import sys
import tempfile

import numpy
import tifffile

import cog_layout

HERE = os.path.dirname(os.path.abspath(__file__))
INTAKE, MODULES, FOLDERS = sys.argv[1], sys.argv[2], sys.argv[3:]
MISSING_INTEGER, MISSING_REAL = -2147483647, -float(numpy.finfo(numpy.float32).max)
problems = []
passed = 0


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def expect(truth, *what):
    global passed
    if truth:
        passed += 1
    else:
        problems.append(" ".join(str(each) for each in what))


def node(what, file):
    done = run("node", os.path.join(HERE, "rasters.cjs"), what, file,
               env={**os.environ, "NODE_PATH": MODULES})
    if done.returncode != 0:
        raise RuntimeError(f"{what} {file}: {done.stderr}")
    return json.loads(done.stdout)


def dumped(dataset):
    """The rasters of a dataset: name, header line, rows of cells."""
    found = []
    name = os.path.basename(dataset)
    for line in run(INTAKE, "dump", dataset).stdout.splitlines():
        record = json.loads(line)
        if record["class"] == "dataset":
            name = record["name"]
        elif record["class"] in ("grid", "lattice"):
            found.append((name, record, []))
        elif record["class"] == "row":
            found[-1][2].append(record["cells"])
    return found


def array(rows, no_data):
    return numpy.array([[no_data if cell is None else float(cell) for cell in row]
                        for row in rows], dtype=float)


def same(found, wanted):
    return found.shape == wanted.shape and bool(
        numpy.all((found == wanted) | (numpy.isnan(found) & numpy.isnan(wanted))))


def page_cells(page, plain):
    """None where tifffile needs a package that Debian does not have, which plain tiles do not."""
    try:
        return page.asarray()
    except ValueError as error:
        if "imagecodecs" in str(error) and not plain:
            return None
        raise


def check_raster(name, file, header, rows, band=0, plain=False):
    with tifffile.TiffFile(file) as tiff:
        cells = page_cells(tiff.pages[0], plain)
        no_data = tiff.pages[0].tags.get(42113)
    integers = header.get("cellType") == "integer"
    missing = any(cell is None for row in rows for cell in row)
    told = None if no_data is None else float(no_data.value)
    if missing:
        expect(told in (MISSING_INTEGER, MISSING_REAL) and (integers or told == MISSING_REAL),
               name, "no data", told)
    wanted = array(rows, told)
    if cells is not None:
        cells = cells[band] if cells.ndim == 3 else cells
        expect(same(cells.astype(float), wanted), name, "tifffile: cells differ")

    read = node("cells", file)
    image = read["images"][0]
    there = numpy.array([float(cell) for cell in image["bands"][band]]).reshape(
        image["height"], image["width"])
    expect(same(there, wanted), name, "geotiff: cells differ")
    expect(read["noData"] == told, name, "geotiff: no data", read["noData"])
    lattice = header["class"] == "lattice"
    size = header["spacing"] if lattice else header["cellSize"]
    # Where the first value holds, or the corner of its area.
    origin = ([header["origin"][0], header["origin"][1] + (header["rows"] - 1) * size[1]]
              if lattice else [header["bounds"][0], header["bounds"][3]])
    for found, true in zip(read["origin"][:2] + read["resolution"][:2],
                           origin + [size[0], -size[1]]):
        expect(math.isclose(found, true, rel_tol=1e-12), name, "geotiff: place", found, true)
    expect(read["points"] == lattice, name, "geotiff: points or areas")

    listed = run("listgeo", "-d", file).stdout
    expect(("RasterPixelIsPoint" if lattice else "RasterPixelIsArea") in listed, name, listed)
    info = run("tiffinfo", file)
    expect(info.returncode == 0 and f"Image Width: {header['columns']} Image Length: "
           f"{header['rows']}" in info.stdout, name, info.stdout, info.stderr)


def check_sample(sample, folder):
    name = os.path.basename(sample)
    dataset = os.path.join(folder, os.path.splitext(name)[0])
    run(INTAKE, "import", "--quiet", sample, dataset)
    shown = run(INTAKE, "show", "--json", dataset)
    kind = json.loads(shown.stdout)["kind"] if shown.returncode == 0 else None
    if kind not in ("Grid", "Lattice", "Stack"):
        return 0
    rasters = dumped(dataset)
    if kind == "Stack":
        out = os.path.join(folder, name + "_files")
        done = run(INTAKE, "export", "--format", "geotiff", dataset, out)
        expect(done.returncode == 0, name, done.stderr)
        for member, header, rows in rasters:
            check_raster(f"{name} {member}", os.path.join(out, member + ".tif"), header, rows)
    file = dataset + ".tif"
    for options in (["--compress", "none"], ["--compress", "lzw"], ["--compress", "zstd"], []):
        if kind == "Stack":
            options = options + ["--bands"]
        done = run(INTAKE, "export", "--force", *options, dataset, file)
        expect(done.returncode == 0, name, done.stderr)
        for band, (member, header, rows) in enumerate(rasters):
            check_raster(f"{name} {member} {options}", file, header, rows, band,
                         "none" in options)
    return len(rasters)


def grid(columns, rows, kind, cells, projection=""):
    """An interchange file of a grid of cells of two units whose lower left corner is 10, 20."""
    def real(value):
        return f"{value:21.14E}"
    lines = ["EXP  0 X", "GRD  3", f"{1:10}{1:10} {kind}{real(-9999)}", real(2) + real(2),
             real(10) + real(20), real(10 + 2 * columns) + real(20 + 2 * rows)]
    for row in cells:
        fields = [f"{cell:14d}" if kind == 1 else f"{cell:14.7E}" for cell in row]
        lines += ["".join(fields[at:at + 5]) for at in range(0, columns, 5)]
    return "\n".join(lines + ["EOG"]) + "\n" + projection + "EOS\n"


def halved(cells, no_data, mode):
    """The overview of an array, another way than the writer's."""
    rows, columns = (side + side % 2 for side in cells.shape)
    padded = numpy.full((rows, columns), numpy.nan)
    padded[:cells.shape[0], :cells.shape[1]] = numpy.where(cells == no_data, numpy.nan, cells)
    four = numpy.stack([padded[y::2, x::2] for y in (0, 1) for x in (0, 1)])
    if not mode:
        count = numpy.sum(~numpy.isnan(four), axis=0)
        total = numpy.nansum(four, axis=0)
        mean = numpy.divide(total, count, out=numpy.full(total.shape, numpy.nan), where=count > 0)
        return numpy.where(count > 0, mean, no_data).astype(numpy.float32)
    equal = numpy.sum(four[:, None] == four[None, :], axis=1)
    best = numpy.argmax(equal, axis=0)
    chosen = numpy.take_along_axis(four, best[None], axis=0)[0]
    return numpy.where(numpy.isnan(chosen), no_data, chosen)


def check_large(folder, kind):
    """Overviews, their layout, and reading from afar."""
    columns, rows = 2100, 1101
    y, x = numpy.mgrid[0:rows, 0:columns]
    cells = (x * 7 + y * 13 + x * y % 17) % 300 - 20
    cells[(x + y) % 11 == 0] = -9999
    cells[100:300, 500:900] = -9999
    if kind == 2:
        cells = cells / 8
        cells[cells == -9999 / 8] = -9999
    name = os.path.join(folder, f"large{kind}")
    with open(name + ".e00", "w", encoding="ascii") as file:
        file.write(grid(columns, rows, kind, cells.tolist()))
    done = run(INTAKE, "convert", name + ".e00", name + ".tif")
    expect(done.returncode == 0, name, done.stderr)
    for fault in cog_layout.faults(name + ".tif"):
        expect(False, name, fault)
    expect(len(cog_layout.layout(name + ".tif")) == 4, name, "has four levels")
    no_data = MISSING_INTEGER if kind == 1 else MISSING_REAL
    wanted = numpy.where(cells == -9999, no_data, cells)
    plain = name + "_plain.tif"
    expect(run(INTAKE, "convert", "--compress", "none", name + ".e00", plain).returncode == 0, name)
    images = node("cells", name + ".tif")["images"]
    with tifffile.TiffFile(plain) as tiff:
        for number, (page, image) in enumerate(zip(tiff.pages, images)):
            true = wanted.astype(float)
            expect(same(page_cells(page, True).astype(float), true), name, "tifffile: level", number)
            there = numpy.array([float(cell) for cell in image["bands"][0]])
            expect(same(there.reshape(true.shape), true), name, "geotiff: level", number)
            last, wanted = wanted, halved(wanted, no_data, kind == 1)
    read = node("afar", name + ".tif")
    there = numpy.array([float(each) for each in read["overview"]["bands"][0]])
    expect(same(there.reshape(last.shape), last.astype(float)), name, "the overview from afar")
    window = numpy.where(cells == -9999, no_data, cells)[100:130, 600:700]
    expect(same(numpy.array(read["window"], dtype=float), window.ravel().astype(float)), name,
           "a window from afar")
    expect(not read["whole"] and read["bytes"] < read["size"], name, "all of it was fetched",
           read["bytes"], read["size"])

    flat = name + "_flat.tif"
    expect(run(INTAKE, "convert", "--no-cog", name + ".e00", flat).returncode == 0, name, "--no-cog")
    expect(len(cog_layout.layout(flat)) == 1, name, "--no-cog has overviews")


# Projection texts, and what listgeo makes of the keys.
SYSTEMS = (
    (("ALBERS", "Datum NAD27", "Units FEET"),
     ("29 30 0", "45 30 0", "-96 0 0", "23 0 0", "0", "0"),
     "+proj=aea +lat_1=29.5 +lat_2=45.5 +lat_0=23 +lon_0=-96 +x_0=0 +y_0=0 +ellps=clrk66 "
     "+units=us-ft"),
    (("UTM", "Zone 16", "Datum NAD27", "Units FEET"), (),
     "+proj=tmerc +lat_0=0 +lon_0=-87 +k=0.9996 +x_0=500000 +y_0=0 +ellps=clrk66 +units=us-ft"),
    (("UTM", "Zone 17", "Datum NAD27", "Units METERS"), (),
     "+proj=utm +zone=17 +ellps=clrk66 +units=m"),
    (("LAMBERT", "Spheroid CLARKE1866", "Units METERS"),
     ("33 0 0", "45 0 0", "-96 0 0", "39 0 0", "1000", "0"),
     "+proj=lcc +lat_0=39 +lon_0=-96 +lat_1=33 +lat_2=45 +x_0=1000 +y_0=0 +a=6378206.4 "
     "+b=6356583.8 +units=m"),
    (("LAMBERT_AZIMUTHAL", "Spheroid SPHERE", "Units METERS"),
     ("6370997.0", "-100 0 0", "45 0 0", "0.0", "0.0"),
     "+proj=laea +lat_0=45 +lon_0=-100 +x_0=0 +y_0=0 +a=6370997 +b=6370997 +units=m"),
    (("POLAR", "Spheroid CLARKE1866", "Units METERS"), ("-45 0 0", "71 0 0", "0", "0"),
     "+proj=stere +lat_0=90 +lat_ts=71 +lon_0=-45 +k=1 +x_0=0 +y_0=0 +a=6378206.4 +b=6356583.8 "
     "+units=m"),
    (("MERCATOR", "Spheroid CLARKE1866", "Units METERS"), ("-45 0 0", "30 0 0", "0", "0"),
     "+proj=merc +lat_ts=30 +lon_0=-45 +x_0=0 +y_0=0 +a=6378206.4 +b=6356583.8 +units=m"),
    (("EQUIDISTANT", "Datum NAD83", "Units METERS"),
     ("33 0 0", "45 0 0", "-96 0 0", "39 0 0", "0", "0"),
     "+proj=eqdc +lat_1=33 +lat_2=45 +lat_0=39 +lon_0=-96 +x_0=0 +y_0=0 +ellps=GRS80 +units=m"),
    (("POLYCONIC", "Datum NAD83", "Units METERS"), ("-96 0 0", "39 0 0", "0", "0"),
     "+proj=poly +lat_0=39 +lon_0=-96 +x_0=0 +y_0=0 +ellps=GRS80 +units=m"),
    (("STATEPLANE", "Fipszone 3701", "Datum NAD27", "Units METERS"), (),
     "+proj=lcc +lat_0=40.166666667 +lon_0=-77.75 +lat_1=40.883333333 +lat_2=41.95 "
     "+x_0=609601.219 +y_0=0 +ellps=clrk66 +units=m"),
    (("STATEPLANE", "Fipszone 5001", "Datum NAD27", "Units METERS"), (),
     "+proj=omerc +lat_0=57 +lonc=-133.666666667 +alpha=323.130102361 +k=0.9999 "
     "+x_0=5000000.001 +y_0=-5000000.001 +ellps=clrk66 +units=m"),
)


def terms(definition):
    """The terms of a definition, with numbers as such."""
    found = {}
    for term in definition.split():
        key, _, value = term.partition("=")
        try:
            found[key] = float(value)
        except ValueError:
            found[key] = value
    return found


def check_systems(folder):
    for number, (head, parameters, wanted) in enumerate(SYSTEMS):
        lines = ["Projection " + head[0], *head[1:], "Parameters", *parameters]
        text = "PRJ  2\n" + "".join(line + "\n~\n" for line in lines) + "EOP\n"
        name = os.path.join(folder, f"system{number}")
        with open(name + ".e00", "w", encoding="ascii") as file:
            file.write(grid(2, 2, 1, [[1, 2], [3, 4]], text))
        run(INTAKE, "convert", "--quiet", name + ".e00", name + ".tif")
        listed = run("listgeo", "-proj4", name + ".tif").stdout
        found = [line.split(":", 1)[1] for line in listed.splitlines() if "PROJ.4 Def" in line]
        expect(found and terms(found[0]) == terms(wanted), head, found)


def main():
    samples = {}
    for folder in FOLDERS:
        for each in sorted(os.listdir(folder)):
            if each.endswith(".e00"):
                samples.setdefault(each, os.path.join(folder, each))
    with tempfile.TemporaryDirectory() as folder:
        count = sum(check_sample(sample, folder) for sample in samples.values())
        expect(count > 0, "there are rasters among the samples")
        for kind in (1, 2):
            check_large(folder, kind)
        check_systems(folder)
    for each in problems[:50]:
        print("differs:", each)
    print(f"rasters: {passed} passed, {len(problems)} failed")
    return 1 if problems else 0


sys.exit(main())
