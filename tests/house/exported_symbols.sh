#!/usr/bin/env bash
# Compares what the shared library exports with a list, which is sorted and has one name a line; and
# what it leaves for the platform to define with the platform contract. Prints what is missing and
# what is too much, and fails if there is any.
#
#     tests/house/exported_symbols.sh LIBRARY LIST
#     tests/house/exported_symbols.sh --collect LIBRARY LIST     writes the list anew
set -euo pipefail
export LC_ALL=C

# What the library calls of the platform.
contract() {
    cat <<'END'
Cfg_GetBoolAttrValue
Cfg_SetAttrValue
ConfigUpdate
Glb::ThrowError(std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&, int, char const*)
Glb_strcmp
HTTP_Extension_Translation_Lang
HTTP_Translate_Phrase
Log_SpecEntry
Trans_LangExists
format_con_request
format_sys_request
format_true_loa_request
loareq_free
loareq_initialize
loareq_set_attrs
loareq_set_context
loareq_set_default_val
loareq_set_fnArg
loareq_set_fnName
loareq_set_format
loareq_set_object
logSpecError
logSpecForceInfo
logSpecInfo
logSpecWarn
END
}

# An absolute symbol (A) is the name of a version, no function and no variable.
# std::size_t is an unsigned long in the list, and an unsigned int on machines of 32 bits.
exported() {
    nm -D --defined-only --demangle --without-symbol-versions "$library" |
        sed -nE 's/unsigned int/unsigned long/g; s/^[0-9a-f]+ [^A] //p' | sort -u
}

# What a library of the system defines bears a version; what no library defines bears none, and may
# only stay so if it is weak.
imported() {
    nm -D --undefined-only --demangle "$library" | sed -nE '/@/d; s/^ +U //p' | sort -u
}

compare() {  # WHAT EXPECTED ACTUAL
    local difference
    difference=$(comm -3 --output-delimiter=$'\t' <(echo "$2") <(echo "$3"))
    [[ -n $difference ]] || return 0
    sed "s/^[^\t]/missing among what is $1: &/; s/^\t/too much among what is $1: /" <<<"$difference"
    return 1
}

collect=
if [[ ${1:-} == --collect ]]; then
    collect=1
    shift
fi
(($# == 2)) || { echo "usage: $0 [--collect] LIBRARY LIST" >&2 && exit 2; }
library=$1 list=$2

symbols=$(exported)
[[ -n $symbols ]] || { echo "$library exports nothing" && exit 1; }
if [[ -n $collect ]]; then
    echo "$symbols" >"$list"
    exit
fi

status=0
sort -cu "$list" || status=1
compare exported "$(cat "$list")" "$symbols" || status=1
compare imported "$(contract)" "$(imported)" || status=1
exit $status
