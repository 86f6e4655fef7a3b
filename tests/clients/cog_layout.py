"""The layout of a TIFF, out of its bytes: what a reader over HTTP relies on.

    layout(path)  gives a list of directories as dictionaries
    faults(path)  gives what is wrong with a file that is to be read from afar, as texts
"""

import struct

TYPES = {1: "B", 2: "B", 3: "H", 4: "I", 6: "b", 7: "B", 8: "h", 9: "i", 11: "f", 12: "d", 13: "I", 16: "Q", 17: "q",
         18: "Q"}
WIDTH, HEIGHT, SUBFILE, TILE_WIDTH, TILE_HEIGHT, OFFSETS, COUNTS = 256, 257, 254, 322, 323, 324, 325


def layout(path):
    with open(path, "rb") as file:
        data = file.read()
    order = "<" if data[:2] == b"II" else ">"
    big = struct.unpack_from(order + "H", data, 2)[0] == 43

    def take(form, at):
        return struct.unpack_from(order + form, data, at)

    word = "Q" if big else "I"
    entry_form, entry_bytes, count_form = ("HHQ", 20, "Q") if big else ("HHI", 12, "H")
    directories = []
    at = take(word, 8 if big else 4)[0]
    while at:
        (count,) = take(count_form, at)
        first = at + struct.calcsize("<" + count_form)
        tags, arrays = {}, []
        for each in range(count):
            place = first + each * entry_bytes
            tag, kind, length = take(entry_form, place)
            form = f"{length}{TYPES[kind]}" if kind != 5 else f"{2 * length}I"
            size = struct.calcsize("<" + form)
            value = place + struct.calcsize("<" + entry_form)
            if size > struct.calcsize(word):
                value = take(word, value)[0]
                arrays.append((value, value + size))
            tags[tag] = take(form, value)
        end = first + count * entry_bytes
        directories.append({"offset": at, "tags": tags,
                            "end": max([end] + [stop for _, stop in arrays])})
        (at,) = take(word, end)
    return directories


def faults(path):
    wrong = []
    levels = layout(path)
    header_end = max(level["end"] for level in levels)
    places = [level["offset"] for level in levels]
    if places != sorted(places):
        wrong.append("directories are not in order")
    last = header_end
    for number in reversed(range(len(levels))):
        tags = levels[number]["tags"]
        if (tags[TILE_WIDTH], tags[TILE_HEIGHT]) != ((512,), (512,)):
            wrong.append(f"tiles of level {number} are not 512 a side")
        if tags[SUBFILE][0] != (1 if number else 0):
            wrong.append(f"level {number} is not marked as what it is")
        for offset, count in zip(tags[OFFSETS], tags[COUNTS]):
            if offset < last or count == 0:
                wrong.append(f"a tile of level {number} is not behind what comes before it")
            last = offset + count
        if number:
            above = levels[number - 1]["tags"]
            for side in (WIDTH, HEIGHT):
                if tags[side][0] != (above[side][0] + 1) // 2:
                    wrong.append(f"level {number} is not half of the one above it")
    smallest = levels[-1]["tags"]
    if max(smallest[WIDTH][0], smallest[HEIGHT][0]) > 512:
        wrong.append("the smallest overview is more than a tile")
    return wrong
