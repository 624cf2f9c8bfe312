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

# Each source is in the lists of one system at least; clang-tidy takes it as it is compiled there.
kompiliert() { # PRESET
    sed -n "s|^ *\"file\": \"$PWD/\(src/.*\|tools/.*\)\".*|\1|p" "build/$1/compile_commands.json" | sort -u
}
export LC_ALL=C
kompiliert asan >build/asan/quellen.txt
kompiliert macos-pruefung | comm -13 build/asan/quellen.txt - >build/macos-pruefung/quellen.txt
git ls-files 'src/*.cpp' 'src/*.mm' | sort | comm -23 - build/asan/quellen.txt |
    comm -23 - build/macos-pruefung/quellen.txt >build/vergessen.txt
if [ -s build/vergessen.txt ]; then
    echo "In no list of CMake:" >&2
    cat build/vergessen.txt >&2
    exit 1
fi

echo "clang-tidy"
for stufe in asan macos-pruefung; do
    git ls-files 'src/*.cpp' 'src/*.mm' 'tools/*.cpp' | sort | comm -12 - "build/$stufe/quellen.txt" | tr '\n' '\0' |
        xargs -0 -n 4 -P "$(nproc)" clang-tidy -p "build/$stufe" --quiet 2>"build/$stufe/tidy.log" || {
        tail -n 40 "build/$stufe/tidy.log" >&2
        exit 1
    }
done
