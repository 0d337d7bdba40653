#!/usr/bin/env bash
# Cross-builds the Qt-free part (core, simulated exchange, the module's export table, the
# replay command and their tests) for 64-bit Windows with mingw-w64 and runs every test under
# Wine in a fresh Wine prefix. Installs what it needs.
#   scripts/windows.sh            build into build-win and run ctest under Wine
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh packages.txt
scripts/deps.sh packages-windows.txt

BUILD=${BUILD_DIR:-build-win}
TOOLCHAIN="$PWD/cmake/mingw-w64-x86_64.cmake"
GTEST_PREFIX="$PWD/$BUILD/gtest-prefix"

# GoogleTest for the target, from Debian's sources (built once per build folder).
if [ ! -f "$GTEST_PREFIX/lib/cmake/GTest/GTestConfig.cmake" ]; then
    cmake -S /usr/src/googletest -B "$BUILD/gtest" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$TOOLCHAIN" -DCMAKE_INSTALL_PREFIX="$GTEST_PREFIX" \
        -Dgtest_disable_pthreads=OFF -DBUILD_SHARED_LIBS=OFF
    cmake --build "$BUILD/gtest" -j"$(nproc)"
    cmake --install "$BUILD/gtest" >/dev/null
fi

cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$TOOLCHAIN" \
    -DCMAKE_PREFIX_PATH="$GTEST_PREFIX" -DHELMSMAN_UI=OFF
cmake --build "$BUILD" -j"$(nproc)"

# A fresh prefix each run: nothing from an earlier run or the user's own Wine leaks in.
export WINEPREFIX
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/helmsman-wine.XXXXXX")
trap 'wineserver_kill; rm -rf "$WINEPREFIX"' EXIT
wineserver_kill() { /usr/lib/wine/wineserver -k 2>/dev/null || true; }
# A Chinese Windows: ANSI code page 936.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LANG=zh_CN.UTF-8 LC_ALL=zh_CN.UTF-8
/usr/lib/wine/wine64 wineboot --init >/dev/null 2>&1 || true
ctest --test-dir "$BUILD" --output-on-failure
