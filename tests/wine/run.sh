#!/bin/sh
# run.sh ENGINE.EXE [TEST...]: the end-to-end tests, with the engine's Windows build under Wine.
# TEST is a name such as console_test; all that drive the engine when none is given. The Windows
# system they see is a fresh one. The twin is the release build's, or what ZAR_X3_TWIN names.
# Wants the packages g++-mingw-w64-x86-64-posix, wine, wine64 and python3.
set -eu
if [ $# -lt 1 ]; then
    echo "usage: run.sh ENGINE.EXE [TEST...]" >&2
    exit 2
fi
ZAR_X3=$(realpath -- "$1")
shift
cd -- "$(dirname -- "$0")/../uci"
export ZAR_X3

# Debian's "wine" writes a notice to standard error, so its 64-bit loader is better.
for wine in /usr/lib/wine/wine64 wine64 wine; do
    command -v "$wine" >/dev/null && break
done
command -v "$wine" >/dev/null || {
    echo "run.sh: no Wine found (packages wine and wine64)" >&2
    exit 2
}

# File names beyond ASCII pass through Wine in a UTF-8 locale only.
export LC_ALL=C.UTF-8 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
x86_64-w64-mingw32-g++-posix -std=c++20 -O1 -static ../wine/relay.cpp -o "$work/relay.exe"
export WINEPREFIX="$work/prefix" ZAR_X3_RUNNER="$wine $work/relay.exe"
mkdir "$WINEPREFIX"
# One server for all programs: else the Windows system would start anew with each of them.
trap 'wineserver --kill || true; wineserver --wait; rm -rf -- "$work"' EXIT
wineserver --persistent
"$wine" wineboot --init >/dev/null 2>&1

# What drives zar-x3-tools has no part in this.
[ $# -gt 0 ] || set -- bench_test book_test console_test errors_test game_test output_test \
    search_test states_test strict_test threads_test transcripts_test
failed=0
for name in "$@"; do
    echo "=== $name"
    python3 -B "$name.py" || failed=$((failed + 1))
done
echo "$# suites, $failed of them failed"
[ "$failed" = 0 ]
