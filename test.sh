#!/usr/bin/env bash
# Installs what is missing, builds Tessarelle and runs every test through CTest.
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup
jobs=$(nproc 2>/dev/null || echo 2)
# Line tables (-g1) are all a profile or a stack trace needs, and full debug
# information makes the build a sixth slower.
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -g1 -DNDEBUG"
cmake --build build -j"$jobs"
cd build
ctest --output-on-failure -j"$jobs" "$@"
