#!/usr/bin/env bash
# Do the tests see it when the library goes wrong? Applies the mutants of the list beside this file,
# one at a time, to a copy of the sources, and says for each which test failed first.
#
#     tests/mutation/run.sh [--folder FOLDER] [PATTERN]
#
# FOLDER holds the copy and its build: build/mutation unless given. PATTERN is a regular expression:
# only mutants whose file or texts match it are tried. Fails when a mutant survives that the list
# does not mark as equivalent, and when the list is wrong: a text that is not found exactly once, a
# mutant that does not compile, an equivalent one that a test tells apart.
set -euo pipefail

here=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
root=$(cd "$here/../.." && pwd)
folders=(elements text enums widgets device)
# Endless loops are mutants as well, and so is what takes memory in one.
seconds=120 kibibytes=4194304
# What takes longer than all other tests of its program, and is run behind them.
slow='StreamsTest.*'

usage_error() {
    printf 'run.sh: %s\nusage: tests/mutation/run.sh [--folder FOLDER] [PATTERN]\n' "$*" >&2
    exit 2
}

work=$root/build/mutation
if [[ ${1:-} == --folder ]]; then
    (($# >= 2)) || usage_error "--folder: which one?"
    work=$(realpath -m "$2")
    shift 2
fi
if (($# > 1)) || [[ ${1:-} == -* ]]; then
    usage_error "wrong arguments: $*"
fi
pattern=${1:-}
sources=$work/source build=$work/build log=$work/log
killed=0 survived=0 equivalent=0 errors=0 failed=''

# --- building and testing ------------------------------------------------------------------------

# The test programs of a folder, as its CMakeLists.txt names them.
programs() {  # FOLDER
    sed -nE 's/^(quillo_add_test|add_executable)\(([a-z_]+).*/\2/p' \
        "$sources/tests/$1/CMakeLists.txt"
}

# A mutant may leave something unused: warnings are no errors. Debug information is left out, for
# nobody looks at it.
prepare() {
    update_copy && configure && build_tests
}

# Replaces what differs, and nothing else: the files of an earlier run are built already, and what
# that run left mutated gets a time that the build notices.
update_copy() {
    local path
    while IFS= read -r path; do
        cmp -s "$root/$path" "$sources/$path" ||
            install -D -m "$(stat -c %a "$root/$path")" "$root/$path" "$sources/$path" || return
    done < <(git -C "$root" ls-files)
}

configure() {
    [[ -f $build/build.ninja ]] ||
        (cd "$sources" && cmake --preset dev -B "$build" -DQUILLO_BUILD_HOST=OFF \
            -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF -DCMAKE_CXX_FLAGS_DEBUG= \
            "-DQUILLO_TEST_DATA=$root/../shared/data")
}

build_targets() {  # TARGET...
    cmake --build "$build" -j2 --target "$@"
}

build_tests() {
    local folder targets=()
    for folder in "${folders[@]}"; do
        mapfile -t -O "${#targets[@]}" targets < <(programs "$folder")
    done
    build_targets "${targets[@]}"
}

# Runs a test program up to the first test that fails. False: one did, and `failed` is its name.
passes() {  # PROGRAM [ARGUMENT...]
    local status=0
    (  # of its own: the limit stays in it, and what the shell says of a signal is for nobody
        ulimit -v "$kibibytes"
        LOCPATH=$build/tests/text/locales timeout "$seconds" "$build/bin/$1" --gtest_fail_fast \
            "${@:2}" </dev/null >"$log" 2>&1
    ) 2>/dev/null || status=$?
    ((status == 0)) && return
    failed=$(sed -nE '/^\[  FAILED  \] /{s/^[^]]*\] ([^ ,]+).*/\1/p;q}' "$log")
    [[ -n $failed ]] || failed=$(sed -nE 's/^\[ RUN      \] ([^ ]+)/\1/p' "$log" | tail -n 1)
    failed=${failed:-$1, before its first test}
    ((status == 124)) && failed+=" (no end in $seconds s)"
    ((status > 128)) && failed+=" (signal $((status - 128)))"
    return 1
}

# Links a program only when those before it have passed. A library looks for the marker file once in
# a process: there each test gets its own.
folder_passes() {  # FOLDER
    local program test
    for program in $(programs "$1"); do
        build_targets "$program" >"$log" 2>&1 || return 2
        if [[ $program == marker_file_test ]]; then
            for test in $("$build/bin/$program" --gtest_list_tests |
                sed -nE 's/^([^ ]+\.)$/\1/; /^[^ ]+\.$/h; /^  /{G;s/^  ([^ ]+).*\n(.*)/\2\1/p}'); do
                passes "$program" "--gtest_filter=$test" || return
            done
        else
            passes "$program" "--gtest_filter=-$slow" || return
            passes "$program" "--gtest_filter=$slow" || return
        fi
    done
}

# --- the mutants ---------------------------------------------------------------------------------

# Writes FILE with the text $old in it, found exactly once, replaced by $new.
mutated() {  # FILE
    OLD=$old NEW=$new perl -0777 -e '
        my ($old, $new) = @ENV{qw(OLD NEW)};
        my $text = <>;
        my $count = () = $text =~ /\Q$old\E/g;
        die "the text is found $count times\n" if $count != 1;
        $text =~ s/\Q$old\E/$new/;
        print $text;' "$1"
}

report() {  # WHAT
    printf '%s  %s\n' "$1" "$file: ${old//$'\n'/ } -> ${new//$'\n'/ }"
}

list_error() {  # WHY
    report "ERROR ($1)"
    errors=$((errors + 1))
}

# Tests a mutant: first what is in the folder that mirrors its own.
judge() {  # FOLDER
    local folder status=0
    for folder in "$1" "${folders[@]/#$1}"; do
        [[ -z $folder ]] || folder_passes "$folder" || status=$?
        ((status == 0)) || break
    done
    case $status-$reason in
        2-*) list_error "does not compile" ;;
        0-) report SURVIVED && survived=$((survived + 1)) ;;
        0-*) report "equivalent ($reason):" && equivalent=$((equivalent + 1)) ;;
        1-) report "killed by $failed:" && killed=$((killed + 1)) ;;
        *) list_error "marked as equivalent, but $failed fails" ;;
    esac
}

try_mutant() {
    local folder why
    folder=${file#src/} folder=${folder%%/*}
    [[ -z $pattern || $file =~ $pattern || $old =~ $pattern || $new =~ $pattern ]] || return 0
    if ! why=$(mutated "$root/$file" 2>&1 >"$work/mutant"); then
        list_error "$why"
        return
    fi
    cp "$work/mutant" "$sources/$file"
    judge "$folder"
    cp "$root/$file" "$sources/$file"
}

# Lines that begin with '-' are the text, with '+' its replacement, with '=' the reason why the
# mutant is equivalent; a line with none of them names the file of the mutants that follow.
try_list() {
    local file='' old='' new='' reason='' line
    while IFS= read -r line || [[ -n $line ]]; do
        case $line in
            '#'*) ;;
            -*) old+=${old:+$'\n'}${line:1} ;;
            +*) new+=${new:+$'\n'}${line:1} ;;
            =*) reason=${line:2} ;;
            '')
                [[ -z $old ]] || try_mutant
                old='' new='' reason=''
                ;;
            *) file=$line ;;
        esac
    done < <(cat "$here/mutants" && echo)
}

echo "building the tests in $work" >&2
mkdir -p "$sources"
if ! prepare >"$log" 2>&1; then
    cat "$log" >&2
    echo "run.sh: the tests cannot be built without a mutant; the compiler's words are above" >&2
    exit 1
fi
for folder in "${folders[@]}"; do
    folder_passes "$folder" || {
        cat "$log" >&2
        echo "run.sh: ${failed:-a build} fails without a mutant: mend it first" >&2
        exit 1
    }
done
try_list
printf '%d killed, %d equivalent, %d survived, %d errors in the list\n' \
    "$killed" "$equivalent" "$survived" "$errors"
((survived == 0 && errors == 0))
