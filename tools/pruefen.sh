#!/bin/sh
# What CI checks beside the tests: format, clang's warnings as errors, clang-tidy.
set -eu
echo "clang-format"
git ls-files '*.h' '*.cpp' | tr '\n' '\0' | xargs -0 clang-format --dry-run -Werror

mkdir -p build/asan
# The preset of the sanitizers builds with clang, warnings as errors.
echo "clang, warnings as errors"
tools/bauen.sh asan all >build/asan/bau.log 2>&1 || {
    grep -E -A6 'error:|FAILED' build/asan/bau.log | head -n 60 >&2
    exit 1
}

# What this system and its Qt leave out of the build is not compiled here either.
export LC_ALL=C
sed -n "s|^ *\"file\": \"$PWD/\(.*\)\".*|\1|p" build/asan/compile_commands.json | sort >build/asan/quellen.txt

echo "clang-tidy"
git ls-files 'src/*.cpp' 'tools/*.cpp' | sort | comm -12 - build/asan/quellen.txt | tr '\n' '\0' |
    xargs -0 -n 4 -P "$(nproc)" clang-tidy -p build/asan --quiet 2>build/asan/tidy.log || {
    tail -n 40 build/asan/tidy.log >&2
    exit 1
}
