#!/usr/bin/env bash
# Builds Orbex for both architectures and runs every test under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
source scripts/wine-env.sh

status=0
for arch in i686 x86_64; do
    echo "== $arch"
    cmake --preset "$arch" >/dev/null
    cmake --build --preset "$arch"
    wine_env "$arch"
    start_wineserver
    ctest --preset "$arch" || status=1
    stop_wineserver
done
exit $status
