#!/bin/sh
# Makes of a built kalvaro.app one that other Macs run, and a disk image of it, in BUILD/buendel.
#   packaging/macos/buendeln.sh BUILD
# The built one stays as it is, for the tests. signieren.sh and beglaubigen.sh tell which variables name
# the identity and the credentials.
set -eu
bau=$1
hier=$(cd "$(dirname "$0")" && pwd)
. "$hier/machos.sh"
ziel=$bau/buendel
app=$ziel/kalvaro.app

rm -rf "$ziel"
mkdir -p "$ziel"
cp -R "$bau/kalvaro.app" "$app"

# Before macdeployqt, which leaves a qt.conf that is there alone and knows nothing of translations.
mkdir -p "$app/Contents/Resources/translations"
cp "$hier/qt.conf" "$app/Contents/Resources/"
texte=${KALVARO_QT_TEXTE:-$(qtpaths --query QT_INSTALL_TRANSLATIONS)}
cp "$texte/qtbase_de.qm" "$app/Contents/Resources/translations/"
# It would sign ad hoc, and the signature has to be the last.
macdeployqt "$app" -verbose=1 -no-codesign "-libpath=${KALVARO_LIBS:-$(brew --prefix)/lib}"
"$hier/pruefen.sh" "$app"

# Libraries may need a later system than we do. Then the Finder is to say so, and not the loader.
mindestens=$(plutil -extract LSMinimumSystemVersion raw -o - "$app/Contents/Info.plist")
machos "$app" | while IFS= read -r datei; do
    otool -l "$datei" | awk '$1 == "minos" { print $2 }'
done >"$ziel/minos"
noetig=$({
    cat "$ziel/minos"
    echo "$mindestens"
} | sort -t. -k1,1n -k2,2n | tail -n 1)
rm "$ziel/minos"
if [ "$noetig" != "$mindestens" ]; then
    echo "The libraries need macOS $noetig, so the bundle does."
    plutil -replace LSMinimumSystemVersion -string "$noetig" "$app/Contents/Info.plist"
fi

"$hier/signieren.sh" "$app"

version=$(plutil -extract CFBundleShortVersionString raw -o - "$app/Contents/Info.plist")
abbild=$ziel/kalvaro-$version-$(uname -m).dmg
mkdir "$ziel/inhalt"
cp -R "$app" "$ziel/inhalt/"
ln -s /Applications "$ziel/inhalt/Applications"
hdiutil create -volname kalvaro -srcfolder "$ziel/inhalt" -fs HFS+ -format UDZO -ov "$abbild"
rm -rf "$ziel/inhalt"
[ -z "${KALVARO_SIGNATUR:-}" ] || codesign --force --timestamp --sign "$KALVARO_SIGNATUR" "$abbild"
"$hier/beglaubigen.sh" "$abbild"
echo "$abbild"
