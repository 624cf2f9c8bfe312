#!/bin/sh
# Builds the package of the last commit twice, in two folders with nothing in common but the commit,
# and compares the bytes. Run by hand; takes as long as two whole builds.
set -eu
cd "$(dirname "$0")/.."
ordner=$(mktemp -d "${TMPDIR:-/tmp}/paketgleich.XXXXXX")
trap 'rm -rf "$ordner"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
unset CMAKE_CXX_COMPILER_LAUNCHER SOURCE_DATE_EPOCH
export CCACHE_DISABLE=1

bauen() { # bauen FOLDER
    git clone -q . "$1"
    (cd "$1" && tools/paket.sh >"$ordner/bau.log" 2>&1) || {
        tail -n 40 "$ordner/bau.log" >&2
        exit 1
    }
}
bauen "$ordner/eins"
(umask 077 && export LANG=de_DE.UTF-8 TZ=Asia/Tokyo && bauen "$ordner/ein/ganz/anderer/Ort")
cmp "$ordner"/eins/build/paket/*.deb "$ordner"/ein/ganz/anderer/Ort/build/paket/*.deb
echo "The same bytes: $(sha256sum "$ordner"/eins/build/paket/*.deb | cut -d ' ' -f 1)"
