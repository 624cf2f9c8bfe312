#!/bin/sh
# Draws the pictures of docs/ anew.
#   tools/bilder.sh BUILD_FOLDER
set -eu
mkdir -p docs/bilder
export QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2
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
