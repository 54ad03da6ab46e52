#!/usr/bin/env bash
# Runs both hosts on the same input: kxscenes natively, kxscenes-graph under Wine. What they print and the scene
# lists that they write must be the same bytes, and the scenes must be those that were put into the input.
#   compare-hosts.sh CASE        one of the functions below that begin with case_
# Environment: NATIVE_BIN and WINDOWS_BIN (folders of the programs), RUN_IN_WINE, WINE_PREFIX (of the case that
# registers the module).
set -euo pipefail
export LC_ALL=C.UTF-8

graph=$WINDOWS_BIN/kxscenes-graph.exe
module=$WINDOWS_BIN/KxSceneDetect2.ax
native=$NATIVE_BIN/kxscenes

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

[ -x "$native" ] || fail "there is no $native: build the native preset first, or set SCENEDETECT_NATIVE_BIN"
for program in "$graph" "$module" "$RUN_IN_WINE"; do
    [ -e "$program" ] || fail "there is no $program"
done
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# --- material: four grey scenes with noise, cut at 20, 33 and 47 of 60 frames ---

cuts=0,20,33,47

clip() { # file size rate arguments of ffmpeg...
    local file=$1 picture="s=$2:r=$3"
    shift 3
    ffmpeg -v error -nostdin -y -f lavfi -i "
        color=c=0x464646:$picture,trim=end_frame=20[a];color=c=0xB4B4B4:$picture,trim=end_frame=13[b];
        color=c=0x6E6E6E:$picture,trim=end_frame=14[c];color=c=0xDCDCDC:$picture,trim=end_frame=13[d];
        [a][b][c][d]concat=n=4,noise=alls=8:allf=t" "$@" "$file"
}

avi() { # file pixel-format [fourcc]
    clip "$1" 320x240 25 -c:v rawvideo -pix_fmt "$2" ${3:+-vtag "$3"}
}

tape() { # file pal|ntsc time-of-recording
    local picture=(720x576 25)
    [ "$2" = pal ] || picture=(720x480 30000/1001)
    clip "$1" "${picture[@]}" -target "$2-dv" -an -metadata "creation_time=2004-07-17T$3" -timecode 00:01:00:04
}

# Makes an AVI with rows from the top one with rows from the bottom: the height in its bitmap header is -240.
turn_over() { # file
    local at
    IFS=: read -r at _ < <(LC_ALL=C grep -obUa strf "$1")
    printf '\360\0\0\0' | dd of="$1" bs=1 seek=$((at + 16)) conv=notrunc status=none
}

# --- comparing ---

in_graph() { # arguments of kxscenes-graph...
    timeout 100 "$RUN_IN_WINE" "$graph" "$@"
}

texts() { # file: messages without the program's name and the system's line ends
    sed 's/^kxscenes\(-graph\)\?: //; s/\r$//' "$1"
}

module_options=(--module "$module")
source_options=()

compare() { # frames-of-the-scenes arguments of both hosts...
    local frames=$1
    shift
    "$native" --xml native.xml "$@" >native.csv 2>native.txt || fail "kxscenes $*: $(cat native.txt)"
    in_graph "${module_options[@]}" "${source_options[@]}" --xml graph.xml "$@" >graph.csv 2>graph.txt ||
        fail "kxscenes-graph ${source_options[*]} $*: $(cat graph.txt)"
    local found
    found=$(sed 1d graph.csv | cut -d, -f2 | paste -sd,)
    [ "$found" = "$frames" ] || fail "kxscenes-graph ${source_options[*]} $*: scenes $found instead of $frames"
    cmp native.csv graph.csv || fail "$*: the two hosts print different scenes"
    cmp native.xml graph.xml || fail "$*: the two hosts write different scene lists"
    diff <(texts native.txt) <(texts graph.txt) || fail "$*: the two hosts say different things"
}

compare_blind() { # file: by methods that look at no picture
    compare 0,25,50 --method interval --interval 25 "$1"
    compare 0,7,40,59 --method manual --mark 40,7,59,60 "$1"
}

compare_methods() { # file
    compare $cuts "$1"
    compare 0,7,20,33,47 --mark 7,33,58 "$1"
    compare 0,20,47 --cut-threshold 80 --area 64,48,50%,50% "$1" # 33 differs by 70
    compare_blind "$1"
}

refuse() { # part-of-the-message arguments of kxscenes-graph...
    local message=$1 code=0
    shift
    in_graph "$@" >graph.csv 2>graph.txt || code=$?
    [ $code -eq 1 ] || fail "kxscenes-graph $*: exit code $code instead of 1"
    if [ "$(wc -l <graph.txt)" -ne 1 ] || ! grep -qF "kxscenes-graph: error: $message" graph.txt; then
        fail "kxscenes-graph $*: not \"$message\" but: $(cat graph.txt)"
    fi
    [ ! -s graph.csv ] || fail "kxscenes-graph $*: prints something all the same"
}

# --- AVI, by the system's splitter and by the host's own source ---

by_both_sources() { # file
    for source in auto system own; do
        source_options=(--source "$source")
        compare_methods "$1"
    done
}

case_yuy2() {
    avi clip.avi yuyv422 YUY2
    by_both_sources clip.avi
}
case_uyvy() {
    avi clip.avi uyvy422 UYVY
    by_both_sources clip.avi
}
case_yv12() {
    avi clip.avi yuv420p YV12
    by_both_sources clip.avi
}
# Planes whose rows are no whole words: some splitters pad them, and the pictures are of another size then.
case_planes() {
    for kind in I420 YV12; do
        clip clip.avi 324x242 25 -c:v rawvideo -pix_fmt yuv420p -vtag $kind
        compare_methods clip.avi
    done
}
case_rgb24() {
    avi clip.avi bgr24
    turn_over clip.avi
    by_both_sources clip.avi
}
case_topdown() {
    avi clip.avi bgr24
    compare_methods clip.avi
    source_options=(--source own)
    compare_methods clip.avi
}
case_palette() {
    avi clip.avi pal8
    compare_blind clip.avi
    refuse "clip.avi: the scene detect filter does not take this video" "${module_options[@]}" clip.avi
}
case_ntsc_avi() {
    clip clip.avi 320x240 30000/1001 -c:v rawvideo -pix_fmt yuyv422 -vtag YUY2
    compare_methods clip.avi
}

# Frames that were dropped while recording are empty chunks, which the host's own source counts.
case_dropped() {
    ffmpeg -v error -nostdin -y -f lavfi -i testsrc=s=320x240:r=25 -vf "select='not(between(n,10,14))'" -vsync passthrough \
        -frames:v 55 -c:v rawvideo -pix_fmt yuyv422 -vtag YUY2 clip.avi
    source_options=(--source own)
    compare 0,7,30,45 --method manual --mark 7,25,40 clip.avi
}

# --- DV ---

case_dv_pal() {
    tape tape.dv pal 10:30:00
    compare_methods tape.dv
    compare 0 --method timestamp --timecode tape.dv
    ffmpeg -v error -nostdin -i tape.dv -map 0:v -c copy tape.avi
    compare_methods tape.avi
    compare 0 --method timestamp tape.avi
}
case_dv_ntsc() {
    tape tape.dv ntsc 10:30:00
    compare_methods tape.dv
    compare 0 --method timestamp --timecode tape.dv
}
# Both line systems in one stream: the format changes in mid-stream, and so does the time of recording.
case_dv_joined() {
    tape one.dv pal 10:30:00
    tape two.dv ntsc 11:00:00
    tape three.dv pal 10:59:58
    cat one.dv two.dv three.dv >tape.dv
    compare 0,20,33,47,60,80,93,107,120,140,153,167 tape.dv
    compare 0,60,120 --method timestamp tape.dv
    compare 0,70,140 --method interval --interval 70 tape.dv
    compare 0,59,60,61,130 --method manual --mark 59,60,61,130 tape.dv
}

# --- names, damage, errors ---

case_names() {
    mkdir "Wörter und 文字"
    cd "Wörter und 文字"
    avi "Zürich – 東京.avi" yuyv422 YUY2
    compare $cuts "Zürich – 東京.avi"
    compare $cuts "$PWD/Zürich – 東京.avi"
    in_graph "${module_options[@]}" --xml "Szenen é.xml" "Zürich – 東京.avi" >graph.csv
    cmp native.xml "Szenen é.xml" || fail "the scene list under a name of several scripts"
}

case_cut() {
    avi whole.avi yuyv422 YUY2
    # 35 frames, their chunks' headers, and less than a frame more.
    head -c $((35 * (320 * 240 * 2 + 8) + 20000)) whole.avi >clip.avi
    in_graph "${module_options[@]}" --source own clip.avi >graph.csv 2>graph.txt ||
        fail "a file that breaks off is an error: $(cat graph.txt)"
    [ "$(sed 1d graph.csv | cut -d, -f2 | paste -sd,)" = 0,20 ] || fail "scenes of a cut file: $(cat graph.csv)"
    grep -q "clip.avi: breaks off: the end of frame 35 is missing" graph.txt || fail "no warning: $(cat graph.txt)"
}

case_errors() {
    avi clip.avi yuyv422 YUY2
    echo "this is no video" >text.avi
    clip mjpeg.avi 320x240 25 -c:v mjpeg -pix_fmt yuvj420p
    mkdir folder.avi
    refuse "missing.avi: cannot be read: " "${module_options[@]}" missing.avi
    refuse "folder.avi: cannot be read: " "${module_options[@]}" folder.avi
    refuse "text.avi: neither an AVI file nor a DV stream" "${module_options[@]}" text.avi
    refuse "mjpeg.avi: neither DV of 25 Mbit/s nor uncompressed video" "${module_options[@]}" mjpeg.avi
    refuse "clip.avi: --method timestamp needs DV video of 25 Mbit/s" "${module_options[@]}" --method timestamp clip.avi
    refuse "none/list.xml: the scene list cannot be written: " "${module_options[@]}" --xml none/list.xml clip.avi
    refuse "./clip.avi: is the input" "${module_options[@]}" --xml ./clip.avi clip.avi
    refuse "missing.ax: cannot be loaded: " --module missing.ax clip.avi
    refuse "text.avi: cannot be loaded: " --module text.avi clip.avi
    refuse "$graph: is not a module of filters" --module "$graph" clip.avi
}

# By class id: registered in a Wine prefix of its own, and not registered.
case_registered() {
    export WINEPREFIX=$WINE_PREFIX
    local windows_path="Z:${module//\//\\}"
    avi clip.avi yuyv422 YUY2
    timeout 300 "$RUN_IN_WINE" regsvr32 /s "$windows_path" || fail "regsvr32 refuses the module"
    module_options=()
    compare_methods clip.avi
    timeout 100 "$RUN_IN_WINE" regsvr32 /s /u "$windows_path" || fail "regsvr32 /u refuses the module"
    refuse "the scene detect filter is not registered: run regsvr32 KxSceneDetect2.ax, or use --module FILE" clip.avi
}

"case_$1"
echo "$1: the same"
