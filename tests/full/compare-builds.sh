#!/usr/bin/env bash
# Runs two builds of kxscenes on a fixed set of inputs and options: what they print, write and exit with must be the
# same bytes. For changes that are to change nothing.
#   compare-builds.sh OLD_PROGRAM NEW_PROGRAM
set -euo pipefail

old=$(readlink -f "$1")
new=$(readlink -f "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/in"
cd "$work/in"

source_of() { # size rate seconds: three pictures, one after the other
    echo "color=red:s=$1:r=$2:d=$3[a];testsrc=s=$1:r=$2:d=$3[b];color=gray:s=$1:r=$2:d=$3[c];[a][b][c]concat=n=3"
}
make_media() { # file size rate seconds options...
    local file=$1 size=$2 rate=$3 seconds=$4
    shift 4
    ffmpeg -v error -y -filter_complex "$(source_of "$size" "$rate" "$seconds")" "$@" -fflags +bitexact "$file"
}
make_media pal.dv 720x576 25 1 -target pal-dv -timecode 01:02:03:04 -metadata creation_time=2003-05-06T07:08:09Z
make_media ntsc.dv 720x480 30000/1001 1 -target ntsc-dv -timecode '00:59:59;20'
make_media yuy2.avi 352x288 25 1 -c:v rawvideo -pix_fmt yuyv422
make_media rgb.avi 320x240 25 1 -c:v rawvideo -pix_fmt bgr24
make_media film.mp4 640x360 25 2 -c:v libx264 -g 20 -threads 1
make_media film.mkv 640x360 30000/1001 2 -c:v mpeg2video -bf 2 -g 12
ffmpeg -v error -f lavfi -i 'testsrc=s=320x240:r=25:d=3' -vf 'select=not(eq(mod(n\,7)\,3))' -vsync vfr -c:v libx264 -threads 1 variable.mkv
ffmpeg -v error -f lavfi -i testsrc=d=2:r=25:s=320x240 -f lavfi -i sine=d=2 -c:v mpeg2video -c:a mp2 sound.ts
ffmpeg -v error -i pal.dv -map 0:v -c copy pal.mov
cat pal.dv ntsc.dv pal.dv >joined.dv
# Damaged: a frame cut short, foreign bytes, a frame zeroed, and the end cut off.
piece() { # file offset bytes
    dd status=none if="$1" skip="$2" count="$3" iflag=skip_bytes,count_bytes bs=64k
}
{
    piece pal.dv 0 300000
    piece /dev/zero 0 1234
    piece pal.dv 432000 1000000
    piece film.mp4 0 777
    piece pal.dv 2016000 3000000
} >damaged.dv
head -c 100000 film.mp4 >cut.mp4
head -c 400000 yuy2.avi >cut.avi
printf 'no video\n' >text.dv
mkdir folder
cp pal.dv folder/b.dv
cp ntsc.dv folder/a.dv

cases=(
    "pal.dv" "ntsc.dv" "yuy2.avi" "rgb.avi" "film.mp4" "film.mkv" "variable.mkv" "sound.ts" "pal.mov" "joined.dv"
    "damaged.dv" "cut.mp4" "cut.avi" "text.dv" "missing.dv" "folder" "--jobs 1 pal.dv joined.dv text.dv film.mp4"
    "--method timestamp --timecode joined.dv" "--method timestamp film.mp4" "--method timestamp,video,interval --interval 20 joined.dv"
    "--method manual --mark 3,30,9999 pal.dv" "--method interval --interval 10 --xml {OUT}/i.xml film.mkv"
    "--xml {OUT}/{{name}}-{{method}}.xml --method video,timestamp joined.dv"
    "-o {OUT}/a.csv -o {OUT}/a.json -o {OUT}/a.edl -o {OUT}/a.otio -o {OUT}/a.fcpxml -o {OUT}/a.qp -o {OUT}/a.xml --format csv,json,edl,otio,fcpxml,qp,matroska film.mp4"
    "-o {OUT}/a.csv -o {OUT}/a.json -o {OUT}/a.edl --min-scene 30 pal.dv" "-o - --format json variable.mkv"
    "-o {OUT}/v.edl -o {OUT}/v.otio -o {OUT}/v.fcpxml --format edl,otio,fcpxml variable.mkv"
    "--tape-log {OUT}/t.csv damaged.dv" "--tape-log {OUT}/t.json joined.dv" "--split {OUT}/clips damaged.dv"
    "--split {OUT}/clips --names {{scene}}-{{timecode}}-{{date}} pal.dv" "--split {OUT}/clips film.mp4" "--split {OUT}/clips --container mkv film.mkv"
    "--split {OUT}/clips --container avi pal.dv" "--split {OUT}/clips joined.dv" "--split {OUT}/clips --container mkv sound.ts"
    "--pictures {OUT}/p --picture-at start,middle,7 film.mp4" "--pictures {OUT}/p --picture-format jpeg --picture-width 99 joined.dv"
    "--report {OUT}/r.html film.mp4" "--report {OUT}/r.html --stats {OUT}/s.csv pal.dv" "--start 10 --end 50 pal.dv"
    "--start 1s --duration 00:00:01:05 film.mp4" "--start 00:00:00;20 film.mkv" "--start 900 pal.dv" "--start 00:00:01:25 pal.dv"
    "--cut-threshold 40 --dark-level -1 --stats {OUT}/s.csv film.mkv" "--help" "--cut-threshold 256 pal.dv" "--method guess pal.dv"
    "--interval 5 pal.dv" "--method interval pal.dv" "--start x pal.dv" "--picture-at start pal.dv" "--format csv pal.dv" "-o a.unknown pal.dv"
    "--container mkv pal.dv" "--tape-log a.txt pal.dv" "--names {{what}} --split {OUT}/c pal.dv" "--from-stats missing.csv" "" "--mark -1 pal.dv"
    "-o {OUT}/same.csv --stats {OUT}/same.csv pal.dv" "--xml pal.dv pal.dv" "-v --method interval --interval 7 yuy2.avi"
)

run_all() { # program folder
    local program=$1 out=$2 number=0 case arguments
    mkdir -p "$out"
    for case in "${cases[@]}"; do
        number=$((number + 1))
        mkdir "$out/$number"
        case=${case//\{OUT\}/\/tmp\/compare-builds-out}
        case=${case//\{\{/\{}
        read -ra arguments <<<"${case//\}\}/\}}"
        rm -rf /tmp/compare-builds-out
        mkdir /tmp/compare-builds-out
        "$program" --no-config "${arguments[@]}" </dev/null >"$out/$number/stdout" 2>"$out/$number/stderr" && status=0 || status=$?
        echo "$status" >"$out/$number/status"
        mv /tmp/compare-builds-out "$out/$number/files"
        # Matroska files have a random number of their own: their packets count.
        find "$out/$number/files" -name '*.mkv' | while read -r file; do
            ffmpeg -v error -nostdin -i "$file" -map 0 -c copy -f framemd5 "$file.packets" && rm "$file"
        done
        # What --verbose tells of the time differs from run to run.
        sed -i -E 's/ in [0-9.]+ s, [0-9]+ frames\/s//; s/, [0-9.]+ s$//' "$out/$number/stderr"
    done
    for name in pal joined damaged; do
        "$program" --no-config - <"$name.dv" >"$out/$name.stdout" 2>"$out/$name.stderr" && status=0 || status=$?
        echo "$status" >>"$out/$name.stderr"
    done
}
run_all "$old" "$work/old"
run_all "$new" "$work/new"
if diff -r "$work/old" "$work/new"; then
    echo "${#cases[@]} command lines and 3 pipes: the same bytes, $(find "$work/new" -type f | wc -l) files"
else
    for number in $(seq ${#cases[@]}); do
        diff -rq "$work/old/$number" "$work/new/$number" >/dev/null || echo "differs: kxscenes ${cases[number - 1]}"
    done
    exit 1
fi
