#!/usr/bin/env bash
# Builds ondrel-bench in one way after another and tells whether the search writes the same in all of them.
#   tools/signatures.sh quick|whole [WAY...]
# A way is a preset (linux-x86_64, linux-aarch64, windows-x86_64) or <compiler>-<how>: gcc or clang, with O1, O3, lto or
# pgo. Without a WAY all of them. Writes a row of a table for each; ends with 1 where a signature is not that in
# tests/data/bench-signature.txt (the first line for the quick conversations, the second for the whole bench) or a way
# does not build. A way whose compiler or emulator is not installed is passed over and said.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/tools/setup.sh"
cd "$root"

case ${1:-} in
    quick) number=1 arguments=(quick) ;;
    whole) number=2 arguments=() ;;
    *) sed -n '2,8s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2 ;;
esac
ways=("${@:2}")
[[ $# -gt 1 ]] || ways=({gcc,clang}-{O1,O3,lto,pgo} linux-x86_64 linux-aarch64 windows-x86_64)
expected=$(sed -n "${number}s/ *$//p" tests/data/bench-signature.txt)

# needs_of WAY: the programs without which it cannot be built and run.
needs_of() {
    case $1 in
        gcc-* | linux-x86_64) echo g++ ;;
        clang-lto) echo clang++ ld.lld ;;
        clang-pgo) echo clang++ llvm-profdata ;;
        clang-*) echo clang++ ;;
        linux-aarch64) echo aarch64-linux-gnu-g++ qemu-aarch64 ;;
        windows-x86_64) echo x86_64-w64-mingw32-g++-posix wine ;;
        *) echo "signatures.sh: what is $1?" >&2; return 1 ;;
    esac
}

# build_way WAY DIRECTORY
build_way() {
    local compiler=g++ options=()
    case $1 in
        linux-* | windows-*)
            cmake --preset "$1" -B "$2" && cmake --build "$2" -j "$jobs" --target ondrel-bench
            return ;;
        clang-*) compiler=clang++ ;;
    esac
    case $1 in
        *-O1) options=("-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG") ;;
        *-lto) options=(-DONDREL_LTO=ON) ;;
        *-pgo) tools/pgo.sh release "$2" "-DCMAKE_CXX_COMPILER=$compiler" -DONDREL_TESTS=OFF; return ;;
    esac
    [[ $1 != clang-lto ]] || options+=(-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld)
    cmake --preset release -B "$2" "-DCMAKE_CXX_COMPILER=$compiler" -DONDREL_TESTS=OFF "${options[@]}" &&
        cmake --build "$2" -j "$jobs" --target ondrel-bench
}

lacks() {
    local program
    for program in $(needs_of "$1"); do
        any_of "$program" || { echo "$program"; return; }
    done
    return 1
}

bad=0
for way in "${ways[@]}"; do
    needs_of "$way" >/dev/null
    if program=$(lacks "$way"); then
        echo "passed over: $way, there is no $program" >&2
        continue
    fi
    dir=build/signature-$way
    mkdir -p "$dir"
    if ! build_way "$way" "$dir" >"$dir/build.log" 2>&1 </dev/null; then
        cat "$dir/build.log" >&2
        echo "FAILED: $way does not build" >&2
        bad=1
        continue
    fi
    said=$(run_target "$way" "$dir/ondrel-bench" "${arguments[@]}" </dev/null | tr -d '\r') || said="ended with $?"
    signature=$(grep '^Bench: ' <<<"$said") || signature="none: $said"
    printf '| %-14s | %-40s | %10s nodes/s |\n' "$way" "$signature" "$(sed -n 's/^Speed: \([0-9]*\).*/\1/p' <<<"$said")"
    if [[ $signature != "$expected" ]]; then
        echo "FAILED: $way, expected $expected" >&2
        bad=1
    fi
done
exit $bad
