#!/bin/bash
# Installs the Debian package in a bare root of Debian and uses it there as a user would: start, sync,
# start at login, an upgrade while it runs, removal. Run by hand, as root; takes a few minutes.
#   tools/paketversuch.sh SUITE|ROOT DEB DEMOCLOUD
# SUITE is fetched with debootstrap; ROOT is a bare root that is there already, of which a copy is
# used. DEB must have been built for that suite. DEMOCLOUD is the program, of any build.
set -euo pipefail
hier=$(cd "$(dirname "$0")" && pwd)
. "$hier/democloud.sh"

scheitern() {
    echo "paketversuch: $1" >&2
    exit 1
}

[ $# -eq 3 ] || {
    sed -n 's/^#   //p' "$0" >&2
    exit 2
}
[ "$(id -u)" -eq 0 ] || scheitern "only root can change into another root"
ziel=$1 paket=$2 democloud=$3
[ -f "$paket" ] || scheitern "no package: $paket"
[ -x "$democloud" ] || scheitern "no demo cloud: $democloud"

ordner=$(mktemp -d "${TMPDIR:-/var/tmp}/paketversuch.XXXXXX")
chmod 755 "$ordner"
wurzel=$ordner/wurzel
cloud=""
aufraeumen() {
    ende=$?
    trap - EXIT INT TERM HUP
    cloud_beenden
    rm -rf --one-file-system "$ordner"
    exit "$ende"
}
trap aufraeumen EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

if [ -d "$ziel" ]; then
    echo "· a copy of $ziel"
    cp -a --reflink=auto "$ziel" "$wurzel"
else
    echo "· debootstrap $ziel"
    debootstrap --variant=minbase "$ziel" "$wurzel" \
        >"$ordner/debootstrap.log" 2>&1 ||
        scheitern "debootstrap $ziel: $(tail -n 3 "$ordner/debootstrap.log")"
fi
mkdir "$wurzel/versuch"
cp "$hier/paketversuch-innen.sh" "$paket" "$wurzel/versuch/"

cloud_starten "$democloud" "$ordner/cloud.log" --dauer 0

"$hier/betreten.sh" "$wurzel" /versuch/paketversuch-innen.sh "$port"
echo "paketversuch: all of it"
