#!/bin/sh
# Measures kalvaro against the floor, a bare Qt Widgets window, in one run under Xvfb.
#   tools/bench.sh BUILD_FOLDER
set -eu
bau=$PWD/$1
laeufe=${KALVARO_BENCH_LAEUFE:-7}
ordner=$(mktemp -d "${TMPDIR:-/tmp}/kalvaro-bench.XXXXXX")
. tools/democloud.sh
trap 'cloud_beenden; rm -rf "$ordner"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
cloud_starten "$bau/kalvaro-democloud" "$ordner/cloud" --dauer 0.2
mkdir -p "$ordner/daten/kalvaro" "$ordner/run"
chmod 700 "$ordner/run"
printf '{"geraet":"demo-mac","schluessel":"demo-schluessel","server":["http://127.0.0.1:%s"]}' \
    "$port" >"$ordner/daten/kalvaro/konto.json"
export XDG_DATA_HOME="$ordner/daten" XDG_CONFIG_HOME="$ordner/config" XDG_RUNTIME_DIR="$ordner/run"
export KALVARO_APPLICATIONS="$bau/demo/Applications"

cat >"$ordner/laufen.sh" <<LAUF
for i in \$(seq $laeufe); do
    "$bau/kalvaro-bench-start" "$bau/kalvaro-bench-boden" >>"$ordner/boden"
    "$bau/kalvaro-bench-start" "$bau/kalvaro" >>"$ordner/kalvaro"
done
LAUF
xvfb-run -a -s "-screen 0 1280x1024x24" sh "$ordner/laufen.sh" 2>/dev/null

mitte() { # FILE COLUMN: the median
    cut -d' ' -f"$2" "$ordner/$1" | sort -n | sed -n "$(((laeufe + 1) / 2))p"
}
zeile() { # NAME COLUMN UNIT GOAL
    b=$(mitte boden "$2")
    k=$(mitte kalvaro "$2")
    awk -v n="$1" -v b="$b" -v k="$k" -v u="$3" -v z="$4" 'BEGIN {
        printf "%-22s floor %8.1f %s   kalvaro %8.1f %s   ratio %.2f (goal %s)\n", n, b, u, k, u, k / b, z }'
}
echo "Median of $laeufe starts each, in turn:"
zeile "window appears" 1 ms 1.5
zeile "memory (PSS)" 2 KiB 1.6
echo "processor at rest: $(mitte kalvaro 3) ms in 5 s"
echo
QT_QPA_PLATFORM=offscreen "$bau/kalvaro-bench-prozesse"
echo
QT_QPA_PLATFORM=offscreen "$bau/kalvaro-bench-einstellungen" 2>/dev/null
