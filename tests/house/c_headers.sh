#!/usr/bin/env bash
# Every header of the C edge compiles on its own, as C11.
set -euo pipefail
source=$1 compiler=$2
cd "$source"
headers=$(find include host -name '*.h' -not -path 'host/cpp/*')
[[ -n $headers ]]
printf '%s\n' "$headers" | xargs -P 2 -I {} "$compiler" -std=c11 -Wall -Wextra -Wpedantic -Werror \
    -Wstrict-prototypes -fsyntax-only -I. -Iinclude -x c {}
