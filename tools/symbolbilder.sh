#!/bin/sh
# Draws the PNG pictures of the icon in packaging/icons anew (rsvg-convert is in librsvg2-bin).
set -eu
cd "$(dirname "$0")/.."
for seite in 16 22 24 32 48 64 128 256 512; do
    ordner="packaging/icons/hicolor/${seite}x$seite/apps"
    mkdir -p "$ordner"
    rsvg-convert -w "$seite" -h "$seite" src/ui/symbole/de.kalvaro.kalvaro.svg \
        -o "$ordner/de.kalvaro.kalvaro.png"
done
