#!/bin/bash
# Makes a short DV tape to try kxscenes on: make-demo-tape.sh FILE
#
# Two PAL captures joined, recorded a day apart, with one picture cut inside each. Its scenes are
#   --method video      0, 60, 130 and 175
#   --method timestamp  0 and 130
set -euo pipefail

if [ $# -ne 1 ]; then
    echo "usage: ${0##*/} FILE" >&2
    exit 2
fi
target=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# capture NAME RECORDED TIMECODE SOURCE FRAMES SOURCE FRAMES
capture() {
    ffmpeg -v error -nostdin \
        -f lavfi -i "$4=s=720x576:r=25" -f lavfi -i "$6=s=720x576:r=25" \
        -filter_complex "[0]trim=end_frame=$5[a];[1]trim=end_frame=$7,setpts=PTS-STARTPTS[b];[a][b]concat" \
        -target pal-dv -an -metadata creation_time="$2" -timecode "$3" "$work/$1"
}
capture first.dv 2004-07-17T10:30:00 00:00:00:00 smptebars 60 testsrc2 70
capture second.dv 2004-07-18T09:15:20 00:00:05:05 yuvtestsrc 45 testsrc 55
cat "$work/first.dv" "$work/second.dv" >"$target"
