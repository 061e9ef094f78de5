#!/usr/bin/env bash
# run.sh SECONDS [NAME...]: runs each fuzzer of build/fuzz (or those named: book, fen, moves, option,
# uci) for SECONDS, as many at a time as there are processors. First come the inputs of
# regressions/NAME and corpus/NAME as they are, then mutations of these, on a scratch copy. Prints
# how many inputs each has run, how many of the program's edges these took, and how many inputs they
# were boiled down to. A crash, a failed assertion, a leak, a finding of the sanitizers, an input of
# more than 20 seconds or 2 GiB fails: the end of the log is printed, and the input is kept in
# build/fuzz/findings.
set -eu -o pipefail
usage="usage: run.sh SECONDS [NAME...]"
here=$(dirname "$(readlink -f "$0")")
build=$here/../../build/fuzz
if ! [[ ${1-} =~ ^[1-9][0-9]*$ ]]; then
    echo "$usage" >&2
    exit 2
fi
seconds=$1
shift
names=("$@")
((${#names[@]})) || names=(uci option fen moves book)
for name in "${names[@]}"; do
    if ! [[ -x $build/tests/fuzz/${name}_fuzzer ]]; then
        echo "run.sh: no fuzzer '$name' in build/fuzz: cmake --build --preset fuzz" >&2
        exit 2
    fi
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
findings=$(realpath -m "$build/findings")
mkdir -p "$findings"
export ASAN_OPTIONS=quarantine_size_mb=64 UBSAN_OPTIONS=print_stacktrace=1

# number_in LOG KEY: the last number that follows the key.
number_in() {
    grep -o "$2 *[0-9]*" "$1" | tail -n 1 | grep -o '[0-9]*$'
}

# Runs a fuzzer in an empty folder of its own, where it finds no file by chance.
run_fuzzer() {
    local name=$1
    local fuzzer
    fuzzer=$(realpath -e "$build/tests/fuzz/${name}_fuzzer")
    local log=$scratch/$name.log
    local options=(-timeout=20 -rss_limit_mb=2048 -artifact_prefix="$findings/$name-")
    if [[ -e $here/$name.dict ]]; then
        options+=(-dict="$here/$name.dict")
    fi
    local inputs=()
    mapfile -t inputs < <(find "$here/corpus/$name" "$here/regressions/$name" -type f 2>/dev/null)
    mkdir -p "$scratch/$name/corpus" "$scratch/$name/folder"
    cp "${inputs[@]}" "$scratch/$name/corpus"
    cd "$scratch/$name/folder"
    if ! {
        "$fuzzer" "${options[@]}" "${inputs[@]}" &&
            "$fuzzer" "${options[@]}" -max_len=4096 -max_total_time="$seconds" \
                -print_final_stats=1 ../corpus
    } &>"$log"; then
        tail -n 60 "$log"
        echo "$name: FAILED"
        return 1
    fi
    printf '%-6s %9d executions %6d a second %5d of %5d edges %5d inputs\n' "$name" \
        "$(number_in "$log" executed_units:)" "$(number_in "$log" average_exec_per_sec:)" \
        "$(number_in "$log" cov:)" "$(number_in "$log" 'INFO: Loaded 1 modules *(')" \
        "$(number_in "$log" corp:)"
}

# The first to end makes room for the next.
failed=0
running=0
for name in "${names[@]}"; do
    if ((running == $(nproc))); then
        wait -n || failed=1
        running=$((running - 1))
    fi
    run_fuzzer "$name" &
    running=$((running + 1))
done
while ((running > 0)); do
    wait -n || failed=1
    running=$((running - 1))
done
exit $failed
