#!/bin/bash
# Makes the archive for Windows users and looks at what is in it: check-package.sh BUILD_FOLDER CPACK
set -euo pipefail

build=$1
cpack=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$cpack" --config "$build/CPackConfig.cmake" -B "$folder" >"$folder/log" 2>&1 || { cat "$folder/log" && exit 1; }
archives=("$folder"/*.zip)
(cd "$folder" && sha256sum --quiet -c ./*.sha256)
mkdir "$folder/unpacked"
(cd "$folder/unpacked" && cmake -E tar xf "${archives[0]}")

# One folder, named after the archive; programs at its top.
root=("$folder"/unpacked/*)
[ "$(basename "${root[0]}").zip" = "$(basename "${archives[0]}")" ]
diff <(cd "${root[0]}" && find . -type f | LC_ALL=C sort) - <<'LIST'
./CHANGELOG.md
./INSTALL.md
./KxSceneDetect2.ax
./LICENSE
./deliberate-behaviour.md
./hosting.md
./include/kxscenes.h
./include/scenedetect/IKxSceneDetect.h
./include/scenedetect/KxPlatform.h
./kxscenes-graph.exe
./lib/libkxscenes.dll.a
./libkxscenes.dll
./library.md
./logging.md
./transitions.md
./tuning.md
LIST
cmp "${root[0]}/KxSceneDetect2.ax" "$build/bin/KxSceneDetect2.ax"
# Links between the pages that came along lead somewhere.
grep -ohE '\]\([A-Za-z0-9_./-]+\.md\)' "${root[0]}"/*.md | tr -d '])(' | sort -u | while read -r page; do
    [ -e "${root[0]}/$page" ] || { echo "no such page: $page" && exit 1; }
done
