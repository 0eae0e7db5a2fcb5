#!/usr/bin/env bash
# Inside a running Wine: lets the driver export a folder, and takes a picture of the window while it does.
# usage: run.sh PROGRAMS OUT SCRATCH FOLDER, as demo.sh calls it
set -euo pipefail
programs=$1 out=$2 scratch=$3 folder=$4
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

running=$scratch/running
: >"$scratch/driver.log"
wine "$programs/demo-driver.exe" --program "$(windows_path "$out/program/quillbox.exe")" \
    --running "$(windows_path "$running")" -- "$(windows_path "$programs/demo-client.exe")" \
    --mail "$(windows_path "$scratch/mail.pack")" --select "$folder" >"$scratch/driver.log" 2>&1 </dev/null &
driver=$!
tail -n +1 -f --pid="$driver" -s 0.2 "$scratch/driver.log" | tr -d '\r' &

while kill -0 "$driver" 2>/dev/null && [ ! -s "$running" ]; do sleep 0.05; done
if [ -s "$running" ]; then
    import -window root -crop "$(tr -d '\r' <"$running")" +repage "$out/quillbox.png" || true
    rm -f "$running"
fi
status=0
wait "$driver" || status=$?
wait # until all has been shown
exit "$status"
