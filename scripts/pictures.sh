#!/usr/bin/env bash
# Takes the pictures of the application that the README shows, and the sheet of all screens that a test compares.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh release hearing-app
rm -rf build/shots
# With the tests' fonts, whatever the machine is set to.
env -i HOME="$HOME" FONTCONFIG_FILE="$PWD/tests/screens/fonts.conf" TZ=UTC \
  build/release/bin/hearing-app --screenshots build/shots --screen 375x667
mkdir -p docs/images
for name in selection-both right-ear result; do
  cp "build/shots/$name-375x667.png" "docs/images/$name.png"
done
cp build/shots/sheet.375x667.png docs/images/screens.png
