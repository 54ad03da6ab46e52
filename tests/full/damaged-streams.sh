#!/usr/bin/env bash
# Runs kxscenes on compressed video that is damaged at random: it may find less, but neither crashes nor says nothing.
#   damaged-streams.sh PROGRAM [RUNS]
# The n-th run damages as it did the last time: one that fails is shown with its number.
set -euo pipefail

program=$(readlink -f "$1")
runs=${2:-1000}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# In frames of many slices, which decoders with several threads share out.
film() { # file options...
    ffmpeg -v error -f lavfi -i "testsrc2=s=720x576:r=25:d=2,noise=alls=10:allf=t" -f lavfi -i "sine=d=2" "${@:2}" "$1"
}
film 0.ts -c:v mpeg2video -slices 8 -bf 2 -g 12 -b:v 4M -c:a mp2
film 1.mpg -c:v mpeg2video -bf 2 -g 12 -b:v 4M -c:a mp2
film 2.ts -c:v libx264 -preset veryfast -x264-params slices=4 -bf 3 -c:a aac
film 3.avi -c:v mpeg4 -b:v 4M -c:a mp3

films=([0-3].*)
failed=0
for ((run = 0; run < runs; run++)); do
    file=${films[run % 4]}
    python3 - "$run" "$file" damaged <<'PYTHON'
import random, sys
seed, source, target = sys.argv[1:]
data = bytearray(open(source, "rb").read())
random.seed(int(seed))
for _ in range(random.choice([1, 10, 100])):
    at = random.randrange(4096, len(data))  # what makes the file one of its kind stays
    if random.random() < .8:
        data[at] ^= 1 << random.randrange(8)
    else:
        del data[at : at + random.randrange(1, 5000)]
open(target, "wb").write(data)
PYTHON
    status=0
    timeout 120 "$program" --no-config damaged >out 2>err || status=$?
    # Broken off is 3; what has no frame at all is an error with its line.
    if [[ $status != 0 && $status != 3 ]] && ! [[ $status == 1 && ! -s out && -s err ]]; then
        echo "run $run of $file: exit code $status" >&2
        cat err >&2
        failed=$((failed + 1))
    fi
done
[ "$failed" -eq 0 ]
