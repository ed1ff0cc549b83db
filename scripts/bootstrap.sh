#!/usr/bin/env bash
# Installs what the project needs on Debian 12: tools, libraries, and what its tests run against; with an argument also
# what is needed for that alone: the reader of layouts, the other compiler, the fuzzers, what the benchmarks compare
# with, the Debian packages, the reference, the web.
set -euo pipefail

packages=(
  # tools
  ccache clang-format clang-tidy cmake g++ git make ninja-build
  # what the library is made of
  ca-certificates libcurl4-openssl-dev libplist-dev libpulse-dev libssl-dev nlohmann-json3-dev pkg-config
  # the programs
  libcli11-dev libmicrohttpd-dev libsqlite3-dev
  # the screens and their images
  fonts-dejavu-core fonts-wqy-microhei librsvg2-bin qt6-base-dev qt6-svg-dev
  # tests
  curl libgmock-dev libgtest-dev openssl poppler-utils
  # an X server and a bus for screen readers, for the tests
  at-spi2-core libatspi2.0-dev xauth xvfb
  # sound servers for the tests
  dbus pipewire-pulse pulseaudio pulseaudio-utils wireplumber
)
case "${1-}" in
  abi) packages+=(abigail-tools python3) ;;
  clang) packages+=(clang-14 googletest libc++-14-dev libc++abi-14-dev) ;;
  fuzz) packages+=(clang-14 libclang-rt-14-dev) ;;
  bench) packages+=(gstreamer1.0-plugins-base gstreamer1.0-tools libstk-dev sox) ;;
  deb) packages+=(desktop-file-utils dpkg-dev file) ;;
  docs) packages+=(doxygen) ;;
  web) packages+=(chromium chromium-driver dpkg-dev emscripten nodejs python3) ;;
esac

missing=()
for package in "${packages[@]}"; do
  dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ "${#missing[@]}" -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
# Another installation may be under way, such as the automatic one of a machine that has just started.
waits=(-o DPkg::Lock::Timeout=600)
"${as_root[@]}" apt-get "${waits[@]}" update -qq
DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get "${waits[@]}" install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
