#!/usr/bin/env bash
# check_quotes.sh PROGRAM FILE...: runs the commands that the documents quote and compares what they print.
#
# A quote is a block that begins with "```console". In it a line "$ quill ..." is a command, run from the root of the
# source tree, and what follows is what it prints, where a line "..." stands for any lines. PROGRAM is the quill to run.
# Lines that begin with "quill " in blocks of "```sh" are run too, in a folder of their own; they have to succeed.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
program=$(realpath "$1")
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
ln -s "$program" "$scratch/quill"
ln -s "$source_dir/examples" "$scratch/examples"
failed=0

complain() {
    printf '%s: %s\n' "$document" "$1" >&2
    failed=1
}

run() { (cd "$scratch" && PATH=$scratch:$PATH bash -c "$1" </dev/null 2>&1); }

# matches ACTUAL EXPECTED: whether EXPECTED, with its lines of "...", is what ACTUAL says.
matches() {
    local rest=$1$'\n' expected=$2 part anywhere=
    while [[ $expected == *$'...\n'* ]]; do
        part=${expected%%$'...\n'*}
        expected=${expected#*$'...\n'}
        if [ -n "$anywhere" ]; then [[ $rest == *"$part"* ]] || return 1; else [[ $rest == "$part"* ]] || return 1; fi
        rest=${rest#*"$part"}
        anywhere=yes
    done
    if [ -n "$anywhere" ]; then [[ $rest == *"$expected" ]]; else [ "$rest" = "$expected" ]; fi
}

check() {
    [ -z "$command" ] || matches "$(run "$command" || true)" "$expected" || complain "\"$command\" prints something else"
    command='' expected=''
}

for document; do
    block='' command='' expected='' quotes=0
    while IFS= read -r line; do
        case $block$line in
        '```console' | '```sh') block=${line#'```'}: ;;
        *':```') check && block='' ;;
        'console:$ '*)
            check
            command=${line#'$ '}
            quotes=$((quotes + 1))
            ;;
        console:*) expected+=$line$'\n' ;;
        'sh:quill '*) run "$line" >"$scratch/said" || complain "\"$line\" fails: $(<"$scratch/said")" ;;
        esac
    done <"$source_dir/$document"
    [ "$quotes" -gt 0 ] || complain "quotes nothing that the program prints"
done
exit "$failed"
