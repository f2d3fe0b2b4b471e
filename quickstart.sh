#!/usr/bin/env bash
# Builds QuillUtils70 as it is delivered and shows it at work on a design of its own, after installing what is missing.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
. "$source_dir/scripts/common.sh"

if [ $# -gt 0 ]; then
    cat <<'END'
Usage: ./quickstart.sh

Builds the libraries and the program, and lists the numbered pages of a design under examples/. Missing packages are installed
first, with apt. The build goes to quillutils70-build beside the source tree, or to $QUILL_BUILD_ROOT.
END
    case $1 in
    --help | -h) exit 0 ;;
    *) exit 2 ;;
    esac
fi

# shellcheck disable=SC2046  # a list of words
require_packages $(preset_groups release)
say "Building in $build_root/release"
configure release
build

program=$build_dir/bin/quill
if [ ! -x "$program" ]; then
    say "Built:"
    printf '    %s\n' "$build_dir"/lib/*.so
    exit 0
fi
main_job=(pages "$source_dir/examples/vibration-recorder.json")
say "Running: quill ${main_job[*]}"
exec "$program" "${main_job[@]}"
