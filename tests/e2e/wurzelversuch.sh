#!/bin/bash
# Asks of each statement by which the program is put together: which test notices that it is gone?
# Removes one at a time in a copy of what is committed, builds, runs the tests of the real program
# (and, when these are content, all others), and prints a table. Takes about an hour; run by hand.
#   tests/e2e/wurzelversuch.sh [PATTERN]        only statements whose "file:line  text" matches PATTERN
# With TMPDIR below $CCACHE_BASEDIR the copy is built from ccache.
set -euo pipefail
cd "$(dirname "$0")/../.."
muster=${1:-}

# Where the program is put together: a file and how the function begins there; "" is all of it.
orte=(
    'src/app/main.cpp|'
    'src/platform/linux/plattform.cpp|'
    'src/app/pruefmodus.cpp|int pruefmodus'
    'src/app/sprache.cpp|void deutschEinrichten'
    'src/platform/linux/linuxarbeitsplatz.cpp|void LinuxArbeitsplatz::beiAufwachen'
    'src/controller/steuerung.cpp|Steuerung::Steuerung'
)
# Parts of statements that decide something: file, what is there, what takes its place.
teile=(
    'src/app/main.cpp|if (!kommandozeile.bild) {|if (true) {'
    'src/app/programmordner.cpp|u"/Applications"_s|QString()'
    'src/app/main.cpp|.belegen(kommandozeile.wunsch())|.belegen(Wunsch::Oeffnen)'
    'src/platform/linux/plattform.cpp| = Aktivierung::desStarts()|{}'
    'src/app/main.cpp| && !kommandozeile.bild|'
    'src/app/main.cpp|startlage(kommandozeile.plattform)|startlage({})'
    'src/platform/linux/plattform.cpp|return innen_->anzeige.antwortet|return true'
    'src/platform/linux/plattform.cpp|waylandAntwortet(angaben.wayland)|true'
    'src/platform/linux/plattform.cpp|endeErzwingen(laengstesEnde, status)|endeErzwingen(laengstesEnde, 0)'
)
programmtests="tst_programmlauf tst_ohneanzeige tst_pruefmodus tst_programmstart tst_auftritt tst_aufwachen"

ordner=$(mktemp -d "${TMPDIR:-/tmp}/wurzelversuch.XXXXXX")
kopie=$ordner/kopie
bau=$kopie/build/release
aufraeumen() {
    git worktree remove --force "$kopie" 2>/dev/null || true
    rm -rf "$ordner"
}
trap aufraeumen EXIT
trap 'exit 130' INT TERM

bauen() {
    ninja -C "$bau" "$@" >"$ordner/bau.log" 2>&1
}

# The statements of a function as "first line,last line": a line indented deeper than the one that
# began, and what closes it in the same column, belong to it. Relies on clang-format.
anweisungen() {
    awk -v anfang="$2" '
        function ende(wert) { if (wert > 0) print wert }
        { zeile[NR] = $0; match($0, /^ */); tiefe[NR] = RLENGTH }
        anfang == "" || index($0, anfang) == 1 { drin = 1 }
        drin { dabei[NR] = 1 }
        anfang != "" && /^}/ { drin = 0 }
        END {
            davor = ";"
            for (i = 1; i <= NR; ++i) {
                text = substr(zeile[i], tiefe[i] + 1)
                if (text == "" || text ~ /^\/\// || text ~ /^#/) continue
                if (dabei[i] && tiefe[i] >= 4 && davor ~ /[;{}]$/ && text !~ /^[})]/ &&
                    text != "{") {
                    for (j = i + 1; j <= NR; ++j) {
                        if (zeile[j] == "" || tiefe[j] > tiefe[i]) continue
                        rest = substr(zeile[j], tiefe[j] + 1)
                        if (tiefe[j] == tiefe[i] && rest == "{") continue
                        if (tiefe[j] == tiefe[i] && rest ~ /^}/) ++j
                        break
                    }
                    for (--j; zeile[j] == ""; --j) { }
                    print i "," j
                }
                davor = text
            }
        }' "$1"
}

# The first failure that a test prints; empty when it passes. Ends it then.
scheitert() {
    setsid ctest --test-dir "$bau" -R "^($1)\$" -V >"$ordner/test.log" 2>&1 &
    local lauf=$! zeile=""
    while kill -0 "$lauf" 2>/dev/null; do
        zeile=$(grep -a -m1 -o 'FAIL!  : [^(]*([^)]*)' "$ordner/test.log" || true)
        if [ -n "$zeile" ]; then
            kill -KILL -- "-$lauf" 2>/dev/null || true
            break
        fi
        sleep 0.2
    done
    if wait "$lauf" 2>/dev/null; then
        return
    fi
    zeile=$(grep -a -m1 -o 'FAIL!  : [^(]*([^)]*)' "$ordner/test.log" || true)
    echo "${zeile:-$1 ended badly: $(tail -n 3 "$ordner/test.log" | tr -s ' \n' ' ')}" |
        sed 's/^FAIL!  : //'
}

# What notices the copy as it is now.
urteil() {
    local test zeile
    if ! bauen kalvaro; then
        if grep -q 'error:' "$ordner/bau.log"; then
            echo "does not compile"
        else
            echo "COULD NOT BE BUILT"
        fi
        return
    fi
    for test in $programmtests; do
        zeile=$(scheitert "$test")
        if [ -n "$zeile" ]; then
            echo "$zeile"
            return
        fi
    done
    if ! bauen all; then
        echo "does not compile (tests)"
        return
    fi
    zeile=$(scheitert "tst_.*")
    echo "${zeile:-HELD BY NOTHING}"
}

pruefen() { # FILE LABEL
    printf '%-36s %-64s %s\n' "$1:${2%%|*}" "$(echo "${2#*|}" | tr -s ' \n' ' ' | cut -c1-62)" \
        "$(urteil)"
    git -C "$kopie" checkout -q -- "$1"
}

passt() {
    [ -z "$muster" ] || echo "$1" | grep -q -e "$muster"
}

git worktree add -q --detach "$kopie" HEAD
(cd "$kopie" && cmake --preset release >"$ordner/bau.log" 2>&1) || {
    cat "$ordner/bau.log" >&2
    exit 1
}
bauen all || {
    tail -n 40 "$ordner/bau.log" >&2
    exit 1
}
for test in $programmtests; do
    zeile=$(scheitert "$test")
    [ -z "$zeile" ] || {
        echo "Already without a change: $zeile" >&2
        exit 1
    }
done

for ort in "${orte[@]}"; do
    datei=${ort%%|*}
    for spanne in $(anweisungen "$kopie/$datei" "${ort#*|}"); do
        text=$(sed -n "${spanne}p" "$kopie/$datei")
        passt "$datei:${spanne%,*}  $text" || continue
        sed -i "${spanne}d" "$kopie/$datei"
        pruefen "$datei" "${spanne%,*}|$text"
    done
done
for teil in "${teile[@]}"; do
    IFS='|' read -r datei alt neu <<<"$teil"
    passt "$datei  $alt" || continue
    sed -i "s|$alt|$neu|" "$kopie/$datei"
    if git -C "$kopie" diff --quiet; then
        echo "$datei has no such part: $alt" >&2
        exit 1
    fi
    pruefen "$datei" "part|$alt -> ${neu:-nothing}"
done
