#!/usr/bin/env bash
# Compares the interface of the shared library, as programs that are built already rely on it, with
# a dump of it: functions and variables, the types they take, fields and their places, the order of
# virtual operations. Prints abidiff's report and fails if such a program would break; what is only
# new is reported and passes.
#
#     tests/house/abi.sh LIBRARY DUMP             LIBRARY has debug information
#     tests/house/abi.sh --collect LIBRARY DUMP   writes the dump anew
set -euo pipefail
export LC_ALL=C
root=$(readlink -f "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../..")

# What the public header and the contract declare, without names of parameters, places in the
# sources and paths of this machine.
dump() {  # LIBRARY
    abidw --exported-interfaces-only --drop-private-types --drop-undefined-syms \
        --headers-dir "$root/include" --suppressions "$root/abi/left_out.ini" \
        --no-show-locs --no-parameter-names --no-elf-needed \
        --no-corpus-path --no-comp-dir-path --no-write-default-sizes --type-id-style hash "$1" |
        sed "s|path='$root/|path='|"
}

collect=
if [[ ${1:-} == --collect ]]; then
    collect=1
    shift
fi
(($# == 2)) || { echo "usage: $0 [--collect] LIBRARY DUMP" >&2 && exit 2; }
library=$(readlink -f "$1") expected=$2

actual=$(mktemp --suffix .abi)
trap 'rm -f "$actual"' EXIT
dump "$library" >"$actual"
grep -q "<class-decl name='ElementImpl'" "$actual" ||
    { echo "$library has no debug information" && exit 1; }
if [[ -n $collect ]]; then
    cp "$actual" "$expected"
    exit
fi

abidiff "$expected" "$actual" && exit
if abidiff --no-added-syms "$expected" "$actual" >/dev/null; then
    echo "What is built against $expected works with $1 as well."
    exit
fi
echo "What is built against $expected does not work with $1."
exit 1
