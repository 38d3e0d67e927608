#!/bin/sh
# Rewrites the expected output documents of the golden end-to-end tests from
# the current build of distcorr. Review the diff before keeping it: the tests
# recompute every number independently and fail on a wrong expectation.
#
#   tests/e2e/golden/regenerate.sh [BUILD_DIR]     (default: build)
set -eu

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../../.." && pwd)
build=${1:-$root/build}
case $build in /*) ;; *) build=$root/$build ;; esac
distcorr=$build/bin/distcorr
[ -x "$distcorr" ] || { echo "regenerate.sh: $distcorr not found; build first" >&2; exit 2; }

tab=$(printf '\t')
failed=0
grep -v '^#' "$here/cases.tsv" | while IFS="$tab" read -r name data options; do
    [ -n "$name" ] || continue
    # $options is split into words on purpose (e.g. "--lang de").
    # shellcheck disable=SC2086
    if "$distcorr" --quiet --data "$here/data/$data" $options "$here/syntax/$name.sps" \
            --output "$here/expected/$name.json" 2>"$here/expected/$name.stderr.tmp"; then
        echo "regenerated $name"
    else
        echo "regenerate.sh: $name: distcorr failed:" >&2
        cat "$here/expected/$name.stderr.tmp" >&2
        failed=1
    fi
    rm -f "$here/expected/$name.stderr.tmp"
    [ "$failed" -eq 0 ] || exit 1
done
