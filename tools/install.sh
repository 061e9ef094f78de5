#!/bin/sh
# install.sh PACKAGE...: installs the Debian packages that are missing, as root or with sudo. Where
# none is, this needs neither root nor a network. All it says goes to standard error, and what apt
# says into build/install.log.
set -eu
exec </dev/null >&2
cd -- "$(dirname -- "$0")/.."
log=build/install.log

if ! command -v dpkg-query >/dev/null; then
    echo "This is no Debian system, so these are taken to be there: $*"
    exit
fi
missing=
for package in "$@"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=unknown
    [ "$status" = installed ] || missing="$missing $package"
done
[ "$missing" ] || exit 0

give_up() {
    echo "$1. This line, as root, installs what is missing:"
    echo "    apt install$missing"
    exit 1
}

echo "ZAR-X3 needs these Debian packages to be built or tested, and installs them:$missing"
as_root=
if [ "$(id -u)" != 0 ]; then
    as_root=sudo
    command -v sudo >/dev/null || give_up "That takes root or sudo"
    echo "sudo may ask for your password."
    sudo true || give_up "sudo has refused"
fi
apt_get() { # WHAT, apt-get's words
    what=$1
    shift
    tools/progress.sh $log "$what" $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -o APT::Status-Fd=1 --quiet --yes --no-install-recommends "$@"
}

# The first try fails where the package lists are absent or too old.
mkdir -p build
: >$log
# shellcheck disable=SC2086 # a list of words
apt_get packages install $missing || {
    apt_get "the lists of packages" update && apt_get packages install $missing
} || {
    echo "The end of $PWD/$log:"
    tail -n 10 $log
    give_up "Cannot install the packages"
}
