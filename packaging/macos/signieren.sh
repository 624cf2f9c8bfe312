#!/bin/sh
# Signs a bundle from the inside out.
#   packaging/macos/signieren.sh APP
# KALVARO_SIGNATUR names the identity in the keychain ("Developer ID Application: …"). Without it the
# signature is ad hoc: good for this Mac, and for another one only past Gatekeeper.
set -eu
app=$1
hier=$(dirname "$0")
identitaet=${KALVARO_SIGNATUR:--}

if [ "$identitaet" = - ]; then
    # The hardened runtime loads only libraries of the same team, and ad hoc there is none.
    haerte="--timestamp=none"
else
    haerte="--timestamp --options runtime"
fi

unterschreiben() { # OPTIONS... WHAT
    # shellcheck disable=SC2086 # several options
    codesign --force $haerte --sign "$identitaet" "$@"
}

# Each library and plug-in before the frameworks, and those before what contains them all.
find "$app/Contents" -type f -name '*.dylib' | sort | while IFS= read -r datei; do
    unterschreiben "$datei"
done
find "$app/Contents/Frameworks" -maxdepth 1 -type d -name '*.framework' 2>/dev/null | sort |
    while IFS= read -r rahmen; do
        unterschreiben "$rahmen"
    done
unterschreiben --entitlements "$hier/kalvaro.entitlements" "$app"
codesign --verify --deep --strict "$app"
