#!/bin/sh
# make_windows_zip.sh [ENGINE.EXE [BOOK [FOLDER]]]: packs the engine for Windows with its book, README
# and what that refers to into FOLDER/zar-x3-VERSION-windows-x86_64.zip. By default the engine is the preset
# "windows"'s, the book the release build's and the folder build.
set -eu
root=$(realpath -- "$(dirname -- "$0")/..")
exe=$(realpath -- "${1:-$root/build/windows/zar-x3.exe}")
book=$(realpath -- "${2:-$root/build/release/share/ZAR.ebk}")
folder=$(realpath -- "${3:-$root/build}")
cd -- "$root"

version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ "$version" ] || {
    echo "make_windows_zip.sh: CMakeLists.txt tells no version" >&2
    exit 1
}
name=zar-x3-$version-windows-x86_64
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# The book lies beside the program, since GUIs start an engine in its own folder, and the engine
# looks for the book there.
mkdir "$work/$name"
cp -- "$exe" "$work/$name/zar-x3.exe"
cp -- "$book" "$work/$name/ZAR.ebk"
cp -r README.md CHANGELOG.md CONTRIBUTING.md docs "$work/$name"
rm -r "$work/$name/docs/man"
chmod -R u=rwX,go=rX "$work/$name"

# The same files give the same archive: in this order, with the date of the version, and without
# anything else about this system's files.
seconds=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
find "$work/$name" -exec touch --date "@$seconds" {} +
(cd "$work" && find "$name" -type f | LC_ALL=C sort | TZ=UTC zip --quiet -X "$name.zip" -@)
mv -- "$work/$name.zip" "$folder"
echo "$folder/$name.zip"
