#!/usr/bin/env bash
# Every commit that touches the files of the tree must tell the nodes of the quick bench, a line "Bench: <nodes>"; and the
# last of them those of its tests/data/bench-signature.txt.
#   tools/check_bench_lines.sh [RANGE]     the commits that the upstream branch has not; without one, HEAD alone
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
tree=(src/base src/board src/eval src/memory src/search)
signature=tests/data/bench-signature.txt

# What HEAD adds: to the upstream branch, as far as a shallow clone knows where they parted, or else to its parent.
added() {
    local base
    base=$(git merge-base HEAD '@{upstream}' 2>/dev/null || true)
    if [[ -z $base || $base == $(git rev-parse HEAD) ]]; then
        base=$(git rev-parse --verify --quiet HEAD~1) || return
    fi
    echo "$base..HEAD"
}

if ! git rev-parse --verify --quiet HEAD >/dev/null 2>&1; then
    echo "No commits here"
    exit 0
fi
range=${1:-$(added)} || { echo "Nothing to compare HEAD with"; exit 0; }

bad=0
newest=
while read -r commit; do
    newest=${newest:-$commit}
    if ! git log -1 --format=%B "$commit" | grep -qE '^Bench: [0-9]+$'; then
        echo "No line \"Bench: <nodes>\": $(git log -1 --format='%h %s' "$commit")"
        bad=1
    fi
done < <(git rev-list --no-merges "$range" -- "${tree[@]}")

if [[ $bad -eq 0 && -n $newest ]]; then
    kept=$(git show "$newest:./$signature" | grep -m 1 -oE '^Bench: [0-9]+')
    if ! git log -1 --format=%B "$newest" | grep -qxF "$kept"; then
        echo "$signature has \"$kept\", otherwise than $(git log -1 --format='%h %s' "$newest")"
        bad=1
    fi
fi
exit $bad
