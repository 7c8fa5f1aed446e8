#!/usr/bin/env bash
# Installs what was built into an empty folder, moves that elsewhere, and uses it as others would:
# a page program is built on it with CMake and with pkg-config, on the skeleton platform and on the
# host's, with either first on the linker's line, with each compiler and language version. Each
# program has to write the same page.
#
#     install_test.sh REPOSITORY BUILD-FOLDER PLATFORMS COMPILERS [CMAKE-ARGUMENT...]
#
# Where the target is another machine, RUN is the program that runs programs of it, and BOOST the
# folder of Boost's headers.
set -euo pipefail
repository=$1 build=$2
read -ra platforms <<<"$3"
read -ra compilers <<<"$4"
cmake_arguments=("${@:5}")
read -ra run <<<"${RUN:-}"
flags=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror ${BOOST:+-idirafter "$BOOST"})
stranger=$repository/tests/package/stranger
skeleton=$repository/docs/porting/skeleton_platform.cpp

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export QUILLO_STATE_DIR=$scratch/state
unset QUILLO_CATALOG_DIR LD_LIBRARY_PATH CXXFLAGS LDFLAGS
programs=0 failures=0

fail() {
    printf 'FAILED: %s\n' "$*"
    failures=$((failures + 1))
}

# PROGRAM writes the page, byte for byte.
writes_page() {  # TITLE PROGRAM
    programs=$((programs + 1))
    if ! "${run[@]}" "$2" >"$scratch/page.html" 2>"$scratch/log"; then
        cat "$scratch/log"
        fail "$1: the program failed"
    elif ! diff -u "$stranger/page.html" "$scratch/page.html"; then
        fail "$1: another page"
    fi
}

# Runs a command and shows what it says only if it fails.
quietly() {  # COMMAND...
    "$@" >"$scratch/said" 2>&1 || { cat "$scratch/said" && return 1; }
}

with_cmake() {  # COMPILER STANDARD
    local folder=$scratch/cmake-${1##*/}-$2 platform order
    quietly cmake -G Ninja -S "$stranger" -B "$folder" -DCMAKE_CXX_COMPILER="$1" \
        -DCMAKE_CXX_STANDARD="$2" -DCMAKE_PREFIX_PATH="$scratch/moved" -DSKELETON="$skeleton" \
        "${cmake_arguments[@]}"
    quietly cmake --build "$folder" --parallel 2
    for platform in "${platforms[@]}"; do
        for order in library_first platform_first; do
            writes_page "CMake, $1, C++$2, $platform, $order" "$folder/${platform}_$order"
        done
    done
}

compile() {  # FILE OBJECT PC-MODULE...
    local cflags
    read -ra cflags <<<"$(pkg-config --cflags "${@:3}")"
    "$compiler" -std="c++$standard" "${flags[@]}" "${cflags[@]}" -c "$1" -o "$2"
}

# Links the page's object with what follows; some linkers drop by themselves what the program does
# not name.
link() {  # TITLE OBJECT-OR-LIBRARY...
    "$compiler" -Wl,--as-needed page.o "${@:2}" -o program
    LD_LIBRARY_PATH=$libraries writes_page "pkg-config, $compiler, C++$standard, $1" ./program
}

with_pkg_config() {  # COMPILER STANDARD
    local compiler=$1 standard=$2 libs platform
    compile "$stranger/page.cpp" page.o quillo-kit
    for platform in "${platforms[@]}"; do
        case $platform in
            skeleton)
                compile "$skeleton" skeleton.o quillo
                read -ra libs <<<"$(pkg-config --libs quillo-kit)"
                link skeleton_first skeleton.o "${libs[@]}"
                link library_first "${libs[@]}" skeleton.o
                ;;
            host)
                compile "$stranger/quiet_host.cpp" quiet_host.o quillo-host
                # Without what names the host, which is dropped where it is not told to stay.
                read -ra libs <<<"$(pkg-config --libs quillo-host quillo-kit)"
                link host_first "${libs[@]}"
                read -ra libs <<<"$(pkg-config --libs quillo-kit quillo-host)"
                link library_first quiet_host.o "${libs[@]}"
                ;;
        esac
    done
}

quietly cmake --install "$build" --prefix "$scratch/first"
mv "$scratch/first" "$scratch/moved"
if grep -rIl "$scratch/first" "$scratch/moved"; then
    fail "these files know where they were installed before they were moved"
fi
libraries=$(find "$scratch/moved" -name libquillo.so -printf %h)
export PKG_CONFIG_PATH=$libraries/pkgconfig
cd "$scratch"

for compiler in "${compilers[@]}"; do
    for standard in 17 20; do
        with_cmake "$compiler" "$standard"
        with_pkg_config "$compiler" "$standard"
    done
done

# The programs find libraries and catalogs by their own place.
if [[ " ${platforms[*]} " == *" host "* ]]; then
    for program in moved/bin/*; do
        quietly "$program" --version || fail "$program does not start"
    done
    moved/bin/quillo-render status --language de >status.html
    grep -q Netzwerkschnittstellen status.html || fail "quillo-render finds no German catalog"
fi

expected=$((${#compilers[@]} * 2 * 2 * ${#platforms[@]} * 2))
((programs == expected)) || fail "$programs programs were run, not $expected"
echo "$programs programs, $failures failures"
((failures == 0))
