#!/bin/sh
# Looks a Debian package over: lintian, and what it brings for desktop, catalogue and man.
#   tools/paketpruefung.sh DEB
set -eu
paket=$1
inhalt=$(mktemp -d)
trap 'rm -rf "$inhalt"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
dpkg-deb -x "$paket" "$inhalt"

echo "lintian"
lintian --fail-on error,warning --tag-display-limit 0 "$paket"
echo "desktop-file-validate"
desktop-file-validate "$inhalt"/usr/share/applications/*.desktop
echo "appstreamcli"
appstreamcli validate --no-net "$inhalt"/usr/share/metainfo/*.xml >"$inhalt/appstream" || {
    cat "$inhalt/appstream" >&2
    exit 1
}
echo "groff"
zcat "$inhalt/usr/share/man/man1/kalvaro.1.gz" | groff -man -ww -Tutf8 -K utf8 2>&1 >/dev/null |
    { ! grep .; }
