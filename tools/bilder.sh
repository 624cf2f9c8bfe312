#!/bin/sh
# Draws the pictures of docs/ anew.
#   tools/bilder.sh BUILD_FOLDER
set -eu
mkdir -p docs/bilder
export QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2
export FONTCONFIG_FILE="$PWD/tools/bilder/fonts.conf"
"$1/kalvaro-bilder" docs/bilder 2>/dev/null
echo "Pictures: docs/bilder"
