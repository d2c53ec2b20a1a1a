#!/usr/bin/env bash
# Fetches libuv for a system that is not ours, for ondrel-uci:
#   tools/libuv.sh linux-aarch64|windows-x86_64 DIRECTORY
# leaves include/, lib/libuv_a.a, copyright and version in DIRECTORY. For ARM it takes Debian's package of that
# architecture, for Windows it builds Debian's source package. apt keeps its lists in DIRECTORY too: a copy of the
# machine's sources with the line that source packages need; nothing on the machine is changed or installed. Ends with 1
# and a line on standard error where libuv cannot be had.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
[[ $# -eq 2 ]] || { sed -n '2,7s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2; }
target=$1
mkdir -p "$2"
dir=$(readlink -f "$2")
apt=$dir/apt
log=$dir/libuv.log
: >"$log"

give_up() {
    echo "${0##*/}: no libuv for $target: $1 ($log)" >&2
    exit 1
}

# Of the machine's sources those that are Debian's own, with source packages.
copy_sources() {
    mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial"
    local file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [[ ! -f $file ]] || grep -E '^deb .*/debian(-security)?/? ' "$file" | sed 'p; s/^deb /deb-src /' || true
    done >"$apt/parts/copy.list"
    for file in /etc/apt/sources.list.d/*.sources; do
        [[ ! -f $file ]] || grep -qE '^URIs:.*/debian(-security)?/?$' "$file" || continue
        [[ ! -f $file ]] || sed 's/^Types:.*/Types: deb deb-src/' "$file"
        echo
    done >"$apt/parts/copy.sources"
}

own_apt_get() {
    apt-get -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/parts" \
        -o Dir::State::lists="$apt/lists" -o Dir::Cache="$apt/cache" \
        -o APT::Architectures::=amd64 -o APT::Architectures::=arm64 -o APT::Sandbox::User= \
        -o Acquire::Languages=none -o Acquire::Retries=1 -o Acquire::http::Timeout=15 "$@" >>"$log" 2>&1
}

take_package() {
    (cd "$dir" && own_apt_get download libuv1-dev:arm64) || give_up "no package libuv1-dev for arm64"
    rm -rf "$dir/package"
    dpkg-deb -x "$dir"/libuv1-dev_*_arm64.deb "$dir/package"
    dpkg-deb -f "$dir"/libuv1-dev_*_arm64.deb Version >"$dir/version"
    cp -r "$dir/package/usr/include" "$dir/include"
    cp "$dir/package/usr/lib/aarch64-linux-gnu/libuv_a.a" "$dir/lib/" 2>>"$log" ||
        cp "$dir/package/usr/lib/aarch64-linux-gnu/libuv.a" "$dir/lib/libuv_a.a" || give_up "the package has no archive"
    cp "$dir/package/usr/share/doc/libuv1-dev/copyright" "$dir/copyright"
}

# All paths go through a map, so that none of this machine is in the archive.
build_source() {
    rm -rf "$dir/source"
    (cd "$dir" && own_apt_get source --download-only libuv1) || give_up "no source package of libuv"
    dpkg-source -x "$dir"/libuv1_*.dsc "$dir/source" >>"$log" 2>&1 || give_up "the source package does not unpack"
    sed -n 's/^Version: //p' "$dir"/libuv1_*.dsc | head -1 >"$dir/version"
    {
        cmake -S "$dir/source" -B "$dir/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
            -DLIBUV_BUILD_TESTS=OFF -DLIBUV_BUILD_BENCH=OFF \
            -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchains/windows-x86_64.cmake" \
            -DCMAKE_C_FLAGS="-ffile-prefix-map=$dir=." &&
            cmake --build "$dir/build" --target uv_a
    } >>"$log" 2>&1 || give_up "it does not build"
    cp "$dir/build/libuv_a.a" "$dir/lib/"
    cp -r "$dir/source/include" "$dir/include"
    cp "$dir/source/debian/copyright" "$dir/copyright"
}

rm -rf "$dir/include" "$dir/lib" "$dir"/*.deb "$dir"/*.dsc
mkdir -p "$dir/lib"
copy_sources
own_apt_get update || give_up "the package lists cannot be had"
case $target in
    linux-aarch64) take_package ;;
    windows-x86_64) build_source ;;
    *) give_up "nobody knows how" ;;
esac
