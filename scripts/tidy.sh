#!/usr/bin/env bash
# Runs clang-tidy over every source: those of a target as one file, since most of the time is spent on what they
# include.
set -euo pipefail
cd "$(dirname "$0")/.."
built=build/tidy
cmake -S . -B "$built" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
  -DORN_BUILD_FUZZERS=ON --log-level=NOTICE > /dev/null

# The commands are g++'s, some of whose warnings clang does not know. The count of warnings in foreign files is left
# out.
tidy() { clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option "$@" 2> >(grep -v ' generated\.$' >&2); }
export -f tidy
export built
grep -oP '"file": "\K[^"]+' "$built/compile_commands.json" | xargs grep -c '^#include' | sort -t: -k2 -rn | cut -d: -f1 |
  xargs -P "$(nproc)" -I {} bash -c 'tidy -p "$built" "$1"' - {}

# Examples are built against the installed library, so no command for them is known.
read -ra qt <<< "$(pkg-config --cflags Qt6Widgets)"
tidy examples/*/*.cpp -- -std=c++20 -I. "${qt[@]}"
