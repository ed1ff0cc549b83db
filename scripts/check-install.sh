#!/usr/bin/env bash
# Installs the library into a fresh prefix and moves that elsewhere, compiles every public header, and builds and runs
# the examples against it: with g++ and with clang, by CMake and by pkg-config.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap.sh clang
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scripts/build.sh release
cmake --install build/release --prefix "$work/first" > /dev/null
prefix=$work/elsewhere
mv "$work/first" "$prefix"

# Those of the core without Qt's folders, those of the screens with them.
includes() { (cd "$prefix/include" && find "$@" -name '*.h' -printf '#include <%p>\n' | sort); }
includes ORNHearingTestSDK -not -path '*/screens/*' -not -path '*/qt/*' > "$work/all.cpp"
includes ORNHearingTestSDK/screens ORNHearingTestSDK/platform/qt > "$work/screens.cpp"
for header in audio/WaveChange audio/SineTables common/Version results/ORNListenTestKeys; do
  echo "#include <ORNHearingTestSDK/$header.h>"
done > "$work/all.c"
read -ra qt < <(pkg-config --cflags Qt6Widgets)

check_headers() {
  local check=(-Wall -Wextra -Werror -fsyntax-only -I"$prefix/include")
  "$CXX" -std=c++20 "${check[@]}" "$work/all.cpp"
  "$CXX" -std=c++20 -fPIC "${check[@]}" "${qt[@]/#-I/-isystem}" "$work/screens.cpp"
  "$CC" -std=c99 "${check[@]}" "$work/all.c"
}

# With an older C++ the compiler says one sentence, whichever header comes first.
check_old_standard() {
  local header
  while read -r header; do
    if "$CXX" -std=c++17 -fPIC -fsyntax-only -I"$prefix/include" "${qt[@]}" -x c++ - <<< "$header" 2> "$work/old"; then
      continue  # one of the few that need nothing of C++20
    fi
    if ! grep -q "needs C++20" "$work/old" || [ "$(grep -c 'error:' "$work/old")" -gt 2 ]; then
      echo "$header says more than one sentence by C++17:" >&2
      cat "$work/old" >&2
      return 1
    fi
  done < <(cat "$work/all.cpp" "$work/screens.cpp")
}

build_examples() {
  local example
  for example in examples/*/; do
    example=$(basename "$example")
    [ "$example" != part-of-a-build ] || continue  # scripts/check-subproject.sh builds that one
    cmake -S "examples/$example" -B "$built/$example" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" > /dev/null
    cmake --build "$built/$example" > "$work/log" || { cat "$work/log"; return 1; }
  done
}

run_examples() {
  "$built/automatic-test/automatic-test" > "$work/automatic"
  grep -q "threshold of the left ear at 4000hz: 35 dB" "$work/automatic"
  printf '%s\n' right "1000hz 40db" heard "4000hz 25db" heard left "1000hz 30db" heard "4000hz 20db" heard |
    "$built/manual-test/manual-test" --simulate > "$work/manual"
  grep -q "the test is complete" "$work/manual"
  "$built/c-functions/c-functions" "$work/tone.wav"
  [ "$(stat --format=%s "$work/tone.wav")" -eq 192044 ]
  "$built/backend-contracts/backend-contracts" > "$work/contracts"
  "$built/wav-backend/wav-backend" "$work/tones.wav" > "$work/contracts"
  [ "$(stat --format=%s "$work/tones.wav")" -eq 768044 ]
  "$built/audiogram/audiogram" "$work/audiogram.png"
  (export XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data && "$built/screens/screens" "$work/screens.png")
  [ -s "$work/audiogram.png" ] && [ -s "$work/screens.png" ]
}

for compilers in "gcc g++" "clang-14 clang++-14"; do
  read -r CC CXX <<< "$compilers"
  export CC CXX
  built=$work/built-$CXX
  check_headers
  [ "$CXX" != g++ ] || check_old_standard
  build_examples
  run_examples
  echo "headers and examples: $CXX"
done

# Without CMake, and without RTTI.
read -ra flags < <(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --cflags --libs ORNHearingTestSDK)
g++ -std=c++20 -fno-rtti examples/automatic-test/main.cpp "${flags[@]}" -o "$work/by-pkg-config"
LD_LIBRARY_PATH=$prefix/lib "$work/by-pkg-config" > "$work/again"
cmp "$work/automatic" "$work/again"
for library in ORNHearingTestLinuxBackend ORNHearingTestScreens; do
  PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --libs "$library" | grep -q -- "-l$library"
done

"$prefix/bin/hearing-test" simulate --path earphones --png "$work/earphones.png" > /dev/null
echo "installed programs: run"
