#!/usr/bin/env bash
# Install what building and testing need on Debian 12: the packages below that are not there yet.
# Needs root, or sudo. Prints nothing when there is nothing to do.
# usage: install-tools.sh [bench]   bench: also what the measurements need
set -euo pipefail

packages=(
    g++ cmake ninja-build                              # the portable core and its tools
    g++-mingw-w64-i686-win32 binutils-mingw-w64-i686   # the Windows program
    clang libclang-rt-dev                              # the fuzz targets
    googletest mdbtools                                # unit tests
    wine wine32:i386 xvfb imagemagick                  # the program at work, and pictures of it
    fonts-wine fonts-liberation tzdata locales
    zip unzip cmark-gfm                                # the package
    chromium chromium-driver python3-selenium          # the index page in a browser
    git clang-format shellcheck cppcheck clang-tidy python3 # the rules of the house
)
[ "${1-}" != bench ] || packages+=(
    libbenchmark-dev pkg-config
    libgmime-3.0-dev libvmime-dev libsqlite3-dev liblmdb-dev zlib1g-dev # who is measured beside
)

is_installed() { [[ $(dpkg-query -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null) == ii* ]]; }

missing=()
for package in "${packages[@]}"; do
    is_installed "$package" || missing+=("$package")
done
((${#missing[@]})) || exit 0
echo "== Installing ${missing[*]}"

as_root=()
if ((EUID)); then
    command -v sudo >/dev/null || { echo "install-tools: run this as root, or install sudo" >&2; exit 1; }
    as_root=(sudo)
fi
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 "$@" </dev/null; }
install() { apt install -y --no-install-recommends "$@" "${missing[@]}" >/dev/null; }

dpkg --print-foreign-architectures | grep -qx i386 || "${as_root[@]}" dpkg --add-architecture i386
# An index that cannot be read is no reason to stop: what is missing may stand in the others.
apt update || echo "install-tools: some package lists could not be read, going on without them" >&2

# Where the security suite's i386 list is the unreadable one, apt would pair a newer amd64 library with an
# older i386 one and give up. The release's own versions go together.
# shellcheck source=/dev/null
codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}")
install || { echo "install-tools: trying again with the versions of $codename alone" >&2; install -t "$codename"; }

for package in "${missing[@]}"; do
    is_installed "$package" || { echo "install-tools: $package did not install" >&2; exit 1; }
done
