#!/bin/sh
# What a window needs is loaded with the program, and nothing else: the rest comes when it is asked for.
#   geladenes.sh PROGRAM
set -eu
gebraucht=$(objdump -p "$1" | sed -n 's/^ *NEEDED *//p')
echo "$gebraucht" | grep -q '^libQt6Widgets\.' || { echo "$1: no list of libraries"; exit 1; }
if echo "$gebraucht" | grep -E '^lib(curl|ssl|crypto|Qt6Svg)\.'; then
    echo "loaded with every start"
    exit 1
fi
