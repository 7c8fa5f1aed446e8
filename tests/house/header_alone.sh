#!/usr/bin/env bash
# Checks that the public header, and each header of the platform contract, compiles on its own: in
# every language version that a user may choose, without a warning, with each compiler there is.
#
#     tests/house/header_alone.sh INCLUDE-FOLDER PLATFORM-FOLDER [BOOST-FOLDER]
set -euo pipefail
(($# == 2 || $# == 3)) || { echo "usage: $0 INCLUDE PLATFORM [BOOST]" >&2 && exit 2; }

headers=(quillo)
for header in "$2"/*.h; do
    headers+=("${header##*/}")
done
flags=(-I "$1" -I "$2" ${3:+-idirafter "$3"}
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only)

compiled=0
compile() {  # HEADER COMPILER ARGUMENT...
    command -v "$2" >/dev/null || return 0
    echo "$1: ${*:2}"
    # Twice, so that the guard is checked as well.
    printf '#include <%s>\n' "$1" "$1" | "${@:2}" "${flags[@]}" -
    compiled=$((compiled + 1))
}

for header in "${headers[@]}"; do
    for compiler in g++ clang++; do
        for standard in c++17 c++20; do
            compile "$header" $compiler -std=$standard -x c++
        done
    done
    # The contract is one that a platform written in C can keep, but for its exception.
    if [[ $header != quillo && $header != glb.h ]]; then
        for compiler in gcc clang; do
            compile "$header" $compiler -std=c11 -x c
        done
    fi
done
((compiled > 0))
