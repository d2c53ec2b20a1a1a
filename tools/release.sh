#!/usr/bin/env bash
# Makes the files of a version for those who play: build/release-<version>/ with an archive for each system, the Debian
# package, the software bill of materials and the checksums.
#   tools/release.sh [PRESET...]
# Without arguments all of linux-x86_64, linux-aarch64 and windows-x86_64. What a system lacks is said and left out: its
# compiler, its libuv (then ondrel comes without ondrel-uci). The same commit with the same packages of Debian gives the
# same bytes, wherever the checkout stands. docs/RELEASING.md tells the rest.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/tools/setup.sh"
cd "$root"

presets=("$@")
[[ $# -gt 0 ]] || presets=(linux-x86_64 linux-aarch64 windows-x86_64)

need cmake ninja-build g++ git python3 zip
want libuv1-dev dpkg-dev file

export LC_ALL=C TZ=UTC
umask 022
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
work=$root/build/release-work

# compiler_of PRESET: the compiler, and the package that it is in.
compiler_of() {
    case $1 in
        linux-x86_64) echo g++ g++ ;;
        linux-aarch64) echo aarch64-linux-gnu-g++ g++-aarch64-linux-gnu qemu-user ;;
        windows-x86_64) echo x86_64-w64-mingw32-g++-posix g++-mingw-w64-x86-64-posix wine64 wine ;;
        *) echo "release.sh: there is no preset $1" >&2; return 1 ;;
    esac
}

left_out() {
    echo "left out: $*" >&2
}

# The profile of a foreign system needs its emulator; without it the same source is built without a profile, and other
# bytes come of it.
emulated() {
    case $1 in
        linux-aarch64) any_of qemu-aarch64 ;;
        windows-x86_64) any_of wine ;;
        *) true ;;
    esac
}

# build_target PRESET: into $work/PRESET.
build_target() {
    local dir=$work/$1 libuv=$work/libuv-$1
    # No path of this checkout is to be seen in what is built.
    local arguments=("-DCMAKE_CXX_FLAGS=-ffile-prefix-map=$root=.")
    rm -rf "$dir"
    if [[ $1 != linux-x86_64 ]] && grep -qs 'add_executable(ondrel-uci' CMakeLists.txt cmake/*.cmake; then
        if tools/libuv.sh "$1" "$libuv"; then
            arguments+=("-DONDREL_LIBUV_INCLUDE=$libuv/include" "-DONDREL_LIBUV=$libuv/lib/libuv_a.a")
        else
            left_out "ondrel-uci for $1: its libuv cannot be had"
        fi
    fi
    if emulated "$1"; then
        tools/pgo.sh "$1" "$dir" "${arguments[@]}"
    else
        left_out "the profile of $1: there is no emulator to train it under"
        cmake --preset "$1" -B "$dir" "${arguments[@]}"
        cmake --build "$dir" -j "$jobs"
    fi
}

# programs_of PRESET: what is handed out of what was built.
programs_of() {
    local name
    for name in ondrel ondrel-uci; do
        [[ ! -f $work/$1/$name ]] || echo "$work/$1/$name"
        [[ ! -f $work/$1/$name.exe ]] || echo "$work/$1/$name.exe"
    done
}

# fill PRESET DIRECTORY: what an archive holds.
fill() {
    local program strip
    strip=$(sed -n 's/^CMAKE_STRIP:FILEPATH=//p' "$work/$1/CMakeCache.txt")
    mkdir -p "$2/docs"
    for program in $(programs_of "$1"); do
        "$strip" -o "$2/${program##*/}" "$program"
        chmod 755 "$2/${program##*/}"
    done
    install -m 644 README.md CHANGELOG.md "$2/"
    install -m 644 docs/*.md docs/*.6 "$2/docs/"
    tools/bill_of_materials.py licences --preset "$1" --build "$work/$1" --libuv "$work/libuv-$1" --into "$2"
}

# pack PRESET: the archive of what `fill` has laid out.
pack() {
    local name=ondrel-$version-$1 stage=$work/stage-$1
    rm -rf "$stage"
    mkdir -p "$stage"
    fill "$1" "$stage/$name"
    find "$stage" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
    if [[ $1 == windows-* ]]; then
        (cd "$stage" && find "$name" -type f | sort | zip -q -X -9 -@ "$out/$name.zip")
    else
        tar -C "$stage" --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 --numeric-owner --format=ustar \
            -cf - "$name" | gzip -9n >"$out/$name.tar.gz"
    fi
}

# The package is linked with the libraries of the system that installs it: the same objects, linked once more.
pack_for_debian() {
    local dir=$work/linux-x86_64
    if ! any_of dpkg-shlibdeps || ! any_of file; then
        return 1
    fi
    cmake -B "$dir" -DCMAKE_EXE_LINKER_FLAGS= >/dev/null
    cmake --build "$dir" -j "$jobs"
    rm -rf "$work/debian"
    cpack -G DEB --config "$dir/CPackConfig.cmake" -B "$work/debian" -D CPACK_PACKAGE_VERSION="$version"
    cp "$work/debian"/*.deb "$out/"
}

version=
made=()
for preset in "${presets[@]}"; do
    read -ra tools <<<"$(compiler_of "$preset")"
    want_programs=("${tools[@]:1}")
    any_of "${tools[0]}" || want "${want_programs[@]}"
    emulated "$preset" || want "${want_programs[@]:1}"
    if ! any_of "${tools[0]}"; then
        left_out "$preset: there is no ${tools[0]} (Debian package ${tools[1]})"
        continue
    fi
    echo "== $preset"
    mkdir -p "$work"
    build_target "$preset" >"$work/$preset.log" || { cat "$work/$preset.log" >&2; exit 1; }
    if [[ ${version:=$(<"$work/$preset/version")} != "$(<"$work/$preset/version")" ]]; then
        echo "release.sh: the tree has changed while the programs were built" >&2
        exit 1
    fi
    out=$root/build/release-$version
    [[ ${#made[@]} -gt 0 ]] || { rm -rf "$out"; mkdir -p "$out"; }
    made+=("$preset")
    pack "$preset"
    if [[ $preset == linux-x86_64 ]]; then
        pack_for_debian >"$work/debian.log" 2>&1 || left_out "the Debian package (build/release-work/debian.log)"
    fi
done
[[ ${#made[@]} -gt 0 ]] || { echo "release.sh: nothing was built" >&2; exit 1; }

tools/bill_of_materials.py spdx --version "$version" --work "$work" --out "$out" --presets "${made[@]}"
(cd "$out" && sha256sum -- * >"$work/SHA256SUMS" && mv "$work/SHA256SUMS" SHA256SUMS)
echo "$out"
cat "$out/SHA256SUMS"
