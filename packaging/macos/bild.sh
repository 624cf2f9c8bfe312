#!/bin/sh
# Draws the window as this Mac shows it after a sync with a demo cloud.
#   packaging/macos/bild.sh BUILD PICTURE
set -eu
bau=$1
bild=$2
. tools/democloud.sh

# Drawing asks the cloud of the account for a sync. Should the system not believe where its home is, that
# would be somebody's own.
if [ -e "$HOME/Library/Application Support/kalvaro/konto.json" ]; then
    echo "This user has an account of kalvaro; please draw as one who has none." >&2
    exit 1
fi
heim=$(mktemp -d)
cloud=""
aufraeumen() {
    ende=$?
    trap - EXIT
    cloud_beenden
    rm -rf "$heim"
    exit "$ende"
}
trap aufraeumen EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

cloud_starten "$bau/kalvaro-democloud" "$heim/cloud.log"
daten="$heim/Library/Application Support/kalvaro"
mkdir -p "$daten"
printf '{"name": "Demo-Mac", "geraet": "demo-mac", "schluessel": "demo-schluessel", "server": ["%s"]}\n' \
    "http://127.0.0.1:$port" >"$daten/konto.json"
HOME=$heim CFFIXED_USER_HOME=$heim KALVARO_APPLICATIONS="$bau/demo/Applications" \
    "$bau/kalvaro.app/Contents/MacOS/kalvaro" --bild "$bild"
[ -s "$bild" ] || {
    echo "kalvaro wrote no picture." >&2
    exit 1
}
