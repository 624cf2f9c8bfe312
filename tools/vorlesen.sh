#!/bin/bash
# Plays keys to kalvaro and prints what the screen reader Orca speaks: on a display, a bus and a
# process table of its own, with a demo cloud and a demo rekordbox. By hand: it takes orca,
# at-spi2-core, speech-dispatcher, openbox, xdotool and xvfb, and nobody hears anything.
#   tools/vorlesen.sh BUILD_FOLDER [STEP...]
# A step is a key as xdotool names it ("Tab", "shift+Tab", "space"), "wort:TEXT" (types it),
# "bis:TEXT" (waits until that has been spoken) or "szenario:NAME" (what the cloud comes to, only as
# the first step). $KALVARO_EINSTELLUNGEN replaces the settings file, $BILD is where a picture of the
# display goes at the end, $PROTOKOLL where Orca's log is kept.
set -eu
cd "$(dirname "$0")/.."
if [ -z "${KALVARO_EIGENE_PROZESSE:-}" ]; then
    exec tests/eigene-prozesse.sh "$0" "$@"
fi
if [ -z "${KALVARO_VORLESEBUS:-}" ]; then
    KALVARO_VORLESEBUS=1 exec dbus-run-session -- "$0" "$@" 2> >(grep -v '^dbus-daemon\|^SpiRegistry' >&2)
fi

bau=$1
shift
. tools/democloud.sh
ordner=$(mktemp -d "${TMPDIR:-/tmp}/kalvaro-vorlesen.XXXXXX")
log=$ordner/orca.log
kinder=""
aufraeumen() {
    trap - EXIT
    [ -z "${PROTOKOLL:-}" ] || cp "$log" "$PROTOKOLL"
    cloud_beenden
    # shellcheck disable=SC2086 # several process ids
    kill $kinder 2>/dev/null || true
    rm -rf "$ordner"
}
trap aufraeumen EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

starten() { # COMMAND...: in the background, silently
    "$@" >/dev/null 2>&1 &
    kinder="$kinder $!"
}

scheitern() {
    echo "vorlesen.sh: $1" >&2
    exit 1
}

# What has been spoken so far, one utterance per line, without the echo of keys.
gesprochen() {
    sed -n "s/^.*SPEECH OUTPUT: '\(.*\)' *\([[{].*\)\{0,1\}\$/\1/p" "$log" | grep -v '^[^ ]* $' || true
}

# Waits until Orca has had nothing to do for a second and a half.
ruhe() {
    vorher=-1
    gleich=0
    while [ $gleich -lt 5 ]; do
        jetzt=$(stat -c %s "$log")
        if [ "$jetzt" = "$vorher" ]; then gleich=$((gleich + 1)); else gleich=0; fi
        vorher=$jetzt
        sleep 0.3
    done
}

gezeigt=0
zeigen() {
    gesprochen | tail -n +$((gezeigt + 1)) | sed 's/^/    /'
    gezeigt=$(gesprochen | wc -l)
}

unset WAYLAND_DISPLAY XDG_CACHE_HOME QT_QPA_PLATFORM
export HOME="$ordner/heim" XDG_RUNTIME_DIR="$ordner/lauf"
export XDG_DATA_HOME="$ordner/daten" XDG_CONFIG_HOME="$ordner/heim/.config"
export KALVARO_APPLICATIONS="$PWD/$bau/demo/Applications"
case "$bau" in /*) KALVARO_APPLICATIONS="$bau/demo/Applications" ;; esac
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 LC_ALL=C.UTF-8 LANGUAGE=de
mkdir -p -m 700 "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME/speech-dispatcher" "$XDG_DATA_HOME/kalvaro"
printf 'AddModule "dummy" "sd_dummy" ""\nDefaultModule dummy\n' \
    >"$XDG_CONFIG_HOME/speech-dispatcher/speechd.conf"

szenario=keins
case "${1:-}" in
szenario:*)
    szenario=${1#szenario:}
    shift
    ;;
esac
cloud_starten "$bau/kalvaro-democloud" "$ordner/cloud.log" --szenario "$szenario" || exit 1
printf '{"name":"Demo-Mac","geraet":"demo-mac","schluessel":"demo-schluessel","server":["%s"]}' \
    "http://127.0.0.1:$port" >"$XDG_DATA_HOME/kalvaro/konto.json"
echo "${KALVARO_EINSTELLUNGEN:-{\}}" >"$XDG_DATA_HOME/kalvaro/einstellungen.json"

mkfifo "$ordner/anzeige"
exec 3<>"$ordner/anzeige"
starten Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset
read -r -t 20 nummer <&3 || scheitern "no display"
export DISPLAY=":$nummer"
starten openbox
: >"$log"
# Orca would keep the end of its log to itself until the buffer is full.
mkdir "$ordner/python"
cat >"$ordner/python/sitecustomize.py" <<'PYTHON'
import builtins

oeffnen = builtins.open


def zeilenweise(datei, mode="r", buffering=-1, *rest, **namen):
    return oeffnen(datei, mode, 1 if str(datei).endswith("orca.log") else buffering, *rest, **namen)


builtins.open = zeilenweise
PYTHON
starten env PYTHONPATH="$ordner/python" orca --debug-file="$log"
for _ in $(seq 100); do
    [ -z "$(gesprochen)" ] || break
    sleep 0.2
done
[ -n "$(gesprochen)" ] || scheitern "Orca does not speak"
ruhe
zeigen >/dev/null

echo "> start"
starten "$bau/kalvaro"
ruhe
zeigen
for schritt in "$@"; do
    echo "> $schritt"
    case "$schritt" in
    wort:*) xdotool type "${schritt#wort:}" ;;
    bis:*)
        for _ in $(seq 100); do
            ! gesprochen | tail -n +$((gezeigt + 1)) | grep -qF -- "${schritt#bis:}" || break
            sleep 0.2
        done
        ;;
    *) xdotool key "$schritt" ;;
    esac
    ruhe
    zeigen
done
if [ -n "${BILD:-}" ]; then
    import -silent -window root "$BILD"
fi
