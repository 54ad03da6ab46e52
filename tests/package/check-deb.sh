#!/bin/bash
# Makes the Debian package, looks at what is in it, and runs that: check-deb.sh BUILD_FOLDER CPACK MAKE_DEMO_TAPE
# It is unpacked beside the system, not installed; packaging/try-deb.sh installs it on a bare one.
set -euo pipefail

build=$1
cpack=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$folder" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
packages=("$folder"/tamrak-scene-detect_*.deb)
dpkg-deb -x "${packages[0]}" "$folder/root"
dpkg-deb -e "${packages[0]}" "$folder/control"

# The architecture's own library folder is left out of the names.
diff <(cd "$folder/root/usr" && find . -not -type d | sed -E 's,^\./lib/[^/]+-linux-[^/]+/,./lib/,' | LC_ALL=C sort) - <<'LIST'
./bin/kxscenes
./include/kxscenes.h
./include/scenedetect/IKxSceneDetect.h
./include/scenedetect/KxPlatform.h
./lib/cmake/TamrakSceneDetect/TamrakSceneDetectConfig-release.cmake
./lib/cmake/TamrakSceneDetect/TamrakSceneDetectConfig.cmake
./lib/cmake/TamrakSceneDetect/TamrakSceneDetectConfigVersion.cmake
./lib/libKxSceneDetect2.so
./lib/libKxSceneDetect2.so.0
./lib/libKxSceneDetect2.so.0.1.0
./lib/libkxscenes.so
./lib/libkxscenes.so.0
./lib/libkxscenes.so.0.1.0
./lib/pkgconfig/kxscenes.pc
./lib/tamrak-scene-detect/libtplog.so
./share/bash-completion/completions/kxscenes
./share/doc/tamrak-scene-detect/changelog.Debian.gz
./share/doc/tamrak-scene-detect/changelog.gz
./share/doc/tamrak-scene-detect/cluster.md
./share/doc/tamrak-scene-detect/copyright
./share/doc/tamrak-scene-detect/deliberate-behaviour.md
./share/doc/tamrak-scene-detect/dv.md
./share/doc/tamrak-scene-detect/examples/CMakeLists.txt
./share/doc/tamrak-scene-detect/examples/Peer.h
./share/doc/tamrak-scene-detect/examples/scenes-of-frames.c
./share/doc/tamrak-scene-detect/examples/scenes-of-frames.cpp
./share/doc/tamrak-scene-detect/gstreamer.md
./share/doc/tamrak-scene-detect/hosting.md
./share/doc/tamrak-scene-detect/installing.md
./share/doc/tamrak-scene-detect/library.md
./share/doc/tamrak-scene-detect/logging.md
./share/doc/tamrak-scene-detect/outputs.md
./share/doc/tamrak-scene-detect/parts.md
./share/doc/tamrak-scene-detect/python.md
./share/doc/tamrak-scene-detect/tape-cuts.md
./share/doc/tamrak-scene-detect/tape-log.md
./share/doc/tamrak-scene-detect/transitions.md
./share/doc/tamrak-scene-detect/tuning.md
./share/doc/tamrak-scene-detect/ways-in.md
./share/lintian/overrides/tamrak-scene-detect
./share/man/man1/kxscenes.1.gz
LIST
# Whoever installs it gets the libraries that the program needs.
for library in libavformat libavcodec libavutil libswscale 'libstdc\+\+6' libc6; do
    grep -qE "^Depends:.* ${library}[0-9]* " "$folder/control/control" || { echo "does not depend on $library" && exit 1; }
done
(cd "$folder/root" && md5sum --quiet -c "$folder/control/md5sums")

export LD_LIBRARY_PATH
LD_LIBRARY_PATH=$(dirname "$(find "$folder/root" -name libKxSceneDetect2.so.0)")
"$3" "$folder/tape.dv"
diff <("$folder/root/usr/bin/kxscenes" --method timestamp "$folder/tape.dv") - <<'SCENES'
scene,frame,timecode,seconds
1,0,00:00:00:00,0.000
2,130,00:00:05:05,5.200
SCENES

[ -e "$build/CPack-python.cmake" ] || exit 0
"$cpack" --config "$build/CPack-python.cmake" -G DEB -B "$folder" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
packages=("$folder"/python3-kxscenes_*.deb)
dpkg-deb -x "${packages[0]}" "$folder/python"
depends=$(dpkg-deb -f "${packages[0]}" Depends)
for package in 'tamrak-scene-detect (=' python3 python3-numpy libavformat; do
    [[ $depends = *$package* ]] || { echo "$depends: does not depend on $package" && exit 1; }
done
[ -e "$folder/python/usr/share/doc/python3-kxscenes/copyright" ]
PYTHONPATH=$folder/python/usr/lib/python3/dist-packages /usr/bin/python3 -c '
import kxscenes, sys
assert [scene.frame for scene in kxscenes.detect(sys.argv[1], "timestamp")] == [0, 130]
import kxscenes.cluster' "$folder/tape.dv"

[ -e "$build/CPack-gstreamer.cmake" ] || exit 0
"$cpack" --config "$build/CPack-gstreamer.cmake" -G DEB -B "$folder" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
packages=("$folder"/gstreamer1.0-kxscenes_*.deb)
dpkg-deb -x "${packages[0]}" "$folder/gstreamer"
dpkg-deb -f "${packages[0]}" Depends | grep -q libgstreamer
plugin=$(find "$folder/gstreamer" -name libgstkxscenes.so)
[[ $plugin = */gstreamer-1.0/libgstkxscenes.so ]]
GST_REGISTRY=$folder/registry GST_PLUGIN_PATH=$(dirname "$plugin") gst-inspect-1.0 kxscenedetect >/dev/null
