# Sourced by the scripts beside it: where the project is, its version and its date.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
. cmake/prerequisites.sh

# The version stands in one place.
version=$(sed -n 's/^project(intake VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
# What is made twice is the same: files have the date of the version's change log.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH-$(date -u -d "$(sed -n "s/^## $version (\(.*\))$/\1/p" CHANGELOG.md)" +%s)}
export SOURCE_DATE_EPOCH

fail() { echo "$*" >&2; exit 1; }
