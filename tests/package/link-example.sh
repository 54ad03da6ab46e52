#!/bin/bash
# Installs, builds the examples against what was installed, and runs them: link-example.sh BUILD_FOLDER CMAKE
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
    -DCMAKE_PREFIX_PATH="$folder/moved" "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror" \
    "-DCMAKE_C_FLAGS=-std=c99 -Wall -Wextra -Wpedantic -Werror"
quietly "$cmake" --build "$folder/example"
gives() { # program lines...
    "$1" >"$folder/scenes" 2>"$folder/messages"
    diff "$folder/scenes" <(printf '%s\n' "${@:2}")
    [ ! -s "$folder/messages" ] # a log is for those who ask for one
}
scenes=('0 at 0.000 s' '30 at 1.200 s' '75 at 3.000 s')
gives "$folder/example/scenes-of-frames" 0 30 75
gives "$folder/example/scenes-of-frames-c" "${scenes[@]}"

# The page on the C interface: its program, and its line that builds it.
page=$folder/moved/share/doc/tamrak-scene-detect/library.md
mkdir "$folder/page"
sed -n '/^```c$/,/^```$/{/^```/!p}' "$page" >"$folder/page/scenes-of-frames.c"
cmp "$folder/page/scenes-of-frames.c" "$folder/moved/share/doc/tamrak-scene-detect/examples/scenes-of-frames.c"
PKG_CONFIG_PATH=$(dirname "$(find "$folder/moved" -name kxscenes.pc)")
export PKG_CONFIG_PATH
(cd "$folder/page" && eval "$(grep '^cc ' "$page")")
LD_LIBRARY_PATH=$(pkg-config --variable=libdir kxscenes) gives "$folder/page/scenes-of-frames" "${scenes[@]}"

# The page on the ways in: its programs in C, which reads raw frames, and in C++.
page=$folder/moved/share/doc/tamrak-scene-detect/ways-in.md
sed -n '/^```c$/,/^```$/{/^```/!p}' "$page" >"$folder/page/scenes.c"
sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$page" >"$folder/page/host.cpp"
(cd "$folder/page" && eval "$(grep '^cc ' "$page")")
c++ -std=c++17 -I"$folder/moved/include/scenedetect" -o "$folder/page/host" "$folder/page/host.cpp" \
    "-L$(pkg-config --variable=libdir kxscenes)" -lKxSceneDetect2
frames() { # count level: as many grey frames
    head -c $((640 * 360 * $1)) /dev/zero | tr '\0' "$2"
}
(
    LD_LIBRARY_PATH=$(pkg-config --variable=libdir kxscenes)
    export LD_LIBRARY_PATH
    diff <({ frames 10 a && frames 10 A; } | "$folder/page/scenes") <(printf '%s\n' 0 10)
    "$folder/page/host"
)

"$folder/moved/bin/kxscenes" --version | grep -q '^kxscenes [0-9]'
library=$(echo "$folder"/moved/lib*/libKxSceneDetect2.so "$folder"/moved/lib/*/libKxSceneDetect2.so | tr ' ' '\n' |
    grep -v '[*]' | head -n 1)
for name in libKxSceneDetect2 libkxscenes; do
    readelf -d "$(dirname "$library")/$name.so" | grep -q "SONAME.*\[$name\.so\.0\]"
done
lets_out() { # library names...
    diff <(nm -D --defined-only --format=posix "$1" | cut -d' ' -f1 | LC_ALL=C sort) <(printf '%s\n' "${@:2}")
}
lets_out "$library" DllCanUnloadNow DllGetClassObject
lets_out "$(dirname "$library")/tamrak-scene-detect/libtplog.so" \
    tpcore_wPrintf tpcore_wPrintf_IsUserLevelActive tpcore_wvPrintf
mapfile -t functions < <(grep -oE '\bkxscenes_[a-z_]+\(' "$folder/moved/include/kxscenes.h" | tr -d '(' | LC_ALL=C sort -u)
[ ${#functions[@]} -ge 10 ]
lets_out "$(dirname "$library")/libkxscenes.so" "${functions[@]}"
# It needs the standard libraries alone.
diff <(readelf -d "$(dirname "$library")/libkxscenes.so" | sed -n 's,.*(NEEDED).*\[\(.*\)\.so.*\],\1,p' |
    grep -vE '^(libstdc\+\+|libm|libgcc_s|libc|ld-linux.*)$') /dev/null
