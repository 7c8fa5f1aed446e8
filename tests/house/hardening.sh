#!/usr/bin/env bash
# Checks how the shared library is linked: what it needs, its name, and that a program which loads
# it can be attacked neither through its tables nor through its stack.
#
#     tests/house/hardening.sh LIBRARY SONAME
set -euo pipefail
export LC_ALL=C
(($# == 2)) || { echo "usage: $0 LIBRARY SONAME" >&2 && exit 2; }
library=$1 soname=$2

dynamic=$(readelf -dW "$library")
segments=$(readelf -lW "$library")
symbols=$(readelf --dyn-syms -W "$library")

status=0
complain() {
    echo "$library: $*"
    status=1
}

# Boost is headers alone here, and the platform is the program's to choose.
while read -r needed; do
    case $needed in
        libstdc++.so.* | libm.so.* | libgcc_s.so.* | libc.so.* | ld-linux* | ld.so.* | ld64.so.*) ;;
        *) complain "needs $needed" ;;
    esac
done < <(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic")

grep -q "(SONAME).*\[$soname\]$" <<<"$dynamic" || complain "is not called $soname"
grep -qE '\(RPATH\)|\(RUNPATH\)' <<<"$dynamic" && complain "looks for libraries in a fixed folder"
grep -q '(TEXTREL)' <<<"$dynamic" && complain "has relocations in its code"
grep -q '(FLAGS).*BIND_NOW' <<<"$dynamic" || complain "is not bound at once (BIND_NOW)"
grep -q 'GNU_RELRO' <<<"$segments" || complain "has no read-only relocations (RELRO)"
grep -qE 'GNU_STACK.* RW +0x[0-9a-f]+$' <<<"$segments" || complain "has an executable stack"
grep -q '__stack_chk_fail' <<<"$symbols" || complain "is built without stack protection"
exit $status
