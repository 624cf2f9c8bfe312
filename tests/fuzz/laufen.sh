#!/bin/sh
# Runs fuzz targets, two at a time, each for so many seconds on top of its corpus. What a target finds lies in
# build/fuzz/funde under its name, and makes the run fail.
#   tests/fuzz/laufen.sh SECONDS [TARGETS...]        as in: tests/fuzz/laufen.sh 600 plist transport
set -eu
cd "$(dirname "$0")/../.."
sekunden=$1
shift
ziele=${*:-$(cd tests/fuzz/korpus && ls)}
mkdir -p build/fuzz/funde build/fuzz/korpus

# AddressSanitizer keeps freed memory back, 256 MiB of it as it comes: the limit below is for what a reader uses.
export ASAN_OPTIONS="quarantine_size_mb=16${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
# libFuzzer leaves without a farewell, so what targets write is taken away here; in memory it is quick.
TMPDIR=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
trap 'exit 1' INT TERM

cat >build/fuzz/einer.sh <<'ENDE'
ziel=$1
sekunden=$2
mkdir -p "build/fuzz/korpus/$ziel"
laenge=4096
[ "$ziel" != transport ] || laenge=8192
# What is new is kept in the build folder; the checked-in files are only read.
if build/fuzz/ziele/fuzz_$ziel -max_total_time="$sekunden" -max_len=$laenge -timeout=10 \
    -rss_limit_mb=512 -print_final_stats=1 -artifact_prefix="build/fuzz/funde/$ziel-" \
    "build/fuzz/korpus/$ziel" "tests/fuzz/korpus/$ziel" >"build/fuzz/$ziel.log" 2>&1; then
    echo "fuzz_$ziel: $(sed -n 's/^stat::number_of_executed_units: *//p' "build/fuzz/$ziel.log") inputs, nothing found"
else
    echo "fuzz_$ziel: found something (build/fuzz/$ziel.log):"
    grep -a -E 'Does not hold|^SUMMARY|Test unit written' "build/fuzz/$ziel.log" | sed 's/^/  /'
    exit 1
fi
ENDE
status=0
printf '%s\n' $ziele | xargs -P 2 -I{} sh build/fuzz/einer.sh {} "$sekunden" || status=1
exit $status
