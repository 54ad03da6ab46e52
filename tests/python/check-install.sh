#!/bin/bash
# Installs the package into a fresh virtual environment and uses it there: check-install.sh PYTHON [BUILD_FOLDER]
# Without a folder that is built already pip builds all of it.
set -euo pipefail

root=$(dirname "$(readlink -f "$0")")/../..
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$1" -m venv --system-site-packages "$folder/venv"
# The sources alone, so that what setuptools leaves behind lies nowhere.
mkdir "$folder/sources"
tar -C "$root" --exclude=./build --exclude=./.git -c . | tar -C "$folder/sources" -x
[ $# -lt 2 ] || export KXSCENES_BUILD=$2
(cd "$folder/sources" &&
    "$folder/venv/bin/pip" install -q --no-build-isolation --no-index .) >"$folder/log" 2>&1 ||
    { cat "$folder/log" && exit 1; }
"$root/hosts/kxscenes/make-demo-tape.sh" "$folder/tape.dv"
cd "$folder"
diff <("$folder/venv/bin/python" -c '
import kxscenes
for scene in kxscenes.detect("tape.dv", "timestamp"):
    print(scene.frame, scene.recorded)') <(printf '%s\n' '0 2004-07-17 10:30:00' '130 2004-07-18 09:15:20')
"$folder/venv/bin/python" -c 'import importlib.resources as r; assert (r.files("kxscenes") / "py.typed").is_file()'
"$folder/venv/bin/python" -m kxscenes.cluster --version >/dev/null
