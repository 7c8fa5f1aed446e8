#!/usr/bin/env bash
# What a library takes before it does anything: bytes of text and data, stripped, relocations, and
# what it takes to load it. Prints lines of a name and a figure, set apart by a tab.
#
#     bench/size.sh BUILD-FOLDER [TOOL-PREFIX]
set -euo pipefail
export LC_ALL=C

folder=$1 prefix=${2:-}
library=$(readlink -f "$folder/lib/libquillo.so")
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT

"${prefix}strip" -o "$stripped" "$library"
read -r text data _ < <("${prefix}size" "$stripped" | tail -n 1)
printf 'text\t%s\ndata\t%s\n' "$text" "$data"
printf 'relocations\t%s\n' "$("${prefix}readelf" --relocs --wide "$stripped" | grep -c '^[0-9a-f]\{8\}')"
# A foreign processor's time is not known; qemu's is not it.
[[ -n $prefix ]] || printf 'load\t%s\n' "$("$folder/bin/load" "$library" 2000)"
