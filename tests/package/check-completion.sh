#!/bin/bash
# Sources the completion as a shell does, and presses the key: check-completion.sh FILE
set -euo pipefail

# shellcheck disable=SC1090
. "$1"
[ "$(complete -p kxscenes)" = "complete -F _kxscenes kxscenes" ]
asked=
compopt() { asked=$2; } # works only while the shell completes

offers() { # expected words...: of which the last is being typed
    local expected=$1 offered
    shift
    COMP_WORDS=(kxscenes "$@")
    COMP_CWORD=$#
    asked=
    _kxscenes
    offered="${COMPREPLY[*]}${asked:+<$asked>}"
    [ "$offered" = "$expected" ] || { echo "$*: offers \"$offered\" instead of \"$expected\"" && exit 1; }
}
offers "--method" --me
offers "--quiet" --jobs 2 --qu
offers "video" --method vi
offers "timestamp video interval manual" --method ""
offers "video,timestamp" --method video,ti
offers "manual" --method = man
offers "timestamp video interval manual" --method =
offers "" --jobs ""
offers "<default>" --xml li
offers "<default>" ta
offers "<default>" -- --me
