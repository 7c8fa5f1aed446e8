#!/usr/bin/env bash
# Runs fuzz targets that are built already, two at a time, and prints what came of it.
#
#     fuzz/run.sh [--build FOLDER] [--jobs NUMBER] [TARGET] [SECONDS]
#
# Each TARGET (all of them unless named) runs for SECONDS, 30 unless given, or until it has tried ten
# million inputs. It begins with its words, the test data and what earlier runs found worth keeping,
# in BUILD/corpus/TARGET. Fails when a target broke; the input that did it is left in BUILD/findings.
#
#     fuzz/run.sh --coverage [--build FOLDER]
#
# prints what the corpora reach of src/: BUILD holds targets that count the lines they run. Fails
# when that is less than 95 %.
set -euo pipefail

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
root=$(cd "$here/.." && pwd)
corpora=$root/build/fuzz/corpus
build=$root/build/fuzz jobs=2 seconds=30 chosen='' mode=fuzz

usage_error() {
    printf 'run.sh: %s\n' "$*" >&2
    sed -n 's/^#\( \{5\}fuzz.*\)/\1/p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

while (($#)); do
    case $1 in
        --build) build=$(realpath -m "${2:?--build: which folder?}") && shift ;;
        --jobs) jobs=${2:?--jobs: how many?} && shift ;;
        --coverage) mode=coverage ;;
        -*) usage_error "unknown option: $1" ;;
        *[!0-9]*) chosen=$1 ;;
        *) seconds=$1 ;;
    esac
    shift
done
[[ -f $build/fuzz/targets ]] || usage_error "$build holds no fuzz targets: ./dev fuzz builds them"
mapfile -t targets <"$build/fuzz/targets"
if [[ -n $chosen ]]; then
    [[ " ${targets[*]} " == *" $chosen "* ]] ||
        usage_error "no target is named $chosen; there are: ${targets[*]}"
    targets=("$chosen")
fi

# Files that targets write to belong in memory.
[[ ! -w /dev/shm ]] || export TMPDIR=/dev/shm
# To know who allocated what takes half of the time. The input that is tried again tells it.
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_stack_use_after_return=1:malloc_context_size=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}

# The words of a target and those of the test data, each once: libFuzzer takes one dictionary.
dictionary() {  # TARGET
    local data
    data=$(sed -n 's/^QUILLO_TEST_DATA:PATH=//p' "$build/CMakeCache.txt")
    printf '%s\n' "$build/seeds/$1.dict"
    mkdir -p "$build/seeds"
    cat "$here/words/$1.dict" "$data"/dict/*.dict 2>/dev/null |
        grep -v '^#' | sort -u >"$build/seeds/$1.dict"
}

fuzz() {  # TARGET
    local target=$1 words status=0
    mkdir -p "$corpora/$target" "$build/findings" "$build/logs"
    words=$(dictionary "$target")
    # Anew: words and test data change, and an earlier run may have been cut short.
    rm -rf "${build:?}/seeds/$target"
    "$build/bin/fuzz-write-seeds" "$build/seeds/$target" "$here/words/$target.dict" || return
    "$build/bin/fuzz-$target" "-max_total_time=$seconds" -runs=10000000 -max_len=1024 -timeout=120 \
        -entropic_scale_per_exec_time=1 -rss_limit_mb=2048 -print_final_stats=1 "-dict=$words" \
        "-artifact_prefix=$build/findings/$target-" \
        "$corpora/$target" "$build/seeds/$target" \
        >"$build/logs/$target" 2>&1 </dev/null || status=$?
    row "$target" "$status"
    return "$status"
}

# What libFuzzer said last of a figure.
figure() {  # TARGET SED-EXPRESSION
    sed -nE "$2" "$build/logs/$1" | tail -n 1 | grep . || echo 0
}

row() {  # TARGET STATUS
    local findings=0
    (($2 == 0)) || findings=1
    printf '%-14s %12s %9s %9s %9s\n' "$1" \
        "$(figure "$1" 's/^stat::number_of_executed_units: ([0-9]+)/\1/p')" \
        "$(figure "$1" 's/^stat::average_exec_per_sec: +([0-9]+)/\1/p')" \
        "$(figure "$1" 's/.* cov: ([0-9]+) .*/\1/p')" "$findings"
}

# What there is to be said of a target that broke.
explain() {  # TARGET
    local input
    input=$(figure "$1" 's/.*Test unit written to (.*)/\1/p')
    printf '\n%s broke. All it said is in %s; the end of it:\n' "$1" "$build/logs/$1"
    grep -E -A 3 '^fuzz: |runtime error:|^==[0-9]+==ERROR' "$build/logs/$1" | head -n 12 || true
    [[ $input == 0 ]] || printf 'Reproducer: %s\nAgain:      %s %s\n' \
        "$input" "$build/bin/fuzz-$1" "$input"
}

run_all() {
    local target failed=()
    printf '%-14s %12s %9s %9s %9s\n' target executions exec/s coverage findings
    rm -f "$build"/logs/*.failed
    mkdir -p "$build/logs"
    for target in "${targets[@]}"; do
        while (($(jobs -rp | wc -l) >= jobs)); do
            wait -n || true
        done
        { fuzz "$target" || : >"$build/logs/$target.failed"; } &
    done
    wait
    for target in "${targets[@]}"; do
        [[ ! -e $build/logs/$target.failed ]] || failed+=("$target")
    done
    for target in "${failed[@]}"; do
        explain "$target"
    done
    ((${#failed[@]} == 0))
}

# Each target over its corpus, once, with the lines counted.
measure() {
    local target programs=()
    rm -rf "$build/profiles"
    mkdir -p "$build/profiles" "$build/logs"
    for target in "${targets[@]}"; do
        programs+=(-object "$build/bin/fuzz-$target")
        LLVM_PROFILE_FILE=$build/profiles/$target.profraw "$build/bin/fuzz-$target" -runs=0 \
            "$corpora/$target" >"$build/logs/$target" 2>&1 ||
            { explain "$target" && return 1; }
    done
    llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/profiles/all"
    llvm-cov report -instr-profile "$build/profiles/all" "${programs[@]:1}" \
        -show-region-summary=false -show-branch-summary=false |
        awk -v least=95 '/(^|\/)src\/[a-z]+\/[a-z_.]+ / {
                 lines += $5
                 missed += $6
                 printf "%-34s %4d lines, %3d missed\n", $1, $5, $6
             }
             END {
                 if (lines == 0) {
                     print "run.sh: no line of src/ was counted" > "/dev/stderr"
                     exit 1
                 }
                 reached = 100 * (1 - missed / lines)
                 printf "reached: %.1f %% of %d lines\n", reached, lines
                 fflush()
                 if (reached < least) {
                     printf "run.sh: the corpora reach %.2f %% of src/, which is less than %d %%: run " \
                            "./dev fuzz for longer, or try in a target of fuzz/ what is missed\n",
                            reached, least > "/dev/stderr"
                     exit 1
                 }
             }'
}

if [[ $mode == coverage ]]; then
    measure
else
    run_all
fi
