#!/usr/bin/env bash
# Builds Ondrel with profile-guided optimisation: once with counters, trained by the bench, once with what it told.
#   tools/pgo.sh PRESET [DIRECTORY [CMAKE ARGUMENT...]]
# builds in DIRECTORY, build/PRESET-pgo if there is none. The presets that build for another system are trained under
# qemu-aarch64 or wine. TRAINING=whole trains with all conversations of the bench instead of the quick ones.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/tools/setup.sh"
cd "$root"

[[ $# -ge 1 ]] || { sed -n '2,5s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2; }
preset=$1
dir=${2:-build/$preset-pgo}
arguments=("${@:3}")
training=()
[[ ${TRAINING:-quick} == whole ]] || training=(quick)

step() {
    cmake --preset "$preset" -B "$dir" -DONDREL_PGO="$1" "${arguments[@]}"
    cmake --build "$dir" -j "$jobs" --target "${@:2}"
}

rm -rf "$dir/profile"
step generate ondrel-train
run_target "$preset" "$dir/ondrel-train" "${training[@]}"
if grep -q '^CMAKE_CXX_COMPILER:.*clang' "$dir/CMakeCache.txt"; then
    llvm-profdata merge -o "$dir/profile/ondrel.profdata" "$dir"/profile/*.profraw
fi
step use all
