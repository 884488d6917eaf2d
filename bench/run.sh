#!/usr/bin/env bash
# The benchmarks in one command: build the release Orbex.dll and orbex_bench, register the DLL
# in a private Wine prefix, run every case ROUNDS times (interleaved with its floor and peers)
# and write docs/performance.md.
# usage: bash bench/run.sh [ROUNDS] [CASE-SUBSTRING]
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-7}
filter=${2:-}
bash scripts/setup.sh
source scripts/wine-env.sh

cmake --preset release >/dev/null
cmake --build --preset release >/dev/null
build=build/release
# The prefix lives beside the release build; wine_env names it after the architecture.
export WINEPREFIX="$PWD/$build/wineprefix" WINEARCH=win32 WINE=/usr/lib/wine/wine
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
mkdir -p "$WINEPREFIX"
start_wineserver
trap stop_wineserver EXIT
cmake -DWINE="$WINE" -DPREFIX="$WINEPREFIX" -DWINEARCH="$WINEARCH" -P tests/MakePrefix.cmake
"$WINE" regsvr32 /s "$(winepath -w "$build/src/com/Orbex.dll")"

data="$WINEPREFIX/drive_c/orbex-bench"
rm -rf "$data" && mkdir -p "$data"
results="$build/bench-results.tsv"
"$WINE" "$build/bench/orbex_bench.exe" "$rounds" 'C:\orbex-bench' "$filter" | tr -d '\r' > "$results"
"$WINE" cscript //nologo "$(winepath -w bench/calls.vbs)" "$rounds" | tr -d '\r' >> "$results"
rm -rf "$data"
python3 bench/report.py "$results" "$("$WINE" --version)" > docs/performance.md
echo "bench: docs/performance.md written from $results"
