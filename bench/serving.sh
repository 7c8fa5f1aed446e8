#!/usr/bin/env bash
# What the page server takes, on an otherwise idle machine: requests a second beside a constant of
# the same size, quick pages beside a slow one and beside slow clients, and memory and descriptors
# over many requests. Makes a table of it, on standard output and at the end of DOCUMENT. A limit
# that is missed is shown, and so is a request that failed; either ends in exit code 1.
#
#     bench/serving.sh FOLDER DOCUMENT [REQUESTS]    of the programs
#
# With fewer REQUESTS than 100,000 it is a trial: DOCUMENT may then be /dev/null.
set -euo pipefail
export LC_ALL=C

bin=$1 document=$2 requests=${3:-100000}
mark='<!-- From here on ./dev bench serving writes. -->'
connections=8
slow_clients=200
longest_wait=200 slowest_in_a_hundred=100  # milliseconds
growth=1024                                # KiB
folder=$(mktemp -d)
table=$folder/table
server='' port='' missed=0
trap 'stop; rm -rf "$folder"' EXIT

start() {  # COMMAND...
    coproc SERVER { exec "$@"; }
    server=$!
    read -r port <&"${SERVER[0]}"
    port=${port//[^0-9 :]/}
    port=${port##*:}
}

stop() {
    [[ -n $server ]] || return 0
    kill "$server"
    wait "$server" 2>/dev/null || true
    server=''
}

serve() {  # PROGRAM OPTION...
    start "$bin/$1" --listen 127.0.0.1:0 --state-dir "$folder/state" "${@:2}"
}

row() {  # WORK FIGURES [LIMIT RESULT]
    printf '| %s | %s | %s | %s |\n' "$1" "$2" "${3:-}" "${4:-}" >>"$table"
    printf 'serving: %s: %s %s\n' "$1" "$2" "${4:-}" >&2
}

# Whether FIGURE is at most LIMIT.
judged() {  # FIGURE LIMIT
    awk -v figure="$1" -v limit="$2" 'BEGIN { print figure <= limit ? "met" : "MISSED" }'
}

# A row of a figure that has a limit.
limited_row() {  # WORK FIGURES FIGURE LIMIT UNIT
    local result
    result=$(judged "$3" "$4")
    [[ $result == met ]] || missed=1
    row "$1" "$2" "$4 $5" "$result"
}

# Runs a command that ends in what `requests` prints. Puts that into `told`, its times in
# milliseconds into `hundredth` and `slowest`.
ask() {  # COMMAND...
    told=$("$@") || missed=1
    hundredth=${told##*in a hundred } hundredth=${hundredth%% *}
    slowest=${told##* slowest } slowest=${slowest%% *}
}

# How long the body of a page is.
size_of() {  # PATH
    exec 3<>"/dev/tcp/127.0.0.1/$port"
    printf 'GET %s HTTP/1.1\r\nHost: localhost\r\n\r\n' "$1" >&3
    sed '1,/^\r$/d' <&3 | wc -c
    exec 3>&-
}

# Resident memory in KiB and open descriptors of all of the server's processes together. Fails when
# one of them is gone meanwhile.
usage_of_server() {
    local process memory=0 descriptors=0 one
    for process in "$server" $(<"/proc/$server/task/$server/children"); do
        one=$(awk '/^VmRSS:/ { print $2 }' "/proc/$process/status") || return
        memory=$((memory + one))
        one=$(find "/proc/$process/fd" -mindepth 1 | wc -l) || return
        descriptors=$((descriptors + one))
    done
    echo "$memory $descriptors"
}

# The same once it stays the same: the last connections are closed, the last worker is there.
read_usage() {
    local before=''
    memory='' descriptors=''
    until [[ -n $before && $before == "$memory $descriptors" ]]; do
        before="$memory $descriptors"
        sleep 0.5
        read -r memory descriptors < <(usage_of_server 2>/dev/null) || memory=''
    done
}

constants() {  # SIZE
    local end
    for end in keep close; do
        start "$bin/constant-server" "$1" "$end"
        ask "$bin/requests" "$port" / "$((requests / 5))" "$connections"
        row "libmicrohttpd alone, the same $1 bytes each time, connections: $end" "$told"
        stop
    done
}

throughput() {  # PATH
    local workers size
    serve quillo-serve --workers 1
    size=$(size_of "$1")
    stop
    constants "$size"
    for workers in 1 2; do
        serve quillo-serve --workers "$workers"
        ask "$bin/requests" "$port" "$1" "$((requests / 5))" "$connections"
        row "\`$1\`, $workers worker$([[ $workers == 1 ]] || echo s)" "$told"
        stop
    done
}

beside_a_slow_page() {
    serve stalling-server --workers 2
    "$bin/requests" "$port" /slow 1 1 >"$folder/slow" &
    local slow=$!
    ask "$bin/requests" "$port" /quick 40 40
    if ! kill -0 "$slow" 2>/dev/null; then
        echo "serving.sh: the slow page was over before the quick ones" >&2
        missed=1
    fi
    wait "$slow" || missed=1
    limited_row "40 quick pages at once beside one of 2 s, 2 workers: the slowest" "$told" \
        "$slowest" "$longest_wait" ms
    stop
}

beside_slow_clients() {
    serve quillo-serve --workers 2
    ask "$bin/slow-clients" "$port" "$slow_clients" /widgets \
        "$bin/requests" "$port" /status "$((requests / 5))" "$connections"
    limited_row "\`/status\` beside $slow_clients slow clients of each kind: one in a hundred" \
        "$told" "$hundredth" "$slowest_in_a_hundred" ms
    stop
}

# The first tenth of the requests is to make all that is made once.
recycling() {  # MOST-REQUESTS WORDS
    local memory descriptors first_memory first_descriptors
    serve quillo-serve --workers 2 --max-requests "$1"
    ask "$bin/requests" "$port" /status "$((requests / 10))" "$connections"
    read_usage
    first_memory=$memory first_descriptors=$descriptors
    ask "$bin/requests" "$port" /status "$((requests - requests / 10))" "$connections"
    read_usage
    row "$requests requests, workers made anew $2" "$told"
    limited_row "memory of all processes then: growth" "$first_memory KiB, then $memory KiB" \
        "$((memory - first_memory))" "$growth" KiB
    limited_row "their descriptors: growth" "$first_descriptors, then $descriptors" \
        "$((descriptors - first_descriptors))" 0 ''
    stop
}

for path in /healthz /status; do
    throughput "$path"
done
beside_a_slow_page
beside_slow_clients
recycling 0 never
recycling 1 "after each request"

processor=$(sed -n 's/^model name[^:]*: //p;T;q' /proc/cpuinfo)
commit=$(git -C "$(dirname "$0")" describe --always --dirty=' with changes' 2>/dev/null || echo unknown)
{
    printf '%s, commit %s. %s, %s processors; %s.\n\n' "$(date +%F)" "$commit" "$processor" \
        "$(nproc)" "$(uname -sr)"
    printf '| Work | What it took | At most | Result |\n|---|---|---:|---|\n'
    cat "$table"
} >"$folder/text"
if [[ -f $document ]]; then
    kept=$(sed "\\|^$mark\$|,\$d" "$document")
    printf '%s\n\n%s\n\n' "$kept" "$mark" | cat - "$folder/text" >"$folder/document"
    cat "$folder/document" >"$document"
fi
cat "$folder/text"
exit "$missed"
