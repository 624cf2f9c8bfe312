#!/bin/sh
# Runs tst_vorlesen.py with a session bus of its own, whose end is the accessibility bus's end too.
#   tests/e2e/vorlesen.sh KALVARO DEMOCLOUD APPLICATIONS
unset DISPLAY WAYLAND_DISPLAY AT_SPI_BUS_ADDRESS
heim=$(mktemp -d) || exit 1
trap 'rm -rf "$heim"' EXIT
export HOME="$heim" XDG_RUNTIME_DIR="$heim"
dbus-run-session -- /usr/bin/python3 -B "$(dirname "$0")/tst_vorlesen.py" "$@" 2>"$heim/fehler"
ende=$?
[ "$ende" -eq 0 ] || cat "$heim/fehler" >&2
exit "$ende"
