#!/usr/bin/env bash
# Writes the reference of what is installed, the public headers, to build/docs/html. A warning is a failure.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh release
export ORN_PUBLIC_PREFIX=$PWD/build/docs/prefix/include
export ORN_PUBLIC_HEADERS=$ORN_PUBLIC_PREFIX/ORNHearingTestSDK
rm -rf build/docs
cmake --install build/release --prefix build/docs/prefix --component Development > /dev/null
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
