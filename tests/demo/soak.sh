#!/usr/bin/env bash
# Runs kills.py, long.py or disk.py inside a Wine; each says what it is for.
# usage: soak.sh kills SEED KIND=ROUNDS...
#        soak.sh long MESSAGES FOLDERS ROWS
#        soak.sh disk
set -euo pipefail
root=$(realpath "$(dirname "$0")/../..")
# shellcheck source=scripts/jobs.sh
. "$root/scripts/jobs.sh" soak
if [ -z "${QUILLBOX_TOOLS:-}" ]; then
    "$root/scripts/build.sh" native demo-pack quillbox-inspect
    "$root/scripts/build.sh" win32 quillbox demo-client demo-driver demo-meter
fi
# In Universal Time: there the dates of the message list are those of the files.
attend "$scratch/said" env TZ=UTC PYTHONDONTWRITEBYTECODE=1 "$root/scripts/wine-run.sh" -t 14400 -- \
    python3 "$root/tests/demo/$1.py" "$root/build/win32" "${QUILLBOX_TOOLS:-$root/build/native}" "$scratch" "${@:2}"
cat "$scratch/said"
exit "$code"
