#!/bin/sh
# Runs a command in a home folder of its own, so that no test touches what the user's kalvaro keeps. A
# program on a Mac takes the account's home, not HOME, unless CFFIXED_USER_HOME names another.
#   packaging/macos/testheim.sh COMMAND...
# A CFFIXED_USER_HOME that is set stays: some tests want none that can be written to.
set -u
heim=$(mktemp -d) || exit 1
trap 'rm -rf "$heim"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
HOME=$heim CFFIXED_USER_HOME=${CFFIXED_USER_HOME:-$heim} "$@"
