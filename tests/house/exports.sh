#!/usr/bin/env bash
# The importer exports ImportFile and nothing else; a companion just what its headers declare.
set -euo pipefail
source=$1 libraries=$2
exported() {
    nm -D --defined-only "$libraries/lib$1.so" |
        awk '$2 ~ /[TBDR]/ && $3 !~ /^__odr_asan/ { print $3 }' | sort
}
# The name before the bracket of a function, or before the semicolon of a datum; comments are out.
declared() {
    cat "$source/host/$1.h" "$source"/host/"$1"/*.h | tr '\n' ' ' |
        sed 's,/\*[^*]*\*\+\([^/*][^*]*\*\+\)*/,,g' |
        grep -oE 'QX_API [^(;]*[(;]' | sed 's/ *[(;]$//; s/.*[ *]//' | sort
}
diff <(echo ImportFile) <(exported intakedl)
for companion in qxbase qxfeat qxgridio; do
    [[ -n $(declared $companion) ]]
    diff --label "declared in host/$companion" --label "exported by lib$companion" -u \
        <(declared $companion) <(exported $companion)
done
