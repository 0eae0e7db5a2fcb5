#!/usr/bin/env bash
# A mailbox that takes many runs to export: the client ends in the middle, the user stops after an e-mail and
# after a folder, Quillbox is closed and started again. In the end every message is saved, and once only.
# usage: cycle.sh MESSAGES FOLDERS
set -euo pipefail
messages=$1 folders=$2
root=$(realpath "$(dirname "$0")/../..")
# shellcheck source=scripts/jobs.sh
. "$root/scripts/jobs.sh" cycle
cd "$scratch"

# Nested folders of nearly the same size; subjects that come again in other folders, encoded, empty and long.
make_mailbox() {
    local i folder subject
    for ((i = 0; i < messages; i++)); do
        folder=$((i % folders))
        local place="mail/Year $((2001 + folder % 3))/Folder $folder"
        ((folder % 4)) || place+="/Deeper"
        mkdir -p "$place"
        case $((i % 5)) in
            0) subject="Report $((i / folders))" ;;
            1) subject="=?iso-8859-1?Q?Gr=FC=DFe?= $i" ;;
            2) subject="Re: what O'Brien said ($i): \"?*/\\\\\" <...>" ;;
            3) subject="A long one, $(printf 'word %.0s' {1..40})$i" ;;
            4) subject="" ;;
        esac
        printf 'Received: from a by b; Tue, %d Apr 2007 %02d:%02d:00 +0000\r\nFrom: "Writer %d" <w%d@example.org>\r\nTo: reader@example.com\r\nSubject: %s\r\nDate: Tue, %d Apr 2007 %02d:%02d:00 +0000\r\n\r\nBody %d\r\n' \
            $((1 + i / 1440)) $((i / 60 % 24)) $((i % 60)) $((i % 7)) $((i % 7)) "$subject" \
            $((1 + i / 1440)) $((i / 60 % 24)) $((i % 60)) "$i" >"$place/$(printf %05d $i).eml"
    done
}

# run CODE NAME ARGUMENTS...: the demo's exit code; what it printed stands in NAME.log.
run() {
    local want=$1 log=$2.log
    shift 2
    attend "$log" "$root/demo.sh" --mail mail --out out "$@"
    [ "$code" -eq "$want" ] || { tail -n 40 "$log"; echo "FAILED: exit code $code, not $want, of demo.sh $*"; exit 1; }
}
said() { grep -qE -- "$2" "$1.log" || { tail -n 40 "$1.log"; echo "FAILED: not said: $2"; exit 1; }; }

make_mailbox
# Between two e-mails: one over which the client ends may be saved twice.
run 1 left --client "--at=down:$((messages / 6)):close" --steps "export-all"
said left 'OE has closed unexpectedly$'
run 0 cycle --steps "stop-email=$((messages / 8)) export-all stop-folder=$((messages / 5)) export-all restart \
    tick=Jump_to_remaining stop-email=$((messages / 5)) export-all restart export-all check-all compare=file check-all show"
said cycle 'User aborted on email export\.$'
said cycle 'User aborted folder export\.$'
said cycle "^$messages of $messages messages exported$"
said cycle "^log: $messages passed, .* store: $messages files; saved.mdb: $messages rows: they agree$"
[ "$(grep -c '^> folder .*: green$' cycle.log)" -eq "$folders" ] ||
    { grep '^> folder' cycle.log; echo "FAILED: not every folder is green"; exit 1; }
run 0 again
said again '^> box "Quillbox": All folders have been checked - 0 email\(s\) to be saved\.$'
said again "$messages rows: they agree$"
echo "$messages messages in $folders folders: $(grep -c '> pressed "Export' cycle.log) runs and one left by the client, each message saved once"
