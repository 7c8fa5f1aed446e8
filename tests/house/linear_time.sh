#!/usr/bin/env bash
# Holds the functions that read what others wrote to linear time: for twice the text they take at
# most MOST times the instructions, 2.3 unless given, which are the same on a busy machine.
#
#     tests/house/linear_time.sh PROGRAM [MOST]
#
# PROGRAM is linear_time or linear_time_host. Prints lines of a function with its text, the
# instructions of 16 KiB, of 32 KiB, and their ratio, set apart by tabs. The exit code is 1 when a
# ratio is above MOST, and 2 when there is none.
set -euo pipefail
export LC_ALL=C

folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT

if ! valgrind --tool=callgrind --combine-dumps=yes --callgrind-out-file="$folder/counts" "$1" \
    >"$folder/log" 2>&1; then
    cat "$folder/log" >&2
    echo "linear_time: nothing was counted by: valgrind --tool=callgrind $1" >&2
    exit 2
fi

# A part for each call: its name, later its instructions.
sed -n 's/^desc: Trigger: Client Request: //p; s/^summary: //p' "$folder/counts" |
    awk -F / -v most="${2:-2.3}" '
        function fail(text) { failures = failures "linear_time: " text "\n" }
        NF == 2 { name = $1; size = $2; next }
        name != "" { count[name, size] = $1; is_name[name]; name = "" }
        END {
            for (name in is_name) {
                once = count[name, 16384]
                twice = count[name, 32768]
                if (!(once > 0 && twice > 0)) {
                    print "linear_time: no instructions of: " name > "/dev/stderr"
                    exit 2
                }
                printf "%s\t%.0f\t%.0f\t%.2f\n", name, once, twice, twice / once | "sort"
                if (twice / once > most) {
                    fail(sprintf("%s takes %.2f times the instructions for twice the text; %.1f " \
                                 "times at most", name, twice / once, most))
                }
            }
            if (name == "") {
                print "linear_time: no call was counted: is the program linear_time?" > "/dev/stderr"
                exit 2
            }
            close("sort")
            printf "%s", failures > "/dev/stderr"
            exit failures != ""
        }'
