#!/bin/sh
# What streng.sh makes of a test program's output and exit code.
set -u
hier=$(dirname "$0")
ordner=$(mktemp -d) || exit 1
trap 'rm -rf "$ordner"' EXIT
KALVARO_UEBERSPRUNGEN=$ordner/liste
export KALVARO_UEBERSPRUNGEN
printf '# TestA::nie  a comment names nothing\nTestA::darf  needs a Mac\n' >"$KALVARO_UEBERSPRUNGEN"
fehler=0

# erwarte EXIT-CODE NAME LINE [PROGRAM'S EXIT CODE]
erwarte() {
    "$hier/streng.sh" sh -c 'printf "%s\n" "$1"; exit "$2"' sh "$3" "${4:-0}" \
        >"$ordner/aus" 2>"$ordner/err"
    code=$?
    if [ "$code" -ne "$1" ]; then
        echo "FAIL: $2: ended with $code instead of $1"
        fehler=1
    fi
    if ! grep -qxF "$3" "$ordner/aus"; then
        echo "FAIL: $2: the output is lost"
        fehler=1
    fi
}

erwarte 0 "nothing skipped" "PASS   : TestA::darf()"
erwarte 1 "skipped" "SKIP   : TestA::anderes() needs dunst"
erwarte 1 "one row skipped" "SKIP   : TestA::anderes(with a bus) needs dunst"
erwarte 1 "the whole class skipped" "SKIP   : TestA::initTestCase() needs dunst"
erwarte 0 "skipped by the list" "SKIP   : TestA::darf(row) needs a Mac"
erwarte 1 "a longer name" "SKIP   : TestA::darfNicht() x"
erwarte 1 "a comment in the list" "SKIP   : TestA::nie() x"
erwarte 3 "failed" "FAIL!  : TestA::darf() x" 3
erwarte 3 "failed and skipped" "SKIP   : TestA::anderes() x" 3
erwarte 77 "the code that means skipped elsewhere" "nothing" 77
exit $fehler
