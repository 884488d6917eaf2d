#!/usr/bin/env bash
# Makes the release folder build/Orbex-<version>/: x86/ holds the 32-bit product and x64/ the
# 64-bit build, each Orbex.dll with its type library Orbex.tlb and its registration-free manifest
# Orbex.sxs.manifest; beside them the examples, the docs and README.md. Builds the two release
# presets first. Quiet, and quick when they are built; fails naming any part that is missing.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

fail() { echo "release: $*" >&2; exit 1; }

version=$(sed -n 's/^project(Orbex VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
[ -n "$version" ] || fail "no version in CMakeLists.txt"
folder=build/Orbex-$version

# Configures and builds one preset's DLL; the build's output shows only when it fails.
build() {
    local log
    log=$(mktemp)
    if ! { cmake --preset "$1" && cmake --build --preset "$1" --target Orbex orbex_sxs_manifest; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        fail "the $1 build failed"
    fi
    rm -f "$log"
}

# Copies the named files into a folder, after checking that every one of them is there.
copy() {
    local into=$1 file
    shift
    for file in "$@"; do [ -e "$file" ] || fail "missing $file"; done
    mkdir -p "$into"
    cp -R "$@" "$into/"
}

rm -rf "$folder"
for build_and_folder in release:x86 release-x86_64:x64; do
    preset=${build_and_folder%%:*}
    into=$folder/${build_and_folder##*:}
    build "$preset"
    com=build/$preset/src/com
    copy "$into" "$com/Orbex.dll" "$com/generated/Orbex.tlb" "$com/Orbex.sxs.manifest"
done
copy "$folder" examples docs README.md
echo "release: $folder"
