#!/bin/bash
# Measures kxscenes side by side with the ffmpeg program and prints the ratios: compare.sh [BIN_FOLDER]
#
# Raw DV: frames per second of `kxscenes --method video` and `--method timestamp` against those at which `cat` reads the
# file (40 % is the goal), ffmpeg demuxes it, and ffmpeg's scdet filter runs (30 times is the goal).
# H.264 1080p: wall time of `kxscenes --method video` against ffmpeg's bare decoding; 1.05 times is the limit.
# Runs alternate, ROUNDS of each (default 5), and the medians count. The material is made once, in
# ${TMPDIR:-/tmp}/kxscenes-bench (about 1 GB), and read once before, so that it lies in the page cache.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bin=${1:-$here/build/native/bin}
rounds=${ROUNDS:-5}
folder=${TMPDIR:-/tmp}/kxscenes-bench
kxscenes=$bin/kxscenes
if [ ! -x "$kxscenes" ]; then
    echo "compare.sh: $kxscenes is not there; build it, or name the folder" >&2
    exit 1
fi

dv=$folder/tape.dv
h264=$folder/film.mp4
mkdir -p "$folder"
if [ ! -s "$dv" ]; then
    ffmpeg -v error -nostdin -y -f lavfi -i testsrc2=s=720x576:r=25:d=60 -target pal-dv -an "$folder/minute.dv"
    for _ in 1 2 3 4 5; do cat "$folder/minute.dv"; done >"$dv.part"
    mv "$dv.part" "$dv"
    rm "$folder/minute.dv"
fi
if [ ! -s "$h264" ]; then
    ffmpeg -v error -nostdin -y -f lavfi -i testsrc2=s=1920x1080:r=25:d=30 -vf noise=alls=6:allf=t \
        -c:v libx264 -preset fast -crf 23 -pix_fmt yuv420p "$folder/part.mp4"
    mv "$folder/part.mp4" "$h264"
fi
cat "$dv" "$h264" >/dev/null

# seconds COMMAND...: its wall time
seconds() {
    local begin end
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s%N)
    awk "BEGIN { printf \"%.4f\", ($end - $begin) / 1e9 }"
}
median() { sort -n | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'; }

scan() { "$kxscenes" --method video "$1"; }
clock() { "$kxscenes" --method timestamp "$1"; }
raw() { cat "$1"; }
demux() { ffmpeg -nostdin -v error -i "$1" -c copy -f null -; }
scdet() { ffmpeg -nostdin -v error -i "$1" -vf scdet -f null -; }
decode() { ffmpeg -nostdin -v error -i "$1" -f null -; }

# measure NAME... -- FILE: alternates the commands and leaves the medians in the array "wall"
declare -A wall
measure() {
    local names=() file name round
    while [ "$1" != -- ]; do names+=("$1"); shift; done
    file=$2
    local times
    times=$(mktemp -d)
    for ((round = 0; round < rounds; ++round)); do
        for name in "${names[@]}"; do seconds "$name" "$file" >>"$times/$name"; echo >>"$times/$name"; done
    done
    for name in "${names[@]}"; do wall[$name]=$(median <"$times/$name"); done
    rm -r "$times"
}
verdict() { awk "BEGIN { print ($1) ? \"reached\" : \"MISSED\" }"; }

measure raw scan clock demux -- "$dv"
cat_demux=(${wall[raw]} ${wall[demux]})
scan_wall=${wall[scan]} clock_wall=${wall[clock]}
measure scdet -- "$dv"
frames=$(($(stat -c %s "$dv") / 144000))
fps() { awk "BEGIN { printf \"%.0f\", $frames / $1 }"; }
echo "raw DV, $frames frames, a second: cat $(fps "${cat_demux[0]}"), demuxing $(fps "${cat_demux[1]}"), scdet $(fps "${wall[scdet]}")"
for method in video timestamp; do
    own=$scan_wall
    [ $method = video ] || own=$clock_wall
    percent=$(awk "BEGIN { printf \"%.0f\", 100 * ${cat_demux[0]} / $own }")
    times=$(awk "BEGIN { printf \"%.1f\", ${wall[scdet]} / $own }")
    echo "  --method $method: $(fps "$own")"
    echo "    of cat: $percent % (goal: at least 40) $(verdict "$percent >= 40")"
    echo "    times demuxing: $(awk "BEGIN { printf \"%.2f\", ${cat_demux[1]} / $own }")"
    echo "    times scdet: $times (goal: at least 30) $(verdict "$times >= 30")"
done

measure scan decode scdet -- "$h264"
ratio=$(awk "BEGIN { printf \"%.3f\", ${wall[scan]} / ${wall[decode]} }")
echo "H.264 1080p: kxscenes ${wall[scan]} s, decoding alone ${wall[decode]} s, scdet ${wall[scdet]} s"
echo "  kxscenes / decoding = $ratio (limit: 1.05) $(verdict "$ratio <= 1.05")"
echo "  scdet / decoding = $(awk "BEGIN { printf \"%.3f\", ${wall[scdet]} / ${wall[decode]} }")"
