#!/usr/bin/env bash
# The laws of this house that no compiler knows: what may include what, how source is laid out, how long a file
# may be, what belongs into the repository. Every other script of this folder is run as well. One line is
# printed for each violation, with its file.
# usage: check.sh
set -euo pipefail
cd "$(dirname "$0")/../.."
shopt -s lastpipe
die() { echo "rules: $*" >&2; exit 2; }
git rev-parse --git-dir >/dev/null 2>&1 || die "this is no git checkout"
# Each version of clang-format breaks lines in ways of its own.
clang-format --version | grep -q ' version 14\.' || die "clang-format 14 is wanted (scripts/install-tools.sh)"
shellcheck --version >/dev/null || die "shellcheck is wanted (scripts/install-tools.sh)"

longest=400 # lines of a file, which one reads in one go
bad=0
wrong() { # reads complaints
    local line
    while IFS= read -r line; do
        echo "$line"
        bad=1
    done
}
# Tracked files and those that soon will be; names of files that were deleted do not count.
list() { # PATTERN...
    git ls-files -z --cached --others --exclude-standard -- "$@" |
        while IFS= read -r -d '' file; do [ ! -f "$file" ] || printf '%s\0' "$file"; done
}
mapfile -d '' sources < <(list '*.cpp' '*.h')
mapfile -d '' scripts < <(list '*.sh' .ci/run)

printf '%s\0' "${sources[@]}" | xargs -0 -n 50 -P 2 clang-format --dry-run 2>&1 |
    sed -n 's/^\([^:]*:[0-9]*\):.*clang-format-violations.*/\1: clang-format lays it out differently/p' | sort -u -t: -k1,1 | wrong

shellcheck -f gcc -x "${scripts[@]}" | wrong || true

mapfile -d '' others < <(list '*.py' '*.js' '*.css')
wc -l "${sources[@]}" "${scripts[@]}" "${others[@]}" |
    awk -v most="$longest" '$2 != "total" && $1 > most { print $2 ":" $1 ": longer than " most " lines" }' | wrong

version=$(sed -n 's/^project(Quillbox VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
[ "$(sed -n 's/^## //p' CHANGELOG.md | head -n 1)" = "$version" ] || wrong <<<"CHANGELOG.md: does not begin with $version"
grep -q "version=\"$version.0\" .*name=\"Quillbox\"" src/app/Quillbox.manifest ||
    wrong <<<"src/app/Quillbox.manifest: is of another version than $version"

# What .gitignore names is made anew by whoever needs it. Of binaries only pictures and mail are source.
git ls-files --cached --ignored --exclude-per-directory=.gitignore | sed 's/$/: tracked, though .gitignore names it/' | wrong
git ls-files --eol | sed -n 's/^i\/-text [^\t]*\t//p' | grep -vE '\.(png|ico|eml)$|^tests/fuzz/seeds/' |
    sed 's/$/: a binary that is no picture, mail or seed/' | wrong || true

for rule in tests/rules/*.sh; do
    [ "${rule##*/}" = check.sh ] || "$rule" || bad=1
done
((bad)) || echo "rules: ${#sources[@]} sources and ${#scripts[@]} scripts keep them"
exit "$bad"
