#!/usr/bin/env bash
# Installs what is missing, builds, and starts the Helmsman desk on the simulated exchange.
# Extra arguments go to the desk, e.g. --market-time 09:30:00 or --open OpenHelmsman.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
BUILD=${BUILD_DIR:-build}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$BUILD" -j"$(nproc)" --target helmsman Helmsman
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found. On a desktop session run this from a terminal there; headless," >&2
    echo "try: QT_QPA_PLATFORM=offscreen $0 --screenshot shots --quit-after 3000" >&2
    exit 1
fi
exec "$BUILD/helmsman" "$@"
