#!/usr/bin/env bash
# Shows Quillbox at work: a stand-in mail client shows the messages of a directory, Quillbox exports one of its
# folders, and the result is compared with the directory, byte for byte. Installs and builds what is missing.
#
# usage: demo.sh [--mail DIR] [--out DIR] [--folder NAME] [--show]
#   --mail DIR     the directories below DIR are the mail folders, .eml and mbox files their messages
#                  (default: demo/mail)
#   --out DIR      gets program/ (quillbox.exe, settings.ini, log.txt, saved.mdb), store/ (the exported
#                  e-mails) and quillbox.png; what is there from an earlier run is kept (default: build/demo)
#   --folder NAME  the folder's path below DIR, such as Projects/Alpha (default: Inbox)
#   --show         on the real display, not on a virtual one
#
# Exits with 0 only if every message of the folder is in the store or was reported as skipped.
set -euo pipefail

root=$(cd "$(dirname "$0")" && pwd -P)
usage() { sed -n '5,/^#$/s/^# \{0,1\}//p' "$root/demo.sh"; }
die() { echo "demo: $*" >&2; exit 2; }

mail=$root/demo/mail out=$root/build/demo folder="" display=(-s 1680x900)
while (($#)); do
    case $1 in
        --mail | --out | --folder) [ -n "${2:-}" ] || die "$1 needs a value" ;;&
        --mail) mail=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        --folder) folder=${2#./}; shift 2 ;;
        --show) [ -n "${DISPLAY:-}" ] || die "--show, but DISPLAY is not set"; display=(-d); shift ;;
        -h | --help) usage; exit 0 ;;
        *) usage >&2; exit 2 ;;
    esac
done
[ -d "$mail" ] || die "$mail: no such directory"
mail=$(realpath -- "$mail")
mkdir -p -- "$out" || die "$out: cannot be made"
out=$(realpath -- "$out")
# Quillbox gets the store folder as a Windows path in the ANSI code page.
if [[ $out == *[\\:*?\"\<\>\|]* ]] ||
    ! store_path=$(iconv -f UTF-8 -t WINDOWS-1252 <<<"Z:${out//\//\\}\\store" 2>/dev/null); then
    die "$out: not a path that a Windows program with code page 1252 can be told"
fi

exec 8<"$out"
flock -n 8 || die "$out: in use by another demo"

"$root/scripts/install-tools.sh" 8<&-
"$root/scripts/build.sh" native demo-pack demo-check quillbox-inspect 8<&-
"$root/scripts/build.sh" win32 quillbox demo-client demo-driver 8<&-

scratch=""
pid=""
# shellcheck disable=SC2317 # called by the trap
finish() {
    local status=$?
    trap '' INT TERM HUP
    if [ -n "$pid" ]; then kill -TERM "$pid" 2>/dev/null; wait "$pid"; fi
    [ -z "$scratch" ] || rm -rf -- "$scratch"
    exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-demo.XXXXXX")

tools=$root/build/native
# Windows cannot name every file that a mail directory may hold: the client gets it as one file.
packed=$("$tools/demo-pack" "$mail" "$scratch/mail.pack") || exit 1
if [ -z "$folder" ]; then
    folder=$("$tools/demo-pack" --default "$mail")
    [[ ${folder,,} == inbox ]] || echo "demo: $mail has no Inbox; taking \"$folder\", the first folder with messages"
elif ! iconv -f UTF-8 -t UTF-16 <<<"$folder" >/dev/null 2>&1; then
    folder=$(iconv -f WINDOWS-1252 -t UTF-8 <<<"$folder") || die "$folder: neither UTF-8 nor Windows-1252"
fi
"$tools/demo-check" --mail "$scratch/mail.pack" --folder "$folder" --store /nonexistent >/dev/null 2>"$scratch/error" ||
    [ ! -s "$scratch/error" ] || die "$mail has no folder \"$folder\""

mkdir -p -- "$out/program" "$out/store"
cp -- "$root/build/win32/quillbox.exe" "$out/program/"
[ -e "$out/program/settings.ini" ] ||
    printf '[Paths]\r\nStore=%s\r\n' "$store_path" >"$out/program/settings.ini"

echo "== Exporting \"$folder\" of $mail ($packed) to $out/store"
# Long enough for any mailbox; the driver itself gives up on a run that stands still.
limit=$((900 + 5 * ${packed%% *}))
"$root/scripts/wine-run.sh" -t "$limit" "${display[@]}" -- \
    "$root/demo/driver/run.sh" "$root/build/win32" "$out" "$scratch" "$folder" 8<&- &
pid=$!
status=0
wait "$pid" || status=$?
pid=""

rows=$({ "$tools/quillbox-inspect" db "$out/program/saved.mdb" list || status=1; } | wc -l)
"$tools/demo-check" --mail "$scratch/mail.pack" --store "$out/store" --folder "$folder" \
    --log "$out/program/log.txt" --rows "$rows" || status=1
exit "$status"
