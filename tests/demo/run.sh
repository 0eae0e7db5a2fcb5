#!/usr/bin/env bash
# The demo from end to end: the sample mailbox exported, checked and damaged, a mailbox with hostile names, and
# exports gone wrong, which the demo must notice.
set -euo pipefail
root=$(realpath "$(dirname "$0")/../..")
# shellcheck source=scripts/jobs.sh
. "$root/scripts/jobs.sh" e2e
cd "$scratch"

# expect CODE ARGUMENTS...: the demo's exit code; what it printed stands in the file "said".
expect() {
    local want=$1
    shift
    attend said "$root/demo.sh" "$@"
    [ "$code" -eq "$want" ] || fail "exit code $code, not $want, of demo.sh $*"
}
fail() { cat said; echo "FAILED: $*"; exit 1; }
said() { grep -qE -- "$1" said || fail "not said: $1"; }
contents() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }
# The folders as the tree shows them, "Inbox 11/11 green", in one line.
folders() { sed -n 's/^> folder \(.*\) - \([0-9/]*\): \(.*\)/\1 \2 \3/p' said | paste -sd, -; }
shows() { [ "$(folders)" = "$1" ] || fail "the tree shows $(folders), not $1"; }

echo "-- all folders of the sample mailbox, and once more"
green="Archive 1/1 green,2007 7/7 green,Inbox 11/11 green,Alpha 4/4 green,O'Brien notes 3/3 green,Sent Items 5/5 green"
expect 0 --out "out dir"
shows "$green"
said '^30 of 31 messages exported$'
said '^note: .* row 2 .* was skipped: a stored one looks the same in the list$'
said '^log: 30 passed, 0 failed, 1 skipped; store: 30 files; saved.mdb: 30 rows: they agree$'
for file in program/quillbox.exe program/settings.ini program/log.txt program/saved.mdb quillbox.png tree.png \
    results.png summary.png; do
    [ -s "out dir/$file" ] || fail "no $file"
done
contents "out dir/store" >before
expect 0 --out "out dir"
said '30 rows: they agree$'
contents "out dir/store" | cmp - before || fail "the second run changed the store"

echo "-- each comparison type, before and after three files and two records have gone"
expect 0 --out "out dir" --check file
shows "$green"
inspect=${QUILLBOX_TOOLS:-$root/build/native}/quillbox-inspect
database="out dir/program/saved.mdb"
rm "out dir/store/Local Folders/Inbox/"000[01]_* "out dir/store/Local Folders/Sent Items/"0000_*
for row in "Inbox	Minutes of the guild" "Projects\\\\Alpha	Alpha: text with"; do
    line=$("$inspect" db "$database" list | grep -F "Local Folders\\\\${row%	*}\"" | grep -F "${row#*	}")
    crc=${line##*: \"} crc=${crc%\"\}}
    folder=$(sed 's/.*"efolder": "\([^"]*\)".*/\1/; s/\\\\/\\/g' <<<"$line")
    [ "$("$inspect" db "$database" forget "$folder" "$crc")" = 1 ] || fail "no record of $row to delete"
done
gone="Archive 1/1 green,2007 7/7 green,Inbox 9/11 yellow,Alpha 4/4 green,O'Brien notes 3/3 green,Sent Items 4/5 yellow"
expect 0 --out "out dir" --check simple
shows "${gone/2007 7\/7 green/2007 6/7 yellow}" # two that look alike have one file
said '^4 email\(s\) to be saved\.'
expect 0 --out "out dir" --check database
shows "Archive 1/1 green,2007 7/7 green,Inbox 10/11 yellow,Alpha 3/4 yellow,O'Brien notes 3/3 green,Sent Items 5/5 green"
said '^> rows in the results table: 2$'
expect 0 --out "out dir" --check file
shows "$gone"
said '^> rows in the results table: 3$'
[ "$("$inspect" db "$database" list | wc -l)" -eq 30 ] || fail "the check by files did not repair the records"

echo "-- one folder; a stored e-mail that is not the message's, and one that is gone"
expect 0 --out one --folder Projects/Alpha
said '^4 of 4 messages exported$'
stored=("one/store/Local Folders/Projects/Alpha/"*)
printf x >>"${stored[1]}"
rm "${stored[2]}"
expect 1 --out one --folder Projects/Alpha
said '^2 of 4 messages exported$'
expect 0 --out one --folder Projects/Alpha --check file
said '^> box "Quillbox": Alpha has 3 saved email\(s\)\. 1 email\(s\) not saved\.$'

echo "-- messages that the comparison by files cannot know"
expect 0 --mail "$root/tests/demo/mail" --out awkward
shows "Awkward 9/9 green"
said '9 rows: they agree$'
expect 0 --mail "$root/tests/demo/mail" --out awkward --check file
shows "Awkward 0/9 yellow"
said '^note: a comparison by files cannot know'

echo "-- names that Windows cannot hold, in a read-only mailbox"
hostile=$'Con/a:b?* "c" <d>|e\\f. ./It\'s\n%PATH% $(x) `y`/gr\xfc\xdfe'
mkdir -p "mail box/$hostile" "mail box/empty"
for i in 1 2 3; do
    printf 'From: "O%sBrien" <o%s@example.org>\r\nSubject: =?utf-8?Q?=C5=81=22%s=22?= ..\\..\\x%%d\r\n\r\nbody %s\r\n' \
        "'" "$i" "$i" "$i" >"mail box/$hostile/-$i: \"?*.EML"
done
printf 'Subject: in the middle\r\n\r\n' >"mail box/Con/"$'\x01\xff.eml'
printf 'Subject: at the top\r\n\r\n' >"mail box/top.eml"
chmod -R a-w "mail box"
expect 0 --mail "mail box" --out hostile --folder "$hostile"
said '^3 of 3 messages exported$'
expect 0 --mail "mail box/../mail box" --out hostile
said '^5 of 5 messages exported$'
said '5 rows: they agree$'
sed -i 's/^First folder to ignore=.*/First folder to ignore=local folders\\CON\r/' hostile/program/settings.ini
rm -r hostile/store hostile/program/saved.mdb hostile/program/log.txt
expect 0 --mail "mail box" --out hostile
said '^1 of 1 messages exported$'
said '^note: Local Folders/Con: 1 messages left out'

echo "-- names and subjects made to escape, to be taken for SQL, or to read backwards"
evil=('..\..\..\escaped' "x' OR '1'='1" "'); DELETE FROM saved; --" aux.eml 'a.txt:stream' $'\xe2\x80\xaelme.exe' ... 'C:\evil, too')
for name in "${evil[@]}"; do
    mkdir -p "evil/$name"
    printf 'From: a <a@b>\r\nSubject: %s\r\n\r\nbody\r\n' "$name" >"evil/$name/1.eml"
done
expect 0 --mail evil --out "evil out" # the check behind the export reads what was recorded
said "^${#evil[@]} of ${#evil[@]} messages exported\$"
said "${#evil[@]} rows: they agree\$"
[ "$(grep -c '^> folder .*: green' said)" -eq "${#evil[@]}" ] || fail "not every folder is green"
expect 0 --mail evil --out "evil out" --check database
[ "$(grep -c '^> folder .*: green' said)" -eq "${#evil[@]}" ] || fail "not every folder's records are found"
[ -z "$(find . -newer before ! -path '*/store/*' \( -iname '*escaped*' -o -iname '*evil, too*' \) ! -path './evil/*')" ] ||
    fail "a file lies outside the store folder"

echo "-- an empty folder, and none"
expect 0 --mail "mail box" --out hostile --folder empty
said 'No emails to export\.'
expect 2 --mail "mail box" --out hostile --folder nowhere
said 'no folder "nowhere"'
