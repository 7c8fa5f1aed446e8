#!/usr/bin/env bash
# quillo-serve with the sample pages: each of them arrives as it is written, is valid in every
# language, and so are the pages that refuse. Its manual page knows what its help does.
#
#     quillo_serve_test.sh QUILLO-SERVE TIDY MANUAL
set -euo pipefail

serve=$1 tidy=$2 manual=$3
folder=$(mktemp -d)
trap 'kill "$SERVER_PID" && wait "$SERVER_PID" || true; rm -rf "$folder"' EXIT
failures=0

fail() {
    printf 'FAILED: %s\n' "$*"
    failures=$((failures + 1))
}

coproc SERVER {
    exec "$serve" --listen 127.0.0.1:0 --state-dir "$folder/state" --log-file "$folder/log"
}
read -r _ address <&"${SERVER[0]}"
port=${address//[^0-9:]/} port=${port##*:}

# The answer's first line goes to `status`, its body to the file body.
ask() {  # METHOD PATH [HEADER-FIELD]
    exec 3<>"/dev/tcp/127.0.0.1/$port"
    printf '%s %s HTTP/1.1\r\nHost: localhost\r\n%s\r\n' "$1" "$2" "${3:+$3$'\r\n'}" >&3
    cat <&3 >"$folder/answer"
    exec 3<&-
    status=$(head -n 1 "$folder/answer" | tr -d '\r')
    sed '1,/^\r$/d' "$folder/answer" >"$folder/body"
}

is_valid() {  # WHAT
    # Tidy does not know aria-current (WAI-ARIA 1.1) and takes it for a browser's own.
    "$tidy" -errors -quiet --warn-proprietary-attributes no "$folder/body" || fail "$1 is not valid"
}

for page in status network processes storage log settings language about widgets; do
    for language in en de ar; do
        ask GET "/$page" "Accept-Language: $language"
        [[ $status == "HTTP/1.1 200 OK" ]] || fail "$page in $language: $status"
        grep -q "<html .*lang=\"$language\"" "$folder/body" || fail "$page is not in $language"
        is_valid "$page in $language"
    done
done

while read -r code method path field; do
    ask "$method" "$path" "$field"
    [[ $status == "HTTP/1.1 $code "* ]] || fail "$method $path: $status"
    is_valid "the refusal $code"
done <<'END'
400 GET nothing
404 GET /nothing
405 PUT /status
411 POST /status Transfer-Encoding: chunked
415 POST /status Content-Length: 0
421 GET http://elsewhere/
END

ask GET /
[[ $status == "HTTP/1.1 303 "* ]] || fail "/: $status"
[[ ! -s $folder/log ]] || fail "the log is not empty: $(cat "$folder/log")"

known=$(sed 's/\\-/-/g' "$manual")
for word in $("$serve" --help | grep -oE -- '--[a-z][a-z-]+|QUILLO_[A-Z_]+' | sort -u); do
    [[ $known == *"$word"* ]] || fail "the manual page does not know $word"
done

((failures == 0)) && printf 'all as it should be\n'
exit $((failures != 0))
