#!/usr/bin/env bash
# Builds the fuzz targets with clang, ASan and UBSan, and runs each of them
# for a time-boxed pass.
#
#   tests/fuzz/run.sh [SECONDS] [BUILD_DIR]
#
# SECONDS (default 60) is the time for each target; the targets run at once. BUILD_DIR (default
# build-fuzz) is a build folder of its own. New inputs the fuzzer finds go to
# BUILD_DIR/fuzz-corpus/<target>, never into the seed corpus of the
# repository; a crashing input is written to BUILD_DIR/fuzz-artifacts/ and
# makes the script exit with 1 after every target has run.
set -uo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
SECONDS_EACH="${1:-60}"
BUILD="${2:-$ROOT/build-fuzz}"
JOBS="${JOBS:-2}"

set -e
cmake -S "$ROOT" -B "$BUILD" -DDC_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build "$BUILD" -j"$JOBS" --target fuzz_syntax fuzz_csv fuzz_schema >/dev/null
set +e

# The targets run side by side, so a pass takes SECONDS of wall time
# however many targets there are.
targets=(syntax csv schema)
pids=()
for target in "${targets[@]}"; do
    corpus="$BUILD/fuzz-corpus/$target"
    artifacts="$BUILD/fuzz-artifacts"
    log="$BUILD/fuzz-logs/$target.log"
    mkdir -p "$corpus" "$artifacts" "$(dirname "$log")"
    "$BUILD/bin/fuzz_$target" "$corpus" "$ROOT/tests/fuzz/corpus/$target" \
        -dict="$ROOT/tests/fuzz/$target.dict" -max_total_time="$SECONDS_EACH" -timeout=30 \
        -rss_limit_mb=2048 -artifact_prefix="$artifacts/$target-" -print_final_stats=1 >"$log" 2>&1 &
    pids+=($!)
done

failed=()
for i in "${!targets[@]}"; do
    target="${targets[$i]}"
    log="$BUILD/fuzz-logs/$target.log"
    if wait "${pids[$i]}"; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
        peak=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log")
        echo "fuzz_$target: ${runs:-?} inputs in $SECONDS_EACH s, no problem (peak ${peak:-?} MB)"
    else
        failed+=("$target")
        echo "fuzz_$target: PROBLEM FOUND; the end of $log:"
        tail -n 60 "$log"
    fi
done

if ((${#failed[@]})); then
    echo "Fuzzing found problems in: ${failed[*]} (inputs in $BUILD/fuzz-artifacts)"
    exit 1
fi
