#!/usr/bin/env bash
# The demo from end to end: the sample mailbox twice, a mailbox with hostile names, and exports gone wrong,
# which the demo must notice.
set -euo pipefail
demo=$(realpath "$(dirname "$0")/../../demo.sh")
scratch=$(realpath "$(mktemp -d "${TMPDIR:-/tmp}/quillbox-e2e.XXXXXX")")
pid=""
# shellcheck disable=SC2317 # called by the trap
finish() {
    local status=$?
    if [ -n "$pid" ]; then kill -TERM "$pid" 2>/dev/null; wait "$pid"; fi
    chmod -R u+w "$scratch" && rm -rf "$scratch"
    exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
cd "$scratch"

# expect CODE ARGUMENTS...: the demo's exit code; what it printed stands in the file "said".
expect() {
    local want=$1 got=0
    shift
    "$demo" "$@" >said 2>&1 &
    pid=$!
    wait "$pid" || got=$?
    pid=""
    [ "$got" -eq "$want" ] || fail "exit code $got, not $want, of demo.sh $*"
}
fail() { cat said; echo "FAILED: $*"; exit 1; }
said() { grep -qE "$1" said || fail "not said: $1"; }
contents() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }

echo "-- the sample mailbox, and once more"
expect 0 --out "out dir"
said '^13 of 13 messages exported, 13 rows in saved.mdb$'
said '13 passed, 0 failed, 0 skipped'
for file in program/quillbox.exe program/settings.ini program/log.txt program/saved.mdb quillbox.png; do
    [ -s "out dir/$file" ] || fail "no $file"
done
contents "out dir/store" >before
expect 0 --out "out dir"
said ' 0 passed, 0 failed, 13 skipped'
said '^13 of 13 messages exported, 13 rows in saved.mdb$'
contents "out dir/store" | cmp - before || fail "the second run changed the store"

echo "-- a stored e-mail that is not the message's, and one that is gone"
stored=("out dir/store/Local Folders/Inbox/"*)
printf x >>"${stored[1]}"
rm "${stored[2]}"
expect 1 --out "out dir"
said '^11 of 13 messages exported'

echo "-- names that Windows cannot hold, in a read-only mailbox"
hostile=$'Con/a:b?* "c" <d>|e\\f. ./It\'s\n%PATH% $(x) `y`/gr\xfc\xdfe'
mkdir -p "mail box/$hostile" "mail box/empty"
for i in 1 2 3; do
    printf 'From: "O%sBrien" <o%s@example.org>\r\nSubject: =?utf-8?Q?=C5=81=22%s=22?= ..\\..\\x%%d\r\n\r\nbody %s\r\n' \
        "'" "$i" "$i" "$i" >"mail box/$hostile/-$i: \"?*.EML"
done
printf 'Subject: in the middle\r\n\r\n' >"mail box/Con/"$'\x01\xff.eml'
chmod -R a-w "mail box"
expect 0 --mail "mail box" --out hostile --folder "$hostile"
said '^3 of 3 messages exported, 3 rows in saved.mdb$'
expect 0 --mail "mail box/../mail box" --out hostile
said 'has no Inbox; taking "Local Folders/Con"'
said '^1 of 1 messages exported, 4 rows in saved.mdb$'

echo "-- an empty folder, and none"
expect 0 --mail "mail box" --out hostile --folder empty
said 'No emails to export\.'
expect 2 --mail "mail box" --out hostile --folder nowhere
said 'no folder "nowhere"'
