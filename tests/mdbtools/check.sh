#!/usr/bin/env bash
# Readers that share no code with the embedded engine find in its file the rows that were put there.
# usage: check.sh QUILLBOX_INSPECT        77 (skipped) without mdbtools
set -euo pipefail
inspect=$1
command -v mdb-export >/dev/null || { echo "mdbtools is not installed"; exit 77; }

scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-mdbtools.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
file=$scratch/saved.mdb
wanted=$scratch/wanted
"$inspect" db "$file" create
[ "$(mdb-ver "$file")" = JET4 ]
[ "$(mdb-tables -1 "$file")" = saved ]
[ -z "$(mdb-export -H "$file" saved)" ]

add() {
    "$inspect" db "$file" add "$1" "$2" "$3"
    printf '%s|%s|%s\n' "$1" "$2" "$3" >>"$wanted"
}
long() { printf "%0$1d" 0; } # so many digits
add 'Inbox' 'Hello' CBF43926
add "Local Folders\\O'Brien" 'a "quoted" subject, with commas' 0
add 'Входящие' 'Ответ: встреча в среду' 1A2B
add '受信トレイ' 'Žluťoučký kůň' FFFFFFFF
add "$(long 255)" "$(long 64)" 4
add 'Long' "$(long 1000)" 5
add 'Long' "$(long 1024)" 6
add 'Long' "$(long 1025)" 7
add 'Long' "$(long 9000)" 8
add 'No subject' '' 9
for number in $(seq 40); do add "Folder $number" "$(long 200)" "A$number"; done

mdb-export -H -Q -d '|' -R '\n' "$file" saved >"$scratch/found"
diff <(sort "$wanted") <(sort "$scratch/found")
[ "$("$inspect" db "$file" list | wc -l)" -eq "$(wc -l <"$wanted")" ]
[ "$("$inspect" db "$file" has a40 'folder 40')" = true ]
[ "$("$inspect" db "$file" has A40 'Folder 4')" = false ]
