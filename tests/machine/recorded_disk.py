"""What a disk may hold when power is cut between two calls of a recorded command (recorder.c).

Names last in the order in which they changed: those behind the last sync of anything may last up to
any point. Bytes last where the file was synced behind them; else they are missing, zeros, or there.
"""
import os
import random
import struct

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
        self.entries = {}  # at the end
        self.syncs = []


class Disk:
    """A folder as it is, and what a record tells of it."""

    def __init__(self, root):
        self.root_path = root
        self.root = self.load(root)
        self.start = {}
        self.remember(self.root)
        self.names = []  # (point, [(folder, name, what)])
        self.syncs = []  # points at which anything was synced
        self.points = 0

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

    def play(self, record):
        """Takes the recorded calls."""
        with open(record, "rb") as file:
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

    def changes_at(self, point):
        """How many changes of names there are, and how many of them must last."""
        synced = max((each for each in self.syncs if each < point), default=-1)
        must = sum(1 for when, _ in self.names if when < synced)
        return must, sum(1 for when, _ in self.names if when < point)

    def state(self, point, lasted, how):
        """The files and folders, by their paths, that a disk may hold of which these changes of names
        have lasted."""
        entries = {folder: dict(start) for folder, start in self.start.items()}
        for _, change in lasted:
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

    def all_there(self):
        return self.state(self.points, self.names, lambda: "there")

    def first_with(self, name):
        """What is there at the first point at which there is a file of this name."""
        for point in range(self.points):
            found = self.state(point, self.names[: self.changes_at(point)[1]], lambda: "there")
            if any(os.path.basename(path) == name for path in found):
                return found
        raise AssertionError(f"no {name} was written")

    def states(self, point, mixes, seed):
        """What a disk may hold at a point, in several ways."""
        must, there = self.changes_at(point)
        yield self.state(point, self.names[:must], lambda: "missing")
        for how in ("missing", "zeros", "there"):
            yield self.state(point, self.names[:there], lambda how=how: how)
        # Names of a folder that was not synced itself are promised by few file systems only.
        synced = [
            (when, change)
            for when, change in self.names[:there]
            if any(when < each < point for folder, _, _ in change for each in folder.syncs)
        ]
        yield self.state(point, synced, lambda: "missing")
        for mix in range(mixes):
            chance = random.Random(f"{seed} {point} {mix}")
            lasted = self.names[: chance.randint(must, there)]
            yield self.state(point, lasted, lambda: chance.choice(("there", "zeros", "missing")))


def store(found, path):
    os.makedirs(path)
    for inside, content in found.items():
        if content is None:
            os.mkdir(os.path.join(path, inside))
        else:
            with open(os.path.join(path, inside), "wb") as file:
                file.write(content)
