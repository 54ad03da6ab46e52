#!/bin/bash
# Runs ffmpeg to make a file for tests: make-material.sh ARGUMENTS... TARGET
# What the same ffmpeg made before, by the same arguments and of the same inputs, is kept under build/material and
# copied from there. Presets share it.
set -euo pipefail

root=$(dirname "$(readlink -f "$0")")/..
target=${*: -1}
arguments=("${@:1:$#-1}")
name=${target##*/}
[[ $name = *.* ]] && kind=.${name##*.} || kind=

describe() {
    stat -L -c '%n %s %Y' "$(command -v ffmpeg)"
    local before=
    for argument in "${arguments[@]}"; do
        if [ "$before" = -i ] && [ -f "$argument" ]; then
            printf '%s\0' "${argument##*.}"
            cat "$argument"
        else
            printf '%s\0' "$argument"
        fi
        before=$argument
    done
}
made=$root/build/material/$(describe | sha256sum | cut -c 1-32)$kind

if [ ! -e "$made" ]; then
    mkdir -p "$root/build/material"
    part=${made%"$kind"}.$$$kind
    ffmpeg -v error -nostdin -y "${arguments[@]}" "$part" || { rm -f "$part" && exit 1; }
    mv "$part" "$made"
fi
cp "$made" "$target"
