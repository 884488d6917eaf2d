#!/usr/bin/env bash
# The benchmarks in one command: build the release Orbex.dll and orbex_bench, register the DLL
# in a private Wine prefix, run every case ROUNDS times (interleaved with its floor and peers)
# and write docs/performance.md. With a case filter only the matching cases run, and the report
# goes to build/release/performance.md instead.
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
wine_env i686 "$build"
start_wineserver
trap stop_wineserver EXIT
cmake -DWINE="$WINE" -DPREFIX="$WINEPREFIX" -DWINEARCH="$WINEARCH" -P tests/MakePrefix.cmake
"$WINE" regsvr32 /s "$(winepath -w "$build/src/com/Orbex.dll")"

data="$WINEPREFIX/drive_c/orbex-bench"
rm -rf "$data" && mkdir -p "$data"
results="$build/bench-results.tsv"
"$WINE" "$build/bench/orbex_bench.exe" "$rounds" 'C:\orbex-bench' "$filter" | tr -d '\r' > "$results"
if [[ "100,000 late-bound calls from VBScript" == *"$filter"* ]]; then
    "$WINE" cscript //nologo "$(winepath -w bench/calls.vbs)" "$rounds" | tr -d '\r' >> "$results"
fi
rm -rf "$data"
report=docs/performance.md
[ -z "$filter" ] || report="$build/performance.md"
python3 bench/report.py "$results" "$("$WINE" --version)" > "$report"
echo "bench: $report written from $results"
