#!/usr/bin/env bash
# Regenerates host/gbk_cp936_table.inc from code page 936 as Windows (here: Wine) maps it.
# Needs the packages of scripts/packages-windows.txt.
set -euo pipefail
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
x86_64-w64-mingw32-g++-posix -O2 -static scripts/gbk/cp936_dump.cpp -o "$work/dump.exe"
WINEPREFIX="$work/prefix" WINEDEBUG=-all /usr/lib/wine/wine64 "$work/dump.exe" > "$work/table.txt"
python3 scripts/gbk/to_inc.py "$work/table.txt" > host/gbk_cp936_table.inc
