#!/bin/bash
# Measures kxscenes side by side with the ffmpeg program and prints the ratios: compare.sh [BIN_FOLDER]
#
# Raw DV: frames per second of `kxscenes --method video` and `--method timestamp` against those at which `cat` reads the
# file (40 % is the goal), ffmpeg demuxes it, and ffmpeg's scdet filter runs (30 times is the goal).
# 1080p of several codecs: wall and processor time of `kxscenes --method video`, and of the same with `--decode fast`,
# against ffmpeg's bare decoding on as many threads, and whether both find the same scenes; each codec has its goal.
# Runs alternate, ROUNDS of each (default 5); medians count, of the films' runs those of the ratios within a round. The
# material is made once, in ${TMPDIR:-/tmp}/kxscenes-bench (about 1 GB), and read once before, so that it lies in the
# page cache.
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
mkdir -p "$folder"
if [ ! -s "$dv" ]; then
    ffmpeg -v error -nostdin -y -f lavfi -i testsrc2=s=720x576:r=25:d=60 -target pal-dv -an "$folder/minute.dv"
    for _ in 1 2 3 4 5; do cat "$folder/minute.dv"; done >"$dv.part"
    mv "$dv.part" "$dv"
    rm "$folder/minute.dv"
fi
# Eight shots of two seconds or so: patterns, zooms, moving gradients and noise.
if [ ! -s "$folder/mjpeg.mov" ]; then
    s=1920x1080
    y='format=yuv420p,setsar=1'
    ffmpeg -v error -nostdin -y \
        -f lavfi -i "testsrc2=s=$s:d=2.4,$y" \
        -f lavfi -i "mandelbrot=s=$s:end_scale=0.02:maxiter=200,trim=duration=2,$y" \
        -f lavfi -i "gradients=s=$s:d=2.2:speed=0.05:seed=7,$y" \
        -f lavfi -i "cellauto=s=480x270:rule=110:random_seed=3,scale=$s:flags=neighbor,trim=duration=1.8,$y" \
        -f lavfi -i "life=s=240x136:random_seed=5:mold=10:life_color=#C83232:death_color=#3232C8:mold_color=#202020,scale=$s,trim=duration=2.6,$y" \
        -f lavfi -i "smptehdbars=s=$s:d=2,scroll=h=0.01,$y" \
        -f lavfi -i "mandelbrot=s=$s:start_x=-0.745:start_y=0.11:start_scale=0.02:end_scale=0.001:maxiter=200,trim=duration=2,$y" \
        -f lavfi -i "testsrc=s=$s:d=2,$y" \
        -filter_complex 'concat=n=8,noise=alls=4:allf=t' -c:v libx264 -qp 0 -preset ultrafast "$folder/master.mkv"
    encode() { ffmpeg -v error -nostdin -y -i "$folder/master.mkv" "$@"; }
    encode -c:v libx264 -preset fast -crf 23 "$folder/h264.mp4"
    encode -c:v libx265 -preset fast -crf 26 -pix_fmt yuv420p10le -x265-params log-level=error "$folder/hevc10.mp4"
    encode -c:v mpeg2video -b:v 15M -maxrate 20M -bufsize 8M -g 15 -bf 2 "$folder/mpeg2.ts"
    encode -c:v mpeg4 -b:v 8M -g 60 -bf 2 "$folder/mpeg4.avi"
    encode -c:v mjpeg -q:v 4 -pix_fmt yuvj420p "$folder/part.mov"
    mv "$folder/part.mov" "$folder/mjpeg.mov"
    rm "$folder/master.mkv"
fi
cat "$dv" "$folder"/*.{mp4,ts,avi,mov} >/dev/null

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

# ratios ROUNDS_OF_A ROUNDS_OF_B COLUMN: the median of A / B in a column (1: wall time, 2: processor time)
ratios() { paste "$1" "$2" | awk -v c="$3" '{ printf "%.3f\n", $c / $(c + 2) }' | median; }

# The goal of --decode fast, of decoding.
films=(h264.mp4 0.85 hevc10.mp4 0.88 mpeg2.ts 0.6 mjpeg.mov 0.6 mpeg4.avi 1)
times=$(mktemp -d)
trap 'rm -r "$times"' EXIT
TIMEFORMAT='%R %U %S'
both() { { time "$@" >"$times/out" 2>/dev/null; } 2>&1 | awk '{ print $1, $2 + $3 }'; }
exact() { "$kxscenes" -q --method video "$1"; }
fast() { "$kxscenes" -q --method video --decode fast "$1"; }
echo "films of 1080p: time / that of decoding"
for ((i = 0; i < ${#films[@]}; i += 2)); do
    film=$folder/${films[i]} goal=${films[i + 1]}
    rm -f "$times"/*
    for ((round = 0; round < rounds; ++round)); do
        for name in decode exact fast; do
            both "$name" "$film" >>"$times/$name"
            mv "$times/out" "$times/$name.scenes"
        done
    done
    same=$(cmp -s "$times/exact.scenes" "$times/fast.scenes" && echo "the same scenes" || echo "OTHER SCENES")
    echo "  ${films[i]}: $(($(wc -l <"$times/exact.scenes") - 1)) scenes; fast finds $same"
    for name in exact fast; do
        [ $name = fast ] || limit=1.02
        [ $name = exact ] || limit=$goal
        wall=$(ratios "$times/$name" "$times/decode" 1)
        cpu=$(ratios "$times/$name" "$times/decode" 2)
        echo "    $name: wall $wall, processor $cpu (limit: $limit) $(verdict "$wall <= $limit && $cpu <= $limit")"
    done
done
