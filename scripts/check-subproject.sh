#!/usr/bin/env bash
# Builds a host that has the library as a part of its own build, with a shared and with a static library: the host gets no
# targets that it did not ask for, and its tones sound, which they don't without the tone files. Then with a cipher and a
# folder of tone files of the host's own, in place of the library's.
set -euo pipefail
cd "$(dirname "$0")/.."
heard=$(mktemp)
trap 'rm -f "$heard"' EXIT

# The static one by a generator that has several configurations.
for kind in "ON CMAKE_BUILD_TYPE Ninja" "OFF CMAKE_CONFIGURATION_TYPES Ninja Multi-Config"; do
  read -r shared configuration generator <<< "$kind"
  built=$PWD/build/part-shared-$shared
  rm -rf "$built"
  cmake -S examples/part-of-a-build -B "$built" -G "$generator" -DBUILD_SHARED_LIBS="$shared" \
    -DORN_BUILD_LINUX_BACKEND=OFF -DORN_WERROR=ON -D"$configuration"=Release -DCMAKE_UNITY_BUILD=ON > /dev/null
  foreign=$(cmake --build "$built" --target help | sed -nE 's|^([^/ ]+): phony$|\1|p' |
    grep -vE '^(all|clean|edit_cache|rebuild_cache|part-of-a-build(:Release)?|(lib)?ORN.*|orn_.*)$' || true)
  [ -z "$foreign" ] || { echo "the host has targets that it did not ask for:" "$foreign" >&2; exit 1; }
  cmake --build "$built" > "$heard" || { cat "$heard"; exit 1; }
  program=$(find "$built" -type f -name part-of-a-build)
  (cd / && "$program") > "$heard"
  grep -q "threshold of the left ear at 4000hz: 35 dB" "$heard"
  find "$built" -name wav.bundle -prune -exec rm -r {} +
  if "$program" > /dev/null; then
    echo "a test without tone files ended as if they had sounded" >&2
    exit 1
  fi
  echo "part of a build: shared libraries $shared, by $generator"
done

own=$PWD/examples/part-of-a-build
cmake "$built" -DORN_CIPHER_SOURCE="$own/NoCipher.cpp" -DORN_BUNDLES_SOURCE="$own/NamedFolder.cpp" > /dev/null
cmake --build "$built" > "$heard" || { cat "$heard"; exit 1; }
if ldd "$program" | grep libcrypto; then
  echo "a host with a cipher of its own still needs OpenSSL's" >&2
  exit 1
fi
if "$program" > /dev/null; then
  echo "a host with a folder of its own for the tone files still finds the library's" >&2
  exit 1
fi
folder=$(dirname "$(find "$built" -type d -name wav.bundle)")
HEARING_BUNDLES=$folder "$program" > "$heard"
grep -q "threshold of the left ear at 4000hz: 35 dB" "$heard"
echo "part of a build: a cipher and a folder of the host's own"
