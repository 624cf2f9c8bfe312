#!/bin/sh
# Tries this commit on a bare system: makes one with debootstrap (a minimal base, git and make),
# clones the checkout into it and runs the README's two commands there as root, builds the package and
# tries it on another bare system, and runs the two commands as a user, to whom the clone is handed
# with what is built in it. Needs root, debootstrap and the network.
#   tools/wurzel.sh bookworm|trixie|noble [befehle|paket|nutzer ...]
# Roots and logs lie in $KALVARO_WURZELN (default /var/tmp/kalvaro-wurzeln) and are removed at the
# end unless KALVARO_WURZELN_BEHALTEN is set; $KALVARO_SPIEGEL names another mirror.
set -eu
cd "$(dirname "$0")/.."

suite=${1:-}
case "$suite" in
bookworm | trixie) bereiche=main skript="" ;;
noble) bereiche=main,universe skript=gutsy ;; # debootstrap's script for all of Ubuntu's releases
*)
    echo "Usage: tools/wurzel.sh bookworm|trixie|noble [befehle|paket|nutzer ...]" >&2
    exit 2
    ;;
esac
shift
schritte=${*:-befehle paket nutzer}

platz=${KALVARO_WURZELN:-/var/tmp/kalvaro-wurzeln}
mkdir -p "$platz"
ordner=$(mktemp -d "$platz/$suite.XXXXXX")
wurzel=$ordner/wurzel
aufraeumen() {
    ende=$?
    trap - EXIT
    [ -n "${KALVARO_WURZELN_BEHALTEN:-}" ] || rm -rf --one-file-system "$ordner"
    exit "$ende"
}
trap aufraeumen EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

scheitern() {
    echo "wurzel.sh $suite: $1" >&2
    exit 1
}

# schritt NAME COMMAND...: runs it with its output in a log; shows the end of that on failure.
schritt() {
    name=$1
    shift
    anfang=$(date +%s)
    if ! "$@" >"$ordner/log" 2>&1; then
        tail -n 60 "$ordner/log" >&2
        scheitern "$name: failed (see above)"
    fi
    echo "$suite: $name: $(($(date +%s) - anfang)) s"
}

bare_wurzel() { # FOLDER
    set -- "$suite" "$1"
    if [ -n "$skript" ]; then
        set -- "$@" "${KALVARO_SPIEGEL:-}" "/usr/share/debootstrap/scripts/$skript"
    elif [ -n "${KALVARO_SPIEGEL:-}" ]; then
        set -- "$@" "$KALVARO_SPIEGEL"
    fi
    debootstrap --variant=minbase --include=git,make --components="$bereiche" "$@"
}

drin() { # COMMAND...: in the root, as root
    tools/betreten.sh "$wurzel" "$@"
}
klon="/srv/ein Ordner/kalvaro"
alsNutzer() { # SHELL COMMAND: in the root, as a user
    drin su dj -c "cd '$klon' && $1"
}
alsRoot() { # SHELL COMMAND
    drin sh -c "cd '$klon' && $1"
}
# The root's demo cloud as a program of this machine, with the root's libraries.
democloud() {
    alsRoot "make build" >"$ordner/log" 2>&1 || scheitern "make build: $(tail "$ordner/log")"
    cat >"$ordner/democloud" <<CLOUD
#!/bin/sh
exec "$(echo "$wurzel"/lib*/ld-linux*.so.*)" --library-path "$(echo "$wurzel"/usr/lib/*-linux-gnu*)" \\
    "$wurzel$klon/build/release/kalvaro-democloud" "\$@"
CLOUD
    chmod +x "$ordner/democloud"
}
# What a command must have said, from its log.
gesagt() { # PATTERN
    grep -Eq "$1" "$ordner/log" || scheitern "not said: $1"
    grep -E "$1" "$ordner/log" | sed "s/^/    /"
}

[ "$(id -u)" -eq 0 ] || scheitern "debootstrap needs root"
command -v debootstrap >/dev/null || scheitern "debootstrap is missing: apt-get install debootstrap"
[ -z "$(git status --porcelain)" ] || echo "wurzel.sh: what is not committed is not tried" >&2

schritt "a bare system" bare_wurzel "$wurzel"
mkdir -p "$wurzel$klon"
git clone --quiet --no-hardlinks . "$wurzel$klon"
drin useradd --create-home --shell /bin/sh dj

for was in $schritte; do
    case "$was" in
    befehle)
        # Without the packages, root and sudo it can only say what is missing.
        drin chown -R dj "$klon"
        if alsNutzer "make demo" >"$ordner/log" 2>&1; then
            scheitern "make demo of a user ended well without its packages"
        fi
        gesagt 'Please have them installed: apt-get install cmake'
        drin chown -R root "$klon"
        schritt "make demo, as root" alsRoot "make demo"
        gesagt '^Bibliothek|^Picture:'
        schritt "make test, as root" alsRoot "make test"
        gesagt 'tests passed'
        ;;
    nutzer)
        drin chown -R dj "$klon"
        drin sh -c "cd '$klon' && tools/pakete.sh testen" >"$ordner/log" 2>&1 ||
            scheitern "$(tail "$ordner/log")"
        schritt "make demo, as a user" alsNutzer "make demo"
        gesagt '^Bibliothek|^Picture:'
        schritt "make test, as a user" alsNutzer "make test"
        gesagt 'tests passed'
        ;;
    paket)
        schritt "make package" alsRoot "make package"
        gesagt '\.deb'
        schritt "another bare system" bare_wurzel "$ordner/leer"
        democloud
        schritt "the package on it" tools/paketversuch.sh "$ordner/leer" \
            "$wurzel$klon/build/paket/"kalvaro_*.deb "$ordner/democloud"
        gesagt '^paketversuch: '
        ;;
    *) scheitern "no such step: $was" ;;
    esac
done
echo "$suite: green at $(git log -1 --format=%h): $schritte"
