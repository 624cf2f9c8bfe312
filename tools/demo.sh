#!/bin/sh
# Shows kalvaro with a demo cloud, in a data folder of its own. With a display the window opens;
# without one, or with BILD=PATH in the environment, a picture of it is written.
#   tools/demo.sh BUILD_FOLDER
set -eu
bau=$1
. tools/democloud.sh
ordner=$(mktemp -d "${TMPDIR:-/tmp}/kalvaro-demo.XXXXXX")
cloud=""

aufraeumen() {
    ende=$?
    trap - EXIT INT TERM HUP
    cloud_beenden
    rm -rf "$ordner"
    exit "$ende"
}
trap aufraeumen EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

scheitern() {
    echo "make demo: $1" >&2
    exit 1
}

cloud_starten "$bau/kalvaro-democloud" "$ordner/cloud.log" --dauer "${KALVARO_DEMO_DAUER:-2}" ||
    scheitern "no demo cloud (see above)"

export XDG_DATA_HOME="$ordner"
export XDG_CONFIG_HOME="$ordner/config"
export KALVARO_APPLICATIONS="$bau/demo/Applications"
mkdir -p "$ordner/kalvaro"
cat >"$ordner/kalvaro/konto.json" <<JSON
{
  "name": "Demo-Mac",
  "geraet": "demo-mac",
  "schluessel": "demo-schluessel",
  "server": ["http://127.0.0.1:$port"]
}
JSON

protokoll="$ordner/kalvaro/kalvaro.log"

if [ -z "${BILD:-}" ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    # With the automatic start a newcomer sees the countdown and the demo rekordbox.
    echo '{"autostart":true}' >"$ordner/kalvaro/einstellungen.json"
    echo "kalvaro runs with a demo cloud on port $port. Closing its window leaves it in the tray;"
    echo "„kalvaro beenden“ in its menu, or Ctrl+C here, ends both."
    ende=0
    DEMO_REKORDBOX_DAUER=1800 "$bau/kalvaro" || ende=$?
    if [ -s "$protokoll" ]; then
        [ "$ende" -eq 0 ] || scheitern "kalvaro ended with status $ende"
        exit 0
    fi
    [ "$ende" -ne 0 ] ||
        scheitern "another kalvaro runs in this session and was asked to open; please end it first"
    echo "There is no display after all (see above), so a picture follows."
    rm -f "$ordner/kalvaro/einstellungen.json"
fi

bild=${BILD:-build/demo.png}
case "$bild" in
/*) ;;
*) bild="$PWD/$bild" ;;
esac
QT_QPA_PLATFORM=offscreen FONTCONFIG_FILE="$PWD/tools/bilder/fonts.conf" \
    "$bau/kalvaro" --bild "$ordner/bild.png" >"$ordner/urteil.txt" 2>"$ordner/fehler.txt" ||
    scheitern "kalvaro ended with status $?: $(cat "$ordner/fehler.txt")"
[ -s "$ordner/urteil.txt" ] || scheitern "kalvaro gave no verdict: $(cat "$ordner/fehler.txt")"
# Another demo in this checkout may write to the same place.
[ -s "$ordner/bild.png" ] || scheitern "kalvaro wrote no picture: $(cat "$ordner/fehler.txt")"
cp "$ordner/bild.png" "$bild" || scheitern "the picture could not be written to $bild"
cat "$ordner/urteil.txt"
echo
echo "Log:"
cat "$protokoll"
echo "Picture: $bild"
