#!/bin/sh
# progress.sh LOG WHAT COMMAND...: runs apt-get or a build with all its output in the file LOG, and
# shows on standard error how far it is: on a terminal in a line that is written over, elsewhere in a
# line at the begin. It says nothing where there is nothing to do. The exit status is the command's.
set -u
log=$1
what=$2
shift 2

said=
show() { # WHAT, PERCENT
    if [ -t 2 ]; then
        if [ "$said" ] && [ "$1" != "$said" ]; then
            echo >&2
        fi
        printf '\r%s: %3d %%' "$1" "$2" >&2
    elif [ "$1" != "$said" ]; then
        echo "$1" >&2
    fi
    said=$1
}

{
    NINJA_STATUS='[%f/%t] ' "$@" </dev/null 2>&1
    printf '\nexit status %d\n' $?
} | {
    status=1
    while IFS= read -r line; do
        case $line in
        'exit status '*)
            status=${line##* }
            continue
            ;;
        '['*'] Re-'*) ;; # ninja looks whether it has to configure again
        dlstatus:*:*:* | pmstatus:*:*:*)
            percent=${line#*:*:}
            case $line in
            d*) show "Downloading $what" "${percent%%[.:]*}" ;;
            p*) show "Installing $what" "${percent%%[.:]*}" ;;
            esac
            ;;
        '['[0-9]*/[0-9]*']'*)
            done=${line%%/*}
            done=${done#'['}
            all=${line%%']'*}
            show "Building $what" $((100 * done / ${all#*/}))
            ;;
        esac
        printf '%s\n' "$line" >>"$log"
    done
    if [ "$said" ] && [ -t 2 ]; then
        echo >&2
    fi
    exit "$status"
}
