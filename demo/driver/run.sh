#!/usr/bin/env bash
# Inside a running Wine: lets the driver do its steps, and takes the pictures that it asks for.
# usage: run.sh [--beside COMMANDLINE] PROGRAMS OUT SCRATCH FOLDER STEP... [-- CLIENT_SWITCH...]
#   COMMANDLINE is Windows's, of one more program that runs meanwhile;
#   OUT has program/quillbox.exe; SCRATCH has mail.pack and gets pictures/NAME.png; FOLDER is shown first
set -euo pipefail
beside=()
if [ "$1" = --beside ]; then
    beside=(--beside "$2")
    shift 2
fi
programs=$1 out=$2 scratch=$3 folder=$4
shift 4
steps=()
while (($#)) && [ "$1" != -- ]; do
    steps+=(--do "$1")
    shift
done
shift $(($# > 0))
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

pictures=$scratch/pictures
mkdir -p "$pictures"
: >"$scratch/driver.log"
wine "$programs/demo-driver.exe" --program "$(windows_path "$out/program/quillbox.exe")" \
    --pictures "$(windows_path "$pictures")" "${beside[@]}" "${steps[@]}" -- "$(windows_path "$programs/demo-client.exe")" \
    --mail "$(windows_path "$scratch/mail.pack")" --select "$folder" "$@" >"$scratch/driver.log" 2>&1 </dev/null &
driver=$!
tail -n +1 -f --pid="$driver" -s 0.2 "$scratch/driver.log" | tr -d '\r' &

while kill -0 "$driver" 2>/dev/null; do
    for request in "$pictures"/*.place; do
        [ -s "$request" ] || continue
        import -window root -crop "$(tr -d '\r\n' <"$request")" +repage "${request%.place}.png" || true
        rm -f "$request"
    done
    sleep 0.05
done
status=0
wait "$driver" || status=$?
wait # until all has been shown
exit "$status"
