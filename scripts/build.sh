#!/usr/bin/env bash
# Builds targets of a preset (see CMakePresets.json) in build/PRESET: quick when nothing has changed, quiet
# when nothing is wrong.
# usage: build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift

mkdir -p "build/$preset"
log=build/$preset/configure.log
# A checkout that was moved or copied brings a cache that names its old place; what a preset says is read only
# where there is no cache.
cache=build/$preset/CMakeCache.txt
if [ -f "$cache" ] && { [ CMakePresets.json -nt "$cache" ] || ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache"; }; then
    rm -rf "$cache" "build/$preset/CMakeFiles"
fi
if [ ! -f "build/$preset/build.ninja" ] || [ ! -f "$cache" ]; then
    echo "== Configuring $preset"
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
echo "== Building $preset: ${*:-all}"
cmake --build --preset "$preset" ${1:+--target "$@"} -- --quiet | sed '/^ninja: no work to do/d'
