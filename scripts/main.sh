#!/usr/bin/env bash
# The whole main job on a fresh machine: install what is missing, build both architectures,
# register the 32-bit Orbex.dll in a private Wine prefix and run the example tour.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
source scripts/wine-env.sh

for arch in i686 x86_64; do
    cmake --preset "$arch" >/dev/null
    cmake --build --preset "$arch"
done

wine_env i686
start_wineserver
trap stop_wineserver EXIT
cmake -DWINE="$WINE" -DPREFIX="$WINEPREFIX" -DWINEARCH="$WINEARCH" -P tests/MakePrefix.cmake
"$WINE" regsvr32 /s "$(winepath -w build/i686/src/com/Orbex.dll)"
# Wine's script host prints nothing and still exits 0 when a script fails: the tour's closing
# line is the proof that it ran to the end.
output=$("$WINE" cscript //nologo "$(winepath -w examples/tour.vbs)")
echo "$output"
grep -q "^Tour complete." <<<"$output" || { echo "main: the tour stopped early" >&2; exit 1; }
