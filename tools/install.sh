#!/bin/sh
# install.sh PACKAGE...: installs the Debian packages that are missing, as root or with sudo. Where
# none is, this needs neither root nor a network. All output goes to standard error.
set -eu
exec </dev/null >&2

die() {
    echo "install.sh: $*"
    exit 1
}

if ! command -v dpkg-query >/dev/null; then
    echo "install.sh: no Debian system, so these are taken to be there: $*"
    exit
fi
missing=
for package in "$@"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=unknown
    [ "$status" = installed ] || missing="$missing $package"
done
[ "$missing" ] || exit 0

as_root=
if [ "$(id -u)" != 0 ]; then
    as_root=sudo
    sudo true 2>/dev/null || die "root or sudo is needed to install:$missing"
fi
apt_install() {
    # shellcheck disable=SC2086 # both variables are lists of words
    $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install --quiet --yes --no-install-recommends $missing
}
# The first try fails where the package lists are absent or too old.
apt_install 2>/dev/null || { $as_root apt-get update --quiet && apt_install; } ||
    die "cannot install:$missing"
