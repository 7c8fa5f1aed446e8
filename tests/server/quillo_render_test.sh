#!/usr/bin/env bash
# quillo-render as a person runs it: exit codes, what goes to which stream, and pages that are valid
# and show this machine.
#
#     quillo_render_test.sh QUILLO-RENDER TIDY
set -euo pipefail

render=$1 tidy=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failures=0
export QUILLO_STATE_DIR=$folder/state

fail() {
    printf 'FAILED: %s\n' "$*"
    failures=$((failures + 1))
}

run() {  # EXIT-CODE ARGUMENT...
    local expected=$1 status=0
    shift
    "$render" "$@" >"$folder/out" 2>"$folder/err" || status=$?
    [[ $status == "$expected" ]] || fail "quillo-render $*: exit code $status, not $expected"
}

# The stream holds the text.
holds() {  # out|err TEXT
    grep -qF -- "$2" "$folder/$1" || fail "std$1 lacks: $2"
}

is_empty() {  # out|err
    [[ ! -s $folder/$1 ]] || fail "std$1 is not empty: $(head -n 3 "$folder/$1")"
}

# A wrong command line is answered on standard error alone, with the usage.
while read -r message arguments; do
    # shellcheck disable=SC2086
    run 2 $arguments
    is_empty out
    holds err "quillo-render: ${message//_/ }"
    holds err "Usage: quillo-render [OPTIONS] PAGE"
    holds err "  status "
done <<'END'
PAGE_is_required
there_is_no_page_'Status' Status
The_following_argument_was_not_expected:_--bogus status --bogus
The_following_argument_was_not_expected:_processes status processes
--language:_is_longer_than_63_bytes status -l aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa
END

run 0 --help
holds out "Exit codes: 0 the page was written, 1 it was not, 2 the command line is wrong."
is_empty err
run 0 --version
holds out "quillo-render "

# Pages are valid in every language, and silent.
for page in status network processes storage settings language about widgets; do
    for language in en de ar; do
        run 0 "$page" --language "$language"
        is_empty err
        # Tidy does not know aria-current (WAI-ARIA 1.1) and takes it for a browser's own.
        "$tidy" -errors -quiet --warn-proprietary-attributes no "$folder/out" ||
            fail "$page in $language is not valid"
        holds out "lang=\"$language\""
    done
done
# Joint images by the language: Arabic exchanges on and off.
while read -r language images; do
    run 0 network -l "$language" -a view=traffic
    found=$(sed '/<style>/,/<.style>/d' "$folder/out" | grep -oE 'Tab_[LR]T[A-Za-z]+' | tr '\n' ' ')
    [[ $found == "$images " ]] || fail "tabs in $language: $found"
done <<'END'
en Tab_LToff Tab_LToffRTon Tab_LTonRToff Tab_RToff
de Tab_LToff Tab_LToffRTon Tab_LTonRToff Tab_RToff
ar Tab_LTon Tab_LTonRToff Tab_LToffRTon Tab_RTon
END
run 0 status -l 'fr;q=0.9, de;q=0.5'
holds out "Netzwerkschnittstellen"

# The status page shows this machine.
run 0 status
holds out "<bdi>$(uname -n)</bdi>"
holds out "<bdi>$(uname -r)</bdi>"
while read -r mount; do
    holds out "<bdi>$mount</bdi>"
done < <(findmnt --noheadings --real --output TARGET --mountpoint /)
for interface in /sys/class/net/*/mtu; do
    [[ ! -e $interface ]] || holds out "<bdi>$(basename "$(dirname "$interface")")</bdi>"
done
run 0 processes
holds out "<bdi>1</bdi>"

# All of the device log is shown when it is asked for.
run 0 status --verbose
holds err "src/text/uri_args.cpp"

# A page that cannot be written is a failure that says why.
status=0
"$render" status >/dev/full 2>"$folder/err" || status=$?
[[ $status == 1 ]] || fail "a full disk: exit code $status"
holds err "quillo-render: page 'status': standard output cannot be written: No space left on device"

((failures == 0)) && printf 'all as it should be\n'
exit $((failures != 0))
