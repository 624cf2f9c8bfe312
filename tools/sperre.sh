#!/bin/sh
# Runs a command while holding the lock of this checkout's build folder, so that several calls of
# make wait for each other instead of building into the same place at once.
#   tools/sperre.sh COMMAND...
set -eu
mkdir -p build
if command -v flock >/dev/null 2>&1; then
    exec flock build/.sperre "$@"
fi
exec "$@"
