#!/usr/bin/env bash
# Installs the library into a fresh prefix, includes every public header, and builds and runs a stranger's program
# against it.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scripts/build.sh release
cmake --install build/release --prefix "$work/prefix" > /dev/null

(cd "$work/prefix/include" && find ORNHearingTestSDK -name '*.h' -printf '#include <%p>\n' | sort) > "$work/all.cpp"
g++ -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I"$work/prefix/include" "$work/all.cpp"
for header in audio/WaveChange audio/SineTables common/Version results/ORNListenTestKeys; do
  echo "#include <ORNHearingTestSDK/$header.h>"
done > "$work/all.c"
gcc -std=c99 -Wall -Wextra -Werror -fsyntax-only -I"$work/prefix/include" "$work/all.c"

cmake -S examples/automatic-test -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > /dev/null
cmake --build "$work/build"
"$work/build/automatic-test"
"$work/prefix/bin/hearing-test" simulate --path earphones
