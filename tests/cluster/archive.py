"""An archive for the check of the cluster form, and what has to hold of it afterwards.

    archive.py make FOLDER       thousands of small files, some broken
    archive.py hold FOLDER OUT   holds the reports in OUT and the outputs against them
"""
import csv
import glob
import json
import os
import sys

FILES = 3000
ARC = (
    "         1         1         1         2         0         0         2\n"
    " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00\n"
)
END = "        -1         0         0         0         0         0         0\nEOS\n"


def arcs(number):
    return 200 + 10 * (number % 100)


def text(number):
    whole = "EXP  0 X\nARC  2\n" + ARC * arcs(number) + END
    if number % 50 == 7:
        return "no map\n"
    if number % 50 == 8:
        return whole[: len(whole) // 2]
    if number % 50 == 9:
        return ""
    return whole


def expected(number):
    return {7: "failed", 8: "partial", 9: "failed"}.get(number % 50, "whole")


def path(folder, number):
    return os.path.join(folder, str(number % 17), f"map{number}.e00")


def make(folder):
    for number in range(FILES):
        os.makedirs(os.path.dirname(path(folder, number)), exist_ok=True)
        with open(path(folder, number), "w") as stream:
            stream.write(text(number))


def hold(folder, out):
    lines = {}
    reports = {}
    wholes = 0
    for report in glob.glob(os.path.join(out, "report.*.jsonl")):
        for line in open(report):
            entry = json.loads(line)
            assert reports.setdefault(entry["path"], report) == report, f"{entry['path']}: twice"
            wholes += entry["status"] == "whole"
            lines[entry["path"]] = entry
    inputs = {path(folder, number): number for number in range(FILES)}
    assert set(lines) == set(inputs), f"{len(lines)} of {FILES} are told"
    for name, number in inputs.items():
        entry = lines[name]
        assert entry["status"] == expected(number), (name, entry["status"])
        for output in entry["outputs"]:
            layers = {layer["name"]: layer["features"] for layer in output["layers"]}
            with open(os.path.join(output["path"], "arcs.csv"), newline="") as stream:
                rows = len(list(csv.DictReader(stream)))
            assert rows == layers["arcs"], name
            if entry["status"] == "whole":
                assert rows == arcs(number), name
    made = sum(name.endswith(".csv") for _, names, _ in os.walk(out) for name in names)
    told = sum(len(entry["outputs"]) for entry in lines.values())
    assert made == told, f"{made} outputs are there, {told} are told"
    kept = sum(entry["status"] == "whole" for entry in lines.values())
    assert wholes == kept, f"{wholes - kept} were made twice"
    print(f"{FILES} files: {kept} whole, none lost, none twice; {told} outputs are readable")


if sys.argv[1] == "make":
    make(sys.argv[2])
else:
    hold(sys.argv[2], sys.argv[3])
