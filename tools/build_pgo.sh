#!/bin/sh
# Builds build/pgo/zar-x3, the release engine optimised for what its bench executes (GCC).
set -eu
cd -- "$(dirname -- "$0")/.."
rm -rf build/profile
cmake --preset pgo-train
cmake --build --preset pgo-train --target zar-x3
build/pgo-train/zar-x3 bench
cmake --preset pgo
cmake --build --preset pgo --target zar-x3 --clean-first
