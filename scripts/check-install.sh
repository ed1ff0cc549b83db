#!/usr/bin/env bash
# Installs the library into a fresh prefix, builds a program of a stranger's against it and runs that.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

scripts/build.sh release
cmake --install build/release --prefix "$work/prefix" > /dev/null
cmake -S examples/automatic-test -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" > /dev/null
cmake --build "$work/build"
"$work/build/automatic-test"
"$work/prefix/bin/hearing-test" simulate --path earphones
