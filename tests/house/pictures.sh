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


def elements(name):
    count = {}
    for element in tree.parse('%s/%s.svg' % (space, name)).iter():
        tag = element.tag.rpartition('}')[2]
        count[tag] = count.get(tag, 0) + 1
    return count


def records(name, wanted):
    with open('%s/%s.jsonl' % (space, name)) as lines:
        return [o for o in map(json.loads, lines) if wanted(o)]


for name in ('wold', 'wcr'):
    drawn = elements(name)
    arcs = records(name, lambda o: o['class'] == 'arc' and len(o['vertices']) > 1)
    texts = records(name, lambda o: o['class'] == 'annotation' and o['points'] and o['text'].strip())
    assert drawn.get('path', 0) == len(arcs) > 0, (name, drawn, len(arcs))
    assert drawn.get('text', 0) == len(texts), (name, drawn, len(texts))
assert elements('jkstk').get('image') == 1, elements('jkstk')
fills = records('wmap', lambda o: o['class'] == 'plotRecord' and o['code'] == 12)
assert elements('wmap').get('path', 0) >= len(fills) > 0, (elements('wmap'), len(fills))
PYTHON
