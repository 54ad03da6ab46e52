# shellcheck shell=bash
# Sourced by ./run and ./test: installs the packages that packages.txt names. Everything it says goes to stderr.

# The packages of the named groups.
wanted_packages() {
    awk -v groups="[$(echo "$*" | sed 's/ /] [/g')]" '
        /^\[/ { wanted = index(groups, $1) > 0; next }
        { sub(/#.*/, "") }
        NF && wanted { print $1 }' packages.txt
}

install_packages() { # groups...
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This is not a Debian system: the packages of packages.txt are taken to be there." >&2
        return
    fi
    local missing=() package
    for package in $(wanted_packages "$@"); do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}" >&2
            echo "Install them as root (apt-get install ${missing[*]}), or install sudo, and try again." >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    "${as_root[@]}" apt-get update -q >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -q -y --no-install-recommends "${missing[@]}" >&2
}
