#!/usr/bin/env python3
"""What a power cut leaves of a workspace: power_cut.py PROGRAM RECORDER SAMPLES [--short]

A command runs once with the recorder preloaded, and with --sync or INTAKE_SYNC=1. For each point
between two of its calls this makes what a disk may hold when power is cut there, each in several
ways, and holds that

- the workspace opens, and a command that was repeated there does its work,
- what was imported earlier is as it was,
- each table in the catalogue is as the whole import has it,
- what is removed, renamed or replaced is there as it was before or as it is behind, and
- nothing is missing once the command is done.

Without a sync some of these states must lose something of what the command changes, or this test
would see nothing, but none anything else. A dataset whose import was cut may be told of as damaged,
until it is imported again.
"""
import argparse
import concurrent.futures
import hashlib
import json
import os
import random
import shutil
import struct
import subprocess
import sys
import tempfile

from recorded_disk import Disk, store


class Trial:
    """A workspace in which some files are imported, and a command that changes it."""

    def __init__(self, intake, recorder, work, setup, command, sync):
        self.intake, self.recorder, self.work = intake, recorder, work
        self.command, self.seen, self.losses, self.gone = command, set(), [], []
        # The grids of a stack that was cut are in the way of another.
        self.repeats = command[:2] == ("import", "--quiet") and "stk" not in command[2]
        workspace = os.path.join(work, "workspace")
        os.makedirs(workspace)
        for file, name in setup:
            self.run(workspace, "import", "--quiet", file, name, check=True)
        self.before = self.dumps(workspace)
        if command[0] == "finish":
            # What was begun with a sync lasts also where the next command comes without one.
            begun = self.record(workspace, command[1:], sync)
            workspace = os.path.join(work, "begun")
            store(begun.first_with("journal"), workspace)
            command, sync = ("list", "@"), False
        self.disk = self.record(workspace, command, sync)
        self.whole = Disk(workspace).all_there()
        if self.disk.all_there() != self.whole:
            raise AssertionError("the record is not all that was done")
        self.after = self.dumps(workspace)

    def record(self, workspace, command, sync):
        """Runs a command. What it changes, and what was there before."""
        disk = Disk(workspace)
        with tempfile.NamedTemporaryFile() as file:
            settings = {"LD_PRELOAD": self.recorder, "INTAKE_RECORD": file.name}
            settings |= {"INTAKE_RECORD_BELOW": workspace}
            if sync and command[0] == "import":
                command = (*command, "--sync")
            elif sync:
                settings |= {"INTAKE_SYNC": "1"}
            self.run(workspace, *command, check=True, settings=settings)
            disk.play(file.name)
        return disk

    def run(self, workspace, *arguments, check=False, settings={}):
        """Names of datasets stand behind an "@"."""
        line = [each.replace("@", workspace + "/") for each in arguments]
        done = subprocess.run(
            [self.intake, *line], capture_output=True, input=b"", env=os.environ | settings
        )
        if check and done.returncode != 0:
            raise AssertionError(f"{line}: {done.returncode}, {done.stderr.decode()}")
        return done

    def dumps(self, workspace, damaged=()):
        """What is in the workspace by name, as it is dumped. Of datasets in the middle of which
        something was cut it may be told that they are damaged."""
        listed = self.run(workspace, "list", "--json", workspace)
        for line in listed.stderr.decode().splitlines():
            if not line.startswith(tuple(f"error: {workspace}/{name}" for name in damaged)):
                raise AssertionError(f"list: {line}")
        if listed.returncode != 0 and not listed.stderr:
            raise AssertionError(f"list: {listed.returncode}")
        there = json.loads(listed.stdout)
        dumps = {}
        for each in there["datasets"] + there["tables"]:
            done = self.run(workspace, "dump", "@" + each["name"])
            dumps[each["name"]] = (done.returncode, done.stdout)
        return dumps

    def try_states(self, pool, points, mixes, seed):
        """Tries all states at these points, and keeps what is lost in losses."""
        jobs = []
        for point in points:
            for variant, found in enumerate(self.disk.states(point, mixes, seed)):
                last = point == self.disk.points
                key = hashlib.sha256(repr((last, sorted(found.items()))).encode()).digest()
                if key in self.seen:
                    continue
                self.seen.add(key)
                place = os.path.join(self.work, f"{point}.{variant}")
                jobs.append(pool.submit(self.try_state, place, found, last, key[0] % 3 == 0))
        for job in jobs:
            lost, gone = job.result()
            self.losses += lost
            self.gone += gone

    def try_state(self, place, found, last, again):
        """What is lost of what the command changes, and what is gone that it leaves alone."""
        lost, gone = [], []
        try:
            store(found, place)
            self.hold(self.judge, lost, place, found, last)
            if again and self.repeats and not lost:
                self.hold(self.repeat, lost, place)
            self.hold(self.judge_others, gone, place)
        finally:
            shutil.rmtree(place, ignore_errors=True)
        return lost, gone

    def hold(self, judge, faults, place, *arguments):
        try:
            judge(place, *arguments)
        except (AssertionError, ValueError, KeyError, struct.error) as error:
            faults.append(f"{os.path.basename(place)}: {type(error).__name__} {error}")

    def judge_others(self, workspace):
        for name, dump in self.before.items():
            if self.after.get(name) != dump:
                continue
            done = self.run(workspace, "dump", "@" + name)
            if (done.returncode, done.stdout) != dump:
                raise AssertionError(f"{name} is gone with it: {done.stderr.decode()}")

    def judge(self, workspace, found, last):
        is_import = self.command[:2] == ("import", "--quiet")
        # No dump shows an index of an item; a definition that tells of one is written behind it.
        for path, content in self.whole.items():
            definition = path.split(".index")[0] + ".def"
            if ".index" not in path or not (is_import or last):
                continue
            if found.get(definition) == self.whole[definition] and found.get(path) != content:
                raise AssertionError(f"{path} is told of and not whole")
        new = self.after.keys() - self.before.keys() if is_import and not last else ()
        dumps = self.dumps(workspace, new)
        if os.path.exists(os.path.join(workspace, ".intake")):
            raise AssertionError("what was begun stays begun")
        if not is_import or last:
            same(dumps, self.before if dumps == self.before and not last else self.after)
            return
        same({name: dumps.get(name) for name in self.before}, self.before)
        whole, there = tables_in(self.after), tables_in(dumps)
        for name in listed_tables(workspace):
            if there.get(name) != whole[name]:
                raise AssertionError(f"table {name} is listed and not whole")

    def repeat(self, workspace):
        import_again = ("import", "--replace", *self.command[1:])
        if self.run(workspace, *import_again).returncode != 0:
            # What was not begun well enough to be a dataset is in the way until it is removed.
            left = os.path.join(workspace, "new")
            os.remove(left) if os.path.isfile(left) else shutil.rmtree(left, ignore_errors=True)
            self.run(workspace, *import_again, check=True)
        same(self.dumps(workspace), self.after)


def same(dumps, wanted):
    for name in sorted(dumps.keys() | wanted.keys()):
        if dumps.get(name) != wanted.get(name):
            what = (
                "is gone" if name not in dumps else "is there" if name not in wanted else "differs"
            )
            raise AssertionError(f"{name} {what}")


def tables_in(dumps):
    tables = {}
    for line in b"".join(text for _, text in dumps.values()).splitlines():
        each = json.loads(line.decode("latin-1"))
        if each["class"] in ("table", "record"):
            name = each.get("table", each.get("name"))
            # An item is indexed behind the import of the table.
            tables.setdefault(name, []).append(line.replace(b'"indexed":true', b'"indexed":false'))
    return tables


def listed_tables(workspace):
    """What the catalogue names, read by its description (docs/workspace-format.md)."""
    path = os.path.join(workspace, "info", "catalog")
    if not os.path.exists(path):
        return []
    with open(path, "rb") as file:
        data = file.read()
    if data[:8] != b"QXTABLES":
        raise AssertionError("the catalogue is none")
    names, at = {}, 20
    while at + 8 <= len(data):
        number, length = struct.unpack_from(">ii", data, at)
        name = data[at + 8 : at + 8 + length].decode("latin-1")
        at += 8 + length
        if at > len(data) or number == 0:
            break
        if number < 0:
            names.pop(name, None)
        elif name:
            names[name] = number
    return list(names)


def trials(seeds, samples, more, short, kinds):
    """What is imported before, and the command: a file of each kind, and each change."""
    seed = lambda name: os.path.join(seeds, name + ".e00")
    sample = lambda name: os.path.join(samples, name + ".e00")
    earlier = [(seed("ifo_two"), "@older"), (seed("returns"), "@map")]
    yield "table", earlier, ("import", "--quiet", seed("ifo_two"), "@new")
    yield "coverage", earlier, ("import", "--quiet", seed("metadata"), "@new")
    if short:
        return
    small = "tx7 tx6 regions rpl sides polygons grd lat_wide stk_tables tin_whole tin_table plt"
    files = [seed(kind) for kind in (small + " txt_oldest fnt map set_cl6").split()]
    files += map(sample, "ctry wcr wold jkstk pcln pctx52 pfont ptext wmap".split())
    if more:
        names = "wtab1 jkint jklat jktin wplot wside worldd".split()
        files += [os.path.join(more, name + ".e00") for name in names]
    for file in files if kinds else []:
        yield os.path.basename(file), earlier, ("import", "--quiet", file, "@new")
    yield "the first of a workspace", [], ("import", "--quiet", seed("returns"), "@new")
    stack = [*earlier, (seed("stk_tables"), "@stk")]
    yield "replace", earlier, ("import", "--replace", "--quiet", sample("wcr"), "@map")
    yield "replace a table", earlier, ("import", "--replace", "--quiet", sample("ctry"), "@older")
    yield "replace a stack", stack, ("import", "--replace", "--quiet", seed("stk"), "@stk")
    yield "remove", earlier, ("remove", "--yes", "@map")
    yield "finish a removal", earlier, ("finish", "remove", "--yes", "@map")
    yield "finish another name", earlier, ("finish", "rename", "@map", "other")
    yield "remove a table", earlier, ("remove", "--yes", "@older")
    yield "rename", earlier, ("rename", "@map", "other")
    yield "rename a table", earlier, ("rename", "@older", "other")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("intake")
    parser.add_argument("recorder")
    parser.add_argument("source", help="the folder of the sources")
    parser.add_argument("--samples", help="a folder of further samples")
    parser.add_argument("--short", action="store_true", help="two small imports only")
    parser.add_argument("--only", help="one trial")
    parser.add_argument("--points", type=int, default=60, help="at most so many for each trial")
    parser.add_argument("--seed", default="1")
    options = parser.parse_args()
    seeds = os.path.join(options.source, "fuzz", "seeds", "import")
    more = options.samples if options.samples and os.path.isdir(options.samples) else None
    fast = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    samples = os.path.join(options.source, "samples")
    states, lost, gone = {True: 0, False: 0}, {True: 0, False: 0}, 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for sync in (True, False):
            for name, setup, command in trials(seeds, samples, more, options.short, sync):
                if options.only not in (None, name):
                    continue
                with tempfile.TemporaryDirectory(dir=fast) as work:
                    trial = Trial(options.intake, options.recorder, work, setup, command, sync)
                    mixes = 1 if options.short else 2
                    trial.try_states(pool, points_of(trial.disk, options), mixes, options.seed)
                states[sync] += len(trial.seen)
                lost[sync] += len(trial.losses)
                gone += len(trial.gone)
                how = "synced" if sync else "not synced"
                outcome = f"{len(trial.seen)} states, {len(trial.losses)} with a loss"
                print(f"{name}, {how}: {trial.disk.points} calls, {outcome}", flush=True)
                for loss in (trial.losses if sync else [])[:10] + trial.gone[:10]:
                    print("   ", loss)
    print(f"synced: {states[True]} states, {lost[True]} with a loss", end="; ")
    print(f"not synced: {states[False]} states, {lost[False]} with a loss", end="; ")
    print(f"{gone} where something is gone that the command leaves alone")
    if lost[False] == 0:
        print("Nothing is lost without a sync: this test sees nothing.")
    return 0 if lost[True] == 0 and lost[False] > 0 and gone == 0 else 1


def points_of(disk, options):
    """All, or a sample and the end."""
    points = range(disk.points)
    if disk.points >= options.points:
        points = random.Random(options.seed).sample(points, options.points - 1)
    return [*points, disk.points]


if __name__ == "__main__":
    sys.exit(main())
