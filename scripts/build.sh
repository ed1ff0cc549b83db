#!/usr/bin/env bash
# Configures and builds one preset of CMakePresets.json: all of it, or the targets named.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:?usage: scripts/build.sh PRESET [TARGET ...]}
shift
cmake --preset "$preset" --log-level=NOTICE > /dev/null
cmake --build --preset "$preset" ${1:+--target "$@"}
