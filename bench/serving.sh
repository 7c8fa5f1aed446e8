#!/usr/bin/env bash
# What the page server takes, on an otherwise idle machine: requests a second beside a constant of
# the same size, quick pages beside a slow one and beside slow clients, and memory and descriptors
# over many requests.
#
#     cmake --preset release -B build/serving -DBUILD_TESTING=OFF -DQUILLO_BUILD_BENCH=ON
#     cmake --build build/serving --target quillo-serve constant-server requests slow-clients \
#         stalling-server
#     bench/serving.sh build/serving/bin [REQUESTS]
set -euo pipefail

bin=$1 requests=${2:-100000}
connections=8
state=$(mktemp -d)
server='' port=''
trap 'stop; rm -rf "$state"' EXIT

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

serve() {  # OPTION...
    start "$bin/quillo-serve" --listen 127.0.0.1:0 --state-dir "$state" "$@"
}

processes() { echo "$server $(pgrep -P "$server" | tr '\n' ' ')"; }

# Resident memory in KiB and open descriptors, of all processes together.
usage_of_server() {
    local process memory=0 descriptors=0
    for process in $(processes); do
        memory=$((memory + $(awk '/^VmRSS:/ { print $2 }' "/proc/$process/status")))
        descriptors=$((descriptors + $(find "/proc/$process/fd" -mindepth 1 | wc -l)))
    done
    echo "$memory KiB, $descriptors descriptors"
}

ask() {  # TITLE PATH COUNT
    printf '%-44s %s\n' "$1" "$("$bin/requests" "$port" "$2" "$3" "$connections")"
}

size_of() {  # PATH
    curl -s "http://127.0.0.1:$port$1" | wc -c
}

for path in /healthz /status; do
    serve --workers 1
    size=$(size_of "$path")
    stop
    for end in keep close; do
        start "$bin/constant-server" "$size" "$end"
        ask "constant, $size bytes, $end" / "$((requests / 5))"
        stop
    done
    for workers in 1 2; do
        serve --workers "$workers"
        ask "quillo-serve $path, $workers workers" "$path" "$((requests / 5))"
        stop
    done
done

start "$bin/stalling-server" --listen 127.0.0.1:0 --state-dir "$state" --workers 2
curl -s "http://127.0.0.1:$port/slow" >"$state/slow" &
slow=$!
printf '%-44s %s\n' "40 quick pages at once beside one of 2 s" \
    "$("$bin/requests" "$port" /quick 40 40)"
kill -0 "$slow" || echo "the slow page was over before the quick ones"
wait "$slow"
stop

serve --workers 2
printf '%-44s %s\n' "/status beside 3 times 200 slow clients" \
    "$("$bin/slow-clients" "$port" 200 /widgets "$bin/requests" "$port" /status "$((requests / 5))" \
        "$connections")"
stop

for most in 0 1; do
    serve --workers 2 --max-requests "$most"
    ask "--max-requests $most, the first tenth" /status "$((requests / 10))"
    printf '%-44s %s\n' "" "$(usage_of_server)"
    ask "--max-requests $most, the rest" /status "$((requests * 9 / 10))"
    printf '%-44s %s\n' "" "$(usage_of_server)"
    stop
done
