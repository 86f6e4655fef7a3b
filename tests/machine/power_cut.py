#!/usr/bin/env python3
"""What a power cut leaves of a workspace: power_cut.py PROGRAM RECORDER SAMPLES [--short]

A command runs once with the recorder preloaded, and INTAKE_SYNC=1. For each point between two of its
calls this makes what a disk may hold when power is cut there, each in several ways, and holds that

- the workspace opens, and a command that was repeated there does its work,
- what was imported earlier is as it was,
- each table in the catalogue is as the whole import has it,
- what is removed, renamed or replaced is there as it was before or as it is behind, and
- nothing is missing once the command is done.

Without INTAKE_SYNC some of these states must lose something, or this test would see nothing.

Names last in the order in which they changed: what is behind the last sync of anything may last up to
any point. Bytes last where the file was synced behind them; else they are missing, zeros, or there.
"""
import argparse, concurrent.futures, hashlib, json, os, random, shutil, struct, subprocess, sys
import tempfile

BLOCK = 4096


class File:
    def __init__(self, content=b""):
        self.content = content  # at the beginning
        self.changes = []  # (point, position, bytes) or (point, size, None)
        self.syncs = []  # points

    def at(self, point, how):
        """The content that a disk may hold when power is cut there; how(...) says what became of a
        change that was not synced: "there", "zeros", "missing"."""
        synced = max((each for each in self.syncs if each < point), default=-1)
        content = bytearray(self.content)

        def lengthen(size):
            content.extend(bytes(max(0, size - len(content))))

        for when, where, data in self.changes:
            if when >= point:
                break
            if data is None:
                if when < synced or how() != "missing":
                    del content[where:]
                    lengthen(where)
                continue
            for start in range(0, len(data), BLOCK):
                piece = data[start : start + BLOCK]
                became = "there" if when < synced else how()
                if became != "missing":
                    lengthen(where + start + len(piece))
                if became == "there":
                    content[where + start : where + start + len(piece)] = piece
        return bytes(content)


class Folder:
    def __init__(self):
        self.entries = {}


class Disk:
    """What a record tells of a folder. Entries of folders are changed by (point, folder, name, what
    is there then or None), one or two at once."""

    def __init__(self, root, record):
        self.root_path = root
        self.root = self.load(root)
        self.start = {}
        self.remember(self.root)
        self.names = []  # (point, [(folder, name, what)])
        self.syncs = []  # points at which anything was synced
        self.points = 0
        self.record = record

    def load(self, path):
        if not os.path.isdir(path):
            with open(path, "rb") as file:
                return File(file.read())
        folder = Folder()
        for name in os.listdir(path):
            folder.entries[name] = self.load(os.path.join(path, name))
        return folder

    def remember(self, folder):
        self.start[folder] = dict(folder.entries)
        for each in folder.entries.values():
            if isinstance(each, Folder):
                self.remember(each)

    def find(self, path):
        """The folder that a path is in, and its last part."""
        folder = self.root
        *way, last = os.path.relpath(path, self.root_path).split("/")
        for name in way:
            folder = folder.entries[name]
        return folder, last

    def look(self, path):
        folder, name = self.find(path)
        return self.root if name == "." else folder.entries.get(name)

    def change(self, *entries):
        for folder, name, what in entries:
            folder.entries.pop(name, None)
            if what is not None:
                folder.entries[name] = what
        self.names.append((self.points, entries))

    def play(self):
        """Takes the recorded calls, which are done on the real folder already."""
        with open(self.record, "rb") as file:
            data = file.read()
        files, at = {}, 0
        while at < len(data):
            letter, number, value, one, two = struct.unpack_from("=ciqII", data, at)
            at += 21
            path, other = data[at : at + one].decode(), data[at + one : at + one + two]
            at += one + two
            if letter == b"o":
                there = self.look(path)
                if there is None:
                    there = File()
                    self.change((*self.find(path), there))
                elif value & os.O_TRUNC:
                    there.changes.append((self.points, 0, None))
                files[number] = there
            elif letter == b"c":
                del files[number]
                continue
            elif letter == b"w":
                files[number].changes.append((self.points, value, other))
            elif letter == b"t":
                files[number].changes.append((self.points, value, None))
            elif letter == b"s":
                if isinstance(files[number], File):
                    files[number].syncs.append(self.points)
                self.syncs.append(self.points)
            elif letter == b"m":
                folder = Folder()
                self.start[folder] = {}
                self.change((*self.find(path), folder))
            elif letter == b"u":
                self.change((*self.find(path), None))
            elif letter == b"r":
                moved = self.look(path)
                self.change((*self.find(path), None), (*self.find(other.decode()), moved))
            self.points += 1

    def state(self, point, names, how):
        """The files and folders, by their paths, that a disk may hold. names(last, there) gives how
        many changes of names have lasted: between those that must have and all."""
        synced = max((each for each in self.syncs if each < point), default=-1)
        must = sum(1 for when, _ in self.names if when < synced)
        lasted = names(must, sum(1 for when, _ in self.names if when < point))
        entries = {folder: dict(start) for folder, start in self.start.items()}
        for _, change in self.names[:lasted]:
            for folder, name, what in change:
                entries[folder].pop(name, None)
                if what is not None:
                    entries[folder][name] = what
        found = {}

        def gather(folder, path):
            for name, what in sorted(entries[folder].items()):
                inside = os.path.join(path, name)
                if isinstance(what, File):
                    found[inside] = what.at(point, how)
                else:
                    found[inside] = None
                    gather(what, inside)

        gather(self.root, "")
        return found

    def states(self, point, mixes, seed):
        least = lambda must, there: must
        most = lambda must, there: there
        yield self.state(point, least, lambda: "missing")
        yield self.state(point, most, lambda: "missing")
        yield self.state(point, most, lambda: "zeros")
        yield self.state(point, most, lambda: "there")
        for mix in range(mixes):
            chance = random.Random(f"{seed} {point} {mix}")
            yield self.state(
                point, chance.randint, lambda: chance.choice(("there", "zeros", "missing"))
            )


def store(found, path):
    os.makedirs(path)
    for inside, content in found.items():
        if content is None:
            os.mkdir(os.path.join(path, inside))
        else:
            with open(os.path.join(path, inside), "wb") as file:
                file.write(content)


class Trial:
    """A workspace in which some files are imported, and a command that changes it."""

    def __init__(self, intake, recorder, work, setup, command, sync=True):
        self.intake, self.work, self.sync = intake, work, sync
        self.command = command
        workspace = os.path.join(work, "workspace")
        os.makedirs(workspace)
        for file, name in setup:
            self.run(workspace, "import", "--quiet", file, name, check=True)
        self.before = self.dumps(workspace)
        record = os.path.join(work, "record")
        self.disk = Disk(workspace, record)
        settings = {"LD_PRELOAD": recorder, "INTAKE_RECORD": record}
        settings |= {"INTAKE_RECORD_BELOW": workspace + "/", "INTAKE_SYNC": "1" if sync else "0"}
        self.run(workspace, *command, check=True, settings=settings)
        self.disk.play()
        real = {path: each for path, each in self.disk.state(
            self.disk.points, lambda must, there: there, lambda: "there").items()}
        again = Disk(workspace, record)
        if again.state(0, lambda must, there: there, lambda: "there") != real:
            raise AssertionError("the record is not all that was done")
        self.after = self.dumps(workspace)
        self.seen = set()
        self.losses = []

    def run(self, workspace, *arguments, check=False, settings={}):
        """Names of datasets stand behind an "@"."""
        line = [each.replace("@", workspace + "/") for each in arguments]
        done = subprocess.run([self.intake, *line], capture_output=True, stdin=subprocess.DEVNULL,
                              env={**os.environ, **settings})
        if check and done.returncode != 0:
            raise AssertionError(f"{line}: {done.returncode}, {done.stderr.decode()}")
        return done

    def dumps(self, workspace):
        """What is in the workspace by name, as it is dumped, without its path."""
        listed = json.loads(self.run(workspace, "list", "--json", workspace, check=True).stdout)
        names = [each["name"] for each in listed["datasets"] + listed["tables"]]
        return {name: self.run(workspace, "dump", "@" + name).stdout for name in names}

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
            loss = job.result()
            if loss:
                self.losses.append(loss)

    def try_state(self, place, found, last, again):
        try:
            store(found, place)
            self.judge(place, last)
            if again and self.command[0] == "import" and "--again" not in self.command:
                self.repeat(place)
        except (AssertionError, ValueError, KeyError, struct.error) as error:
            return f"{os.path.basename(place)}: {type(error).__name__} {error}"
        finally:
            shutil.rmtree(place, ignore_errors=True)
        return None

    def judge(self, workspace, last):
        dumps = self.dumps(workspace)
        if os.path.exists(os.path.join(workspace, ".intake")):
            raise AssertionError("what was begun stays begun")
        if last:
            same(dumps, self.after)
        elif self.command[:2] != ("import", "--quiet"):
            if dumps != self.before:
                same(dumps, self.after)
        else:
            same({name: dumps[name] for name in self.before}, self.before)
            whole = tables_in(self.after)
            there = tables_in(dumps)
            for name in listed_tables(workspace):
                if name not in there or there[name] != whole[name]:
                    raise AssertionError(f"table {name} is listed and not whole")

    def repeat(self, workspace):
        self.run(workspace, self.command[0], "--replace", *self.command[1:], check=True)
        same(self.dumps(workspace), self.after)


def same(dumps, wanted):
    for name in sorted(dumps.keys() | wanted.keys()):
        if dumps.get(name) != wanted.get(name):
            what = "is gone" if name not in dumps else "is there" if name not in wanted else "differs"
            raise AssertionError(f"{name} {what}")


def tables_in(dumps):
    tables = {}
    for line in b"".join(dumps.values()).splitlines():
        each = json.loads(line.decode("latin-1"))
        if each["class"] in ("table", "record"):
            tables.setdefault(each.get("table", each.get("name")), []).append(line)
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


def trials(seeds, samples, more, short):
    """What is imported before, and the command: each kind of file, and each change."""
    seed = lambda name: os.path.join(seeds, name + ".e00")
    sample = lambda name: os.path.join(samples, name + ".e00")
    earlier = [(seed("ifo_two"), "@older"), (seed("returns"), "@map")]
    table, cover = seed("ifo_wide_level1"), seed("tx7")
    yield "table", earlier, ("import", "--quiet", seed("ifo_two"), "@new")
    yield "coverage", earlier, ("import", "--quiet", seed("returns"), "@new")
    if short:
        return
    for kind in ("tx7", "tx6", "regions", "rpl", "sides", "polygons", "grd", "lat_wide", "stk_tables",
                 "tin_whole", "tin_table", "plt", "txt_oldest", "fnt", "map", "set_cl6", "metadata"):
        yield kind, earlier, ("import", "--quiet", seed(kind), "@new")
    for kind in ("ctry", "wcr", "wold", "jkstk", "pcln", "pctx52", "pfont", "ptext", "wmap"):
        yield kind, earlier, ("import", "--quiet", sample(kind), "@new")
    for kind in ("wtab1", "jkint", "jklat", "jktin", "wplot", "wside", "worldd"):
        if more:
            yield kind, earlier, ("import", "--quiet", os.path.join(more, kind + ".e00"), "@new")
    stack = [*earlier, (seed("stk_tables"), "@stk")]
    yield "replace", earlier, ("import", "--replace", "--quiet", sample("wcr"), "@map")
    yield "replace a table", earlier, ("import", "--replace", "--quiet", sample("ctry"), "@older")
    yield "replace a stack", stack, ("import", "--replace", "--quiet", seed("stk"), "@stk")
    yield "remove", earlier, ("remove", "--yes", "@map")
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
    failed, states, lost = False, 0, 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for sync in (True, False):
            for name, setup, command in trials(
                seeds, os.path.join(options.source, "samples"), more, options.short or not sync
            ):
                if options.only and options.only != name and sync:
                    continue
                with tempfile.TemporaryDirectory(dir=fast) as work:
                    trial = Trial(options.intake, options.recorder, work, setup, command, sync)
                    count = trial.disk.points
                    points = range(count + 1)
                    if count >= options.points:
                        points = random.Random(options.seed).sample(points[:-1], options.points - 1)
                        points.append(count)
                    trial.try_states(pool, points, 2, options.seed)
                how = "synced" if sync else "not synced"
                print(f"{name}, {how}: {count} calls, {len(trial.seen)} states at {len(points)} points,"
                      f" {len(trial.losses)} with a loss", flush=True)
                if sync:
                    states += len(trial.seen)
                    failed = failed or bool(trial.losses)
                    for loss in trial.losses[:10]:
                        print("   ", loss)
                else:
                    lost += len(trial.losses)
    print(f"{states} states, and {lost} with a loss where nothing is synced")
    if lost == 0:
        print("nothing is lost without a sync: this test sees nothing")
    return 1 if failed or lost == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
