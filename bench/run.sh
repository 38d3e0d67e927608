#!/usr/bin/env bash
# Runs the DISTANCE CORRELATION benchmark and prints the table of workloads.
#
#   bench/run.sh [BUILD_DIR]
#
# W3, W5 and W5b also run with the host's worker pool (2 threads, and all
# cores where there are more), alternating with one-thread runs, and the
# speed-ups are wall-time ratios.
#
# BUILD_DIR (default: build-bench in the repository) is configured and the
# benchmark program, distcorr and the plug-in are built in it. Each workload
# runs in its own process, so that the peak memory belongs to it alone. The
# peer (R package energy, Debian r-cran-energy) runs on the same data in the
# same run; without Rscript the peer columns stay empty.
#
# Times are CPU seconds of the process (user + system) unless marked wall:
# on a shared machine they are steadier than wall-clock times. Each program
# runs more than once where that is cheap and the fastest run counts (see
# below). Ratios are formed from numbers measured in this run.
set -euo pipefail

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="${1:-$ROOT/build-bench}"
JOBS="${JOBS:-2}"

cmake -S "$ROOT" -B "$BUILD" >/dev/null
cmake --build "$BUILD" --target DistanceCorrBench distcorr distancecorrelation -j"$JOBS" >/dev/null

BENCH="$BUILD/bin/DistanceCorrBench"
DISTCORR="$BUILD/bin/distcorr"
WORK="$(mktemp -d "${TMPDIR:-/tmp}/distcorr-bench.XXXXXX")"
trap 'rm -rf "$WORK"' EXIT

# value KEY LINE: the value of KEY=... in a line of key=value pairs.
value() { sed -n "s/.*[[:space:]]$1=\([^[:space:]]*\).*/\1/p;s/^$1=\([^[:space:]]*\).*/\1/p" <<<"$2" | head -n1; }
# calc EXPRESSION with awk's floating point; prints "-" when an input is missing.
calc() { awk "BEGIN { if (\"$2\" == \"\" || \"$3\" == \"\") { print \"-\"; exit } a = $2; b = $3; printf \"$1\", $4 }"; }
mb() { calc "%.0f" "${1:-}" 1 "a / 1048576"; }
s3() { calc "%.3f" "${1:-}" 1 "a"; }

have_r=0
if command -v Rscript >/dev/null && Rscript -e 'suppressMessages(library(energy))' >/dev/null 2>&1; then have_r=1; fi

# peer MODE WORKLOAD: energy on the workload's data; prints its line plus peak_bytes.
peer() {
    [[ $have_r == 1 ]] || { echo ""; return; }
    local out
    out="$("$BENCH" measure Rscript "$ROOT/bench/energy_peer.R" "$1" "$WORK/$2.csv" 2>/dev/null)"
    echo "$(grep '^peer=' <<<"$out") peak_bytes=$(value peak_bytes "$(grep '^exit=' <<<"$out")")"
}

# best KEY RUNS COMMAND...: of RUNS runs, the output line with the smallest KEY.
best() {
    local key=$1 runs=$2 line chosen="" least=""
    shift 2
    for ((r = 0; r < runs; ++r)); do
        line="$("$@")"
        local v
        v="$(value "$key" "$line")"
        if [[ -z $least ]] || awk -v a="$v" -v b="$least" 'BEGIN { exit !(a + 0 < b + 0) }'; then
            least="$v"
            chosen="$line"
        fi
    done
    echo "$chosen"
}

for w in W1 W2 W3; do "$BENCH" data "$w" "$WORK/$w.csv"; done

echo "Machine:  $(lscpu | sed -n 's/^Model name:[[:space:]]*//p'), $(nproc) cores, $(awk '/MemTotal/ {printf "%.0f GB", $2/1048576}' /proc/meminfo)"
build_type="$(sed -n 's/^CMAKE_BUILD_TYPE:[^=]*=//p' "$BUILD/CMakeCache.txt")"
echo "Commit:   $(git -C "$ROOT" rev-parse --short HEAD 2>/dev/null || echo unknown), build type ${build_type:-RelWithDebInfo (the project default)}"
[[ $have_r == 1 ]] && echo "Peer:     R $(Rscript -e 'cat(paste(R.version$major, R.version$minor, sep="."))'), energy $(Rscript -e 'cat(as.character(packageVersion("energy")))')"
echo "Date:     $(date -u '+%Y-%m-%d %H:%M UTC')"
echo

# Ours: best of three runs; the peer: best of two (one for W2, which takes
# minutes); the matrix recipe and W6: one run.
w1="$(best engine_cpu 3 "$BENCH" run W1)";   p1="$(best cpu 2 peer dcor W1)"
w2="$(best engine_cpu 3 "$BENCH" run W2)";   p2="$(peer dcor-pairs W2)"
# W1 and W2 at one thread and at every core, run alternately (after one run to
# warm the memory, in turn first and second): best wall time of each.
CORES="$(nproc)"
load_observed="$(cut -d' ' -f1-3 /proc/loadavg)"
for w in W1 W2; do
    "$BENCH" run "$w" >/dev/null
    for ((r = 0; r < 4; ++r)); do
        order=(1 "$CORES")
        ((r % 2 == 1)) && order=("$CORES" 1)
        for t in "${order[@]}"; do
            line="$("$BENCH" run "$w" --threads "$t")"
            key="${w}_t$([[ $t == 1 ]] && echo 1 || echo all)"
            if [[ -z ${!key:-} ]] || awk -v a="$(value engine_wall "$line")" -v b="$(value engine_wall "${!key}")" 'BEGIN { exit !(a + 0 < b + 0) }'; then
                printf -v "$key" '%s' "$line"
            fi
        done
    done
done
w3="$(best engine_cpu 3 "$BENCH" run W3)";   p3="$(best cpu 2 peer dcov-test W3)"
w4="$(best perm_cpu 3 "$BENCH" run W4 2>/dev/null)"
w4l="$("$BENCH" run W4 --literal --permutations 3 2>/dev/null)"
w5="$(best engine_cpu 3 "$BENCH" run W5)"
w5b="$(best engine_cpu 3 "$BENCH" run W5b)"
w6="$("$BENCH" measure "$DISTCORR" --data "$WORK/W1.csv" --quiet --output "$WORK/w6.json" -e \
    "DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR DISTMATRIX(CONFIGURE=[x1 x2] SAVE=TRUE OUTFILE='$WORK/w6-dist.csv') /PLOT SCATTERPLOT(XAXIS=x1 YAXIS=x2)." 2>/dev/null)"
w6files="$(du -cb "$WORK/w6.json" "$WORK/w6-dist.csv" 2>/dev/null | tail -n1 | cut -f1)"
# The disk's pace for W6: dd writes and syncs as many bytes to the same folder.
w6dd="$("$BENCH" measure dd if=/dev/zero of="$WORK/dd.out" bs=1M iflag=count_bytes count="${w6files:-0}" conv=fsync 2>/dev/null)"
rm -f "$WORK/dd.out"

row() { printf '| %-4s | %-44s | %9s | %9s | %8s | %9s | %9s | %8s | %9s |\n' "$@"; }
row "Work" "What" "Ours s" "Ours wall" "Peak MiB" "Peer s" "Peer wall" "Peer MiB" "Ours/peer"
row "----" "--------------------------------------------" "---------" "---------" "--------" "---------" "---------" "--------" "---------"
for pair in "W1|2 x 5792, observed statistics, NONE|$w1|$p1" "W2|30 x 1495, observed statistics (435 pairs)|$w2|$p2" \
            "W3|2 x 2000, permutation test, 999 permutations|$w3|$p3"; do
    IFS='|' read -r name what ours theirs <<<"$pair"
    row "$name" "$what" "$(s3 "$(value engine_cpu "$ours")")" "$(s3 "$(value engine_wall "$ours")")" \
        "$(mb "$(value peak_bytes "$ours")")" "$(s3 "$(value cpu "$theirs")")" "$(s3 "$(value wall "$theirs")")" \
        "$(mb "$(value peak_bytes "$theirs")")" \
        "$(calc "%.4f" "$(value engine_cpu "$ours")" "$(value cpu "$theirs")" "a / b")"
done
row "W4" "2 x 5792, 1000 permutations (perm. stage)" "$(s3 "$(value perm_cpu "$w4")")" "$(s3 "$(value perm_wall "$w4")")" \
    "$(mb "$(value peak_bytes "$w4")")" "" "" "" ""
row "W5" "10 x 500, 1000 permutations, 45 pairs" "$(s3 "$(value engine_cpu "$w5")")" "$(s3 "$(value engine_wall "$w5")")" \
    "$(mb "$(value peak_bytes "$w5")")" "" "" "" ""
row "W5b" "10 x 2000, 1000 permutations, 45 pairs" "$(s3 "$(value engine_cpu "$w5b")")" "$(s3 "$(value engine_wall "$w5b")")" \
    "$(mb "$(value peak_bytes "$w5b")")" "" "" "" ""
row "W6" "distcorr on W1: all tables, plot, saved file" "$(s3 "$(value cpu "$w6")")" "$(s3 "$(value wall "$w6")")" \
    "$(mb "$(value peak_bytes "$w6")")" "" "" "" ""
echo

# verdict ACTUAL TARGET: a speed-up that must be at least TARGET.
verdict() { awk -v a="$1" -v t="$2" 'BEGIN { if (a == "" || a == "-") { print "not measured"; exit }
    printf "%.1fx (target >= %sx): %s\n", a, t, (a + 0 >= t + 0 ? "met" : "NOT met") }'; }

echo "W1: speed-up over energy::dcor (CPU, --threads 1) $(verdict "$(calc "%.2f" "$(value cpu "$p1")" "$(value engine_cpu "$w1")" "a / b")" 10)"
limit="$(calc "%.0f" "$(value guard_bytes "$w1")" "$(value input_bytes "$w1")" "1.25 * a + b")"
echo "W1: peak memory $(mb "$(value peak_bytes "$w1")") MiB, limit 1.25 x guard + input = $(mb "$limit") MiB: $(awk -v p="$(value peak_bytes "$w1")" -v l="$limit" 'BEGIN { print (p + 0 <= l + 0 ? "met" : "NOT met") }')"
echo "W1: dCor ours $(value dcor_first_pair "$w1"), energy dcor^2 $(value value "$p1")"
echo "W2: speed-up over energy::dcor, 435 pairs  $(calc "%.1fx (no target)" "$(value cpu "$p2")" "$(value engine_cpu "$w2")" "a / b")"
echo "W1, W2 at 1 and $CORES threads: best wall of 4 alternating runs each; load average before them $load_observed"
for w in W1 W2; do
    one="${w}_t1"; all="${w}_tall"
    ratio="$(calc "%.2f" "$(value engine_wall "${!one}")" "$(value engine_wall "${!all}")" "a / b")"
    printf '%s: --threads 1 %s s, --threads %s %s s wall: ' "$w" "$(s3 "$(value engine_wall "${!one}")")" "$CORES" \
        "$(s3 "$(value engine_wall "${!all}")")"
    if [[ $CORES == 1 ]]; then echo "one core, no ratio"; elif [[ $w == W2 ]]; then verdict "$ratio" 1.6; else echo "${ratio}x (no target)"; fi
done
echo "W1: speed-up over energy::dcor at --threads $CORES (wall) $(verdict "$(calc "%.2f" "$(value wall "$p1")" "$(value engine_wall "$W1_tall")" "a / b")" 10)"
echo "W1: peak memory at --threads $CORES $(mb "$(value peak_bytes "$W1_tall")") MiB, limit $(mb "$limit") MiB: $(awk -v p="$(value peak_bytes "$W1_tall")" -v l="$limit" 'BEGIN { print (p + 0 <= l + 0 ? "met" : "NOT met") }')"
echo "W3: speed-up over energy::dcov.test (CPU)  $(verdict "$(calc "%.2f" "$(value cpu "$p3")" "$(value engine_cpu "$w3")" "a / b")" 25)"
echo "W3: permutation stage $(calc "%.1f" "$(value per_pair_perm_us "$w3")" 1 a) us per permutation; observed stages $(s3 "$(value observed_cpu "$w3")") s"
echo "W4: per permutation: fast $(calc "%.1f" "$(value per_pair_perm_us "$w4")" 1 a) us, matrix recipe $(calc "%.0f" "$(value per_pair_perm_us "$w4l")" 1 a) us (timed on 3 permutations)"
echo "W4: speed-up over the matrix recipe         $(verdict "$(calc "%.1f" "$(value per_pair_perm_us "$w4l")" "$(value per_pair_perm_us "$w4")" "a / b")" 30)"
echo "W4: the whole engine refuses W4 (memory guard, status $(value engine_status "$w4")): the stages are timed directly"
echo "W5: per pair per permutation: $(calc "%.1f" "$(value per_pair_perm_us "$w5")" 1 a) us at n=500, $(calc "%.1f" "$(value per_pair_perm_us "$w5b")" 1 a) us at n=2000;" \
     "ratio $(calc "%.2f" "$(value per_pair_perm_us "$w5b")" "$(value per_pair_perm_us "$w5")" "a / b")" \
     "(n log n predicts $(awk 'BEGIN { printf "%.2f", 4 * log(2000) / log(500) }'), n^2 predicts 16)"
echo "W6: exit $(value exit "$w6"), output document and saved file $(mb "$w6files") MiB"
echo "W6: $(s3 "$(value wall "$w6")") s wall against dd writing and syncing as many bytes $(s3 "$(value wall "$w6dd")") s: $(awk -v a="$(value wall "$w6")" -v d="$(value wall "$w6dd")" 'BEGIN { if (a == "" || d == "" || d <= 0) { print "not measured"; exit }
    printf "%.2fx (target <= 1.5x): %s\n", a / d, (a / d <= 1.5 ? "met" : "NOT met") }')"

# Threads: W3, W5 and W5b at --threads 1 and at T threads (2, and all cores
# where there are more), runs alternating so that both see the same load;
# the fastest wall time of each counts (CPU time does not show a speed-up).
# wall_best KEY LINE...: the smallest value of KEY among the lines.
wall_best() { local key=$1; shift; printf '%s\n' "$@" | awk -v k="$key" '{ for (i = 1; i <= NF; ++i) if (index($i, k "=") == 1) { v = substr($i, length(k) + 2) + 0; if (m == "" || v < m) { m = v; line = $0 } } } END { print line }'; }
# alternate W T RUNS: sets one_engine one_perm many_engine many_perm (lines).
alternate() {
    local w=$1 t=$2 runs=$3 ones=() manys=()
    for ((r = 0; r < runs; ++r)); do
        ones+=("$("$BENCH" run "$w" --threads 1)")
        manys+=("$("$BENCH" run "$w" --threads "$t")")
    done
    one_engine="$(wall_best engine_wall "${ones[@]}")"; one_perm="$(wall_best perm_wall "${ones[@]}")"
    many_engine="$(wall_best engine_wall "${manys[@]}")"; many_perm="$(wall_best perm_wall "${manys[@]}")"
}
cores="$(nproc)"
counts=(2); (( cores > 2 )) && counts+=("$cores")
echo
echo "Threads (load before: $(cut -d' ' -f1-3 /proc/loadavg)); wall seconds, best of alternating runs (W3 and W5 7 each, W5b 3):"
trow() { printf '| %-4s | %7s | %12s | %12s | %8s | %12s | %12s | %8s | %12s |\n' "$@"; }
trow "Work" "Threads" "Engine 1 thr" "Engine T thr" "Speed-up" "Perm. 1 thr" "Perm. T thr" "Speed-up" "Peak MiB (T)"
trow "----" "-------" "------------" "------------" "--------" "------------" "------------" "--------" "------------"
declare -A speed perm_speed peak guard
for t in "${counts[@]}"; do
    for w in W3 W5 W5b; do
        runs=7; [[ $w == W5b ]] && runs=3
        alternate "$w" "$t" "$runs"
        speed[$w,$t]="$(calc "%.2f" "$(value engine_wall "$one_engine")" "$(value engine_wall "$many_engine")" "a / b")"
        perm_speed[$w,$t]="$(calc "%.2f" "$(value perm_wall "$one_perm")" "$(value perm_wall "$many_perm")" "a / b")"
        peak[$w,$t]="$(value peak_bytes "$many_engine")"; guard[$w]="$(value guard_test_bytes "$many_engine")"
        [[ $w == W3 ]] && w3_many_wall[$t]="$(value engine_wall "$many_engine")"
        trow "$w" "$t" "$(s3 "$(value engine_wall "$one_engine")")" "$(s3 "$(value engine_wall "$many_engine")")" "${speed[$w,$t]}" \
            "$(s3 "$(value perm_wall "$one_perm")")" "$(s3 "$(value perm_wall "$many_perm")")" "${perm_speed[$w,$t]}" \
            "$(mb "${peak[$w,$t]}")"
    done
done
w4many="$(best perm_wall 3 "$BENCH" run W4 --threads "${counts[-1]}" 2>/dev/null)"
echo "(load after: $(cut -d' ' -f1-3 /proc/loadavg))"
for w in W5 W5b W3; do
    target=1.8; [[ $w == W3 ]] && target=1.7
    echo "$w: whole engine 2 threads against 1 (wall)    $(verdict "${speed[$w,2]}" "$target")"
    echo "$w: permutation stage 2 threads against 1     $(calc "%.2fx" "${perm_speed[$w,2]}" 1 a)"
done
for t in "${counts[@]}"; do
    for w in W3 W5 W5b; do
        echo "$w: peak memory at $t threads $(mb "${peak[$w,$t]}") MiB, limit 1.25 x guard = $(mb "$(calc "%.0f" "${guard[$w]}" 1 "1.25 * a")") MiB:" \
             "$(awk -v p="${peak[$w,$t]}" -v g="${guard[$w]}" 'BEGIN { print (p + 0 <= 1.25 * g ? "met" : "NOT met") }')"
    done
    echo "W3: at $t threads, speed-up over energy::dcov.test (its CPU, our wall) $(verdict "$(calc "%.2f" "$(value cpu "$p3")" "${w3_many_wall[$t]}" "a / b")" 25)"
done
echo "W4: at ${counts[-1]} threads, per permutation (wall) $(calc "%.1f" "$(value per_pair_perm_wall_us "$w4many")" 1 a) us; against the matrix recipe" \
     "$(verdict "$(calc "%.1f" "$(value per_pair_perm_us "$w4l")" "$(value per_pair_perm_wall_us "$w4many")" "a / b")" 30)"
echo

# L1: loading a 1,000,000 x 10 numeric CSV (about 100 MB), load only, best of
# three; the peer is R's read.csv on the same file (its time inside R, and the
# peak memory of the whole Rscript process).
cmake --build "$BUILD" --target CsvLoadBench -j"$JOBS" >/dev/null
"$BUILD/bin/CsvLoadBench" data "$WORK/L1.csv"
l1="$(best load_cpu 3 "$BUILD/bin/CsvLoadBench" load "$WORK/L1.csv")"
pl1=""
if command -v Rscript >/dev/null; then
    pl1="$("$BENCH" measure Rscript -e 'f <- commandArgs(TRUE)[1]; t <- system.time(x <- read.csv(f));
        cat(sprintf("peer_cpu=%.3f peer_wall=%.3f\n", t[["user.self"]] + t[["sys.self"]], t[["elapsed"]]))' \
        "$WORK/L1.csv" 2>/dev/null | tr '\n' ' ')"
fi
echo "L1: load 1,000,000 x 10 CSV ($(mb "$(value file_bytes "$l1")") MiB): $(s3 "$(value load_cpu "$l1")") s CPU," \
     "$(s3 "$(value load_wall "$l1")") s wall, $(calc "%.0f" "$(value mb_per_s "$l1")" 1 a) MB/s (target >= 150):" \
     "$(awk -v r="$(value mb_per_s "$l1")" 'BEGIN { print (r + 0 >= 150 ? "met" : "NOT met") }')"
echo "L1: peak memory $(mb "$(value peak_bytes "$l1")") MiB, limit file + 2 x doubles = $(mb "$(value limit_bytes "$l1")") MiB:" \
     "$(awk -v p="$(value peak_bytes "$l1")" -v l="$(value limit_bytes "$l1")" 'BEGIN { print (p + 0 <= l + 0 ? "met" : "NOT met") }')"
echo "L1: R read.csv $(s3 "$(value peer_cpu "$pl1")") s CPU, $(s3 "$(value peer_wall "$pl1")") s wall," \
     "Rscript peak $(mb "$(value peak_bytes "$pl1")") MiB; speed-up $(calc "%.1fx" "$(value peer_cpu "$pl1")" "$(value load_cpu "$l1")" "a / b")"
l2="$("$BUILD/bin/CsvLoadBench" scale "$WORK")"
echo "L2: once quadratic, each must load in under 2 s: 100,000 columns of one name $(s3 "$(value wide_cpu "$l2")") s," \
     "200,000 categories $(s3 "$(value categories_cpu "$l2")") s, 20,000 missing-value texts x 20,000 cells" \
     "$(s3 "$(value missing_cpu "$l2")") s"

# DEPENDENCE (bench/DependenceBench.cpp, peer bench/dependence_peer.R): best of
# two runs on each side, D2 once; ratios of CPU seconds from this run.
cmake --build "$BUILD" --target DependenceBench -j"$JOBS" >/dev/null
DEP="$BUILD/bin/DependenceBench"
dpeer() { [[ $have_r == 1 ]] && "$BENCH" measure Rscript "$ROOT/bench/dependence_peer.R" "$1" "$WORK/$2.csv" 2>/dev/null | grep '^peer='; }
for d in D1 D3 D5; do "$DEP" data "$d" "$WORK/$d.csv"; done
d1="$(best cpu 2 "$DEP" run D1)"; d2="$("$DEP" run D2)"; d3="$(best cpu 2 "$DEP" run D3)"
d4="$(best cpu 2 "$DEP" run D4)"; d5="$(best cpu 2 "$DEP" run D5)"
q1="$(best cpu 2 dpeer dcor2d D1)"; q3="$(best cpu 2 dpeer dcor-sets D3)"; q5="$(best cpu 2 dpeer dcov-test D5)"
limit() { awk -v a="$1" -v t="$2" 'BEGIN { if (a == "") { print "not measured"; exit } print (a + 0 < t + 0 ? "met" : "NOT met") }'; }
echo
echo "D1: pair statistic n=100,000: $(s3 "$(value cpu "$d1")") s, energy::dcor2d $(s3 "$(value cpu "$q1")") s: $(verdict "$(calc "%.2f" "$(value cpu "$q1")" "$(value cpu "$d1")" "a / b")" 10)"
echo "D1: dcor^2 ours $(value second "$d1"), energy dcor2d $(value value "$q1")"
echo "D2: pair statistic n=10,000,000: cpu $(s3 "$(value cpu "$d2")") s, wall $(s3 "$(value wall "$d2")") s (target < 10 s): $(limit "$(value wall "$d2")" 10);" \
     "peak $(mb "$(value peak_bytes "$d2")") MiB (target < 2048): $(limit "$(mb "$(value peak_bytes "$d2")")" 2048)"
echo "D3: sets 5 + 5 x 5,000: $(s3 "$(value cpu "$d3")") s, energy::dcor(X, Y) $(s3 "$(value cpu "$q3")") s: $(verdict "$(calc "%.2f" "$(value cpu "$q3")" "$(value cpu "$d3")" "a / b")" 10)"
echo "D4: t-test n=100,000: $(s3 "$(value cpu "$d4")") s (target < 1 s): $(limit "$(value cpu "$d4")" 1)"
echo "D5: permutation test n=2,000, 999 replicates: $(s3 "$(value cpu "$d5")") s, energy::dcov.test $(s3 "$(value cpu "$q5")") s: $(verdict "$(calc "%.2f" "$(value cpu "$q5")" "$(value cpu "$d5")" "a / b")" 25)"
