#!/usr/bin/env bash
# Has a spreadsheet and a muxer read what kxscenes writes about a film of three scenes: red, green and
# blue, cut at frames 30 and 58.
#   read-back.sh PROGRAM
set -euo pipefail

program=$(readlink -f "$1")
here=$(dirname "$(readlink -f "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fail() {
    echo "read-back: $*" >&2
    exit 1
}

scene() { # color frames
    echo "color=c=$1:s=320x240:r=25,trim=end_frame=$2"
}
ffmpeg -v error -f lavfi -i "$(scene 0xD01010 30)[a];$(scene 0x10D010 28)[b];$(scene 0x1010D0 42)[c];
    [a][b][c]concat=n=3" -c:v libx264 -preset veryfast -pix_fmt yuv420p 'film "1" <&>.mp4'
"$program" -o list.csv -o list.ffmeta -o list.xml --format csv,ffmeta,mkvchapters 'film "1" <&>.mp4' >/dev/null

soffice --headless -env:UserInstallation="file://$work/office" --convert-to ods \
    --infilter='Text - txt - csv (StarCalc):44,34,76,1' list.csv >/dev/null 2>&1
"$here/compare-cells.py" list.csv list.ods

mkvmerge -q -o muxed.mkv --chapters list.xml 'film "1" <&>.mp4'
ffmpeg -v error -i 'film "1" <&>.mp4' -i list.ffmeta -map_metadata 1 -c copy marked.mp4
for file in muxed.mkv marked.mp4; do
    chapters=$(ffprobe -v error -show_entries chapter=start_time,end_time -of csv=p=0 "$file" | tr '\n' ' ')
    [ "$chapters" = "0.000000,1.200000 1.200000,2.320000 2.320000,4.000000 " ] || fail "$file: chapters $chapters"
done
