# shellcheck shell=bash disable=SC2034 # what it sets is used where it is sourced
# Jobs beside a script, and an end to all of them: to be sourced as `. scripts/jobs.sh NAME`. Makes $scratch, a
# directory in the place for temporary files. When the script ends, or INT, TERM or HUP arrives, the jobs are
# ended with all that they started in their process group, and the directory goes.

declare -A jobs=() # those that run: process and group number => file of the output
scratch=""
# shellcheck disable=SC2317 # called by the trap
finish() {
    local status=$? group tries
    trap '' INT TERM HUP
    set +e # a job may have ended by itself
    for group in "${!jobs[@]}"; do kill -TERM -- "-$group" 2>/dev/null; done
    wait
    # What ends later than the script that started it may still need its files.
    for group in "${!jobs[@]}"; do
        for ((tries = 0; tries < 300; tries++)); do
            kill -0 -- "-$group" 2>/dev/null || break
            sleep 0.1
        done
    done
    [ -z "$scratch" ] || { chmod -R u+w "$scratch" && rm -rf "$scratch"; }
    exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
scratch=$(realpath "$(mktemp -d "${TMPDIR:-/tmp}/quillbox-$1.XXXXXX")")

# start OUTPUT COMMAND...: what it prints goes into the file OUTPUT.
start() {
    local output=$1
    shift
    set -m # a process group for each
    "$@" >"$output" 2>&1 </dev/null &
    set +m
    jobs[$!]=$output
}

# Waits for the next job to end: its exit code is in $code, what it printed in the file $output.
await() {
    local job=""
    code=0
    wait -n -p job "${!jobs[@]}" || code=$?
    output=${jobs[$job]}
    unset "jobs[$job]"
}

# attend OUTPUT COMMAND...: waits for this job alone.
attend() {
    start "$@"
    local job=$!
    code=0 output=$1
    wait "$job" || code=$?
    unset "jobs[$job]"
}
