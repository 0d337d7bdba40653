#!/usr/bin/env bash
# Installs the Debian packages Helmsman needs (scripts/packages.txt, or the list named as the
# first argument, e.g. packages-windows.txt), only those missing.
set -euo pipefail
cd "$(dirname "$0")"

mapfile -t packages < <(grep -v '^\s*#' "${1:-packages.txt}" | grep -v '^\s*$')

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
