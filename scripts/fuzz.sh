#!/usr/bin/env bash
# Builds the fuzz targets of tests/fuzz with clang and runs each for a bounded time, seeded
# from tests/fuzz/corpus/<name>/. Fails on the first finding (the crashing input is kept in
# the build folder). Usage: scripts/fuzz.sh [SECONDS_PER_TARGET]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
BUILD=${FUZZ_BUILD_DIR:-build-fuzz}
CXX=clang++ cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DHELMSMAN_FUZZ=ON \
    -DHELMSMAN_TESTS=ON
targets=$(cd tests/fuzz && ls fuzz_*.cpp 2>/dev/null | sed 's/\.cpp$//')
[ -n "$targets" ] || { echo "no fuzz targets"; exit 0; }
# shellcheck disable=SC2086
cmake --build "$BUILD" -j"$(nproc)" --target $targets
failed=0
for t in $targets; do
    name=${t#fuzz_}
    work="$BUILD/fuzz-run/$name"
    rm -rf "$work" && mkdir -p "$work/corpus" "$work/artifacts"
    [ -d "tests/fuzz/corpus/$name" ] && cp -r "tests/fuzz/corpus/$name/." "$work/corpus/"
    echo "== $t (${seconds}s)"
    if ! UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ASAN_OPTIONS=detect_leaks=1 \
        "$BUILD/tests/fuzz/$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -artifact_prefix="$work/artifacts/" -print_final_stats=0 "$work/corpus" \
        >"$work/log" 2>&1; then
        echo "FINDING in $t:"; tail -40 "$work/log"; failed=1
    else
        grep -E '^#[0-9]+.*DONE|Done [0-9]+ runs' "$work/log" | tail -1
    fi
done
exit $failed
