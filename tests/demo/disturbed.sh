#!/usr/bin/env bash
# Exports that are disturbed: someone clicks rows, mail arrives and goes, the list is sorted anew, keys get lost,
# dialogs come late or with boxes in front of them. Whatever a disturbed run leaves out, no file and no record of
# it may be another e-mail's; and an undisturbed run afterwards stores the rest.
# usage: disturbed.sh MESSAGES [SCENARIO...]
set -euo pipefail
messages=$1
shift
root=$(realpath "$(dirname "$0")/../..")
# shellcheck source=scripts/jobs.sh
. "$root/scripts/jobs.sh" disturbed
if [ -z "${QUILLBOX_TOOLS:-}" ]; then # once, and not in two scenarios at a time
    "$root/scripts/build.sh" native demo-pack demo-check quillbox-inspect
    "$root/scripts/build.sh" win32 quillbox demo-client demo-driver demo-clicker
    export QUILLBOX_TOOLS=$root/build/native
fi
cd "$scratch"

# No two subjects of a folder are the same: e-mails are known wherever their rows go.
make_folder() { # NAME MESSAGES
    local i
    mkdir -p "mail/$1"
    for ((i = 0; i < $2; i++)); do
        printf 'Received: from a by b; Tue, 3 Apr 2007 %02d:%02d:00 +0000\r\nFrom: "Writer %d" <w%d@example.org>\r\nTo: reader@example.com\r\nSubject: %s, letter %03d of many\r\nDate: Tue, 3 Apr 2007 %02d:%02d:00 +0000\r\n\r\nBody %d\r\n' \
            $((i / 60 % 24)) $((i % 60)) $((i % 7)) $((i % 7)) "$1" "$i" $((i / 60 % 24)) $((i % 60)) "$i" \
            >"mail/$1/$(printf %05d "$i").eml"
    done
}
make_folder Inbox "$messages"
make_folder Short 12

fail() { tail -n 60 said; echo "FAILED: $*"; exit 1; }
run() { # ARGUMENTS...: the exit code is in $code, what was printed in the file "said"
    code=0
    "$root/demo.sh" --mail "$scratch/mail" --out out "$@" >said 2>&1 || code=$?
    ! grep -q '^demo-driver: ' said || fail "the run did not come to its end: demo.sh $*"
}
said() { grep -qE -- "$1" said || fail "not said: $1"; }
not_said() { ! grep -E -- "$1" said || fail "what should not be said: $1"; }

told_of_all() { # MESSAGES: by the closing line, from the row on that the export began with
    local words handled more first
    words=$(grep -oE '[0-9]+ of [0-9]+ e-mail\(s\) handled in this run are saved.*' said | tail -n 1) || true
    handled=$(sed -nE 's/^[0-9]+ of ([0-9]+) .*/\1/p' <<<"$words")
    more=$(sed -nE 's/.* ([0-9]+) more were not looked at.*/\1/p' <<<"$words")
    first=$(sed -nE 's/.*-- Exporting ([0-9]+) to .*/\1/p' said | tail -n 1)
    [ $((${handled:-0} + ${more:-0} + ${first:-0})) -ge "$1" ] ||
        fail "the closing line does not tell of $1 e-mails: $words"
}

# scenario NAME FOLDER MESSAGES stay|move LEAST ARGUMENTS...: rows stay or move in the disturbed run, which stores
# at least so many.
scenario() {
    local name=$1 folder=$2 count=$3 least=$5 moving=() stored
    [ "$4" = stay ] || moving=(--moving)
    shift 5
    mkdir "$name"
    cd "$name"
    run --folder "$folder" "${moving[@]}" "$@"
    not_said '^PROBLEM: (log: |.* (holds|is no e-mail|has no record|has no file|more files have no record))'
    # Deleted e-mails aside, each row is told of: handled, or not looked at.
    [ "$name" = deletions ] || told_of_all "$count"
    stored=$(sed -n 's/^\([0-9]*\) of [0-9]* messages exported$/\1/p' said)
    [ "${stored:-0}" -ge "$least" ] || fail "only ${stored:-0} stored, not $least"
    case $name in # what shows that it was disturbed
        clicker) said '^clicker: [0-9]+ clicks' ;;
        keys) said ' e-mail\(s\) were not reached\.' ;;
        late-dialogs* | box-of-the-client) said 'No dialog found' ;;
        boxes) said 'Outlook Express says: ' ;;
    esac
    run --folder "$folder" "${moving[@]}"
    [ "$code" -eq 0 ] || fail "exit code $code of an undisturbed run behind \"$name\""
    said "^$count of $count messages exported\$"
    echo "$name: $stored of $count stored in the disturbed run, all after another one"
}
# Two at a time: they wait more than they work.
show_one() {
    await
    cat "$output"
    ((code == 0)) || exit 1
}
begin() { # as scenario
    [[ " ${only[*]} " == *" $1 "* || ${#only[@]} -eq 0 ]] || return 0
    ((${#jobs[@]} < 2)) || show_one
    start "$scratch/$1.log" scenario "$@"
}
inbox() { begin "$1" Inbox "$messages" "${@:2}"; }
short() { begin "$1" Short 12 "${@:2}"; }

only=("$@")
inbox clicker stay 1 --beside "$root/build/win32/demo-clicker.exe 7 50"
inbox arrivals move 1 --client "--hold-back=3 --at=LVM_GETITEMW:120:arrive --at=dialog:12:arrive --at=LVM_GETSELECTEDCOUNT:40:arrive"
inbox deletions move 1 --client "--at=LVM_GETITEMW:120:delete --at=command:12:delete --at=LVM_GETSELECTEDCOUNT:40:delete:0"
inbox re-sort move 15 --client "--at=dialog:15:resort"
inbox re-sort-before move 14 --client "--at=command:15:resort"
inbox keys stay $((messages - 2)) --client "--at=down:10:lose --at=down:20:double"
short late-dialogs stay 4 --client "--dialog-delays=2100,3800,100,500"
short late-dialogs-taken stay 4 --client "--dialog-delays=2100,3800,100,500 --take-at-command"
short system-dialog stay 12 --client "--system-dialog"
# Four e-mails fail, each by itself.
short boxes stay 8 --client "--at=save:3:box:bad-name --at=save:5:box:disk-full --at=save:7:box:replace --at=save:9:lose"
short box-of-the-client stay 3 --client "--at=saved:3:box:other"
short slow-acts stay 12 --client "--at=save:3:silent:3000 --at=save:5:pump:3000 --at=down:7:silent:3000 --at=down:9:pump:3000"
while ((${#jobs[@]})); do show_one; done
