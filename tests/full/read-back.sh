#!/usr/bin/env bash
# Has a browser, a spreadsheet and a muxer read what kxscenes writes about a film of three scenes: red, green and
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
"$program" --report page.html -o list.csv -o list.ffmeta -o list.xml --format csv,ffmeta,mkvchapters \
    'film "1" <&>.mp4' >/dev/null

# --- the report in a browser ---

browse() { # what to do; fails when the page complains
    timeout 120 chromium --headless --no-sandbox --disable-gpu --hide-scrollbars --user-data-dir="$work/profile" \
        --enable-logging=stderr "$@" "file://$work/page.html" 2>browser.txt
    grep 'CONSOLE' browser.txt && fail "the page complains"
    return 0
}
pixels() { # picture color: how many of nearly that color
    convert "$1" -fuzz 12% -fill black +opaque "$2" -fill white -opaque "$2" -format '%[fx:int(mean*w*h)]' info:
}
at_least() { # number pixels what
    [ "$2" -ge "$1" ] || fail "$3: only $2 pixels"
}

browse --dump-dom >dom.txt
[ "$(grep -c '<img ' dom.txt)" -eq 3 ] || fail "not three pictures"
grep -q '<svg ' dom.txt || fail "no timeline"
grep -q '<h1>film "1" &lt;&amp;&gt;</h1>' dom.txt || fail "the name is not as it should be"
# Only the page's script writes hundredths.
grep -q '0:00:04.00' dom.txt || fail "the script did not run"
for look in light:1:1769C2 dark:0:6CB0FF; do
    IFS=: read -r name scheme line <<<"$look"
    for width in 400 1300; do
        browse --blink-settings=preferredColorScheme="$scheme" --window-size="$width,1400" --screenshot="$work/$name.png"
        for color in D01010 10D010 1010D0; do
            at_least 5000 "$(pixels $name.png "#$color")" "$name, $width wide: picture of color $color"
        done
        at_least 200 "$(pixels $name.png "#$line")" "$name, $width wide: the line of differences"
    done
done
light=$(convert light.png -colorspace gray -format '%[fx:int(100*mean)]' info:)
dark=$(convert dark.png -colorspace gray -format '%[fx:int(100*mean)]' info:)
[ "$light" -gt 70 ] && [ "$dark" -lt 40 ] || fail "light and dark are $light and $dark percent bright"

# --- the table in a spreadsheet, and chapters in files ---

soffice --headless -env:UserInstallation="file://$work/office" --convert-to ods \
    --infilter='Text - txt - csv (StarCalc):44,34,76,1' list.csv >/dev/null 2>&1
"$here/compare-cells.py" list.csv list.ods

mkvmerge -q -o muxed.mkv --chapters list.xml 'film "1" <&>.mp4'
ffmpeg -v error -i 'film "1" <&>.mp4' -i list.ffmeta -map_metadata 1 -c copy marked.mp4
for file in muxed.mkv marked.mp4; do
    chapters=$(ffprobe -v error -show_entries chapter=start_time,end_time -of csv=p=0 "$file" | tr '\n' ' ')
    [ "$chapters" = "0.000000,1.200000 1.200000,2.320000 2.320000,4.000000 " ] || fail "$file: chapters $chapters"
done
