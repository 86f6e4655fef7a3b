"""Surfaces in formats of surfaces: read by assimp and by the validator of glTF, and triangle for
triangle held against what intake dump prints."""

import json
import os
import re
import struct


def expected(records):
    """Nodes with a height by number, the triangles between them that the mask shows, and the hull."""
    nodes = {n["number"]: ((n["x"], n["y"], n["z"]), n.get("id")) for n in records["tinNode"]
             if n["z"] is not None}
    bits = records["tinMask"][0]["bits"] if "tinMask" in records else ""
    hides = "1" in bits
    triangles = [t["nodes"] for t in records["tinTriangle"]
                 if (not hides or bits[t["number"] - 1:t["number"]] == "1") and all(n in nodes for n in t["nodes"])]
    hull = [h["value"] for h in records.get("tinHull", [])]
    edges = [(a, b) for a, b in zip(hull, hull[1:] + hull[:1]) if a in nodes and b in nodes]
    return nodes, triangles, edges


def counter_clockwise(corners):
    a, b, c = corners
    clockwise = (b[0] - a[0]) * (c[1] - a[1]) < (c[0] - a[0]) * (b[1] - a[1])
    return [a, c, b] if clockwise else corners


def turned(corners):
    """From the least corner on, counter-clockwise."""
    corners = counter_clockwise(corners)
    first = corners.index(min(corners))
    return tuple(corners[first:] + corners[:first])


SIZES = {"double": "d", "int": "i", "uchar": "B"}


def read_ply(file):
    """The rows of each element, lists as tuples."""
    with open(file, "rb") as stream:
        data = stream.read()
    head, _, body = data.partition(b"end_header\n")
    lines = head.decode().splitlines()
    elements = []
    for line in lines:
        words = line.split()
        if words[0] == "element":
            elements.append((words[1], int(words[2]), []))
        elif words[0] == "property":
            elements[-1][2].append(words[1:])
    ascii_words = iter(body.split()) if "ascii" in lines[1] else None
    at = 0

    def number(kind):
        nonlocal at
        if ascii_words is not None:
            word = next(ascii_words)
            return float(word) if kind == "double" else int(word)
        value, = struct.unpack_from("<" + SIZES[kind], body, at)
        at += struct.calcsize(SIZES[kind])
        return value

    found = {}
    for name, count, properties in elements:
        rows = found[name] = []
        for _ in range(count):
            rows.append([tuple(number(p[2]) for _ in range(number(p[1]))) if p[0] == "list"
                         else number(p[0]) for p in properties])
    return found, lines, (next(ascii_words, None) is None if ascii_words else at == len(body))


def read_glb(file):
    with open(file, "rb") as stream:
        data = stream.read()
    length, = struct.unpack_from("<I", data, 12)
    scene = json.loads(data[20:20 + length])
    binary = data[28 + length:]

    def accessor(number, form, width):
        view = scene["bufferViews"][scene["accessors"][number]["bufferView"]]
        flat = struct.unpack_from(f"<{view['byteLength'] // 4}{form}", binary, view["byteOffset"])
        return [flat[at:at + width] for at in range(0, len(flat), width)]

    primitive = scene["meshes"][0]["primitives"][0]
    return (scene["nodes"][0]["extras"]["origin"],
            accessor(primitive["attributes"]["POSITION"], "f", 3),
            accessor(primitive["indices"], "I", 3))


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def check(clients, name, dataset, records):
    if "tinTriangle" not in records:
        return
    expect = clients.expect
    nodes, triangles, hull = expected(records)
    truth = sorted(turned([nodes[n][0] for n in t]) for t in triangles)

    for options in ((), ("--ascii",)):
        file = dataset + ".ply"
        done = clients.run(clients.INTAKE, "export", "--force", *options, dataset, file)
        expect(done.returncode in (0, 3), name, "ply", done.stderr)
        found, lines, whole = read_ply(file)
        vertices = [tuple(row[:3]) for row in found["vertex"]]
        expect(whole, name, "ply has its bytes", options)
        expect([list(nodes[n][0]) + [nodes[n][1]] * (nodes[n][1] is not None)
                for n in sorted(nodes)] == found["vertex"], name, "ply vertices", options)
        faces = [[vertices[at] for at in row[0]] for row in found["face"]]
        expect(all(counter_clockwise(each) == each for each in faces), name,
               "ply faces go counter-clockwise", options)
        expect(sorted(map(turned, faces)) == truth, name, "ply triangles", options)
        expect([(vertices[a], vertices[b]) for a, b, breaks in found["edge"] if not breaks] ==
               [(nodes[a][0], nodes[b][0]) for a, b in hull], name, "ply hull", options)
        expect(any(line.startswith("comment heights: Zunits") for line in lines), name, "Zunits")
        told = clients.run("assimp", "info", file).stdout
        counts = dict(re.findall(r"^(Vertices|Faces): +(\d+)", told, re.M))
        expect(counts == {"Vertices": str(len(nodes)), "Faces": str(len(truth))}, name, "assimp",
               options, counts)

    file = dataset + ".glb"
    done = clients.run(clients.INTAKE, "export", dataset, file)
    expect(done.returncode in (0, 3), name, "glb", done.stderr)
    origin, positions, indices = read_glb(file)
    near = {place: tuple(single(value - start) for value, start in zip(place, origin))
            for place, _ in nodes.values()}
    expect(sorted(positions) == sorted(near[nodes[n][0]] for n in nodes), name, "glb positions")
    expect([tuple(positions[at] for at in each) for each in indices] ==
           [tuple(near[place] for place in corners) for corners in
            (counter_clockwise([nodes[n][0] for n in t]) for t in triangles)],
           name, "glb triangles")
    script = os.path.join(os.path.dirname(os.path.abspath(__file__)), "meshes.cjs")
    done = clients.run("node", script, file, env={**os.environ, "NODE_PATH": clients.MODULES})
    expect(done.returncode == 0, name, done.stderr)
    if done.returncode == 0:
        found = json.loads(done.stdout)[file]
        expect(found["issues"] == [], name, "glTF", found["issues"])
        expect(found["triangles"] == len(truth), name, "glTF triangles", found["triangles"])
