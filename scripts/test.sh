#!/usr/bin/env bash
# Builds Tornelia in build/ and runs every test; fails when any test fails.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
options=(-DCMAKE_BUILD_TYPE=Release)
# The benchmarks are built whenever the tree has them, so they keep compiling.
[ -d bench ] || options+=(-DTORNELIA_BENCH=OFF)
cmake -S . -B build -G Ninja "${options[@]}"
cmake --build build -j2
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j2
