#!/usr/bin/env bash
# Shows Quillbox at work: a stand-in mail client shows the messages of a directory, Quillbox exports all its
# folders and checks them, and the result is compared with the directory, byte for byte. Installs and builds
# what is missing.
#
# usage: demo.sh [--mail DIR] [--out DIR] [--folder NAME] [--check simple|database|file] [--show]
#   --mail DIR     the directories below DIR are the mail folders, .eml and mbox files their messages
#                  (default: demo/mail)
#   --out DIR      gets program/ (quillbox.exe, settings.ini, log.txt, saved.mdb), store/ (the exported
#                  e-mails) and pictures: quillbox.png (during the run), tree.png, results.png, summary.png;
#                  what is there from an earlier run is kept (default: build/demo)
#   --folder NAME  this folder alone: its path below DIR, such as Projects/Alpha
#   --check TYPE   checks by that comparison type what is saved, and exports nothing
#   --extras "KEY=VALUE;..."    for this run: extras, as docs/guide.md lists them
#   --captions "KEY=VALUE;..."  for this run: what the client calls its columns and windows
#   --zone NAME    all of it in another time zone, such as Europe/Berlin, in place of Universal Time
#   --show         on the real display, not on a virtual one
#   --steps LIST   for tests: what is done instead, as demo-driver's steps, parted by blanks
#   --client LIST  for tests: switches of demo-client, parted by blanks
#   --beside LINE  for tests: one more Windows program with its arguments, which runs on the same display from
#                  the press of the first button on and is ended with the run. Its path, of either system, is
#                  put in double quotes when it has blanks
#   --moving       for tests: rows move during the run, so that a stored e-mail is known by the subject in its
#                  name, not by its number; no two messages of a folder have the same subject
#
# Exits with 0 only if every message of the folders is in the store or was reported as skipped, every stored
# e-mail is byte for byte the message that its name and its record tell of, and log, store and saved.mdb tell of
# equally many; with --check, if the check came to its end.
set -euo pipefail

root=$(cd "$(dirname "$0")" && pwd -P)
usage() { sed -n '6,/^set/{/^set/d; s/^# \{0,1\}//p}' "$root/demo.sh"; }
die() { echo "demo: $*" >&2; exit 2; }
# A program and its arguments as Windows is told them.
command_line() {
    local program=${1%% *} arguments=""
    if [[ $1 == \"*\"* ]]; then
        program=${1#\"}
        arguments=${program#*\"}
        program=${program%%\"*}
    elif [[ $1 == *" "* ]]; then
        arguments=" ${1#* }"
    fi
    if [[ $program != [A-Za-z]:* && $program != \\\\* ]]; then
        program=Z:$(realpath -m -- "$program")
        program=${program//\//\\}
    fi
    printf '"%s"%s' "$program" "$arguments"
}

mail=$root/demo/mail out=$root/build/demo folder="" check="" steps=() client=() beside=() moving=() display=(-s 2400x900)
extras="" captions="" zone=UTC
while (($#)); do
    case $1 in
        --mail | --out | --folder | --check | --steps | --client | --beside | --extras | --captions | --zone) [ -n "${2:-}" ] || die "$1 needs a value" ;;&
        --mail) mail=$2; shift 2 ;;
        --out) out=$2; shift 2 ;;
        --folder) folder=${2#./}; shift 2 ;;
        --check) [[ $2 =~ ^(simple|database|file)$ ]] || die "--check simple, database or file"; check=$2; shift 2 ;;
        --steps) read -ra steps <<<"$2"; shift 2 ;;
        --client) read -ra client <<<"$2"; shift 2 ;;
        --beside) beside=(--beside "$(command_line "$2")"); shift 2 ;;
        --extras) extras=$2; shift 2 ;;
        --captions) captions=$2; shift 2 ;;
        --zone) zone=$2; shift 2 ;;
        --moving) moving=(--moving); shift ;;
        --show) [ -n "${DISPLAY:-}" ] || die "--show, but DISPLAY is not set"; display=(-d); shift ;;
        -h | --help) usage; exit 0 ;;
        *) usage >&2; exit 2 ;;
    esac
done
[ -f "/usr/share/zoneinfo/$zone" ] || die "$zone: no such time zone"
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

tools=${QUILLBOX_TOOLS:-} # for tests: all is built, these tools in this directory
if [ -z "$tools" ]; then
    tools=$root/build/native
    "$root/scripts/install-tools.sh" 8<&-
    "$root/scripts/build.sh" native demo-pack demo-check quillbox-inspect 8<&-
    "$root/scripts/build.sh" win32 quillbox demo-client demo-driver 8<&-
fi

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

# Windows cannot name every file that a mail directory may hold: the client gets it as one file.
packed=$("$tools/demo-pack" "$mail" "$scratch/mail.pack") || exit 1
shown=$folder # the folder that the client shows first
if [ -z "$folder" ]; then
    shown=$("$tools/demo-pack" --default "$mail")
elif ! iconv -f UTF-8 -t UTF-16 <<<"$folder" >/dev/null 2>&1; then
    folder=$(iconv -f WINDOWS-1252 -t UTF-8 <<<"$folder") || die "$folder: neither UTF-8 nor Windows-1252"
    shown=$folder
fi
"$tools/demo-check" --mail "$scratch/mail.pack" --folder "$shown" --store /nonexistent >/dev/null 2>"$scratch/error" ||
    [ ! -s "$scratch/error" ] || die "$mail has no folder \"$folder\""

what="all folders" which=(--all)
if [ -n "$folder" ]; then what="\"$folder\"" which=(--folder "$folder"); fi
if ((${#steps[@]})); then
    echo "== ${steps[*]}: $what of $mail ($packed), store $out/store"
elif [ -n "$check" ]; then
    echo "== Checking $what of $mail ($packed) against $out/store"
    if [ -n "$folder" ]; then steps=("compare=$check" check show); else steps=("compare=$check" check-all show); fi
else
    echo "== Exporting $what of $mail ($packed) to $out/store"
    if [ -n "$folder" ]; then steps=(export); else steps=(export-all check-all show); fi
fi
mkdir -p -- "$out/program" "$out/store"
cp -- "$root/build/win32/quillbox.exe" "$out/program/"
[ -e "$out/program/settings.ini" ] ||
    # Messages of DIR itself are those of "Local Folders", which a run over all folders usually passes over.
    printf '[Paths]\r\nStore=%s\r\n[Options]\r\nSystem Folders=|outlook express|\r\n' "$store_path" \
        >"$out/program/settings.ini"

# Of these sections the run gets what it was told, and nothing of the run before.
settings=$out/program/settings.ini
section() { # NAME "KEY=VALUE;..."
    [ -z "$2" ] || printf '[%s]\r\n%s\r\n' "$1" "${2//;/$'\r\n'}" | iconv -f UTF-8 -t WINDOWS-1252
}
{
    awk '/^\[/ { drop = /^\[(Extras|Captions)\]/ } !drop' "$settings"
    section Extras "$extras"
    section Captions "$captions"
} >"$scratch/settings.ini" || die "a caption is not within the code page 1252"
cp -- "$scratch/settings.ini" "$settings"

# Long enough for any mailbox; the driver itself gives up on a run that stands still.
limit=$((900 + 5 * ${packed%% *}))
# In Universal Time the dates of the message list are those of the files.
TZ=$zone "$root/scripts/wine-run.sh" -t "$limit" "${display[@]}" -- \
    "$root/demo/driver/run.sh" "${beside[@]}" "$root/build/win32" "$out" "$scratch" "$shown" "${steps[@]}" -- "${client[@]}" 8<&- &
pid=$!
status=0
wait "$pid" || status=$?
pid=""

for name in busy:quillbox tree:tree results:results summary:summary; do
    [ ! -s "$scratch/pictures/${name%:*}.png" ] || mv -- "$scratch/pictures/${name%:*}.png" "$out/${name#*:}.png"
done

if [ "$check" = file ] && grep -q '^> folder .*: \(yellow\|red\)' "$scratch/driver.log"; then
    echo "note: a comparison by files cannot know e-mails that have no date, a zone by name or of half hours, line"
    echo "      ends without a carriage return, or names and subjects beyond the code page 1252: it shows them"
    echo "      as not saved, whether they are or not"
fi
[ -z "$check" ] || exit "$status"
"$tools/quillbox-inspect" db "$out/program/saved.mdb" list >"$scratch/records" || status=1
"$tools/demo-check" --mail "$scratch/mail.pack" --store "$out/store" "${which[@]}" "${moving[@]}" \
    --log "$out/program/log.txt" --records "$scratch/records" || status=1
exit "$status"
