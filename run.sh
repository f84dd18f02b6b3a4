#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and starts it with the demo
# stack: a synthetic I1/I0 series across the Cu K edge, generated into
# demo-data/ on the first run (scripts/make-demo-data.py) and loaded by the
# batch demo-data/demo.bat.
# --headless runs it offscreen and lets it quit once the stacks are loaded: a
# generated configuration ends its start-up batch with ":end", so that the
# dispatcher is idle, and the generated batch file ends with "quit", run by -x.
set -euo pipefail
cd "$(dirname "$0")"
headless=0
for a in "$@"; do
  [ "$a" = "--headless" ] && headless=1
done
scripts/setup
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs" --target tessarelle

# demo.bat names the data folder by its absolute path: a moved checkout
# generates it again, and so does a batch from before the pointer was placed.
demo="$PWD/demo-data"
if ! grep -qsF "\"$demo/\"" "$demo/demo.bat" || ! grep -qs "^move_position" "$demo/demo.bat"; then
  python3 scripts/make-demo-data.py "$demo"
fi

dir=build/demo
mkdir -p "$dir"
if [ "$headless" = 1 ]; then
  export QT_QPA_PLATFORM=offscreen
  printf 'batch :echo "Tessarelle is up"\nbatch :end\n' > "$dir/config.cfg"
  { cat "$demo/demo.bat"; printf 'quit\n'; } > "$dir/demo-quit.bat"
  exec build/bin/tessarelle -e -c "$dir/config.cfg" -b "$dir/demo-quit.bat" -x
fi
printf 'batch :end\n' > "$dir/config.cfg"
exec build/bin/tessarelle -e -c "$dir/config.cfg" -b "$demo/demo.bat" -x
