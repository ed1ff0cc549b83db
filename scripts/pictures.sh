#!/usr/bin/env bash
# Takes the pictures of the application that the README shows.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh release hearing-app
build/release/bin/hearing-app --screenshots build/shots
mkdir -p docs/images
for name in selection-both right-ear result; do
  cp "build/shots/$name-375x667.png" "docs/images/$name.png"
done
