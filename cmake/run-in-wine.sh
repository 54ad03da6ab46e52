#!/bin/sh
# Runs a Windows program under Wine: run-in-wine.sh PROGRAM [ARGUMENTS]
# Without a display, unless $SCENEDETECT_DISPLAY names an X display. Without a program it only makes the prefix.
# The prefix is $WINEPREFIX, or one in the build folder that the program lies in. One that does not exist yet is copied
# from a new one in the build folder, which is made once: copying takes a tenth of the time.
set -eu
folder=$(dirname "$(readlink -f "${1:-./none}")")
build=$folder
while [ "$build" != / ] && [ ! -e "$build/CMakeCache.txt" ]; do
    build=$(dirname "$build")
done
[ "$build" != / ] || build=$folder
WINEPREFIX=${WINEPREFIX:-$build/wine}
WINEDEBUG=${WINEDEBUG:--all}
# Wine takes names of files from the locale; the installers that it offers for a browser need a screen.
LANG=C.UTF-8
LC_ALL=C.UTF-8
WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
export WINEPREFIX WINEDEBUG LANG LC_ALL WINEDLLOVERRIDES
unset DISPLAY WAYLAND_DISPLAY
if [ -n "${SCENEDETECT_DISPLAY:-}" ]; then
    DISPLAY=$SCENEDETECT_DISPLAY
    export DISPLAY
fi

wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)
server=$(command -v wineserver || echo /usr/lib/wine/wineserver)

make_new_prefix() { # folder
    rm -rf "$1.part"
    if ! WINEPREFIX=$1.part "$wine" wineboot --init </dev/null >"$1.log" 2>&1 9>&-; then
        echo "$0: Wine could not make a prefix: $(cat "$1.log")" >&2
        exit 1
    fi
    WINEPREFIX=$1.part "$server" -w # until all is written
    mv "$1.part" "$1"
}

copy_new_prefix() {
    (
        flock 9
        [ -d "$build/wine.new" ] || make_new_prefix "$build/wine.new"
    ) 9>"$build/wine.new.lock"
    rm -rf "$WINEPREFIX.part"
    cp -a "$build/wine.new" "$WINEPREFIX.part"
    mv "$WINEPREFIX.part" "$WINEPREFIX"
}

mkdir -p "$(dirname "$WINEPREFIX")"
# The prefix's server outlives the program for a minute: starting one takes longer than most tests. Programs that start
# together wait for the one that does this.
(
    flock 9
    [ -d "$WINEPREFIX" ] || copy_new_prefix 9>&-
    if [ $# -gt 0 ] && "$server" -p60 </dev/null >/dev/null 2>&1 9>&-; then
        "$wine" cmd /c exit </dev/null >/dev/null 2>&1 9>&- || : # the program will tell
    fi
) 9>"$WINEPREFIX.lock"
[ $# -gt 0 ] || exit 0
[ ! -t 1 ] || exec "$wine" "$@"
# What the program starts of the system's own processes keeps its output open for as long as the server lives, which whoever
# reads that to its end would wait for: they get files.
output=$(mktemp -d)
trap 'rm -rf "$output"' EXIT
status=0
"$wine" "$@" >"$output/out" 2>"$output/err" || status=$?
cat "$output/out"
cat "$output/err" >&2
exit $status
