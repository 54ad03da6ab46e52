#!/bin/bash
# Installs, builds the example against what was installed, and runs it: link-example.sh BUILD_FOLDER CMAKE
set -euo pipefail

build=$1
cmake=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
quietly() {
    "$@" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
}

quietly "$cmake" --install "$build" --prefix "$folder/first"
# Nothing refers to where it was first.
mv "$folder/first" "$folder/moved"
quietly "$cmake" -S "$folder"/moved/share/doc/tamrak-scene-detect/examples -B "$folder/example" \
    -DCMAKE_PREFIX_PATH="$folder/moved" "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror"
quietly "$cmake" --build "$folder/example"
"$folder/example/scenes-of-frames" >"$folder/scenes" 2>"$folder/messages"
diff "$folder/scenes" <(printf '%s\n' 0 30 75)
[ ! -s "$folder/messages" ] # a log is for those who ask for one

"$folder/moved/bin/kxscenes" --version | grep -q '^kxscenes [0-9]'
library=$(echo "$folder"/moved/lib*/libKxSceneDetect2.so "$folder"/moved/lib/*/libKxSceneDetect2.so | tr ' ' '\n' |
    grep -v '[*]' | head -n 1)
readelf -d "$library" | grep -q 'SONAME.*\[libKxSceneDetect2\.so\.0\]'
lets_out() { # library names...
    diff <(nm -D --defined-only --format=posix "$1" | cut -d' ' -f1 | LC_ALL=C sort) <(printf '%s\n' "${@:2}")
}
lets_out "$library" DllCanUnloadNow DllGetClassObject
lets_out "$(dirname "$library")/tamrak-scene-detect/libtplog.so" \
    tpcore_wPrintf tpcore_wPrintf_IsUserLevelActive tpcore_wvPrintf
