#!/usr/bin/env bash
# Measures what the program does beside what people would use instead, in turns, all answers compared first;
# prints a table of ratios with their goals and ends with 1 when one is missed, with 2 when one could not be
# measured. Installs what is missing.
# usage: bench.sh [--quick] [--keep]
#   --quick   fewer e-mails, rows and repetitions: a look, no figures to keep
#   --keep    writes docs/performance.md and its plots, too
set -euo pipefail
cd "$(dirname "$0")"

files=5000 rows=100000 emails=100000 repetitions=9 wine=(3 4000 400 100000) keep=()
for argument in "$@"; do
    case $argument in
        --quick) files=500 rows=10000 emails=10000 repetitions=3 wine=(1 200 20 20000) ;;
        --keep) keep=("--keep=$(git log -1 --format='%h of %ad' --date=short)") ;;
        *)
            sed -n '5,7s/^# //p' "$0" >&2
            exit 2
            ;;
    esac
done
if [ "$files" != 5000 ] && ((${#keep[@]})); then
    echo "bench: --quick measures nothing to be kept" >&2
    exit 2
fi
if ((${#keep[@]})) && ! git diff --quiet HEAD -- . ':!docs'; then
    echo "bench: kept is what a commit has; there are changes beside it" >&2
    exit 2
fi
trap 'exit 2' ERR

scripts/install-tools.sh bench
scripts/build.sh bench bench-headers bench-database bench-comparison bench-growth demo-pack quillbox-inspect
scripts/build.sh win32 quillbox demo-client demo-driver bench-bare
results=build/bench/results
rm -rf "$results"
mkdir -p "$results"
measure() { # NAME SIZE
    echo "== Measuring $1 ($2)"
    # Each in turn, so that what else the machine does meets all of them.
    "build/bench/bench-$1" "$2" --benchmark_enable_random_interleaving=true --benchmark_repetitions="$repetitions" \
        --benchmark_min_time=0.2 --benchmark_report_aggregates_only=true \
        --benchmark_out="$results/$1.json" --benchmark_out_format=json >"$results/$1.txt" 2>&1 ||
        { tail -n 5 "$results/$1.txt" >&2; exit 2; }
}
measure headers --files="$files"
measure comparison --emails="$emails"
measure database --rows="$rows"
measure growth --most="$emails"
echo "== Measuring the program under Wine (${wine[*]})"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
TZ=UTC scripts/wine-run.sh -t 0 -- python3 bench/wine.py build/win32 build/bench "$scratch" "$results/wine.json" "${wine[@]}" \
    >"$results/wine.txt" 2>&1 || { tail -n 5 "$results/wine.txt" >&2; exit 2; }
trap - ERR
[ "$files" = 5000 ] || echo "A quick look: fewer of everything than the table says"
python3 bench/report.py "${keep[@]}" "$results"/*.json
