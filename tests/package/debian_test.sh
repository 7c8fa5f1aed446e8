#!/usr/bin/env bash
# Makes the Debian packages, has lintian judge them, installs them into a scratch root, uses them
# there and removes them again.
#
#     debian_test.sh REPOSITORY FOLDER      FOLDER is where they are built
set -euo pipefail
export LC_ALL=C
repository=$1 folder=$2
root=$folder/root
stranger=$repository/tests/package/stranger
unset QUILLO_CATALOG_DIR LD_LIBRARY_PATH
export QUILLO_STATE_DIR=$folder/state
failures=0

command -v dpkg >/dev/null || { echo "skipped: no Debian system" && exit 77; }

fail() {
    printf 'FAILED: %s\n' "$*"
    failures=$((failures + 1))
}

# Runs a command and shows what it says only if it fails.
quietly() {  # COMMAND...
    "$@" >"$folder/said" 2>&1 || { cat "$folder/said" && return 1; }
}

# dpkg on the scratch root, which has none of the packages that ours need.
in_root() {  # ARGUMENT...
    local as_root=()
    ((EUID == 0)) || as_root=(fakeroot)
    quietly "${as_root[@]}" dpkg --root="$root" --force-depends --force-bad-path "$@"
}

rm -rf "$root" "$folder/packages"
mkdir -p "$root"/var/lib/dpkg/{info,updates}
touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
cd "$repository"
quietly cmake --preset package -B "$folder/build"
quietly cmake --build "$folder/build" --parallel 2
quietly cpack --config "$folder/build/CPackConfig.cmake" -B "$folder/packages"
packages=("$folder"/packages/*.deb)

names=$(for package in "${packages[@]}"; do dpkg-deb -f "$package" Package; done | tr '\n' ' ')
[[ $names == "libquillo-dev libquillo-host-dev libquillo-host0 libquillo0 quillo-tools " ]] ||
    fail "the packages are $names"
quietly lintian --no-cfg --allow-root --fail-on error,warning "${packages[@]}" ||
    fail "lintian finds fault with the packages"

# What a package needs of the others, and of the system.
while read -r name needed; do
    depends=$(dpkg-deb -f "$folder/packages/$name"_*.deb Depends)
    [[ $depends == *"$needed"* ]] || fail "$name does not depend on $needed, but on $depends"
done <<'END'
libquillo0 libstdc++6 (>=
libquillo-host0 libsqlite3-0 (>=
libquillo-dev libquillo0 (=
libquillo-dev libboost-dev
libquillo-host-dev libquillo-dev (=
libquillo-host-dev libquillo-host0 (=
quillo-tools libquillo0 (=
quillo-tools libquillo-host0 (=
END

in_root --install "${packages[@]}"
libraries=$(dirname "$(find "$root" -name libquillo.so.0)")
if grep -rl -e "$repository" -e "$folder" "$root/usr"; then
    fail "these files know where they were built"
fi
for binary in "$root"/usr/bin/* "$libraries"/*.so.*; do
    [[ -L $binary || $(file "$binary") == *", stripped" ]] || fail "$binary is not stripped"
done

# As the loader would find the libraries in a root of its own.
export LD_LIBRARY_PATH=$libraries
"$root/usr/bin/quillo-render" status >"$folder/page.html"
grep -qF ">$(uname -n)<" "$folder/page.html" || fail "the status page lacks this machine"
"$root/usr/bin/quillo-render" status --language de >"$folder/page.html"
grep -qF Netzwerkschnittstellen "$folder/page.html" || fail "there is no German catalog"

# As one who has the -dev packages builds a page program.
export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs quillo-kit quillo-host)"
g++ -std=c++17 "$stranger/page.cpp" "$stranger/quiet_host.cpp" "${flags[@]}" -o "$folder/page"
"$folder/page" >"$folder/page.html"
diff -u "$stranger/page.html" "$folder/page.html" || fail "the page program writes another page"

read -ra installed <<<"$names"
in_root --purge "${installed[@]}"
left=$(find "$root" -mindepth 1 ! -path "$root/var*")
[[ -z $left ]] || fail "these are left behind: $left"

echo "${#packages[@]} packages, $failures failures"
((failures == 0))
