#!/usr/bin/env bash
# Usage: scripts/check_usings.sh FILE...
# Names each using-declaration of a source file whose name the rest of the file does not use. clang-tidy knows them in
# the first of merged files only.
set -euo pipefail
awk '
    function report(    name) {
        for (name in line) {
            if (count[name] < 2) {
                printf "%s:%d: using %s, which the file does not use\n", file, line[name], name
                unused = 1
            }
        }
        delete line
        delete count
    }
    FNR == 1 { report(); file = FILENAME }
    { sub(/\/\/.*/, "") }
    match($0, /^ *using [A-Za-z0-9_:]+::[A-Za-z0-9_]+;/) {
        name = substr($0, RSTART, RLENGTH - 1)
        sub(/.*::/, "", name)
        line[name] = FNR
    }
    {
        words = split($0, word, /[^A-Za-z0-9_]+/)
        for (i = 1; i <= words; ++i) ++count[word[i]]
    }
    END { report(); exit unused }' "$@"
