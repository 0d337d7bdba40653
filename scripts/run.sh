#!/usr/bin/env bash
# Installs what is missing, builds, and starts the Helmsman desk on the simulated exchange.
# Extra arguments go to the desk, e.g. --market-time 09:30:00 or --open OpenHelmsman.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
BUILD=${BUILD_DIR:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)" --target helmsman Helmsman
exec "$BUILD/helmsman" "$@"
