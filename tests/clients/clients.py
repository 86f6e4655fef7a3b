#!/usr/bin/env python3
"""Exports every sample and has it read by programs of others.

    clients.py INTAKE NODE_MODULES SAMPLES_FOLDER...

What they find is held against what intake dump prints, with counts and sums made here.
"""

import json
import math
import os
import subprocess
import sys
import tempfile

import meshes

HERE = os.path.dirname(os.path.abspath(__file__))
KINDS = ("Coverage", "TIN", "Info Datafile")
INTAKE, MODULES, FOLDERS = sys.argv[1], sys.argv[2], sys.argv[3:]
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


def near(one, other, relative=1e-9):
    return math.isclose(one, other, rel_tol=relative, abs_tol=1e-6)


def read(kind, *files):
    done = run("node", os.path.join(HERE, "read.cjs"), kind, *files,
               env={**os.environ, "NODE_PATH": MODULES})
    if done.returncode != 0:
        raise RuntimeError(f"{kind} {files[0]}: {done.stderr}")
    return json.loads(done.stdout)


def dump(dataset):
    records = {}
    for line in run(INTAKE, "dump", dataset).stdout.splitlines():
        record = json.loads(line)
        records.setdefault(record["class"], []).append(record)
    return records


def line_length(points):
    return sum(math.dist(one, other) for one, other in zip(points, points[1:]))


def expected(records):
    """Counts of the layers, and sums of lengths and of numbers, by the dump."""
    layers = {}
    kind = records["dataset"][0]["kind"]
    if kind == "Coverage":
        arcs = records.get("arc", [])
        has_polygons = any(a["source"] == "PAL" for a in records.get("polygon", [])) or any(
            a["leftPolygon"] != a["rightPolygon"] for a in arcs)
        if arcs:
            layers["arcs"] = {"count": len(arcs),
                              "length": sum(line_length(a["vertices"]) for a in arcs),
                              "vertices": sum(len(a["vertices"]) for a in arcs)}
        if "label" in records:
            layers["labels" if has_polygons else "points"] = {"count": len(records["label"])}
        polygons = [p for p in records.get("polygon", []) if p["source"] == "PAL"]
        if polygons:
            layers["polygons"] = {"count": len(polygons) - 1}
        for subclass in {a["subclass"] for a in records.get("annotation", [])}:
            name = "annotation" + ("_" + subclass if subclass else "")
            mine = [a for a in records["annotation"] if a["subclass"] == subclass]
            layers[name] = {"count": len(mine),
                            "columns": {"height": 2 * (sum(a["textHeight"] for a in mine),)}}
            for part, lines in (("lines", [a["points"] for a in mine if a["pointCount"] > 2]),
                                ("leaders", [a["leaderPoints"][:abs(a["leaderCount"])]
                                             for a in mine if abs(a["leaderCount"]) > 1])):
                layers[name.replace("annotation", "annotation_" + part)] = {
                    "count": len(lines), "length": sum(map(line_length, lines)),
                    "vertices": sum(map(len, lines))}
        for subclass in {r["subclass"] for r in records.get("region", [])}:
            layers["regions_" + subclass] = {
                "count": sum(r["subclass"] == subclass for r in records["region"])}
        if "link" in records:
            layers["links"] = {"count": len(records["link"]), "vertices": 2 * len(records["link"]),
                               "length": sum(math.dist(l["from"], l["to"])
                                             for l in records["link"])}
    if kind == "TIN":
        layers["nodes"] = {"count": len(records["tinNode"])}
        layers["triangles"] = {"count": len(records["tinTriangle"])}
    for table in records.get("table", []):
        rows = [r["values"] for r in records.get("record", []) if r["table"] == table["name"]]
        sums = {}
        for item in table["items"]:
            if item["type"] in (4, 5, 6) and len({i["name"] for i in table["items"]}) == len(
                    table["items"]):
                numbers = [r[item["name"]] or 0 for r in rows
                           if not isinstance(r[item["name"]], str)]
                sums[item["name"]] = (sum(numbers), sum(map(abs, numbers)))
        layers[table["name"]] = {"count": len(rows), "columns": sums}
    return layers


def compare(name, wanted, found, what):
    for layer, truth in wanted.items():
        got = found["layers"].get(layer)
        if got is None:
            expect(truth["count"] == 0, name, what, layer, "is missing")
            continue
        expect(got["count"] == truth["count"], name, what, layer, "count", got["count"],
               truth["count"])
        for each in ("length", "vertices"):
            if each in truth and what != "csv":
                # GeoJSON rounds coordinates to seven decimals.
                slack = 0 if what == "gpkg" else 1e-7 * truth["vertices"]
                expect(near(got[each], truth[each]) or abs(got[each] - truth[each]) <= slack,
                       name, what, layer, each, got[each], truth[each])
        # As texts, 32-bit reals have as many digits as tell one from another.
        digits = 1e-12 if what == "gpkg" else 1e-7
        for column, (total, size) in truth.get("columns", {}).items():
            sum_there = got["columns"].get(column, 0)
            expect(abs(sum_there - total) <= digits * size, name, what, layer, column, sum_there,
                   total)


def check_areas(name, layer, precision):
    """Area and perimeter of each polygon against the table that came with it."""
    relative, absolute = {"double": (1e-5, 1e-5), "single": (2e-3, 1e-3)}[precision]
    for area, length, table_area, table_perimeter in layer["polygons"]:
        if not table_area or not table_perimeter:
            continue
        # A coordinate that is rounded moves the area by the length of the line.
        slack = absolute + relative * abs(table_area) + 1e-5 * length
        expect(abs(area - table_area) <= slack, name, "area", area, table_area)
        expect(abs(length - table_perimeter) <= absolute + relative * table_perimeter, name,
               "perimeter", length, table_perimeter)


def sql(file, *statements, spatial=False):
    load = (".load mod_spatialite",) if spatial else ()
    done = run("sqlite3", "-batch", file, *load, *statements)
    return done.stdout.split("\n")[:-1] if done.returncode == 0 else [done.stderr]


def check_database(name, file):
    expect(sql(file, "pragma integrity_check") == ["ok"], name, "integrity_check")
    expect(sql(file, "pragma foreign_key_check") == [], name, "foreign_key_check")
    for layer in sql(file, "select table_name from gpkg_extensions "
                           "where extension_name = 'gpkg_rtree_index'"):
        answer = sql(file, f"select rtreecheck('rtree_{layer}_geom')")
        expect(answer == ["ok"], name, layer, "rtreecheck", answer)
    for layer, kind in (row.split("|") for row in sql(
            file, "select table_name, geometry_type_name from gpkg_geometry_columns")):
        if "POLYGON" not in kind:
            continue
        answer = sql(file, f"select count(*) from \"{layer}\" where geom is not null and "
                           "coalesce(ST_IsValid(GeomFromGPB(geom)), 0) != 1", spatial=True)
        expect(answer[-1:] == ["0"], name, layer, "ST_IsValid", answer)
    for definition in sql(file, "select definition from gpkg_spatial_ref_sys where srs_id > 0"):
        done = run("projinfo", "-q", "-o", "WKT2:2019", definition)
        expect(done.returncode == 0, name, "projinfo", definition, done.stderr)


def check_sample(sample, folder):
    name = os.path.basename(sample)
    dataset = os.path.join(folder, os.path.splitext(name)[0])
    run(INTAKE, "import", "--quiet", sample, dataset)
    shown = run(INTAKE, "show", "--json", dataset)
    if shown.returncode != 0 or json.loads(shown.stdout)["kind"] not in KINDS:
        return
    records = dump(dataset)
    wanted = expected(records)

    file = dataset + ".gpkg"
    done = run(INTAKE, "export", "--json", dataset, file)
    expect(done.returncode in (0, 3), name, done.stderr)
    report = json.loads(done.stdout)
    found = read("gpkg", file)
    expect(found["problems"] == [], name, found["problems"])
    compare(name, wanted, found, "gpkg")
    for layer in report["layers"]:
        expect(found["layers"][layer["name"]]["count"] == layer["features"], name, layer)
    precision = records["dataset"][0].get("precision", "single")
    for layer, sums in found["layers"].items():
        if layer == "polygons" or layer.startswith("regions_"):
            check_areas(name, sums, precision)
    check_database(name, file)
    texts = ["".join(line + "\n" for line in record["lines"])
             for each in ("log", "projection", "metadata") for record in records.get(each, [])]
    if texts:
        kept = json.loads(sql(file, "select json_group_array(metadata) from gpkg_metadata")[0])
        expect(sorted(kept) == sorted(texts), name, "texts", kept, texts)

    ways = [("geojson", "as_is", ("--as-is",)), ("csv", "", ())]
    if not report["system"].startswith("undefined"):
        ways.append(("geojson", "wgs84", ()))
    for kind, way, options in ways:
        out = f"{dataset}_{kind}_{way}"
        done = run(INTAKE, "export", "--json", "--format", kind, *options, dataset, out)
        expect(done.returncode in (0, 3), name, kind, done.stderr)
        # Coordinates that are nowhere on earth are told, and their lengths are not there.
        told = {each["name"] for each in json.loads(done.stdout)["layers"] if each["leftOut"]}
        here = {layer: {key: truth[key] for key in truth
                        if key in ("count", "columns") or layer not in told}
                for layer, truth in wanted.items()}
        files = [os.path.join(out, each) for each in sorted(os.listdir(out))
                 if each.endswith("." + kind)]
        if files:
            found = read(kind, *files)
            compare(name, here, found, kind)
            for layer, sums in found["layers"].items():
                expect(sums["wrong"] == 0, name, layer, "rings go the wrong way round")
                expect(way != "wgs84" or sums["farthest"] <= 180, name, layer, "is off the earth")
    meshes.check(sys.modules[__name__], name, dataset, records)


def main():
    samples = {}
    for folder in FOLDERS:
        for each in sorted(os.listdir(folder)):
            if each.endswith(".e00"):
                samples.setdefault(each, os.path.join(folder, each))
    with tempfile.TemporaryDirectory() as folder:
        for sample in samples.values():
            check_sample(sample, folder)
    for each in problems[:50]:
        print("differs:", each)
    print(f"{passed} passed, {len(problems)} failed")
    return 1 if problems or not passed else 0


sys.exit(main())
