#!/bin/sh
# check_imports.sh PROGRAM.EXE: lists the libraries that a program of Windows imports, and fails on
# one that does not come with every Windows.
set -eu
if [ $# -ne 1 ]; then
    echo "usage: check_imports.sh PROGRAM.EXE" >&2
    exit 2
fi
headers=$("${OBJDUMP:-x86_64-w64-mingw32-objdump}" --private-headers "$1")
imports=$(echo "$headers" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr '[:upper:]' '[:lower:]')
# Every program imports something, so silence would mean that the list was not understood.
[ "$imports" ] || {
    echo "$1: no imports found" >&2
    exit 1
}
status=0
for library in $imports; do
    case $library in
    advapi32.dll | kernel32.dll | msvcrt.dll | api-ms-win-crt-*.dll) echo "$library" ;;
    *)
        echo "$library: not a part of every Windows"
        status=1
        ;;
    esac
done
exit $status
