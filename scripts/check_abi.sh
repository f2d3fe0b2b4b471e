#!/usr/bin/env bash
# Usage: scripts/check_abi.sh [--update] BUILD...
# Compares the binary interface of the shared libraries with its description in abi/, or writes that anew. BUILD is a
# build tree of the libraries for 64-bit Linux, made with g++, or for 64-bit Windows.
#   abi/exports/LIBRARY.txt  what the library exports, on both systems; "linux" or "windows" in front where only one does
#   abi/types.txt            size, layout, virtual operations and numbers of all public types, on Linux
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$source_dir"
update=no
if [ "${1:-}" = --update ]; then update=yes && shift; fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

# Names as both systems have them. The compiler's own spelling of text, and of integers of the width of a pointer, is not
# ours. Names of types, and objects of the standard library that a process may have once only, are exported by Linux
# alone, whatever the library says.
normalise() {
    c++filt | sed -E '
        s/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g
        s/std::basic_string_view<char, std::char_traits<char> >/std::string_view/g
        s/unsigned long( long)?/size_t/g
        s/, std::allocator<[^<>]*(<[^<>]*(<[^<>]*>)?[^<>]*>)? >//g
        /^typeinfo name for /d
        /^std::/d' | LC_ALL=C sort -u
}

exports_of() {
    case $1 in
    *.so) nm -D --defined-only "$1" | awk '{ print $NF }' ;;
    *.dll) x86_64-w64-mingw32-objdump -p "$1" | awk '/Ordinal\/Name Pointer/ { on = 1; next } on && !NF { on = 0 } on { print $NF }' ;;
    esac | normalise
}

# compare WHAT LISTED FOUND
compare() {
    if ! diff -U 0 --label "$1 as described" --label "$1 as built" "$2" "$3" | sed 1,2d >"$work/difference" ||
        [ -s "$work/difference" ]; then
        printf '%s: not as described (-), but as built (+):\n' "$1" >&2
        grep -E '^[-+]' "$work/difference" >&2 || true
        failed=1
    fi
}

# What the list says of one system, without the marks.
listed_for() { sed -n -E "/^(linux|windows)	/!p; s/^$1	//p" "$2" | LC_ALL=C sort -u; }

check_exports() {
    local system=$1 suffix=$2 folder=$3 file library list other
    for file in "$folder"/lib*"$suffix"; do
        library=$(basename "$file" "$suffix")
        list=abi/exports/${library#lib}.txt
        exports_of "$file" >"$work/found"
        [ -s "$work/found" ] || { echo "$file: exports nothing" >&2; exit 1; }
        if [ "$update" = yes ]; then
            # What the list says of the other system stays.
            other=$([ "$system" = linux ] && echo windows || echo linux)
            if [ -e "$list" ]; then listed_for "$other" "$list"; else cat "$work/found"; fi >"$work/other"
            {
                LC_ALL=C comm -12 "$work/found" "$work/other"
                LC_ALL=C comm -23 "$work/found" "$work/other" | sed "s/^/$system	/"
                LC_ALL=C comm -13 "$work/found" "$work/other" | sed "s/^/$other	/"
            } >"$work/list"
            mkdir -p abi/exports
            mv "$work/list" "$list"
        else
            listed_for "$system" "$list" >"$work/listed"
            compare "exports of $library on $system" "$work/listed" "$work/found"
        fi
    done
}

# One file that includes all public headers has all types, so the libraries need no debug information for this.
check_types() {
    cmake --install "$1" --component development --prefix "$work/installed" >/dev/null
    local include=$work/installed/include/quillutils70
    (cd "$include" && find . -name '*.h' | LC_ALL=C sort | sed 's/^/#include "/; s/$/"/') >"$work/all.cpp"
    echo 'int AbiAnchor() { return 0; }' >>"$work/all.cpp"  # without any symbol the file would not be read
    g++ -std=c++20 -g -O0 -fPIC -shared -fno-eliminate-unused-debug-types -fno-eliminate-unused-debug-symbols \
        -femit-class-debug-always -I"$include" "$work/all.cpp" -o "$work/all.so"
    abidw --load-all-types --no-corpus-path --no-comp-dir-path --no-show-locs --drop-private-types \
        --headers-dir "$include" --out-file "$work/all.abi" "$work/all.so"
    python3 scripts/abi_types.py "$work/all.abi" >"$work/types"
    if [ "$update" = yes ]; then
        cp "$work/types" abi/types.txt
    else
        compare 'public types' abi/types.txt "$work/types"
    fi
}

for build; do
    if compgen -G "$build/lib/libQuillUtils70.so" >/dev/null; then
        check_exports linux .so "$build/lib"
        check_types "$build"
    elif compgen -G "$build/bin/libQuillUtils70.dll" >/dev/null; then
        check_exports windows .dll "$build/bin"
    else
        echo "$build holds no shared libraries" >&2
        exit 1
    fi
done
if [ "$failed" -ne 0 ]; then
    echo 'If this is what it should be, run scripts/check_abi.sh --update on both builds, and say it in the commit.' >&2
fi
exit "$failed"
