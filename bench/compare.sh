#!/usr/bin/env bash
# Compares the speed of two revisions: builds both, checks that they search the same tree, runs their
# benches in turns and prints by how much B is faster than A. Processor time counts, not the clock, and
# each ratio is taken of two runs that follow each other, so that a machine that is busy now and then
# treats both alike.
#
# usage: bench/compare.sh REV_A REV_B [RUNS]       RUNS: pairs, 11 if not given
set -euo pipefail
cd "$(dirname "$0")/.."
if (($# < 2)); then
    sed -n 's/^# usage: /usage: /p' "$0" >&2
    exit 2
fi
runs=${3:-11}

work=$(mktemp -d)
trap 'rm -rf "$work"; git worktree prune' EXIT
build() { # revision, name: leaves the engine in $work/name
    git worktree add --quiet --detach "$work/tree_$2" "$1"
    (
        cd "$work/tree_$2"
        cmake --preset release -D BUILD_TESTING=OFF -D ZAR_BUILD_TOOLS=OFF
        cmake --build --preset release --target zar-x3
    ) >"$work/log_$2" 2>&1 || {
        cat "$work/log_$2" >&2
        exit 1
    }
    cp "$work/tree_$2/build/release/zar-x3" "$work/$2"
    git worktree remove --force "$work/tree_$2"
}
build "$1" a
build "$2" b

signature() { "$1" bench | tail -n 1 | cut -d ' ' -f 1; }
if [[ $(signature "$work/a") != $(signature "$work/b") ]]; then
    echo "the signatures differ: $(signature "$work/a") and $(signature "$work/b")" >&2
    exit 1
fi

# With the system's part: one revision may leave to it what the other does itself.
TIMEFORMAT='%U %S'
seconds() { { time "$1" bench >/dev/null; } 2>&1 | awk '{ printf "%.3f", $1 + $2 }'; }
for ((run = 1; run <= runs; ++run)); do
    a=$(seconds "$work/a")
    b=$(seconds "$work/b")
    awk -v a="$a" -v b="$b" 'BEGIN { printf "%.3f s  %.3f s  %.3f\n", a, b, a / b }'
done | tee "$work/pairs"
sort -n -k 5 "$work/pairs" | awk '{ ratio[NR] = $5 }
    END {
        middle = int((NR + 1) / 2)
        median = NR % 2 ? ratio[middle] : (ratio[middle] + ratio[middle + 1]) / 2
        printf "B visits %.3f times the nodes a second of A (%.3f .. %.3f)\n", median, ratio[1], ratio[NR]
    }'
