#!/usr/bin/env bash
# What the library takes before it does anything: bytes of text and data, stripped, relocations, and
# what it takes to load it. Prints lines of a name and a figure, set apart by a tab.
#
#     bench/size.sh BUILD-FOLDER           of a build for this machine
#     bench/size.sh BUILD-FOLDER PLUGIN    of a build for PowerPC; qemu's plugin counts instructions
set -euo pipefail
export LC_ALL=C

folder=$1 plugin=${2:-}
prefix=${plugin:+powerpc-linux-gnu-}
library=$(readlink -f "$folder/lib/libquillo.so")
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT

# The instructions of the program that loads LIBRARY, or nothing.
instructions() {  # [LIBRARY]
    qemu-ppc -L /usr/powerpc-linux-gnu -plugin "file=$plugin" -d plugin \
        "$folder/bin/load" "$@" 2>&1 >/dev/null | sed -n 's/^instructions: //p'
}

# The median of 201 times, in microseconds.
microseconds() {
    for ((i = 0; i < 201; ++i)); do
        "$folder/bin/load" "$library"
    done | sort -n | sed -n 101p
}

"${prefix}strip" -o "$stripped" "$library"
read -r text data _ < <("${prefix}size" "$stripped" | tail -n 1)
printf 'text\t%s\ndata\t%s\n' "$text" "$data"
printf 'relocations\t%s\n' \
    "$("${prefix}readelf" --relocs --wide "$stripped" | grep -c '^[0-9a-f]\{8\}')"
if [[ -n $plugin ]]; then
    printf 'load, instructions\t%s\n' "$(($(instructions "$library") - $(instructions)))"
else
    printf 'load\t%s\n' "$(microseconds)"
fi
