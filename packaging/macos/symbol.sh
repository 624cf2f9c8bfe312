#!/bin/sh
# Draws packaging/macos/kalvaro.icns anew from the icon (rsvg-convert is in librsvg2-bin, png2icns in
# icnsutils). The result is kept, so that a Mac needs neither.
set -eu
cd "$(dirname "$0")/../.."
ordner=$(mktemp -d)
trap 'rm -rf "$ordner"' EXIT

# On a Mac the tile takes 824 of 1024 points; ours takes 448 of 512.
sed 's/viewBox="0 0 512 512"/viewBox="-22.4 -22.4 556.8 556.8"/' src/ui/symbole/de.kalvaro.kalvaro.svg \
    >"$ordner/symbol.svg"
for seite in 16 32 64 128 256 512 1024; do
    rsvg-convert -w "$seite" -h "$seite" "$ordner/symbol.svg" -o "$ordner/$seite.png"
done
png2icns "$ordner/klein.icns" "$ordner/16.png" "$ordner/32.png" "$ordner/128.png" >/dev/null
python3 -B packaging/macos/symbol.py "$ordner" packaging/macos/kalvaro.icns
