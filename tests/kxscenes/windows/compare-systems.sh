#!/usr/bin/env bash
# Runs kxscenes natively and kxscenes.exe under Wine on the same input, each in a folder of its own. What they print, say
# and write must be the same bytes, but for the drive in addresses of files.
#   compare-systems.sh CASE      one of the functions below that begin with case_
# Environment: NATIVE_BIN and WINDOWS_BIN (folders of the programs), RUN_IN_WINE.
set -euo pipefail
export LC_ALL=C.UTF-8
export XDG_CONFIG_HOME=/nonexistent

native=$NATIVE_BIN/kxscenes
windows=$WINDOWS_BIN/kxscenes.exe

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

[ -x "$native" ] || fail "there is no $native: build the native preset first, or set SCENEDETECT_NATIVE_BIN"
[ -e "$windows" ] || fail "there is no $windows"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
mkdir in native windows

# --- material ---

tape() { # file pal|ntsc time-of-recording seconds audio-rate
    local picture=720x576:r=25
    [ "$2" = pal ] || picture=720x480:r=30000/1001
    ffmpeg -v error -nostdin -y -f lavfi -i "testsrc2=s=$picture:d=$4" -f lavfi -i "sine=r=$5:d=$4" -target "$2-dv" \
        -ar "$5" -ac 2 -metadata "creation_time=2004-07-17T$3" -timecode 00:01:00:04 "$1"
}

# Two recordings, another line system, other audio, lost and foreign bytes.
joined_tape() { # file
    tape in/one.dv pal 10:30:00 2 48000
    tape in/two.dv ntsc 11:00:00 1 48000
    tape in/three.dv pal 11:30:00 2 32000
    {
        head -c 3000000 in/one.dv
        tail -c +3004001 in/one.dv
        cat in/two.dv
        head -c 1000 /dev/zero
        head -c 5000000 in/three.dv
        head -c 10000 /dev/zero | tr '\0' '\377'
        tail -c +5010001 in/three.dv
    } >"$1"
}

# --- comparing ---

on_windows() { # arguments...
    timeout 100 "$RUN_IN_WINE" "$windows" "$@"
}

compare() { # exit-code arguments of both programs...
    local expected=$1 code=0
    shift
    (cd native && "$native" "$@" >out 2>err <"$input") || code=$?
    [ $code -eq "$expected" ] || fail "natively $*: exit code $code instead of $expected: $(cat native/err)"
    code=0
    (cd windows && on_windows "$@" >out 2>err <"$input") || code=$?
    [ $code -eq "$expected" ] || fail "on Windows $*: exit code $code instead of $expected: $(cat windows/err)"
    grep -rlZE 'file://(localhost)?/Z:' windows | xargs -0r sed -i -E 's,(file://(localhost)?/)Z:/,\1,' || true
    sed -i 's/, [0-9.]* s$//' native/err windows/err
    diff -r native windows >difference || fail "$*: $(head -c 2000 difference)"
    [ -z "$(find windows -name '*.part')" ] || fail "$*: leaves $(find windows -name '*.part')"
}
input=/dev/null

case_tape() {
    joined_tape in/tape.dv
    printf 'method = [video, timestamp]\ncut-threshold = 18\n' >in/my.conf
    compare 0 --config ../in/my.conf --cut-at scenes,recordings,audio,lines --split clips --names '{scene}-{date}-{audio}' \
        --tape-log log.csv -o l.csv -o l.json -o l.otio -o l.fcpxml -o l.xmeml -o l.qp -o l.ffmeta \
        -o l.chapters.xml -o l.srt --xml '{method}.xml' --stats stats.csv --timecode ../in/tape.dv
    [ "$(find windows/clips -type f | wc -l)" -ge 3 ] || fail "the tape has but $(ls windows/clips)"
    cmp in/tape.dv windows/clips/* 2>/dev/null && fail "one clip is the tape"
    compare 0 --from-stats stats.csv --cut-threshold 9 -o - --format json --report page.html
    compare 0 --scenes l.csv --split listed --start 10 --end 2s --tape-log log.json ../in/tape.dv
    compare 1 -o l.edl ../in/tape.dv # its rate varies
    compare 1 --split clips --names '{scene}-{date}-{audio}' ../in/tape.dv # they are there
    compare 0 --cut-at recordings --split clips --force --min-scene 30 --short-scenes drop ../in/tape.dv
}

case_stream() {
    joined_tape in/tape.dv
    head -c 15000000 in/tape.dv >in/cut.dv
    input=../in/cut.dv
    compare 3 --method interval --interval 20 --split clips --tape-log - -
    compare 3 --jobs 1 --tape-log '{name}.csv' ../in
}

case_avi() {
    tape in/one.dv pal 10:30:00 2 48000
    ffmpeg -v error -nostdin -i in/one.dv -map 0:v -map 0:a -c copy in/beside.avi
    ffmpeg -v error -nostdin -i in/one.dv -map 0:v -c copy in/mute.avi
    ffmpeg -v error -nostdin -f lavfi -i testsrc=s=320x240:r=25:d=3 -c:v rawvideo -pix_fmt yuyv422 -vtag YUY2 in/raw.avi
    compare 0 --method video,interval --interval 30 --fades middle -o '{name}.json' -o '{name}.fcpxml' --xml '{name}-{method}.xml' ../in
    compare 0 --split clips ../in/mute.avi
}

# Names that no code page has, longer than the system's usual limit.
case_names() {
    local deep name="Zürich – 東京"
    deep=$(printf '/%0100d' 1 2 3)
    mkdir -p "in$deep"
    tape "in/$name.dv" pal 10:30:00 1 48000
    cp "in/$name.dv" "in$deep/tief.dv"
    compare 0 --method interval --interval 10 --split "Szenen é$deep" -o "$name{name}.edl" "../in$deep/tief.dv"
    # Links are the shell's to make; the file that one leads to is replaced.
    for system in native windows; do
        ln -s real.csv $system/link.csv
        echo old >$system/real.csv
    done
    compare 0 --method interval --interval 10 --split again ../in
    compare 0 --method interval --interval 10 -o link.csv "../in/$name.dv"
    [ -L windows/link.csv ] || fail "a link was replaced"
    # What the shell does natively, the program does there; and a backslash before a closing quotation mark takes it along.
    cp "in/$name.dv" in/Also.dv
    (cd native && "$native" -q --method interval --interval 10 ../in/*.dv ../in/ >out)
    (cd windows && on_windows -q --method interval --interval 10 '../in/*.dv' '../in"' >out)
    cmp native/out windows/out || fail "patterns: $(cat windows/out)"
}

# Ctrl-C while it waits for more of a tape, and while nobody reads what it prints.
case_keys() {
    local code pressed
    tape in/tape.dv pal 10:30:00 4 48000
    mkfifo more
    exec 3<>more
    for pressed in once again; do
        code=0
        (cd windows && timeout 100 "$RUN_IN_WINE" "$WINDOWS_BIN/console_event.exe" $pressed "Z:$windows" --method \
            interval --interval 1 --tape-log log.csv --split clips - < <(exec cat ../in/tape.dv ../more 3>&-) 2>err) ||
            code=$?
        [ $code -eq 130 ] || fail "Ctrl-C $pressed: exit code $code: $(cat windows/err)"
        [ -z "$(find windows -name '*.part')" ] || fail "Ctrl-C $pressed: leaves $(find windows -name '*.part')"
        [ $pressed = again ] || grep -q 'of the first .* frames only: log.csv' windows/err || fail "$(cat windows/err)"
        rm -rf windows/clips windows/log.csv
    done
    exec 3>&-
}

"case_$1"
echo "$1: as it should be"
