#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and starts it.
# --headless runs it offscreen and lets it quit once the window is up: a
# generated configuration ends its start-up batch with ":end", so that the
# dispatcher is idle, and a generated batch file holds "quit", run by -x.
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
if [ "$headless" = 1 ]; then
  export QT_QPA_PLATFORM=offscreen
  dir=build/headless
  mkdir -p "$dir"
  printf 'batch :echo "Tessarelle is up"\nbatch :end\n' > "$dir/config.cfg"
  printf 'quit\n' > "$dir/quit.bat"
  exec build/bin/tessarelle -e -c "$dir/config.cfg" -b "$dir/quit.bat" -x
fi
exec build/bin/tessarelle -e
