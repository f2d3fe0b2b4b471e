#!/usr/bin/env bash
# Usage: tests/consumer/run.sh BUILD WORK
# Builds a program of somebody else in each way that the library offers, and runs it: from the installed tree by its
# CMake package and by pkg-config, and as a part of its own build with static libraries. BUILD is a build tree of the
# libraries with the program; WORK is emptied.
set -euo pipefail
consumer=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
source_dir=$(dirname "$(dirname "$consumer")")
build=$1 work=$2
expected='11 Ref Designator 1 $$Internal_KEY consumer'

# try NAME PROGRAM
try() {
    local printed
    printed=$("$2")
    if [ "$printed" != "$expected" ]; then
        printf '%s: the program printed "%s", not "%s".\n' "$1" "$printed" "$expected" >&2
        exit 1
    fi
    printf '%s: good\n' "$1"
}

if command -v ccache >/dev/null 2>&1; then export CMAKE_CXX_COMPILER_LAUNCHER=ccache; fi
rm -rf "$work"
mkdir -p "$work"

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"  # what is installed does not know where it is
"$work/moved/bin/quill" info "$source_dir/examples/vibration-recorder.json" >/dev/null
for file in man/man1/quill.1 bash-completion/completions/quill zsh/site-functions/_quill; do
    test -s "$work/moved/share/$file"
done

cmake -G Ninja -S "$consumer" -B "$work/package" -DCMAKE_PREFIX_PATH="$work/moved" >/dev/null
cmake --build "$work/package" >/dev/null
try 'CMake package' "$work/package/consumer"

pc=$(find "$work/moved" -name quillutils70.pc)
library_dir=$(dirname "$(dirname "$pc")")
# shellcheck disable=SC2046  # a list of words
c++ -std=c++20 "$consumer/consumer.cpp" -o "$work/by_pkg_config" \
    $(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs quillutils70) "-Wl,-rpath,$library_dir"
try 'pkg-config' "$work/by_pkg_config"

cmake -G Ninja -S "$consumer" -B "$work/static" -DQUILL_SOURCE_DIR="$source_dir" -DBUILD_SHARED_LIBS=OFF \
    -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build "$work/static" --target consumer >/dev/null
try 'part of a build, static libraries' "$work/static/consumer"
