#!/bin/sh
# Draws the pictures of docs/ anew.
#   tools/bilder.sh BUILD_FOLDER
set -eu
mkdir -p docs/bilder
# Twice as many pixels need a screen that is larger, too.
export QT_QPA_PLATFORM="offscreen:configfile=$PWD/tests/bilder/schirm.json" QT_SCALE_FACTOR=2
export FONTCONFIG_FILE="$PWD/tools/bilder/fonts.conf"
fehler=$(mktemp)
trap 'rm -f "$fehler"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
"$1/kalvaro-bilder" docs/bilder 2>"$fehler" || {
    cat "$fehler" >&2
    exit 1
}
echo "Pictures: docs/bilder"
