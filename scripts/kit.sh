#!/usr/bin/env bash
# Makes build/quillbox-kit-X.Y.Z.zip: what tries Quillbox on a system that is not here, such as Windows XP with DAO.
# Whoever has one unpacks it, starts check.cmd and sends report.txt back.
set -euo pipefail
cd "$(dirname "$0")/.."
scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-kit.XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT

programs=(quillbox windows-tests unit-tests demo-client demo-driver demo-check quillbox-inspect)
scripts/install-tools.sh
scripts/build.sh win32 "${programs[@]}"
scripts/build.sh native demo-pack quillbox-inspect

version=$(sed -n 's/^project(Quillbox VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
folder=$scratch/quillbox-kit-$version
mkdir -p "$folder/programs" "$folder/databases"
for program in "${programs[@]}"; do cp "build/win32/$program.exe" "$folder/programs/"; done
cp demo/client/main/demo-client.manifest "$folder/programs/windows-tests.exe.manifest" # Windows XP has what they import only there
build/native/demo-pack demo/mail "$folder/mail.pack"
echo "Quillbox $version, $(git describe --always --dirty)" >"$folder/version.txt"
sed 's/$/\r/' tests/package/check.cmd >"$folder/check.cmd"
sed 's/$/\r/' tests/package/kit.js >"$folder/programs/kit.js"
sed 's/$/\r/' tests/package/kit.txt >"$folder/read-me.txt"

rows() { # COUNT CHARACTERS: of the subject
    awk -v count="$1" -v most="$2" 'BEGIN {
        while (length(filler) < most) filler = filler "another word "
        for (i = 0; i < count; i++)
            printf "Local Folders\\Folder %d\t%s\t%08X\n", i % 60, substr("Letter " i " " filler, 1, most), i * 7919
    }'
}
database() { # NAME: its rows come on standard input
    build/native/quillbox-inspect db "$folder/databases/$1.mdb" create
    build/native/quillbox-inspect db "$folder/databases/$1.mdb" load
}
database rows-0 </dev/null
rows 1 20 | database rows-1
rows 1000 40 | database rows-1000
rows 100000 40 | database rows-100000
rows 800 1500 | database 3-MB    # the table's map of its pages grows beyond the page that it shares
rows 5800 12000 | database 140-MB # and the map of free pages beyond its first page
{ rows 1000 40; rows 600 40; } | database deletions
build/native/quillbox-inspect db "$folder/databases/deletions.mdb" condense >/dev/null

kit=$PWD/build/quillbox-kit-$version.zip
rm -f -- "$kit"
(cd "$scratch" && zip -q -X -r -9 "$kit" "quillbox-kit-$version")
echo "${kit#"$PWD/"}, $(stat -c %s "$kit") bytes, $(du -sm "$folder" | cut -f1) MB unpacked"
