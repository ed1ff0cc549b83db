#!/usr/bin/env bash
# Installs the library into a fresh prefix, includes every public header, and builds and runs a stranger's program
# against it.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scripts/build.sh release
cmake --install build/release --prefix "$work/prefix" > /dev/null

# Those of the core without Qt's folders, those of the screens with them.
includes() { (cd "$work/prefix/include" && find "$@" -name '*.h' -printf '#include <%p>\n' | sort); }
check_headers() { g++ -std=c++20 -Wall -Wextra -Werror -fsyntax-only -I"$work/prefix/include" "$@"; }
includes ORNHearingTestSDK -not -path '*/screens/*' -not -path '*/qt/*' > "$work/all.cpp"
check_headers "$work/all.cpp"
includes ORNHearingTestSDK/screens ORNHearingTestSDK/platform/qt > "$work/screens.cpp"
read -ra qt < <(pkg-config --cflags Qt6Widgets)
check_headers -fPIC "${qt[@]/#-I/-isystem}" "$work/screens.cpp"
for header in audio/WaveChange audio/SineTables common/Version results/ORNListenTestKeys; do
  echo "#include <ORNHearingTestSDK/$header.h>"
done > "$work/all.c"
gcc -std=c99 -Wall -Wextra -Werror -fsyntax-only -I"$work/prefix/include" "$work/all.c"

for example in automatic-test audiogram backend-contracts; do
  cmake -S "examples/$example" -B "$work/$example" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > /dev/null
  cmake --build "$work/$example"
done
"$work/automatic-test/automatic-test"
"$work/backend-contracts/backend-contracts"
"$work/audiogram/audiogram" "$work/audiogram.png"
"$work/prefix/bin/hearing-test" simulate --path earphones --png "$work/earphones.png"
