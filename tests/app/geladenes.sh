#!/bin/sh
# The symbols are recorded while kalvaro is built: what reads SVG is not loaded with the program.
#   geladenes.sh PROGRAM
set -eu
gebraucht=$(objdump -p "$1" | sed -n 's/^ *NEEDED *//p')
echo "$gebraucht" | grep -q '^libQt6Widgets\.' || { echo "$1: no list of libraries"; exit 1; }
if echo "$gebraucht" | grep '^libQt6Svg\.'; then
    echo "loaded with every start"
    exit 1
fi
