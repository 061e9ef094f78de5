#!/bin/sh
# Compiles every header alone: each includes what it uses.
set -eu
cd -- "$(dirname -- "$0")/.."

# GCC warns of '#pragma once' in a main file, so a line of standard input includes each header.
compile="${CXX:-g++} -std=c++20 -fsyntax-only -I . -I src -I tests -I tests/unit -I tests/twin"
export compile
# shellcheck disable=SC2016 # the inner shell expands $compile and $1
find src tests tools -name '*.h' -print0 | xargs -0 -n 1 -P "$(getconf _NPROCESSORS_ONLN)" sh -c '
    echo "#include \"$1\"" | $compile -D ZAR_TEST_DATA_DIR=\"\" -x c++ - ||
        { echo "$1 does not compile alone"; exit 1; }' sh
