#!/usr/bin/env bash
# Prints how many instructions the hot paths take, counted by valgrind's callgrind. Times move with what else a machine
# does; these numbers do not.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
. "$source_dir/scripts/common.sh"

# Benchmark as --benchmark_filter knows it | what one operation is
hot_paths='
^ReadAttribute/          | read an attribute
^ResolveIndex/           | resolve an index
^ListSheet/              | list the 100 objects of a sheet
^Update/10000/8/         | number 10,000 pages
^NumberOfEach/           | the number of each of 100,000 pages
^NextConnector/1/        | the next end of a connector
^NextObjectId/           | the next object id
^Translated/0$           | a translated callback
^BusLabels_Expand/       | expand a label of 1,000,000 members
^Sheets_Load/10000/      | load 10,000 sheets
'

# shellcheck disable=SC2046  # a list of words
require_packages $(preset_groups bench) counts
configure bench
build quill_bench >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
printf '| Work | Instructions |\n| --- | ---: |\n'
while IFS='|' read -r filter work; do
    filter=$(trim "$filter") work=$(trim "$work")
    [ -n "$filter" ] || continue
    operations=$(valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=/dev/null --log-file="$log" \
        "$build_dir/bin/quill_bench" --benchmark_filter="$filter" --benchmark_min_time=0 --benchmark_format=json |
        sed -n 's/^ *"operations": \([0-9.e+]*\),*$/\1/p')
    collected=$(sed -n 's/.*Collected : \([0-9]*\).*/\1/p' "$log")
    [ -n "$operations" ] && [ -n "$collected" ] || die "Nothing was counted for $filter."
    awk -v work="$work" -v all="$collected" -v operations="$operations" \
        'BEGIN { printf "| %s | %.0f |\n", work, all / operations }'
done <<<"$hot_paths"
