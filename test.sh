#!/usr/bin/env bash
# Builds and runs every test: the portable core under the sanitizers, short fuzzing, the Windows program and
# its parts under Wine, and the demo from end to end. Installs what is missing.
# usage: test.sh [--fuzz MINUTES]    each fuzz target that long instead of a short, fixed number of inputs
set -euo pipefail
cd "$(dirname "$0")"

fuzz=(-runs=20000 -max_total_time=20 -seed=1) # whichever comes first
case ${1:-} in
    "") ;;
    --fuzz)
        [[ ${2:-} =~ ^[1-9][0-9]*$ && $# -eq 2 ]] || { sed -n '4s/# //p' "$0" >&2; exit 2; }
        fuzz=("-max_total_time=$((60 * $2))")
        ;;
    *) sed -n '4s/# //p' "$0" >&2; exit 2 ;;
esac

scratch="" pid=""
# shellcheck disable=SC2317 # called by the trap
finish() {
    local status=$?
    if [ -n "$pid" ]; then kill -TERM "$pid" 2>/dev/null; wait "$pid"; fi
    [ -z "$scratch" ] || rm -rf "$scratch"
    exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-test.XXXXXX")

# In the background, so that a signal is passed on at once: what starts servers cleans up after itself.
run() {
    "$@" &
    pid=$!
    wait "$pid"
    pid=""
}

# A fuzz target starts from its seeds and from what it found before, which build/ keeps, and leaves there
# what broke it.
fuzz_all() {
    local target name seeds
    for target in build/fuzz/fuzz-*; do
        [ -x "$target" ] || continue
        name=${target##*/}
        mkdir -p "build/fuzz/corpus/$name"
        seeds=(tests/fuzz/seeds/"${name#fuzz-}")
        [ -d "${seeds[0]}" ] || seeds=()
        echo "-- $name ${fuzz[*]}"
        "$target" "${fuzz[@]}" -timeout=25 -rss_limit_mb=2048 -print_final_stats=0 \
            -artifact_prefix="build/fuzz/$name-" "build/fuzz/corpus/$name" "${seeds[@]}" >"$scratch/$name.log" 2>&1 ||
            { cat "$scratch/$name.log"; return 1; }
        tail -n 1 "$scratch/$name.log"
    done
}

scripts/install-tools.sh
scripts/build.sh asan
scripts/build.sh win32
scripts/build.sh fuzz fuzz-targets
scripts/build.sh native demo-pack demo-check quillbox-inspect

echo "== The program and its package"
tests/imports/check.sh build/win32/quillbox.exe
tests/package/check.sh

echo "== Unit tests under the sanitizers"
ctest --test-dir build/asan --output-on-failure

echo "== Fuzzing"
fuzz_all

echo "== Unit and windows tests under Wine"
run scripts/wine-run.sh -t 900 -- tests/windows/run.sh

echo "== The demo, from end to end"
run tests/demo/run.sh

echo "== All tests passed"
