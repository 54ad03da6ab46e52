#!/usr/bin/env bash
# Installs the Debian package on a system that has nothing else, and runs what it brings: try-deb.sh PACKAGE
# Needs root, debootstrap and a network. Everything happens below a temporary folder.
set -euo pipefail

if [ $# -ne 1 ] || [ "$(id -u)" -ne 0 ]; then
    echo "usage, as root: ${0##*/} PACKAGE" >&2
    exit 2
fi
package=$(readlink -f "$1")
here=$(dirname "$(readlink -f "$0")")
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

debootstrap --variant=minbase bookworm "$root" >"$root.log" 2>&1 || { cat "$root.log" && exit 1; }
rm -f "$root.log"
cp "$package" "$root/tmp/package.deb"
"$here/../hosts/kxscenes/make-demo-tape.sh" "$root/tmp/tape.dv"
# shellcheck disable=SC2016
chroot "$root" bash -euc '
    export DEBIAN_FRONTEND=noninteractive
    apt-get install -q -y --no-install-recommends /tmp/package.deb >/tmp/log 2>&1 || { cat /tmp/log; exit 1; }
    kxscenes --version
    kxscenes --method video,timestamp /tmp/tape.dv
    apt-get purge -q -y tamrak-scene-detect >/tmp/log 2>&1 || { cat /tmp/log; exit 1; }
    [ ! -e /usr/bin/kxscenes ]
'
