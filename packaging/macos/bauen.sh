#!/bin/sh
# On a Mac with what Brewfile lists: builds kalvaro.app, and more as asked.
#   packaging/macos/bauen.sh [bauen|testen|buendeln|bild]...
# bauen (also without arguments) leaves build/release/kalvaro.app; testen runs the tests but for those that
# need what a Mac does not have; buendeln makes the bundle for other Macs and its disk image; bild draws
# the window into build/release/bild.png.
set -eu
cd "$(dirname "$0")/../.."
# Another desktop's bus, display or process table, a machine's commands, or our own view of it.
ohne='^(dbus|x11|proc|linux)$'

bauen() {
    # These do not lie where everybody looks, since the system has some of its own.
    wurzeln=""
    for paket in icu4c curl openssl@3; do
        wurzeln="$wurzeln$(brew --prefix "$paket");"
    done
    # shellcheck disable=SC2086 # several options
    cmake --preset release "-DCMAKE_PREFIX_PATH=$wurzeln$(brew --prefix)" ${KALVARO_CMAKE:-}
    # On a machine that nobody has built on, one run is to name all that fails.
    cmake --build --preset release -- -k 0
}

[ $# -gt 0 ] || set -- bauen
for schritt in "$@"; do
    case "$schritt" in
    bauen) bauen ;;
    testen) ctest --preset release -LE "$ohne" -j "$(getconf _NPROCESSORS_ONLN)" ;;
    buendeln) packaging/macos/buendeln.sh build/release ;;
    bild) packaging/macos/bild.sh build/release build/release/bild.png ;;
    *)
        echo "Usage: packaging/macos/bauen.sh [bauen|testen|buendeln|bild]..." >&2
        exit 2
        ;;
    esac
done
