#!/bin/sh
# build.sh engine|all: installs what the release build needs and builds it, for ./run and ./test.
set -eu
what=$1
cd -- "$(dirname -- "$0")/.."

packages=
command -v "${CXX:-g++}" >/dev/null || packages="$packages g++"
command -v cmake >/dev/null || packages="$packages cmake"
command -v ninja >/dev/null || packages="$packages ninja-build"
if [ "$what" = all ]; then
    command -v python3 >/dev/null || packages="$packages python3"
    packages="$packages libcli11-dev libgtest-dev nlohmann-json3-dev"
fi
if [ "$packages" ]; then
    # shellcheck disable=SC2086 # a list of words
    tools/install.sh $packages
fi

# A GUI may start two engines at once; the second waits for the first one's build.
mkdir -p build
if command -v flock >/dev/null; then
    exec 9>build/lock
    flock 9
fi

# The engine takes the tree as it finds it, so that both commands share one build.
if [ "$what" = all ]; then
    cmake --preset release -D BUILD_TESTING=ON -D ZAR_BUILD_TOOLS=ON
    cmake --build --preset release
else
    [ -e build/release/build.ninja ] ||
        cmake --preset release -D BUILD_TESTING=OFF -D ZAR_BUILD_TOOLS=OFF
    cmake --build --preset release --target zar-x3
fi
