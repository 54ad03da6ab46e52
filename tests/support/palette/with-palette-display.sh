#!/bin/sh
# Runs a Windows program on a display of 256 colours: with-palette-display.sh RUN-IN-WINE PROGRAM [ARGUMENTS]
set -eu
folder=$(mktemp -d)
server=
stop() {
    WINEPREFIX=$folder/wine wineserver -k >/dev/null 2>&1 || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$folder"
}
trap stop EXIT

mkfifo "$folder/number"
Xvfb -displayfd 3 -screen 0 800x600x8 -nolisten tcp 3>"$folder/number" >/dev/null 2>&1 &
server=$!
read -r number <"$folder/number"
WINEPREFIX=$folder/wine SCENEDETECT_DISPLAY=:$number SCENEDETECT_PALETTE_DISPLAY=1 "$@"
