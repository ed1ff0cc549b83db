#!/usr/bin/env bash
# Builds the core's libraries for the web into build/web-libraries, from Debian's source packages; once.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$PWD/build/web-libraries
[ -e "$prefix/lib/pkgconfig/libplist-2.0.pc" ] && exit 0
work=$PWD/build/web-sources
mkdir -p "$work/parts" "$work/lists/partial"

# A copy of the machine's own list of packages that asks for sources.
for list in /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list; do
  [ -e "$list" ] || continue
  sed 's/^Types: deb$/Types: deb-src/; s/^deb /deb-src /' "$list" > "$work/parts/$(basename "$list")"
done
apt=(apt-get -qq -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/parts"
     -o "Dir::State::Lists=$work/lists" -o APT::Sandbox::User=root)
"${apt[@]}" update
(cd "$work" && "${apt[@]}" source libplist mbedtls > /dev/null)

emcmake cmake -S cmake/web -B build/web-sources/build -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$prefix" -DPLIST_SOURCE="$(echo "$work"/libplist-*/)" -DMBEDTLS_SOURCE="$(echo "$work"/mbedtls-*/)"
cmake --build build/web-sources/build --target install
