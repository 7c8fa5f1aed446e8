#!/usr/bin/env bash
# Checks that the porting guide speaks of everything that the library leaves for the platform to
# define, and of every file that it sends the reader to. Prints what is missing.
#
#     tests/house/porting_guide.sh LIBRARY GUIDE
set -euo pipefail
export LC_ALL=C
(($# == 2)) || { echo "usage: $0 LIBRARY GUIDE" >&2 && exit 2; }
library=$1 guide=$2
root=$(readlink -f "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../..")

status=0
complain() {
    echo "$guide: $*"
    status=1
}

# Symbols of the system bear a version, and parameters are not part of a name.
mapfile -t symbols < <(nm -D --undefined-only --demangle "$library" |
    sed -nE '/@/d; s/^ +U ([A-Za-z_:]+).*/\1/p')
((${#symbols[@]})) || complain "the library leaves nothing undefined"
for symbol in "${symbols[@]}"; do
    grep -qw -- "$symbol" "$guide" || complain "nothing on $symbol"
done

mapfile -t files < <(grep -oE '\b(tests|platform|docs|src)/[A-Za-z_./]+\b' "$guide")
((${#files[@]})) || complain "no file is named"
for file in "${files[@]}"; do
    [[ -e $root/$file ]] || complain "$file is not there"
done
exit $status
