#!/usr/bin/env bash
# clang-tidy over src/, demo/ and tools/, with the checks of .clang-tidy: each file as it is compiled natively, and
# those that only Windows has as they are compiled for it. Takes minutes.
# usage: lint.sh [FILE...]
set -euo pipefail
cd "$(dirname "$0")/.."
for preset in asan win32; do # lists what is compiled, and how; clang cannot read the other compiler's headers
    cmake --preset "$preset" -B "build/lint/$preset" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
done

# clang finds mingw's C headers by itself, and its C++ headers nowhere.
windows=(--extra-arg=--target=i686-w64-windows-gnu --extra-arg=-Wno-unknown-warning-option)
while read -r directory; do
    windows+=("--extra-arg=-isystem$directory")
done < <(i686-w64-mingw32-g++-win32 -E -v -xc++ /dev/null 2>&1 | sed -n 's/^ \(.*\/c++\(\/.*\)\?\)$/\1/p')

native=() others=()
while IFS= read -r file; do
    if grep -qF "\"file\": \"$PWD/$file\"" build/lint/asan/compile_commands.json; then
        native+=("$file")
    elif grep -qF "\"file\": \"$PWD/$file\"" build/lint/win32/compile_commands.json; then
        others+=("$file")
    fi
done < <(if (($#)); then printf '%s\n' "$@"; else git ls-files 'src/*.cpp' 'demo/*.cpp' 'tools/*.cpp'; fi)

tidy() { # BUILD ARGUMENT... : the files come on standard input
    xargs -r -P "$(nproc)" -n 4 clang-tidy --quiet -p "build/lint/$1" "${@:2}" 2>&1 |
        sed -E '/^[0-9]+ (warning|error)s?.* generated/d; /^Suppressed/d; /^Use -header-filter/d'
}
found=$(
    printf '%s\n' "${native[@]}" | tidy asan || true
    printf '%s\n' "${others[@]}" | tidy win32 "${windows[@]}" || true
)
[ -z "$found" ] || { echo "$found"; exit 1; }
echo "lint: $((${#native[@]} + ${#others[@]})) files, nothing found"
