#!/usr/bin/env bash
# Makes build/quillbox-X.Y.Z.zip: the program, its tool, the guide with pictures, the licence. The same commit gives the
# same bytes, on any machine with the same compiler and in any folder. Installs and builds what is missing.
#
# usage: package.sh [--verify | --kit]
#   --verify   builds it once more from a fresh clone elsewhere, and compares
#   --kit      makes build/quillbox-kit-X.Y.Z.zip instead: the tests and the demonstration, for whoever has a system
#              that is not here; they run by themselves and write a report
set -euo pipefail

root=$(cd "$(dirname "$0")" && pwd -P)
die() { echo "package: $*" >&2; exit 1; }
case ${1:-} in
    "" | --verify | --kit) (($# < 2)) || die "too many arguments" ;;
    *) sed -n '5,/^set/s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
esac
cd "$root"
[ "${1:-}" != --kit ] || exec scripts/kit.sh
changes=$(git status --porcelain) || die "this is no git checkout"
[ -z "$changes" ] ||
    die "the checkout has changes that no commit holds; commit them, or nobody can make this package again"

scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-package.XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT

scripts/install-tools.sh
scripts/build.sh win32 quillbox quillbox-inspect
for program in quillbox quillbox-inspect; do tests/imports/check.sh "build/win32/$program.exe"; done

version=$(sed -n 's/^project(Quillbox VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
folder=$scratch/quillbox-$version
mkdir "$folder"
cp build/win32/quillbox.exe build/win32/quillbox-inspect.exe "$folder/"
mkdir "$folder/pictures"
cp docs/pictures/*.png "$folder/pictures/"
sed 's/$/\r/' LICENSE >"$folder/licence.txt"

# Whoever unpacks this has a browser, if an old one, and nothing for Markdown.
{
    cat <<'HTML'
<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>Quillbox: a guide</title>
<style>
body { max-width: 46em; margin: 2em auto; padding: 0 1em; font: 16px/1.5 Tahoma, Verdana, sans-serif; color: #222 }
h1, h2 { color: #1f4e79 } img { max-width: 100%; border: 1px solid #ccc }
table { border-collapse: collapse } td, th { border: 1px solid #ccc; padding: .3em .6em; text-align: left; vertical-align: top }
</style></head><body>
HTML
    cmark-gfm --extension table --to html docs/guide.md
    echo '</body></html>'
} >"$folder/guide.html"

# What differs between two builds of one commit is left out: times are the commit's, in Universal Time; order
# is that of the names; modes are plain; owners are not stored.
export TZ=UTC LC_ALL=C
find "$folder" -type d -exec chmod 755 {} + -o -exec chmod 644 {} +
find "$folder" -exec touch -h -d "@$(git log -1 --format=%ct)" {} +
package=$root/build/quillbox-$version.zip
rm -f -- "$package"
(cd "$scratch" && find "quillbox-$version" -type f | sort | zip -q -X -9 -@ "$package")
echo "$(sha256sum <"$package" | cut -c1-16)  ${package#"$root/"}, $(stat -c %s "$package") bytes"

if [ "${1:-}" = --verify ]; then
    git clone -q . "$scratch/clone"
    "$scratch/clone/package.sh"
    cmp "$package" "$scratch/clone/build/quillbox-$version.zip" || die "a second build differs"
    echo "package: a second build, in another folder, gave the same bytes"
fi
