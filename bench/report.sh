#!/usr/bin/env bash
# Measures the library and prints one table: the work, its size, its time, what it is measured against and how long that
# takes, the ratio of both with its limit, and the power of the size by which the time grows. Ends with 1 when a limit is
# missed. Options of Google Benchmark are passed on, as --benchmark_filter=Update.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
. "$source_dir/scripts/common.sh"

# shellcheck disable=SC2046  # a list of words
require_packages $(preset_groups bench)
configure bench
build quill_bench >&2
awk '/^MemTotal/ { memory = $2 / 1048576 } END { printf "%d cores, %.0f GB of memory\n\n", cores, memory }' \
    cores="$(nproc)" /proc/meminfo
program=$build_dir/bin/quill_bench

# Each family has a process of its own: what one leaves in the heap and the caches is not to slow the next one.
status=0 skipped=0
for family in $("$program" --benchmark_list_tests "$@" | sed 's|/.*||' | uniq); do
    "$program" --table "$@" --benchmark_filter="^$family(/|\$)" | tail -n +$((skipped + 1)) || status=1
    skipped=2 # the heading of the table
done
exit "$status"
