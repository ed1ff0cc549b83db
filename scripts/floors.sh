#!/usr/bin/env bash
# Fails if a file includes another of a floor above its own or of another folder of its own floor, or if files include
# each other in a circle, or if a header that is installed includes one that is not. The floors are those of
# docs/ARCHITECTURE.md.
set -euo pipefail
cd "$(dirname "$0")/.."

# Lowest first; the folders of a line know nothing of each other.
floors=(
  "ORNHearingTestSDK/platform"
  "ORNHearingTestSDK/platform/linux ORNHearingTestSDK/platform/simulated ORNHearingTestSDK/platform/qt ORNHearingTestSDK/platform/web"
  "ORNHearingTestSDK/contracts"
  "ORNHearingTestSDK/common"
  "ORNHearingTestSDK/audio ORNHearingTestSDK/results"
  "ORNHearingTestSDK/calibration ORNHearingTestSDK/resources"
  "ORNHearingTestSDK/engine"
  "ORNHearingTestSDK"
  "ORNHearingTestSDK/screens"
  "apps"
  "apps/simulation/calibration"
  "apps/simulation/listener"
  "apps/simulation/runs"
  "apps/simulation/studies"
  "apps/hearing-service"
  "apps/hearing-app apps/hearing-test apps/hearing-web"
  "apps/hearing-app-tools"
)

# Lines of "FILE INCLUDED", both from the root; an include in quotes is relative to the apps, or to its own folder.
edges=$(git ls-files ORNHearingTestSDK apps | grep -E '\.(h|cpp|inc)$' |
  xargs grep -HoE '^ *# *include *(<ORNHearingTestSDK/[^>]+>|"[^"]+")' |
  sed -E 's/^([^:]+):.*[<"](.*)[>"]$/\1 \2/' |
  while read -r file included; do
    for root in "" apps/ "${file%/*}/"; do
      [ ! -e "$root$included" ] || { echo "$file $root$included"; break; }
    done
  done)

printf '%s\n' "${floors[@]}" | awk '
  function folder(file) {
    do sub(/\/[^\/]*$/, "", file); while (!(file in floor) && file ~ /\//)
    return file
  }
  FILENAME == "-" { for (i = 1; i <= NF; ++i) floor[$i] = FNR; next }
  {
    from = folder($1); to = folder($2)
    if (!(from in floor) || !(to in floor)) { print $1 " or " $2 " stands on no floor"; bad = 1 }
    else if (from != to && floor[to] >= floor[from]) { print $1 " includes upwards: " $2; bad = 1 }
  }
  END { exit bad }' - <(echo "$edges") >&2

if ! circle=$(tsort <<< "$edges" 2>&1 > /dev/null); then
  echo "files include each other in a circle: $circle" >&2
  exit 1
fi
installed=$(find ORNHearingTestSDK -name CMakeLists.txt | while read -r list; do
  sed -n '/^orn_headers(/,/)/p' "$list" | grep -oE '[A-Za-z./]+\.h' | sed "s|^|${list%/*}/|"
done | xargs realpath --relative-to=. | sort -u)
if hidden=$(grep -E '\.h [^ ]+$' <<< "$edges" | awk 'NR == FNR { listed[$1]; next } $1 in listed && !($2 in listed)' \
  <(echo "$installed") - | grep .); then
  echo "an installed header includes one that is not listed in its folder's orn_headers: $hidden" >&2
  exit 1
fi
echo "floors: $(wc -l <<< "$edges") includes, all downwards"
