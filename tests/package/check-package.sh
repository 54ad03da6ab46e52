#!/bin/bash
# Makes the archive for Windows users and looks at what is in it: check-package.sh BUILD_FOLDER CPACK RUN_IN_WINE MAKE_TAPE
set -Eeuo pipefail
trap 'echo "line $LINENO: $BASH_COMMAND" >&2' ERR

build=$1
cpack=$2
run_in_wine=$3
make_tape=$4
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
./FIRST-STEPS.txt
./INSTALL.md
./KxSceneDetect2.ax
./LICENSE
./deliberate-behaviour.md
./dv.md
./hosting.md
./include/kxscenes.h
./include/scenedetect/IKxSceneDetect.h
./include/scenedetect/KxPlatform.h
./kxscenes-graph.exe
./kxscenes.exe
./lib/libkxscenes.dll.a
./libkxscenes.dll
./library.md
./logging.md
./outputs.md
./tape-cuts.md
./tape-log.md
./transitions.md
./tuning.md
LIST
cmp "${root[0]}/KxSceneDetect2.ax" "$build/bin/KxSceneDetect2.ax"
# What the page for beginners has them type, as it stands there.
(
    cd "${root[0]}"
    "$make_tape" tape.dv
    commands=$(tr -d '\r' <FIRST-STEPS.txt | sed -n 's/^       //p')
    [ "$(wc -l <<<"$commands")" -eq 3 ]
    while read -r command; do
        "$run_in_wine" "C:\\windows\\system32\\cmd.exe" /c "$command" </dev/null >said 2>&1 || { cat said && exit 1; }
    done <<<"$commands"
    [ "$(wc -l <scenes.csv)" -eq 3 ] && [ "$(find clips -type f | wc -l)" -eq 2 ] && grep -q recording log.csv
    cat clips/*.dv | cmp - tape.dv
)
# Links between the pages that came along lead somewhere.
grep -ohE '\]\([A-Za-z0-9_./-]+\.md\)' "${root[0]}"/*.md | tr -d '])(' | sort -u | while read -r page; do
    [ -e "${root[0]}/$page" ] || { echo "no such page: $page" && exit 1; }
done
