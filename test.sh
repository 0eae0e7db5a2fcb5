#!/usr/bin/env bash
# Builds and runs every test: the rules of the house, the portable core under the sanitizers, short fuzzing, the
# Windows program and its parts under Wine, and the demo from end to end. Installs what is missing. What waits
# runs side by side; the output of each part comes in one piece when it has ended.
# usage: test.sh [--quick | --soak [SEED] | --fuzz MINUTES]
#   --quick          the rules and the portable core only, without the sanitizers
#   --soak           only what takes hours: the program and the client killed at random moments, faults by twos and
#                    threes, one long run; prints figures. SEED draws the moments (default: another one each time)
#   --fuzz MINUTES   each fuzz target that long instead of a short, fixed number of inputs
set -euo pipefail
cd "$(dirname "$0")"

usage() { sed -n '5,/^set/{/^set/d; s/^# //p}' "$0" >&2; exit 2; }
quick="" soak="" fuzz=(-runs=20000 -max_total_time=20 -seed=1) # whichever comes first
case "$*" in
    "") ;;
    --quick) quick=yes ;;
    --soak) soak=$RANDOM ;;
    "--soak "[1-9]*)
        [[ $# -eq 2 && $2 =~ ^[0-9]+$ ]] || usage
        soak=$2
        ;;
    "--fuzz "[1-9]*)
        [[ $# -eq 2 && $2 =~ ^[0-9]+$ ]] || usage
        fuzz=("-max_total_time=$((60 * $2))")
        ;;
    *) usage ;;
esac
# shellcheck source=scripts/jobs.sh
. scripts/jobs.sh test

most=4 # parts at once; they wait more than they work
declare -A began=()
show() { # what a part has printed; the first that fails ends all
    local name=${output##*/}
    echo "== $name ($((SECONDS - began[$name])) s)"
    cat "$output"
    ((code == 0)) || { echo "== FAILED with $code: $name" >&2; exit 1; }
}
down_to() { # until no more than so many parts are left
    while ((${#jobs[@]} > $1)); do
        await
        show
    done
}
part() { # NAME COMMAND...: beside others
    down_to $((most - 1))
    began[$1]=$SECONDS
    start "$scratch/$1" "${@:2}"
}
now() { # NAME COMMAND...: before all that follows
    began[$1]=$SECONDS
    attend "$scratch/$1" "${@:2}"
    show
}

build_program() {
    scripts/build.sh win32 quillbox quillbox-inspect demo-client demo-driver demo-clicker
    scripts/build.sh asan demo-pack demo-check quillbox-inspect
}
program() {
    tests/imports/check.sh build/win32/quillbox.exe
    tests/package/check.sh
}
core() { # PRESET
    scripts/build.sh "$1" unit-tests quillbox-inspect
    ctest --test-dir "build/$1" -j 2 --output-on-failure
}
# A fuzz target starts from its seeds and from what it found before, which build/ keeps, and leaves there
# what broke it.
fuzzing() {
    local target name folder seeds
    scripts/build.sh asan fuzz-targets
    for target in build/asan/fuzz-*; do
        name=${target##*/fuzz-}
        folder=build/fuzz/$name seeds=("tests/fuzz/seeds/$name")
        [ -d "${seeds[0]}" ] || seeds=()
        mkdir -p "$folder/corpus"
        echo "-- fuzz-$name ${fuzz[*]}"
        "$target" "${fuzz[@]}" -timeout=25 -rss_limit_mb=2048 -print_final_stats=0 -artifact_prefix="$folder/" \
            "$folder/corpus" "${seeds[@]}" >"$folder/last.log" 2>&1 || { cat "$folder/last.log"; return 1; }
        tail -n 1 "$folder/last.log"
    done
}
core_and_fuzzing() {
    renice -n 10 "$BASHPID" >/dev/null # what runs beside it minds the clock
    core asan
    fuzzing
}
wine_tests() { # PROGRAM PART PARTS
    export GTEST_SHARD_INDEX=$2 GTEST_TOTAL_SHARDS=$3
    scripts/wine-run.sh -t 900 -- wine "build/win32/$1.exe" --gtest_brief=1
}
browser() {
    timeout 300 /usr/bin/python3 tests/archive/browser.py build/asan/quillbox-inspect
}
layout() { # the window's, at other resolutions
    local dpi
    for dpi in 144 192; do
        # The screen of 1280x1024 has a task bar.
        scripts/wine-run.sh -r "$dpi" -s 1280x944 -t 120 -- wine build/win32/windows-tests.exe --gtest_brief=1 \
            --gtest_filter='WindowLayoutTest.*'
    done
}

soaking() {
    now "Building the programs" build_program
    scripts/build.sh win32 demo-meter
    scripts/build.sh asan unit-tests
    export QUILLBOX_TOOLS=$PWD/build/asan
    part "One long run" tests/demo/soak.sh long 20000 60 100000
    part "Quillbox killed while it exports" tests/demo/soak.sh kills "$soak" export=200
    part "The client killed" tests/demo/soak.sh kills "$soak" client=100
    part "Quillbox killed while it checks and condenses" tests/demo/soak.sh kills "$soak" check=100 condense=100
    part "The disk full, and gone" tests/demo/soak.sh disk
    part "The kit for other systems" tests/package/kit.sh
    part "Faults by twos and threes" env QUILLBOX_SOAK=1 build/asan/unit-tests --gtest_brief=1 --gtest_filter='*Fault*'
    down_to 0
}

scripts/install-tools.sh
if [ -n "$soak" ]; then
    soaking
    echo "== Nothing was lost (seed $soak)"
    exit
fi
if [ -n "$quick" ]; then
    part "Rules" tests/rules/check.sh
    part "Core" core native # the sanitizers take seven times as long
    down_to 0
    echo "== Rules and core passed"
    exit
fi

now "Rules" tests/rules/check.sh
now "Building the program and what shows it" build_program
now "The program and its package" program
export QUILLBOX_TOOLS=$PWD/build/asan # the demo finds all built, and takes its tools from there
part "The demo, disturbed" tests/demo/disturbed.sh 60
part "The demo" tests/demo/run.sh
now "Building the tests under Wine" scripts/build.sh win32 unit-tests windows-tests
part "The core under the sanitizers, fuzzing" core_and_fuzzing
part "Windows tests, first half" wine_tests windows-tests 0 2
part "Windows tests, second half" wine_tests windows-tests 1 2
part "The program and the client killed" tests/demo/soak.sh kills 1 export=4 client=4 check=3 condense=3
part "Unit tests under Wine" wine_tests unit-tests 0 1
part "The window at other resolutions" layout
part "The index page in a browser" browser
part "The demo in many runs" tests/demo/cycle.sh 120 20
down_to 0
echo "== All tests passed"
