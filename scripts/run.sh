#!/usr/bin/env bash
# Builds Tornelia in build/ and starts it; arguments go to the program.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release -DTORNELIA_BENCH=OFF
cmake --build build -j2
exec build/app/tornelia "$@"
