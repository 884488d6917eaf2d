#!/usr/bin/env bash
# A long fuzz run: every member of every class through IDispatch::Invoke with hostile
# arguments, in a throwaway Wine prefix of its own (see docs/hardening.md).
# usage: bash scripts/fuzz.sh [CALLS, default 200000] [SEED, default 1] [ARCH, default i686]
# Each seed has a prefix of its own (build/<arch>/wineprefix-fuzz-long-<seed>), so runs of
# different seeds may go side by side.
set -euo pipefail
cd "$(dirname "$0")/.."
calls=${1:-200000}
seed=${2:-1}
arch=${3:-i686}
source scripts/wine-env.sh
wine_env "$arch"
cmake --preset "$arch" >/dev/null
cmake --build --preset "$arch" --target orbex_fuzz
cmake -DWINE="$WINE" -DWINEARCH="$WINEARCH" -DPREFIX="$PWD/build/$arch/wineprefix-fuzz-long-$seed" \
      -DPROGRAM="$PWD/build/$arch/tests/fuzz/orbex_fuzz.exe" -DSEED="$seed" -DCALLS="$calls" -DSECONDS=86400 \
      -P tests/fuzz/RunFuzz.cmake
