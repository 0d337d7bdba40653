#!/usr/bin/env bash
# Installs what is missing, builds everything (add-in, shell, tests, benchmarks) and runs
# every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
BUILD=${BUILD_DIR:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)"
ctest --test-dir "$BUILD" --output-on-failure
