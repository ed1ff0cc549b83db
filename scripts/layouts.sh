#!/usr/bin/env bash
# Prints how the types in a library's public headers lie in memory: sizes, offsets, virtual functions, values of
# enumerations. The headers are compiled as by a host, and libabigail reads the debug information.
set -euo pipefail
cd "$(dirname "$0")/.."
library=${1:?usage: scripts/layouts.sh LIBRARY}
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

flags=()
if [ "$library" = ORNHearingTestScreens ]; then read -ra flags <<< "$(pkg-config --cflags Qt6Widgets)"; fi

find ORNHearingTestSDK -name CMakeLists.txt | LC_ALL=C sort | while read -r list; do
  tr '\n' ' ' < "$list" | grep -oE "orn_headers\( *$library [^)]*\)" | grep -oE '[A-Za-z0-9./]+\.h' | sed "s|^|${list%/*}/|" || true
done | xargs realpath --relative-to=. > "$work/headers.txt"
sed 's/.*/#include <&>/' "$work/headers.txt" > "$work/headers.cpp"
echo 'extern "C" { int orn_anchor = 1; }' >> "$work/headers.cpp"  # libabigail reads no library without a symbol

g++ -std=c++20 -g -fPIC -shared -femit-class-debug-always -fno-eliminate-unused-debug-types "${flags[@]}" -I. \
  "$work/headers.cpp" -o "$work/headers.so"
abidw --load-all-types --no-corpus-path --no-comp-dir-path "$work/headers.so" > "$work/headers.xml"
scripts/layouts.py "$work/headers.xml" "$work/headers.txt"
