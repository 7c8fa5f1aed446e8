#!/usr/bin/env bash
# Builds the library as a device carries it and holds it to a budget: the bytes of text and data,
# stripped, and the libraries it needs.
#
#     tests/house/size.sh SOURCE-FOLDER BUILD-FOLDER BUDGET
set -euo pipefail
export LC_ALL=C

source=$1 folder=$2 budget=$3
library=$folder/libquillo.stripped.so
tools=powerpc-linux-gnu

cd "$source"
if ! { cmake --preset device -B "$folder" && cmake --build "$folder" --target quillo; } \
    >"$folder.log" 2>&1; then
    cat "$folder.log"
    echo "size: the library could not be built"
    exit 1
fi
"$tools-strip" -o "$library" "$(readlink -f "$folder/lib/libquillo.so")"

read -r text data _ < <("$tools-size" "$library" | tail -n 1)
echo "text $text + data $data = $((text + data)) bytes, of $budget"
"$tools-size" --format=sysv "$library" | awk 'NF == 3 && $2 + 0 >= 500 { print "    " $1, $2 }'

failed=0
if ((text + data > budget)); then
    echo "size: the library is $((text + data - budget)) bytes above its budget"
    failed=1
fi
while read -r needed; do
    if [[ $needed != @(libstdc++.so.6|libgcc_s.so.1|libc.so.6) ]]; then
        echo "size: the library needs $needed, which a device need not have"
        failed=1
    fi
done < <("$tools-readelf" --dynamic "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
exit "$failed"
