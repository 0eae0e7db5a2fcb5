#!/usr/bin/env bash
# Draws the program's icon, an envelope and a quill, anew: src/app/Quillbox.ico at 16, 24, 32, 48, 96 and 256
# pixels. Needs ImageMagick.
set -euo pipefail
cd "$(dirname "$0")/.."
scratch=$(mktemp -d "${TMPDIR:-/tmp}/quillbox-icon.XXXXXX")
trap 'rm -rf -- "$scratch"' EXIT

# On a grid of 256, drawn four times as large so that every size is scaled down. Below 32 pixels lines are
# bolder and details left out.
draw() { # SIZE LINE DETAIL
    local picture=(
        -fill '#f7f4ea' -stroke '#00687e' -strokewidth "$2" -draw 'roundrectangle 16,64 240,228 18,18'
        -fill none -draw "path 'M 26,76 L 128,158 L 230,76'"
        -stroke '#7a3d08' -strokewidth "$2" -draw "path 'M 80,248 Q 92,214 116,182'"
        -fill '#e58a2e' -strokewidth "$3"
        -draw "path 'M 106,198 C 100,130 150,36 246,8 C 254,88 222,170 106,198 Z'"
    )
    (($1 < 32)) || picture+=(-fill none -stroke '#ffe9cf' -strokewidth 9 -draw "path 'M 112,188 Q 150,110 220,44'")
    convert -size 1024x1024 xc:none -affine 4,0,0,4,0,0 "${picture[@]}" -filter Box -resize "$1x$1" -depth 8 "PNG32:$scratch/$1.png"
}
draw 16 26 14
draw 24 22 12
draw 32 18 9
draw 48 16 8
draw 96 15 7
draw 256 14 7
convert "$scratch"/{16,24,32,48,96,256}.png src/app/Quillbox.ico
