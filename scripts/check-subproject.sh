#!/usr/bin/env bash
# Builds a host that has the library as a part of its own build, with shared and with static libraries: nothing but what
# it links is built, no name of the host's is taken, and its tones sound, which they don't without the tone files.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

example=examples/part-of-a-build
for shared in ON OFF; do
  built=$work/shared-$shared
  cmake -S "$example" -B "$built" -G Ninja -DBUILD_SHARED_LIBS=$shared -DORN_BUILD_LINUX_BACKEND=OFF \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER_LAUNCHER=ccache > /dev/null
  foreign=$(cmake --build "$built" --target help | sed -nE 's|^([^/ ]+): phony$|\1|p' |
    grep -vE '^(all|edit_cache|rebuild_cache|part-of-a-build|(lib)?ORN.*|orn_.*)$' || true)
  [ -z "$foreign" ] || { echo "the host has targets that it did not ask for:" $foreign >&2; exit 1; }
  cmake --build "$built" > "$work/log" || { cat "$work/log"; exit 1; }
  (cd / && "$built/part-of-a-build") > "$work/heard"
  grep -q "threshold of the left ear at 4000hz: 35 dB" "$work/heard"
  find "$built" -name wav.bundle -exec rm -r {} +
  if "$built/part-of-a-build" > /dev/null; then
    echo "a test without tone files ended as if they had sounded" >&2
    exit 1
  fi
  echo "part of a build: shared libraries $shared"
done
