#!/bin/sh
# Draws those pictures anew that differ from what the program shows now. Each of them is then looked
# at: what is committed is what the tests hold to be right.
#   tests/bilder/erneuern.sh BUILD_FOLDER
set -eu
ordner=$(dirname "$0")/vorlagen
mkdir -p "$ordner"
ausgabe=$(mktemp)
trap 'rm -f "$ausgabe"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

for massstab in "" 2 1.25; do
    env ${massstab:+"QT_SCALE_FACTOR=$massstab"} KALVARO_BILDER=erneuern "$1/tests/tests_bilder" TestBilder \
        >"$ausgabe" 2>&1 || {
        grep -A1 '^FAIL' "$ausgabe" >&2 || cat "$ausgabe" >&2
        exit 1
    }
    sed -n 's/^.*renewed: //p' "$ausgabe" | while read -r bild; do
        optipng -quiet -o2 "$bild"
        echo "Renewed, please look at it: $bild"
    done
done
