#!/usr/bin/env bash
# Counts the machine instructions that a node costs: runs the bench under callgrind and prints
# instructions per node and the functions that take most of them. The count is the same however busy
# the machine is. The depth is small because callgrind is some fifty times slower than the processor.
#
# usage: bench/instructions.sh [DEPTH [ENGINE]]
set -euo pipefail
cd "$(dirname "$0")/.."
depth=${1:-6}
engine=${2:-build/release/zar-x3}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
valgrind --tool=callgrind --callgrind-out-file="$work/profile" "$engine" bench "$depth" \
    >"$work/out" 2>"$work/log" || {
    cat "$work/log" >&2
    exit 1
}
nodes=$(tail -n 1 "$work/out" | cut -d ' ' -f 1)
callgrind_annotate "$work/profile" >"$work/report"
awk -v nodes="$nodes" -v depth="$depth" '
    function figure(text) { gsub(",", "", text); return text + 0 }
    /PROGRAM TOTALS/ {
        total = figure($1)
        printf "depth %d: %.0f instructions, %d nodes\n", depth, total, nodes
        printf "%.0f instructions per node, of which:\n", total / nodes
        next
    }
    # A row: the count, its share in brackets, then file:function [object].
    total && /^ *[0-9,]+ \(/ && rows < 15 {
        count = figure($1)
        sub(/^[^)]*\) */, "")
        sub(/^[^:]*:/, "")
        sub(/ \[[^]]*\]$/, "")
        printf "%7.0f  %4.1f %%  %s\n", count / nodes, 100 * count / total, $0
        ++rows
    }' "$work/report"
