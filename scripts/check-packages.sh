#!/usr/bin/env bash
# Makes the Debian packages, installs them on this machine, uses what they contain, and removes them; nothing may be
# left.
set -euo pipefail
cd "$(dirname "$0")/.."
make deb
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
work=$(mktemp -d)
names=(libornhearingtestsdk1 libornhearingtestlinuxbackend1 libornhearingtestscreens1 libornhearingtestsdk-dev
  ornhearingtestsdk-tools)
remove() {
  "${as_root[@]}" apt-get purge -y -qq "${names[@]}" > /dev/null
}
trap 'remove || true; rm -rf "$work"' EXIT

DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends \
  ./build/package/packages/*.deb > /dev/null
hearing-test simulate --png "$work/audiogram.png" > /dev/null
QT_QPA_PLATFORM=offscreen hearing-app --screenshots "$work/shots" 2> /dev/null
mkfifo "$work/port"
hearing-service --print-port > "$work/port" &
service=$!
read -r port < "$work/port"
answered=true
XDG_CONFIG_HOME=$work hearing-test register --host "127.0.0.1:$port" --app-key check --id 1 --birthday 1990-03-05 \
  --phone 13800000000 > /dev/null || answered=false
kill "$service"
"$answered"
[ -s "$work/audiogram.png" ] && [ -s "$work/shots/result-375x667.png" ]
desktop-file-validate /usr/share/applications/hearing-app.desktop
cmake -S examples/automatic-test -B "$work/built" -G Ninja > /dev/null
cmake --build "$work/built" > /dev/null
"$work/built/automatic-test" > /dev/null

mapfile -t files < <(dpkg-query --listfiles "${names[@]}" | grep -E 'orn|ORN|hearing' | sort -u)
remove
for file in "${files[@]}"; do
  [ ! -e "$file" ] || { echo "$file is left" >&2; exit 1; }
done
trap 'rm -rf "$work"' EXIT
echo "packages: install, run and are removed (${#files[@]} files)"
