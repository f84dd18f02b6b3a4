#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and starts it.
# --headless runs it offscreen.
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
fi
exec build/bin/tessarelle -e
