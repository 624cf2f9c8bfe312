#!/bin/sh
# Runs cases by hand, all of a file or those whose names contain one of the words.
#   tests/faults/lauf.sh BUILD NAME [WORDS...]        as in: tests/faults/lauf.sh build/release server gzip
set -eu
hier=$(cd "$(dirname "$0")" && pwd)
bau=$(cd "$1" && pwd)
datei=$hier/tst_$2.py
shift 2
KALVARO_PROGRAMM=${KALVARO_PROGRAMM:-$bau/kalvaro}
KALVARO_SICHERN=$bau/tests/faults_sichern
export KALVARO_PROGRAMM KALVARO_SICHERN
exec "$hier/raum.sh" /usr/bin/python3 -B "$datei" "$@"
