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
server=$(command -v wineserver || echo /usr/lib/wine/wineserver)
mkdir -p "$WINEPREFIX"
# The prefix's server outlives the program for a minute: starting one takes longer than most tests. The system's
# own processes are started here, apart from the program's output, which would stay open for as long. Programs
# that start together wait for the one that does this.
(
    flock 9
    if "$server" -p60 </dev/null >/dev/null 2>&1 9>&-; then
        "$wine" cmd /c exit </dev/null >/dev/null 2>&1 9>&-
    fi
) 9>"$WINEPREFIX.lock"
exec "$wine" "$@"
