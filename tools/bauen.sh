#!/bin/sh
# Configures and builds targets of a preset; quiet unless something goes wrong.
#   tools/bauen.sh PRESET TARGET...
set -eu
stufe=$1
shift
mkdir -p "build/$stufe"
protokoll="build/$stufe/konfiguration.log"
# Without network or variables of the caller's, so that every machine builds the same.
if ! cmake --preset "$stufe" ${KALVARO_CMAKE:-} >"$protokoll" 2>&1; then
    cat "$protokoll" >&2
    echo "The configuration failed (see above)." >&2
    exit 1
fi
exec cmake --build --preset "$stufe" --target "$@"
