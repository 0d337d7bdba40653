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

# CLI11 is headers only and the same for every target: a prefix holding just its headers (the
# system's include folder itself would hand the cross-compiler Linux's C headers).
mkdir -p "$BUILD/cli11/include"
ln -sfn /usr/include/CLI "$BUILD/cli11/include/CLI"

cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$TOOLCHAIN" \
    -DCMAKE_PREFIX_PATH="$GTEST_PREFIX;$PWD/$BUILD/cli11" -DHELMSMAN_UI=OFF
cmake --build "$BUILD" -j"$(nproc)"

# Wine takes the ANSI code page (936, as on a Chinese Windows) and the charset of Unix file
# names (UTF-8) from the locale zh_CN.UTF-8, which must exist on the machine.
if ! locale -a 2>/dev/null | grep -qix 'zh_CN.utf-\?8'; then
    SUDO=""
    [ "$(id -u)" -ne 0 ] && SUDO="sudo"
    $SUDO sed -i 's/^# *zh_CN.UTF-8 UTF-8/zh_CN.UTF-8 UTF-8/' /etc/locale.gen
    $SUDO locale-gen >/dev/null
fi

# A fresh prefix each run: nothing from an earlier run or the user's own Wine leaks in.
export WINEPREFIX
WINEPREFIX=$(mktemp -d "${TMPDIR:-/tmp}/helmsman-wine.XXXXXX")
trap 'wineserver_kill; rm -rf "$WINEPREFIX"' EXIT
wineserver_kill() { /usr/lib/wine/wineserver -k 2>/dev/null || true; }
# A Chinese Windows: ANSI code page 936.
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LANG=zh_CN.UTF-8 LC_ALL=zh_CN.UTF-8
/usr/lib/wine/wine64 wineboot --init >/dev/null 2>&1 || true
ctest --test-dir "$BUILD" --output-on-failure

# The replay command gives the same bytes on both systems: the Windows build under Wine and a
# Linux build replay one shared day with the same settings, and every output must match.
DAY=../shared/data/ticks/IF2101_20210104.csv
SETTINGS=replay/examples/local_trigger.ini
cmake -S . -B "$BUILD/linux-replay" -G Ninja -DCMAKE_BUILD_TYPE=Release -DHELMSMAN_UI=OFF \
    -DHELMSMAN_TESTS=OFF -DHELMSMAN_BENCH=OFF >/dev/null
cmake --build "$BUILD/linux-replay" -j"$(nproc)" --target helmsman-replay
rm -rf "$BUILD/replay-linux" "$BUILD/replay-windows"
"$BUILD/linux-replay/replay/helmsman-replay" --ticks "$DAY" --tool LocalTrigger \
    --settings "$SETTINGS" --out "$BUILD/replay-linux" > "$BUILD/replay-linux.txt"
/usr/lib/wine/wine64 "$BUILD/replay/helmsman-replay.exe" --ticks "$DAY" --tool LocalTrigger \
    --settings "$SETTINGS" --out "$BUILD/replay-windows" > "$BUILD/replay-windows.txt"
status=0
for f in orders.csv fills.csv journal.csv chart.svg; do
    if ! cmp "$BUILD/replay-linux/$f" "$BUILD/replay-windows/$f"; then
        echo "replay output $f differs between Linux and Windows"
        status=1
    fi
done
# The summary too (Windows ends its lines with CRLF on a console).
if ! diff <(tr -d '\r' < "$BUILD/replay-linux.txt") <(tr -d '\r' < "$BUILD/replay-windows.txt"); then
    echo "replay summary differs between Linux and Windows"
    status=1
fi
[ $status -eq 0 ] && echo "replay outputs are byte-identical on Linux and under Wine"
exit $status
