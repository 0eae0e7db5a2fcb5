#!/usr/bin/env bash
# The package holds what it should, and making it again gives the same bytes.
# usage: check.sh, in a checkout without changes
set -euo pipefail
cd "$(dirname "$0")/../.."
if [ -n "$(git status --porcelain 2>&1)" ]; then
    echo "package: SKIPPED, the checkout has changes"
    exit 0
fi
scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-package-test.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
fail() { echo "package: FAILED: $*"; exit 1; }

./package.sh >"$scratch/said" || { cat "$scratch/said"; fail "it cannot be made"; }
package=$(sed -n 's/^[0-9a-f]*  \(build[^,]*\),.*/\1/p' "$scratch/said")
cp "$package" "$scratch/first.zip"
sleep 2 # a time in the archive would be another one
./package.sh >/dev/null
cmp "$package" "$scratch/first.zip" || fail "the second one differs"

unzip -q "$scratch/first.zip" -d "$scratch"
cd "$scratch"/quillbox-*/
for file in quillbox.exe quillbox-inspect.exe guide.html licence.txt pictures/idle.png; do
    [ -s "$file" ] || fail "no $file"
done
while read -r picture; do
    [ -s "$picture" ] || fail "the guide shows $picture, which is not there"
done < <(sed -n 's/.*<img src="\([^"]*\)".*/\1/p' guide.html)
echo "package: $(find . -type f | wc -l) files, the same bytes twice"
