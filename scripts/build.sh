#!/usr/bin/env bash
# Configures and builds one preset: dev, release, asan or tsan.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=${1:?usage: scripts/build.sh PRESET}
cmake --preset "$preset" --log-level=NOTICE > /dev/null
cmake --build --preset "$preset"
