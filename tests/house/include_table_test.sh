#!/usr/bin/env bash
# Checks include_table.sh: builds small trees of files and looks at what it says of them.
set -euo pipefail

check=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/include_table.sh
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cases=0 failures=0

# A tree in which every folder includes what it may.
sound_tree() {
    put platform/include/zov_appdata.h '#include <stdint.h>'
    put platform/include/glb.h '#include "zov_appdata.h"'
    put include/quillo '#include <glb.h>' '#include <boost/shared_ptr.hpp>' '#include <map>'
    put src/elements/diagnostics.hpp '#include <quillo>' '#include <device_log.h>'
    put src/text/uri.hpp '#include <string>'
    put src/text/uri.cpp '#include "text/uri.hpp"' '#include "elements/diagnostics.hpp"'
    put src/text/uri_args.cpp '#include "uri.hpp"' '#include <translation_service.h>'
    put src/enums/enums.cpp '#include <quillo>' '#include <cstring>'
    put src/widgets/tab_set.cpp '#include <quillo>' '#include <boost/lexical_cast.hpp>'
    put src/device/loa_req.cpp '#include <attribute_service.h>' '#include <sys/ioctl.h>'
    put platform/host/log.cpp '#include <device_log.h>' '#include <spdlog/sinks/stdout_sinks.h>'
    put platform/host/host.hpp '#include <string>'
    put kit/quillo_kit/safe.hpp '#include <quillo>'
    put kit/safe.cpp '#include "quillo_kit/safe.hpp"'
    put server/page.hpp '#include <quillo>'
    put server/front.cpp '#include <quillo>' '#include <microhttpd.h>' '#include <glb.h>'
    put pages/status.cpp '#include <quillo>' '#include <net/if.h>'
    put bench/render.cpp '#include <quillo>' '#include <benchmark/benchmark.h>'
    put tests/text/uri_test.cpp '#include "text/uri.hpp"' '#include "elements/diagnostics.hpp"'
}

put() {  # FILE LINE...
    mkdir -p "$(dirname "$1")"
    printf '%s\n' "${@:2}" >"$1"
}

fail() {
    printf 'FAILED: %s\n%s\n' "$title" "$output"
    failures=$((failures + 1))
}

# The sound tree, and FILE beside or instead of its own; EXPECTED is how the one line of the answer
# begins, or nothing.
expect() {  # TITLE EXPECTED FILE LINE...
    local title=$1 expected=$2 status=0 output
    cases=$((cases + 1))
    rm -rf "$scratch/tree"
    cp -r "$scratch/sound" "$scratch/tree"
    cd "$scratch/tree"
    put "${@:3}"
    output=$("$check" .) || status=$?
    if [[ -z $expected ]]; then
        [[ $status == 0 && -z $output ]] || fail
    else
        [[ $status == 1 && $output == "$expected"* && $(wc -l <<<"$output") == 1 ]] || fail
    fi
}

# FILE may include the first header and not the second.
row() {  # FILE ALLOWED FORBIDDEN
    expect "$1 includes $2" "" "$1" "// A file." "#include $2"
    expect "$1 includes $3" "$1:2: #include $3: " "$1" "#include <vector>" "#include $3"
}

mkdir "$scratch/sound"
cd "$scratch/sound"
sound_tree

row platform/include/device_log.h '"zov_appdata.h"' '<boost/config.hpp>'
row include/quillo '<zov_appdata.h>' '<device_log.h>'
row include/quillo '<boost/shared_ptr.hpp>' '<boost/lexical_cast.hpp>'
row src/elements/renderer.cpp '<device_log.h>' '"text/uri.hpp"'
row src/elements/renderer.cpp '"elements/diagnostics.hpp"' '<translation_service.h>'
row src/text/filter.cpp '"text/uri.hpp"' '<config_store.h>'
row src/text/filter.cpp '"elements/diagnostics.hpp"' '"../elements/diagnostics.hpp"'
row src/enums/texts.cpp '<quillo>' '"elements/diagnostics.hpp"'
row src/widgets/nav_bar.cpp '<boost/lexical_cast.hpp>' '<translation_service.h>'
row src/device/object_query.cpp '<config_store.h>' '<device_log.h>'
row src/device/object_query.cpp '"elements/diagnostics.hpp"' '"text/uri.hpp"'
row platform/host/store.cpp '<sqlite3.h>' '<quillo>'
row platform/host/store.cpp '<boost/locale.hpp>' '"elements/diagnostics.hpp"'
row platform/host/sys/mounts.cpp '"host/host.hpp"' '<boost/lexical_cast.hpp>'
row kit/table.cpp '<quillo_kit/safe.hpp>' '<glb.h>'
row server/worker.cpp '<zov_appdata.h>' '<sqlite3.h>'
row server/worker.cpp '<host/host.hpp>' '<host/log.cpp>'
row server/worker.cpp '<quillo>' '"../platform/host/log.cpp"'
row server/digests.cpp '<nettle/hmac.h>' '<gcrypt.h>'
row pages/log.cpp '<quillo>' '<sqlite3.h>'
row pages/log.cpp '<quillo_kit/safe.hpp>' '<host/host.hpp>'
row pages/log.cpp '<page.hpp>' '<front.hpp>'
row bench/filter.cpp '<quillo>' '"../src/text/uri.hpp"'
row fuzz/filter.cpp '<boost/algorithm/hex.hpp>' '<text/uri.hpp>'

expect "a folder without a row" "src/network/socket.cpp:1: this folder has no row" \
    src/network/socket.cpp '#include <quillo>'
expect "an include in a comment" "" src/enums/texts.cpp \
    '// #include <glb.h>' '/* one' '#include <glb.h>' '*/ // two' '/* a */ /* b */'
expect "an include behind a comment" "src/enums/texts.cpp:2: #include <glb.h>: " \
    src/enums/texts.cpp '/* one' 'two */  #  include <glb.h>  // three'
expect "comment marks in strings" "src/enums/texts.cpp:2: #include <glb.h>: " \
    src/enums/texts.cpp 'char const* a = "/*\"/*"; char b = '"'\"'"'; int c = 1'"'"'000; // "/*' \
    '#include <glb.h>'
expect "a comment left open in the file before" "src/text/filter.cpp:1: #include <glb.h>: " \
    src/text/filter.cpp '#include <glb.h>' '/* open'
expect "an include by a macro" "src/enums/texts.cpp:1: #include HEADER: " \
    src/enums/texts.cpp '#include HEADER'
expect "a missing own file" 'src/enums/texts.cpp:1: #include "texts.hpp": ' \
    src/enums/texts.cpp '#include "texts.hpp"'

echo "$cases trees, $failures failures"
((failures == 0))
