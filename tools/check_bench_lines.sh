#!/usr/bin/env bash
# Every commit that touches the files of the tree must tell the nodes of the quick bench: a line "Bench: <nodes>".
#   tools/check_bench_lines.sh [RANGE]     commits since the upstream branch, or since the parent of HEAD
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.."
tree=(src/base src/board src/eval src/memory src/search)
range=${1:-}
if [[ -z $range ]]; then
    base=$(git rev-parse --verify --quiet '@{upstream}' || git rev-parse --verify --quiet HEAD~1 || true)
    range=${base:+$base..}HEAD
fi
bad=0
while read -r commit; do
    if ! git log -1 --format=%B "$commit" | grep -qE '^Bench: [0-9]+$'; then
        echo "No line \"Bench: <nodes>\": $(git log -1 --format='%h %s' "$commit")"
        bad=1
    fi
done < <(git rev-list --no-merges "$range" -- "${tree[@]}")
exit $bad
