#!/bin/sh
# Whether a bundle runs on another Mac: nothing in it may need a file outside, and the libcurl that it
# uses has to be its own, since the system's does not tell why a certificate was refused.
#   packaging/macos/pruefen.sh APP
set -eu
app=$1
. "$(dirname "$0")/machos.sh"
ordner=$(mktemp -d)
trap 'rm -rf "$ordner"' EXIT

machos "$app" >"$ordner/dateien"
if ! [ -s "$ordner/dateien" ]; then
    echo "There is no code in $app." >&2
    exit 1
fi
while IFS= read -r datei; do
    # Lines of files and processors are not indented. A library also names itself.
    otool -L "$datei" | sed -n 's/^[[:space:]]\{1,\}\(.*\) (compatibility.*/\1/p' >"$ordner/alle"
    otool -D "$datei" | sed 1d >"$ordner/selbst"
    grep -vxFf "$ordner/selbst" "$ordner/alle" >"$ordner/braucht" || true
    otool -l "$datei" | awk '$1 == "cmd" { weg = $2 == "LC_RPATH" } weg && $1 == "path" { print $2 }' |
        grep '^/' | sed "s|^|$(basename "$datei") would also look in |" || true
    while IFS= read -r bibliothek; do
        case "$bibliothek" in
        /usr/lib/libcurl.*) echo "$datei needs the system's libcurl" ;;
        /usr/lib/* | /System/Library/*) ;;
        @executable_path/*) da="$app/Contents/MacOS/${bibliothek#*/}" ;;
        @loader_path/*) da="$(dirname "$datei")/${bibliothek#*/}" ;;
        @rpath/*) da="$app/Contents/Frameworks/${bibliothek#*/}" ;;
        *) echo "$datei needs $bibliothek, which another Mac does not have" ;;
        esac
        [ -z "${da:-}" ] || [ -e "$da" ] || echo "$datei needs $bibliothek, which is not in the bundle"
        da=""
    done <"$ordner/braucht"
done <"$ordner/dateien" >"$ordner/maengel"
[ -e "$app/Contents/Resources/translations/qtbase_de.qm" ] ||
    echo "Qt's German texts are missing" >>"$ordner/maengel"
for teil in platforms/libqcocoa styles/libqmacstyle; do
    [ -e "$app/Contents/PlugIns/$teil.dylib" ] ||
        echo "Qt's plug-in $teil is missing" >>"$ordner/maengel"
done
if [ -s "$ordner/maengel" ]; then
    cat "$ordner/maengel" >&2
    exit 1
fi
echo "$app needs nothing outside."
