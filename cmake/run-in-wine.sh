#!/bin/sh
# Runs a Windows program under Wine: run-in-wine.sh PROGRAM [ARGUMENTS]
# Without a display, unless $SCENEDETECT_DISPLAY names an X display.
# The prefix is $WINEPREFIX, or one in the build folder that the program lies in, made on first use.
set -eu
folder=$(dirname "$(readlink -f "$1")")
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
if [ ! -e "$WINEPREFIX/ready" ]; then
    mkdir -p "$WINEPREFIX"
    # Tests that start together wait for the one that makes the prefix.
    (
        flock 9
        if [ ! -e "$WINEPREFIX/ready" ]; then
            "$wine" wineboot -i >/dev/null 2>&1
            touch "$WINEPREFIX/ready"
        fi
    ) 9>"$WINEPREFIX.lock"
fi
exec "$wine" "$@"
