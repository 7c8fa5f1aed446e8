#!/usr/bin/env bash
# Runs what was built of bench/ and makes the table of it, in docs/benchmarks.md and on standard
# output. The repetitions of a program's benchmarks take turns at random, so what else the machine
# does meets all of them alike.
#
#     bench/run.sh BUILD-FOLDER
set -euo pipefail
export LC_ALL=C

cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
build=$(readlink -f "$1")
results=$build/results
mkdir -p "$results"

measure() {  # PROGRAM SECONDS REPETITIONS
    printf 'bench: %s\n' "$1" >&2
    "$build/bin/$1" --benchmark_min_time="$2" --benchmark_repetitions="$3" \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out="$results/$1.json" --benchmark_out_format=json >"$results/$1.log"
}

commit() {
    git describe --always --dirty=' with changes' 2>/dev/null || echo unknown
}

processor() {
    sed -n 's/^model name[^:]*: //p;T;q' /proc/cpuinfo
}

versions() {  # PACKAGE...
    dpkg-query -W -f='${Package} ${Version}\n' "$@" | paste -sd, | sed 's/,/, /g'
}

measure page 0.05 9
measure flush 0.05 9
measure text 0.02 9
measure doubling 0.02 5
bench/table.py "$results" docs/benchmarks.md \
    "$(date +%F), commit $(commit), $(processor), $(nproc) processors, $(uname -sr), $(g++ --version | head -n 1)."
