#!/bin/bash
# The manual page as a formatter likes it, with every option in it: check-manual.sh MANDOC PAGE KXSCENES
set -euo pipefail

complaints=$("$1" -T lint "$2") || true
[ -z "$complaints" ] || { echo "$complaints" && exit 1; }

text=$("$1" -T ascii "$2" | sed 's,.\x08,,g')
options=$("$3" --help | grep -oE '^  (-[a-z],)?--[a-z-]+' | grep -oE -- '--[a-z-]+')
[ "$(wc -w <<<"$options")" -ge 10 ]
for option in $options; do
    # At the beginning of its own paragraph, and not only mentioned.
    grep -qE "^ +(-[a-z], )?$option( |\$)" <<<"$text" || { echo "the manual lacks $option" && exit 1; }
done

"$3" --help | while IFS= read -r line; do
    [ ${#line} -le 100 ] || { echo "wider than 100 columns: $line" && exit 1; }
done
