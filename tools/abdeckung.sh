#!/bin/sh
# Runs the tests with counters and prints the line coverage of the rooms below the windows.
set -eu
tools/bauen.sh coverage all >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$(nproc)" >build/coverage/ctest.log 2>&1 || {
    tail -n 40 build/coverage/ctest.log >&2
    exit 1
}
gcovr --root . --object-directory build/coverage \
    --filter src/foundation --filter src/server --filter src/assessment --txt
