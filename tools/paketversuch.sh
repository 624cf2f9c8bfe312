#!/bin/bash
# Installs the Debian package in a bare root of Debian and uses it there as a user would: start, sync,
# start at login, an upgrade while it runs, removal. Run by hand, as root; takes a few minutes.
#   tools/paketversuch.sh SUITE|ROOT DEB DEMOCLOUD
# SUITE is fetched with debootstrap; ROOT is a bare root that is there already, of which a copy is
# used. DEB must have been built for that suite. DEMOCLOUD is the program, of any build.
set -euo pipefail
hier=$(cd "$(dirname "$0")" && pwd)

scheitern() {
    echo "paketversuch: $1" >&2
    exit 1
}

# In namespaces of its own, so that no mount and no process outlives it.
imNamensraum() {
    local wurzel=$1 port=$2 knoten
    mount --make-rprivate /
    mount -t proc proc "$wurzel/proc"
    mount -t tmpfs -o mode=755 dev "$wurzel/dev"
    for knoten in null zero full random urandom tty; do
        : >"$wurzel/dev/$knoten"
        mount --bind "/dev/$knoten" "$wurzel/dev/$knoten"
    done
    mkdir "$wurzel/dev/shm" "$wurzel/dev/pts"
    mount -t tmpfs -o mode=1777 shm "$wurzel/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$wurzel/dev/pts"
    ln -s pts/ptmx "$wurzel/dev/ptmx"
    ln -s /proc/self/fd "$wurzel/dev/fd"
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM=dumb LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive \
        chroot "$wurzel" /bin/bash /versuch/paketversuch-innen.sh "$port"
}

if [ "${1:-}" = --im-namensraum ]; then
    shift
    imNamensraum "$@"
fi

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
    [ -z "$cloud" ] || kill "$cloud" 2>/dev/null || true
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
    debootstrap --variant=minbase "$ziel" "$wurzel" http://deb.debian.org/debian \
        >"$ordner/debootstrap.log" 2>&1 ||
        scheitern "debootstrap $ziel: $(tail -n 3 "$ordner/debootstrap.log")"
fi
mkdir "$wurzel/versuch"
cp "$hier/paketversuch-innen.sh" "$paket" "$wurzel/versuch/"
cp -L /etc/resolv.conf "$wurzel/etc/resolv.conf"

: >"$ordner/cloud.log"
"$democloud" --port 0 --dauer 0 >"$ordner/cloud.log" 2>&1 &
cloud=$!
port=""
for _ in $(seq 100); do
    port=$(sed -n 's/^port=//p' "$ordner/cloud.log")
    [ -z "$port" ] || break
    sleep 0.1
done
[ -n "$port" ] || scheitern "the demo cloud did not start: $(cat "$ordner/cloud.log")"

unshare --mount --pid --fork --kill-child "$0" --im-namensraum "$wurzel" "$port"
echo "paketversuch: all of it"
