#!/usr/bin/env bash
# try_readme.sh: runs the command lines of README.md, in its order, in a Debian 12 where nothing else
# is installed, as root. So they name or install all that they want, and none is in another's way. It
# needs root, for chroot, and some 2 GB below build/. Left out is ./test, which is long: start it on a
# new machine to try it.
set -euo pipefail
cd -- "$(dirname -- "$0")/.."
[[ $(id -u) == 0 ]] || exec sudo -- "$0"
tools/install.sh debootstrap

die() {
    echo "try_readme.sh: $*" >&2
    exit 1
}

# The mirror is the one that this system's own packages come from.
# shellcheck disable=SC2016 # apt-get expands it
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 'Component: main' |
    awk 'NR == 1')
mkdir -p build/debs
root=$(mktemp -d "$PWD/build/bare.XXXXXX")
trap 'rm -rf -- "$root"' EXIT
echo "Setting up a bare system"
debootstrap --variant=minbase --cache-dir="$PWD/build/debs" bookworm "$root" ${mirror:+"$mirror"} \
    >build/debootstrap.log 2>&1 || {
    tail build/debootstrap.log
    die "no bare system, so nothing was tried"
}
echo 'APT::Get::Assume-Yes "true";' >"$root/etc/apt/apt.conf.d/yes"
mkdir "$root/zar-x3"
git -c safe.directory="$PWD" ls-files -z | xargs -0 cp --parents -t "$root/zar-x3"

inside() { # a command line, run in the copy of the source
    env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
        chroot "$root" sh -c "cd /zar-x3 && $1"
}

# An indented line is a command, up to the two blanks before what is said of it.
lines=$(awk '/^## / { on = /^## (Two commands|Installing|Building by hand)$/ }
    on && sub(/^    /, "") { sub(/  .*/, ""); print }' README.md)
for wanted in ./run 'apt install ./' 'make install' 'make uninstall' 'cmake --preset'; do
    [[ $lines == *"$wanted"* ]] || die "README.md has no line with '$wanted' any more"
done
tried=0
while IFS= read -r line <&3; do
    [[ $line != ./test ]] || continue
    echo "--- $line"
    inside "$line" <<<quit >build/readme.log 2>&1 || {
        tail -n 40 build/readme.log
        die "'$line' has failed"
    }
    tried=$((tried + 1))
    case $line in
    ./run) grep -qx 'Engine Ready' build/readme.log || die "'$line' has not run the engine" ;;
    'apt install ./'*) inside '/usr/games/zar-x3 --version && /usr/games/zar-x3-tools --version' ;;
    'make install') inside 'cd / && zar-x3 --version && zar-x3-tools --version &&
        ls /usr/local/share/zar-x3/ZAR.ebk' ;;
    'make uninstall')
        left=$(find "$root/usr/local" -type f)
        [[ ! $left ]] || die "'$line' has left $left"
        ;;
    esac
done 3<<<"$lines"
echo "$tried lines of README.md work on a bare system."
