#!/bin/sh
# What CI checks beside the tests: format, clang's warnings as errors, what is meant for macOS, clang-tidy.
set -eu
echo "clang-format"
git ls-files '*.h' '*.cpp' '*.mm' | tr '\n' '\0' | xargs -0 clang-format --dry-run -Werror

mkdir -p build/asan build/macos-pruefung
# The preset of the sanitizers builds with clang, warnings as errors.
echo "clang, warnings as errors"
tools/bauen.sh asan all >build/asan/bau.log 2>&1 || {
    grep -E -A6 'error:|FAILED' build/asan/bau.log | head -n 60 >&2
    exit 1
}

# No Mac is at hand: the program with the adapters of macOS, on stand-ins for Apple's frameworks.
echo "macOS, on stand-ins"
tools/bauen.sh macos-pruefung all >build/macos-pruefung/bau.log 2>&1 || {
    grep -E -A6 'error:|FAILED|undefined reference' build/macos-pruefung/bau.log | head -n 60 >&2
    exit 1
}
ctest --preset macos-pruefung -j "$(nproc)" >build/macos-pruefung/test.log 2>&1 || {
    grep -E -A6 'FAIL!|QFATAL|\(Failed\)|\*\*\*' build/macos-pruefung/test.log | head -n 60 >&2
    exit 1
}

# Each source is compiled on one of the systems, or by its list for another Qt or C library; clang-tidy takes
# it as it is compiled there.
kompiliert() { # PRESET
    sed -n "s#^ *\"file\": \"$PWD/\([^\"]*\)\".*#\1#p" "build/$1/compile_commands.json" | sort -u
}
export LC_ALL=C
kompiliert asan >build/asan/quellen.txt
kompiliert macos-pruefung | comm -13 build/asan/quellen.txt - >build/macos-pruefung/quellen.txt
vergessen=$(git ls-files 'src/*.cpp' 'src/*.mm' | sort | comm -23 - build/asan/quellen.txt |
    comm -23 - build/macos-pruefung/quellen.txt | while read -r quelle; do
        grep -qw "${quelle##*/}" "${quelle%/*}/CMakeLists.txt" || echo "$quelle"
    done)
if [ -n "$vergessen" ]; then
    echo "In no list of CMake: $vergessen" >&2
    exit 1
fi

echo "clang-tidy"
aufraeumen() { # PRESET [CHECKS], sources on standard input
    tr '\n' '\0' | xargs -0 -n 1 -P "$(nproc)" clang-tidy -p "build/$1" ${2:+"--checks=$2"} --quiet \
        2>"build/$1/tidy.log" || {
        tail -n 40 "build/$1/tidy.log" >&2
        exit 1
    }
}
git ls-files 'src/*.cpp' 'tools/*.cpp' | sort | comm -12 - build/asan/quellen.txt | aufraeumen asan
git ls-files 'src/*.cpp' | sort | comm -12 - build/macos-pruefung/quellen.txt | aufraeumen macos-pruefung
# The analyzer sees references that are counted wrongly; the rest knows little of Objective-C and takes long.
git ls-files '*.mm' | aufraeumen macos-pruefung '-*,clang-analyzer-*'
