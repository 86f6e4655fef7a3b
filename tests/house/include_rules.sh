#!/usr/bin/env bash
# Each room of the house includes only what it may. The table: folder, then the files that it may
# include beside its own.
set -euo pipefail
cd "$1"
broken=0
while read -r room allowed; do
    [[ -d $room ]] || continue
    lines=$(grep -rnE '^ *# *include *"' --include='*.h' --include='*.cpp' "$room" || true)
    [[ -n $lines ]] || continue
    if grep -vE "\"($room/|$allowed)" <<<"$lines"; then broken=1; fi
done <<'TABLE'
system            -
host              -
include           -
companions/store  host/|system/
companions/qxbase    host/|system/|companions/store/
companions/qxfeat    host/|companions/store/
companions/qxgridio  host/|companions/store/
datasets          host/
stream            host/
coverage          host/|stream/
tables            host/|stream/
tin               host/|stream/
raster            host/|stream/
symbols           host/|stream/
plots             host/|stream/
entry             host/|system/|stream/|(include/)?intakedl\.h|[a-z]+/sections\.h
containers        -
crs               -
topology          -
formats           crs/reference_system\.h
app               host/|system/|datasets/|formats/|topology/|crs/|containers/|stream/|(include/)?intakedl\.h
TABLE
# Of the program, only packing and unpacking speak to the stream.
if grep -rnE '^ *# *include *"stream/' app | grep -vE '^app/intake/[a-z_]*pack[a-z_]*\.(cpp|h):'; then
    broken=1
fi
# What is stored the program reads through datasets/: these speak to the companions to be told
# messages, to stop an import, to name and write files, and to change a workspace.
if grep -rnE '^ *# *include *"host/qx' app |
    grep -vE '^app/intake/(import|import_run|interrupts|messages|source|check/finding|workspace/changes|workspace/verify|batch/run_job|[a-z_]*pack[a-z_]*)\.(cpp|h):'; then
    broken=1
fi
[[ $broken == 0 ]] || echo "The lines above include what their room may not."
exit $broken
