#!/usr/bin/env bash
# Runs what was built of bench/ and makes the table of it, on standard output and in
# docs/benchmarks.md. The repetitions of a program's benchmarks take turns at random, so what else
# the machine does meets all of them alike.
#
#     bench/run.sh FOLDER    of the builds bench, bench-small, bench-ppc and bench-device
set -euo pipefail
export LC_ALL=C

cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
builds=$(readlink -f "$1")
build=$builds/bench
counter=$build/lib/libinstruction_counter.so
results=$build/results
rm -rf "$results"
mkdir -p "$results"
peers=(pugixml tinyxml2 libxml-2.0 cgicc libctemplate glib-2.0 libcurl liburiparser)

say() { printf 'bench: %s\n' "$*" >&2; }

measure() {  # PROGRAM SECONDS REPETITIONS
    say "$1"
    "$build/bin/$1" --benchmark_min_time="$2" --benchmark_repetitions="$3" \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out="$results/$1.json" --benchmark_out_format=json \
        >"$results/$1.log" 2>&1 || { cat "$results/$1.log" >&2; exit 1; }
}

commit() {
    git describe --always --dirty=' with changes' 2>/dev/null || echo unknown
}

processor() {
    sed -n 's/^model name[^:]*: //p;T;q' /proc/cpuinfo
}

# A library and its version; the name alone where pkg-config does not know it.
versions() {  # LIBRARY...
    local library list=()
    for library; do
        list+=("$library $(pkg-config --modversion "$library" 2>/dev/null || true)")
    done
    printf '%s\n' "${list[@]}" | paste -sd, | sed 's/ *,/, /g'
}

say "memory"
"$build/bin/memory" >"$results/memory.tsv"
say "instructions"
bench/instructions.sh "$build/bin/counted" >"$results/instructions-x86-64.tsv" || (($? == 1))
bench/instructions.sh "$builds/bench-device/bin/counted" "$counter" \
    >"$results/instructions-PowerPC.tsv"
say "size"
bench/size.sh "$build" >"$results/size-x86-64,_release.tsv"
bench/size.sh "$builds/bench-small" >"$results/size-x86-64,_small.tsv"
bench/size.sh "$builds/bench-ppc" "$counter" >"$results/size-PowerPC,_release.tsv"
bench/size.sh "$builds/bench-device" "$counter" >"$results/size-PowerPC,_small.tsv"
measure page 0.05 9
measure flush 0.05 9
measure text 0.02 9
measure doubling 0.02 5
bench/table.py "$results" docs/benchmarks.md "$(date +%F), commit $(commit)." "" \
    "$(processor), $(nproc) processors; $(uname -sr); $(g++ --version | head -n 1)." "" \
    "Beside: $(versions "${peers[@]}")."
