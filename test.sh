#!/usr/bin/env bash
# Builds QuillUtils70 and runs its tests, after installing what is missing.
set -euo pipefail
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
. "$source_dir/scripts/common.sh"

usage() {
    cat <<'END'
Usage: ./test.sh [options]

Builds the tests and runs all but the slow ones. Missing packages are installed first, with apt.

  --preset NAME    build preset: dev (default), asan, tsan, m32, mingw or mingw32
  --label FOLDER   only the tests of this folder of tests/; may be repeated
  --slow           the slow tests too
  --help           this text

The build goes to quillutils70-build beside the source tree, or to $QUILL_BUILD_ROOT.
END
}

preset=dev
labels=()
slow=no
while [ $# -gt 0 ]; do
    case $1 in
    --preset | --label)
        [ $# -ge 2 ] || die "$1 needs a value; see --help."
        if [ "$1" = --preset ]; then preset=$2; else labels+=("$2"); fi
        shift
        ;;
    --slow) slow=yes ;;
    --help | -h)
        usage
        exit 0
        ;;
    *) die "Unknown option $1; see --help." ;;
    esac
    shift
done

groups=$(preset_groups "$preset") || die "There is no preset '$preset'; see --help."
[[ " $groups " == *" test "* ]] || die "Preset '$preset' has no tests; see --help."
for label in "${labels[@]}"; do
    [ -d "$source_dir/tests/$label" ] || die "There is no folder tests/$label."
done

# shellcheck disable=SC2086  # a list of words
require_packages $groups
say "Building preset $preset in $build_root/$preset"
configure "$preset"
build "${labels[@]/#/tests_}"

select=(--no-tests=error)
if [ ${#labels[@]} -gt 0 ]; then
    select+=(-L "^($(IFS='|' && printf '%s' "${labels[*]}"))(-slow)?\$")
fi
[ "$slow" = yes ] || select+=(-LE slow)

export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
export TSAN_OPTIONS=${TSAN_OPTIONS:-second_deadlock_stack=1}

# Thousands of lines about tests that pass would hide the few that matter.
ctest --test-dir "$build_dir" -j "$(nproc)" --output-on-failure --no-label-summary "${select[@]}" |
    sed -u -E '/^ +Start +[0-9]+: /d; / \.+ +Passed +[0-9.]+ sec *$/d'
