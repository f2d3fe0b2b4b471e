#!/usr/bin/env bash
# fuzz.sh SECONDS [TARGET...]: builds the fuzzers and runs each of them, or those named, for so many seconds, two at once.
#
# Each begins with the inputs that are kept in fuzz/corpus. What it finds besides is forgotten, but for an input that
# ends it, which is left in the build folder: mend the fault and put the input into the corpus.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
. "$source_dir/scripts/common.sh"

[[ ${1:-} =~ ^[1-9][0-9]*$ ]] || die "The first argument is the number of seconds for each target."
seconds=$1
shift

# shellcheck disable=SC2046  # a list of words
require_packages $(preset_groups asan)
configure asan
if [ $# -eq 0 ]; then
    build fuzzers
    for seeds in "$build_dir"/bin/*_fuzz.seeds; do
        seeds=${seeds##*/}
        set -- "$@" "${seeds%_fuzz.seeds}"
    done
else
    build "${@/%/_fuzz}"
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
findings=$build_dir/findings
mkdir -p "$findings"

# Leaves the outcome in $scratch/TARGET.outcome.
fuzz() {
    local target=$1 outcome=passed counted
    local program=$build_dir/bin/${target}_fuzz inputs=$scratch/$target seeds=()
    mkdir -p "$inputs/new"
    mapfile -t seeds <"$program.seeds"
    for seed in "${seeds[@]}"; do
        if [ -d "$seed" ]; then cp "$seed"/* "$inputs"; else cp "$seed" "$inputs"; fi
    done
    TMPDIR=$scratch "$program" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=3000 -print_final_stats=1 \
        -artifact_prefix="$findings/$target-" "$inputs/new" "$inputs" >"$scratch/$target.log" 2>&1 || outcome=FAILED
    counted=$(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$target.log")
    printf '%-16s %s after %s inputs\n' "$target" "$outcome" "${counted:-?}" >"$scratch/$target.outcome"
}

running=0
for target in "$@"; do
    if [ $((running += 1)) -gt 2 ]; then
        wait -n
    fi
    fuzz "$target" &
done
wait

failed=0
for target in "$@"; do
    if grep -q FAILED "$scratch/$target.outcome"; then
        tail -n 60 "$scratch/$target.log"
        say "The input is in $findings."
        failed=1
    fi
done
for target in "$@"; do
    cat "$scratch/$target.outcome"
done
exit "$failed"
