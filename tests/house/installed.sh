#!/usr/bin/env bash
# Installs the build to a scratch folder, takes a module away and uses it as README.md tells: its C
# example through pkg-config and through find_package, its C++ example, its Python example; then
# uninstalls it. Arguments: the source and build folders, the C compiler and its flags, "python" or
# "no-python", and the C++ compiler.
set -euo pipefail
source=$1 build=$2 compiler=$3 flags=$4 python=$5 compiler_cxx=$6
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null
[[ -x $prefix/bin/intake ]]
"$prefix/bin/intake" --version >/dev/null
for file in man/man1/intake.1 man/man1/intake-import.1 bash-completion/completions/intake \
    zsh/site-functions/_intake fish/vendor_completions.d/intake.fish; do
    [[ -s $prefix/share/$file ]] || { echo "$file is not installed."; exit 1; }
done
libraries=$(dirname "$(find "$prefix" -name 'libintakedl.so' -o -name 'libintakedl.a')")

# The program starts with our libraries and those of C and C++ alone: the others come with modules.
if ldd "$prefix/bin/intake" | awk '{print $1}' | grep -vE \
    '^(linux-vdso|libintakedl|libqx[a-z]+|lib(stdc\+\+|gcc_s|c|m|dl|asan|ubsan|gcov))\.so|ld-linux'; then
    echo "intake needs the libraries above before it knows what to do."
    exit 1
fi
modules=$libraries/intake
"$prefix/bin/intake" import --quiet "$source/samples/jkstk.e00" "$scratch/GRIDS"
draw() { "$prefix/bin/intake" draw "$scratch/GRIDS" "$scratch/grids.$1" 2>&1; }
draw png
draw svg
# unfit WORDS: drawing fails with one line that has these words in it.
unfit() {
    local told
    if told=$(draw svg) || [[ $(wc -l <<<"$told") != 1 || $told != *"$modules/png.so: $1"* ]]; then
        echo "A module that is not whole is told with: $told"
        exit 1
    fi
}
mv "$modules/png.so" "$scratch"
unfit "cannot open shared object file"
if [[ -e $libraries/libqxbase.so ]]; then
    cp "$libraries/libqxbase.so" "$modules/png.so"
    unfit "no module of intake"
fi
mv "$scratch/png.so" "$modules"

# example LANGUAGE FILE: the one block of that language in README.md.
example() {
    awk -v fence="\`\`\`$1" '$0 == "```" { on = 0 } on { print } $0 == fence { on = 1 }' \
        "$source/README.md" >"$2"
    [[ -s $2 ]]
}
# expect COMMAND...: it imports the sample and says how that went.
expect() {
    local output dataset=$scratch/data$((++count))
    output=$("$@" "$source/samples/wcr.e00" "$dataset") || { echo "$output"; exit 1; }
    grep -q '^Imported' <<<"$output" || { echo "$output"; exit 1; }
    [[ -e $dataset ]]
}
count=0

example c "$scratch/import.c"
export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra words <<<"$flags $(pkg-config --cflags --libs intakedl)"
"$compiler" -std=c11 -Wall -Wextra -Wpedantic -Werror "$scratch/import.c" "${words[@]}" \
    -Wl,-rpath,"$libraries" -o "$scratch/import"
expect "$scratch/import"

example cpp "$scratch/read.cpp"
cat >"$scratch/CMakeLists.txt" <<'PROJECT'
cmake_minimum_required(VERSION 3.25)
project(consumer C CXX)
find_package(intake REQUIRED)
add_executable(consumer import.c)
target_link_libraries(consumer intake::intakedl intake::qxbase)
add_executable(reader read.cpp)
target_compile_features(reader PRIVATE cxx_std_20)
target_link_libraries(reader intake::datasets)
PROJECT
cmake -S "$scratch" -B "$scratch/consumer" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_C_COMPILER="$compiler" -DCMAKE_CXX_COMPILER="$compiler_cxx" \
    -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$scratch/consumer" >/dev/null
expect "$scratch/consumer/consumer"

# The C++ example finds the lengths that the arcs' own table says, and its columns.
"$prefix/bin/intake" import --quiet "$source/samples/wcr.e00" "$scratch/WORLD"
"$scratch/consumer/reader" "$scratch/WORLD" >"$scratch/read"
"$prefix/bin/intake" dump "$scratch/WORLD" --class record | grep -o '"LENGTH":[^,}]*' |
    awk -F: -v read="$(sed -n 's/^length //p' "$scratch/read")" '{ sum += $2 }
        END { if (sum <= 0 || (read - sum) ^ 2 > (sum / 1e4) ^ 2) { print read, sum; exit 1 } }'
grep -qx KIND "$scratch/read"

if [[ $python == python ]]; then
    example python "$scratch/import.py"
    expect env INTAKE_LIBRARIES="$libraries" PYTHONPATH="$source/python" PYTHONDONTWRITEBYTECODE=1 \
        python3 "$scratch/import.py"
fi

(cd "$build" && cmake -P "$source/cmake/uninstall.cmake" >/dev/null)
if find "$prefix" -type f -o -type l -o -name intake | grep .; then
    echo "The above is left of what was installed."
    exit 1
fi
