# Sourced by ./run, ./check and .ci/run: what a bare Debian 12 needs, and the build of a preset.

packages_for() {
    case $1 in
        build) echo cmake ninja-build g++ libcli11-dev nlohmann-json3-dev libcairo2-dev libarchive-dev zlib1g-dev libsqlite3-dev libtiff-dev libproj-dev proj-data pkg-config libgtest-dev libbenchmark-dev ;;
        tests) echo pkg-config python3 groff-base ;;
        fuzz) echo clang libclang-rt-14-dev llvm ;;
        coverage) echo gcovr ;;
        clients) echo python3 sqlite3 libsqlite3-mod-spatialite proj-bin libtiff-tools geotiff-bin python3-tifffile assimp-utils ;;
        python) echo python3 python3-numpy python3-pytest python3-venv mypy ;;
        wheel) echo python3 ;;
        package) echo debhelper dh-python dpkg-dev fakeroot lintian ;;
        root) echo mmdebstrap ;;
        abi) echo abigail-tools ;;
        npm) echo nodejs npm ;;
        format) echo black clang-format git ;;
        cluster) echo slurmctld slurmd munge slurm-client python3 ;;
        tidy) echo clang-tidy ;;
    esac
}

# need WHAT...: installs the packages of each purpose that are missing, if it may.
need() {
    local purpose package missing=()
    # Another system has its own names for these; the configuration tells what it does not find.
    command -v dpkg-query >/dev/null || return 0
    local installed
    installed=" $(dpkg-query -W -f '${db:Status-Abbrev}${binary:Package}\n' 2>/dev/null |
        sed -n 's/^ii *\([^:]*\).*/\1/p' | tr '\n' ' ')"
    for purpose in "$@"; do
        for package in $(packages_for "$purpose"); do
            [[ $installed == *" $package "* ]] || missing+=("$package")
        done
    done
    ((${#missing[@]})) || return 0

    local as_root=()
    if [[ $(id -u) != 0 ]]; then
        if ! sudo -n true 2>/dev/null; then
            echo "These packages are missing. Please have them installed:" >&2
            echo "    apt-get install ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo -n)
    fi
    echo "Installing ${missing[*]}" >&2
    local log=build/install.log
    mkdir -p build
    if ! {
        "${as_root[@]}" apt-get update || true # without a network the lists at hand may do
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"
    } >"$log" 2>&1 </dev/null; then
        tail -n 20 "$log" >&2
        echo "The installation failed; all of its output is in $log." >&2
        exit 1
    fi
}

# configure PRESET: prepares build/PRESET where that has not been done.
configure() {
    local preset=$1 log=build/$1.log
    if [[ -f build/$preset/build.ninja && build/$preset/build.ninja -nt CMakePresets.json ]]; then
        return 0
    fi
    echo "Preparing build/$preset" >&2
    mkdir -p build
    if ! cmake --preset "$preset" >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
    touch "build/$preset/build.ninja"
}

# build PRESET [TARGET...]: brings build/PRESET up to date. Says nothing when nothing was stale.
build() {
    local preset=$1 log=build/$1.log
    shift
    configure "$preset"
    local terminal=0
    [[ ! -t 2 ]] || terminal=1
    if ! cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 </dev/null | tee "$log" |
        awk -v preset="$preset" -v terminal=$terminal '
            /^\[[0-9]+\/[0-9]+\]/ && !/Re-checking globbed/ {
                if (!said++) print "Building in build/" preset
                if (terminal) { printf "\r%s ", $1; fflush() }
            }
            END { if (said && terminal) printf "\r%20s\r", "" }' >&2; then
        grep -v '^\[[0-9]*/[0-9]*\] ' "$log" >&2
        exit 1
    fi
}
