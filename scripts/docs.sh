#!/usr/bin/env bash
# Writes the reference of what is installed, the public headers, to build/docs/html, with the documents. A warning is a
# failure, and so is a link that leads nowhere.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh release
export ORN_PUBLIC_PREFIX=$PWD/build/docs/prefix/include
export ORN_PUBLIC_HEADERS=$ORN_PUBLIC_PREFIX/ORNHearingTestSDK
rm -rf build/docs
cmake --install build/release --prefix build/docs/prefix --component Development > /dev/null
doxygen docs/Doxyfile

# Files that the documents link to and that are not pages of the reference are copied.
root=$PWD
cd build/docs/html
while read -r link; do
  [ ! -e "$link" ] || continue
  file=${link#../}
  [ -e "$root/$file" ] || { echo "a link of the documents leads nowhere: $link" >&2; exit 1; }
  mkdir -p "$(dirname "$file")"
  cp -r "$root/$file" "$file"
  sed -i "s|\"$link\"|\"$file\"|g" index.html md_*.html
done < <(grep -ohE '(href|src)="[^"#:]+["#]' index.html md_*.html | sed -E 's/^[a-z]+="(.*)["#]$/\1/' | sort -u)
echo "build/docs/html/index.html"
