#!/usr/bin/env bash
# Takes the pictures of the documentation anew, from the running program: splash, start, idle, busy, store, tree,
# results and summary, at 96 dpi (DIR/NAME.png) and at 192 (DIR/192/NAME.png).
# usage: screenshots.sh [DIR]    default: docs/pictures
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd -P)
pictures=$(realpath -m -- "${1:-$root/docs/pictures}")

"$root/scripts/install-tools.sh"
"$root/scripts/build.sh" native demo-pack
"$root/scripts/build.sh" win32 quillbox demo-client demo-driver

scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-pictures.XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT

# Part of the mail is saved, so that a check shows every colour and has something for the table.
steps=(stop-email=12 export-all check-all show)
take() { # DPI SCREEN DIR
    local out=$scratch/$1
    mkdir -p "$out/program" "$3"
    cp "$root/build/win32/quillbox.exe" "$out/program/"
    printf '[Paths]\r\nStore=C:\\E-mails\r\n' >"$out/program/settings.ini"
    "$root/build/native/demo-pack" "$root/demo/mail" "$out/mail.pack" >/dev/null
    # shellcheck disable=SC2016 # the prefix is known inside only
    TZ=UTC "$root/scripts/wine-run.sh" -r "$1" -s "$2" -- \
        bash -c 'mkdir -p "$WINEPREFIX/drive_c/E-mails" && exec "$@"' - \
        "$root/demo/driver/run.sh" "$root/build/win32" "$out" "$out" Inbox "${steps[@]}" >"$out/log" 2>&1 ||
        { cat "$out/log"; return 1; }
    cp "$out/pictures/"*.png "$3/"
    echo "$(find "$3" -maxdepth 1 -name '*.png' | wc -l) pictures at $1 dpi in $3"
}
take 96 2400x900 "$pictures"
take 192 4800x1800 "$pictures/192"
