#!/bin/sh
# Has Apple notarise a disk image and staples the ticket to it. Without credentials it says so and ends
# well: the image is as usable as one that nobody vouches for.
#   packaging/macos/beglaubigen.sh IMAGE
# Credentials, one of:
#   KALVARO_NOTAR_PROFIL        a profile that `xcrun notarytool store-credentials` has put into the keychain
#   KALVARO_NOTAR_DATEI, KALVARO_NOTAR_KENNUNG, KALVARO_NOTAR_AUSSTELLER
#                               the file of an API key, its id, and its issuer
set -eu
abbild=$1

if [ -n "${KALVARO_NOTAR_PROFIL:-}" ]; then
    set -- --keychain-profile "$KALVARO_NOTAR_PROFIL"
elif [ -n "${KALVARO_NOTAR_DATEI:-}" ]; then
    set -- --key "$KALVARO_NOTAR_DATEI" --key-id "${KALVARO_NOTAR_KENNUNG:?}" \
        --issuer "${KALVARO_NOTAR_AUSSTELLER:?}"
else
    echo "Not notarised: neither KALVARO_NOTAR_PROFIL nor KALVARO_NOTAR_DATEI is set."
    exit 0
fi
if [ -z "${KALVARO_SIGNATUR:-}" ]; then
    echo "What is signed ad hoc is not notarised: KALVARO_SIGNATUR names no identity." >&2
    exit 1
fi

# It ends well also when the answer is "Invalid", so stapling is what tells.
xcrun notarytool submit "$abbild" --wait "$@"
xcrun stapler staple "$abbild"
