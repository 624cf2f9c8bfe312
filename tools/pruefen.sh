#!/bin/sh
# What CI checks beside the tests: format, clang's warnings as errors, clang-tidy.
set -eu
echo "clang-format"
git ls-files '*.h' '*.cpp' | tr '\n' '\0' | xargs -0 clang-format --dry-run -Werror

mkdir -p build/clang
echo "clang, warnings as errors"
tools/bauen.sh clang all >build/clang/bau.log 2>&1 || {
    tail -n 60 build/clang/bau.log >&2
    exit 1
}

echo "clang-tidy"
git ls-files 'src/*.cpp' 'tools/*.cpp' | tr '\n' '\0' |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy -p build/clang --quiet 2>build/clang/tidy.log || {
    tail -n 40 build/clang/tidy.log >&2
    exit 1
}
