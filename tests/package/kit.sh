#!/usr/bin/env bash
# The kit for other systems, run whole under Wine as its user would: every part passes, and the report tells nothing
# of this machine.
# usage: kit.sh
set -euo pipefail
root=$(realpath "$(dirname "$0")/../..")
# shellcheck source=scripts/jobs.sh
. "$root/scripts/jobs.sh" kit
"$root/package.sh" --kit
unzip -q "$root"/build/quillbox-kit-*.zip -d "$scratch"
cd "$scratch"/quillbox-kit-*/
attend "$scratch/said" env TZ=UTC "$root/scripts/wine-run.sh" -t 7200 -- wine cmd /c check.cmd /q
mkdir -p "$root/build/kit"
cp report.txt "$root/build/kit/"
grep -E '^(==|Windows|code page|[^ ]*\.mdb: )' report.txt
! grep -inE "quillbox-kit\.|$(hostname)" report.txt || { echo "FAILED: the report tells where it was made"; exit 1; }
exit "$code"
