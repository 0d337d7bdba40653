#!/usr/bin/env bash
# Checks that every Debian package owning a CMake package configuration the configure step
# used (the *_DIR entries of a CMakeCache.txt) is listed in scripts/packages.txt or pulled in
# by a listed package as a plain dependency (recommends are not installed on a fresh machine).
# Usage: scripts/check_deps.sh BUILD_DIR
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
cache="${1:?build directory}/CMakeCache.txt"

mapfile -t listed < <(grep -v '^\s*#' "$here/packages.txt" | grep -v '^\s*$')
# Everything the listed packages bring in without recommends.
closure=$(apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts \
    --no-breaks --no-replaces --no-enhances "${listed[@]}" 2>/dev/null |
    sed -n 's/^\([^ <][^ ]*\)$/\1/p; s/^ *\(Pre\)\?Depends: \([^<][^ ]*\)$/\2/p' |
    sed 's/:any$//; s/:amd64$//' | sort -u)
[ -n "$closure" ] || { echo "check_deps: apt-cache gave no dependencies (run apt-get update)" >&2; exit 2; }

status=0
checked=0
while IFS= read -r dir; do
    [ -d "$dir" ] || continue
    config=$(ls "$dir"/*Config.cmake "$dir"/*-config.cmake 2>/dev/null | head -1) || true
    [ -n "$config" ] || continue
    owner=$(dpkg -S "$(realpath "$config")" 2>/dev/null | head -1 | cut -d: -f1) ||
        owner=$(dpkg -S "$config" 2>/dev/null | head -1 | cut -d: -f1) || true
    [ -n "$owner" ] || continue   # not from a package (e.g. CMake's own modules)
    checked=$((checked + 1))
    if ! grep -qx "$owner" <<<"$closure"; then
        echo "check_deps: $owner (owns $config) is not in scripts/packages.txt nor a dependency of one" >&2
        status=1
    fi
done < <(sed -n 's/^[A-Za-z0-9_]*_DIR:[A-Z]*=\(\/.*\)$/\1/p' "$cache" | sort -u)
echo "check_deps: $checked package configurations checked"
exit $status
