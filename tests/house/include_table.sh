#!/usr/bin/env bash
# Checks who includes whom. Prints FILE:LINE of every include that the table does not allow, and
# fails if there is one.
#
#     tests/house/include_table.sh [ROOT]
set -euo pipefail

# A folder, and what its files may include besides the standard library, POSIX and each other: the
# names as they stand in the include, with * for any text.
contract='zov_appdata.h glb.h device_log.h config_store.h attribute_service.h '
contract+='translation_service.h'
table() {
    cat <<END
platform/include  -
include/quillo    boost/shared_ptr.hpp zov_appdata.h glb.h
src/elements      quillo device_log.h
src/text          quillo elements/diagnostics.hpp boost/lexical_cast.hpp translation_service.h
src/enums         quillo
src/widgets       quillo elements/diagnostics.hpp boost/lexical_cast.hpp
src/device        quillo elements/diagnostics.hpp boost/lexical_cast.hpp ${contract/device_log.h/}
platform/host     ${contract} sqlite3.h spdlog/* boost/locale.hpp boost/locale/*
kit               quillo
server            quillo ${contract} host/host.hpp microhttpd.h fcgiapp.h nettle/* CLI/*
pages             quillo quillo_kit/* page.hpp
END
}

# Files elsewhere may include anything but what lies in src/. Tests may include that as well.
readonly unchecked='tests/*'

# The headers that everyone may include: those of C++; of C, as <cNAME> and as <NAME.h>; of POSIX,
# of the C library and of the compiler's runtime, as <NAME.h>; and the folders of the system.
readonly cxx_headers='
algorithm any array atomic bitset charconv chrono codecvt complex condition_variable deque exception
execution filesystem forward_list fstream functional future initializer_list iomanip ios iosfwd
iostream istream iterator limits list locale map memory memory_resource mutex new numeric optional
ostream queue random ratio regex scoped_allocator set shared_mutex sstream stack stdexcept streambuf
string string_view strstream system_error thread tuple type_traits typeindex typeinfo unordered_map
unordered_set utility valarray variant vector'
readonly c_headers='
assert complex ctype errno fenv float inttypes iso646 limits locale math setjmp signal stdarg
stdbool stddef stdint stdio stdlib string tgmath time uchar wchar wctype'
readonly posix_headers='
aio cxxabi dirent dlfcn endian execinfo fcntl fnmatch ftw getopt glob grp iconv ifaddrs langinfo
libgen link malloc mntent monetary mqueue netdb nl_types poll pthread pwd regex sched search
semaphore spawn stdio_ext strings sysexits syslog tar termios threads ucontext ulimit unistd utime
utmpx wordexp emmintrin'
readonly system_folders='arpa linux net netinet netpacket sys'

cd "${1:-$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/../..}"

# Every file that holds C++, without the leading "./".
cxx_files() {
    find . \( -path ./build -o -path ./.git -o -name node_modules \) -prune -o -type f \
        \( -name '*.[ch]' -o -name '*.[ch]pp' -o -name '*.cc' -o -name '*.inc' \
        -o -path '*/include/*' ! -name '*.*' \) -print | sed 's|^\./||' | sort
}

# FILE, LINE and HEADER of every include, set apart by tabs. A comment includes nothing, and a
# string opens no comment.
includes() {  # FILE...
    awk '
        FNR == 1 { in_comment = 0 }
        {
            code = ""
            rest = $0
            while (rest != "") {
                if (in_comment) {
                    end = index(rest, "*/")
                    rest = end ? substr(rest, end + 2) : ""
                    in_comment = !end
                } else if (match(rest, /^("([^"\\]|\\.)*"|\047([^\047\\]|\\.)+\047|[^"\047\/]+)/)) {
                    code = code substr(rest, 1, RLENGTH)
                    rest = substr(rest, RLENGTH + 1)
                } else if (rest ~ /^\/\//) {
                    rest = ""
                } else if (rest ~ /^\/\*/) {
                    code = code " "
                    rest = substr(rest, 3)
                    in_comment = 1
                } else {
                    code = code substr(rest, 1, 1)
                    rest = substr(rest, 2)
                }
            }
            if (sub(/^[ \t]*#[ \t]*include(_next)?[ \t]*/, "", code)) {
                sub(/[ \t]+$/, "", code)
                print FILENAME "\t" FNR "\t" code
            }
        }' "$@" /dev/null
}

# The row that FILE comes under: the folder that holds it, or the file itself.
folder_of() {  # FILE
    local folder
    for folder in "${!allowed[@]}"; do
        [[ $1 == "$folder" || $1 == "$folder"/* ]] && printf '%s' "$folder" && return
    done
    true
}

is_system() {  # HEADER
    [[ -n ${system[$1]:-} || (-n ${system[${1%%/*}/]:-} && $1 == *.h) ]]
}

# The file of the repository that HEADER names in FILE, if there is one: looked for beside the file,
# and in the folders that the build has on its include path.
resolve() {  # FILE HEADER
    local base path
    for base in "${1%/*}" src include platform/include platform kit server; do
        path=$base/$2
        [[ $path != *./* ]] || path=$(realpath -ms --relative-to=. "$path")
        [[ -n ${known[$path]:-} ]] && printf '%s' "$path" && return
    done
    true
}

declare -A allowed known system
for name in $cxx_headers; do system[$name]=1; done
for name in $c_headers; do system[c$name]=1 system[$name.h]=1; done
for name in $posix_headers; do system[$name.h]=1; done
for name in $system_folders; do system[$name/]=1; done
while read -r folder names; do
    allowed[$folder]=${names#-}
done < <(table)

files=()
while IFS= read -r file; do
    known[$file]=1
    # shellcheck disable=SC2053  # the right side is a pattern
    [[ $file == $unchecked ]] || files+=("$file")
done < <(cxx_files)

((${#files[@]})) || { echo "no C++ files in $PWD" && exit 1; }

status=0
complain() {
    echo "$file:$line: $*"
    status=1
}

for file in "${files[@]}"; do
    line=1
    if [[ $file =~ ^(src|platform|include)/ && -z $(folder_of "$file") ]]; then
        complain "this folder has no row in the include table"
    fi
done

while IFS=$'\t' read -r file line spelled; do
    case $spelled in
        \<*\> | \"*\") header=${spelled:1:-1} ;;
        *) complain "#include $spelled: not a plain name" && continue ;;
    esac
    is_system "$header" && continue

    folder=$(folder_of "$file")
    target=$(resolve "$file" "$header")
    if [[ -z $folder ]]; then
        [[ $target != src/* ]] ||
            complain "#include $spelled: only tests may include the library's inside"
        continue
    fi
    [[ -n $target && $(folder_of "$target") == "$folder" ]] && continue

    fits=
    read -ra names <<<"${allowed[$folder]}"
    for name in "${names[@]}"; do
        # shellcheck disable=SC2053  # the right side is a pattern
        [[ $header == $name ]] && fits=1
    done
    [[ -n $fits ]] ||
        complain "#include $spelled: $folder may include ${allowed[$folder]:-nothing of ours}"
done < <(includes "${files[@]}")
exit $status
