#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and runs every test through CTest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$jobs"
cd build
ctest --output-on-failure -j"$jobs" "$@"
