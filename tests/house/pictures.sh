#!/usr/bin/env bash
# Draws every sample that has a picture and reads it with an XML parser: the elements have to be
# those of the records.
#
#   pictures.sh SOURCE INTAKE
set -euo pipefail
source=$1
intake=$2
command -v python3 >/dev/null || { echo "python3 is missing"; exit 1; }
space=$(mktemp -d)
trap 'rm -rf "$space"' EXIT

for name in wold wcr wmap jkstk; do
    dataset=$space/${name^^}
    "$intake" import --quiet "$source/samples/$name.e00" "$dataset"
    "$intake" draw "$dataset" "$space/$name.svg"
    "$intake" dump "$dataset" >"$space/$name.jsonl"
done

python3 - "$space" <<'PYTHON'
import json
import sys
import xml.etree.ElementTree as tree

space = sys.argv[1]


def drawn(name):
    return [(element.tag.rpartition('}')[2], element.attrib)
            for element in tree.parse('%s/%s.svg' % (space, name)).iter()]


def count(name, tag, **attributes):
    return sum(each == tag and all(found.get(key.replace('_', '-')) == value
                                   for key, value in attributes.items())
               for each, found in drawn(name))


def records(name, wanted):
    with open('%s/%s.jsonl' % (space, name)) as lines:
        return [o for o in map(json.loads, lines) if wanted(o)]


for name in ('wold', 'wcr'):
    arcs = records(name, lambda o: o['class'] == 'arc' and len(o['vertices']) > 1)
    texts = records(name, lambda o: o['class'] == 'annotation' and o['points'] and o['text'].strip())
    # All but the one around the others.
    polygons = records(name, lambda o: o['class'] == 'polygon' and o['source'] == 'PAL')[1:]
    assert count(name, 'path', stroke_width='0.80', stroke='#465a78') == len(arcs) > 0, name
    assert count(name, 'path', fill_rule='evenodd') == len(polygons) > 0, name
    assert count(name, 'text', fill='#0047ab') == len(texts), name
assert count('jkstk', 'image') == 1
fills = records('wmap', lambda o: o['class'] == 'plotRecord' and o['code'] == 12)
assert count('wmap', 'path') >= len(fills) > 0, len(fills)
PYTHON
