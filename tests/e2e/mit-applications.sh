#!/bin/sh
# Runs a command where "/Applications" is a folder of the caller's and all else is as it was. Needs
# the right to mount, as eigene-prozesse.sh gives it; the machine's own root stays untouched.
#   tests/e2e/mit-applications.sh FOLDER EMPTY_FOLDER COMMAND...
set -eu
programme=$1
wurzel=$2
shift 2
if [ "${KALVARO_EIGENE_WURZEL:-}" != 1 ]; then
    KALVARO_EIGENE_WURZEL=1 exec unshare --mount "$0" "$programme" "$wurzel" "$@"
fi
unset KALVARO_EIGENE_WURZEL

mount -t tmpfs tmpfs "$wurzel"
for eintrag in /*; do
    ziel=$wurzel$eintrag
    if [ -L "$eintrag" ]; then
        cp -P "$eintrag" "$ziel"
    elif [ -d "$eintrag" ] && [ "$eintrag" != /Applications ]; then
        mkdir "$ziel"
        mount --rbind "$eintrag" "$ziel"
    fi
done
mkdir "$wurzel/Applications"
mount --rbind "$programme" "$wurzel/Applications"
exec chroot "$wurzel" "$@"
