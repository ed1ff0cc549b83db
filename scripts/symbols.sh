#!/usr/bin/env bash
# Compares what the shared libraries export with the lists in cmake/symbols, which a change of the public interface
# changes with it: `scripts/symbols.sh --accept` writes them anew.
set -euo pipefail
cd "$(dirname "$0")/.."

libraries=(ORNHearingTestSDK ORNHearingTestLinuxBackend ORNHearingTestScreens)
scripts/build.sh release "${libraries[@]}"
result=0
for library in "${libraries[@]}"; do
  list=cmake/symbols/$library.txt
  exported=$(nm --dynamic --defined-only --demangle "build/release/lib/lib$library.so" | cut -d' ' -f3- | LC_ALL=C sort -u)
  if [ "${1-}" = --accept ]; then
    echo "$exported" > "$list"
  elif ! diff -u "$list" - <<< "$exported"; then
    echo "lib$library.so exports something else than $list says" >&2
    result=1
  fi
done
exit "$result"
