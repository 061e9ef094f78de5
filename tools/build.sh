#!/bin/sh
# build.sh engine|all: installs what the release build needs and builds it, for ./run and ./test. It
# says how far it is on standard error, and nothing where there is nothing to do; what the compiler
# says is in build/build.log.
set -eu
exec </dev/null >&2
what=$1
cd -- "$(dirname -- "$0")/.."
log=build/build.log

packages=
command -v "${CXX:-g++}" >/dev/null || packages="$packages g++"
command -v cmake >/dev/null || packages="$packages cmake"
command -v ninja >/dev/null || packages="$packages ninja-build"
if [ "$what" = all ]; then
    command -v python3 >/dev/null || packages="$packages python3"
    packages="$packages libcli11-dev libgtest-dev nlohmann-json3-dev"
fi

# A GUI may start two engines at once; the second waits for the first one's build.
mkdir -p build
if command -v flock >/dev/null; then
    exec 9>build/lock
    flock --nonblock 9 || {
        echo "Waiting for another build in this folder"
        flock 9
    }
fi
if [ "$packages" ]; then
    # shellcheck disable=SC2086 # a list of words
    tools/install.sh $packages
fi

# A failed try to configure leaves a cache that is newer than the build's rules.
is_configured() {
    [ "$(find build/release/build.ninja -newer build/release/CMakeCache.txt 2>/dev/null)" ]
}

# The engine takes a configured tree as it finds it, so that both commands share one build.
build() {
    if [ "$what" = all ]; then
        cmake --preset release -D BUILD_TESTING=ON -D ZAR_BUILD_TOOLS=ON >>$log 2>&1 &&
            tools/progress.sh $log "the engine, its tools and the tests" cmake --build --preset release
    else
        is_configured || cmake --preset release >>$log 2>&1 || return
        tools/progress.sh $log "the engine" cmake --build --preset release --target zar-x3
    fi
}
: >$log
build || {
    echo "The end of $PWD/$log:"
    tail -n 30 $log
    echo "The build has failed."
    exit 1
}
