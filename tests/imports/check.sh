#!/usr/bin/env bash
# The program must start on Windows XP SP3, stay small and take the system's protections. Compares what it
# imports with xp.txt beside this file, a list of functions that exist there; an import that the list lacks is
# looked up and added, or avoided.
# usage: check.sh PROGRAM
set -euo pipefail
export LC_ALL=C # one order for sort and comm
program=$1
here=$(dirname "$0")
limit=$((2 * 1024 * 1024))
bad=0

# "kernel32.dll CloseHandle", one import a line; one without a name shows its number.
imports() {
    i686-w64-mingw32-objdump -p "$1" | awk '
        /DLL Name:/ { dll = tolower($3); inside = 1; next }
        inside && NF == 0 { inside = 0 }
        inside && $1 ~ /^[0-9a-f]+$/ && $2 ~ /^[0-9]+$/ { print dll, (NF > 2 ? $3 : "#" $2) }' | sort -u
}

found=$(imports "$program")
if [ "$(wc -l <<<"$found")" -lt 20 ]; then
    echo "$program: its imports cannot be read" >&2
    exit 1
fi
unknown=$(comm -23 <(echo "$found") <(sed '/^#/d; /^$/d' "$here/xp.txt" | sort -u))
if [ -n "$unknown" ]; then
    printf '%s imports what is not in %s:\n%s\n' "$program" "$here/xp.txt" "$unknown" >&2
    bad=1
fi
size=$(stat -c %s "$program")
if ((size >= limit)); then
    echo "$program has $size bytes, $limit is too many" >&2
    bad=1
fi
# The header says which Windows the loader may start it on: 5.1 is XP.
subsystem=$(i686-w64-mingw32-objdump -p "$program" |
    awk '/^MajorSubsystemVersion/ { major = $2 } /^MinorSubsystemVersion/ { print major "." $2 }')
if [ "$subsystem" != 5.1 ]; then
    echo "$program asks for Windows $subsystem, not 5.1" >&2
    bad=1
fi
# Its place in memory can differ from start to start (which takes its relocations), and data is never run.
marks=$(i686-w64-mingw32-objdump -p "$program" | grep -E 'DYNAMIC_BASE|NX_COMPAT|Base Relocation Directory \[.reloc\]')
if [ "$(wc -l <<<"$marks")" != 3 ]; then
    echo "$program lacks a mark for the system's protections; it has: $marks" >&2
    bad=1
fi
((bad)) || echo "$program: $(wc -l <<<"$found") imports, all in Windows XP SP3; $size bytes"
exit "$bad"
